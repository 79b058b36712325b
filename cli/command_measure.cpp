#include "cli/command_measure.h"

#include "analyzer/graph_data_export.h"
#include "analyzer/response_measurement.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "cli/headless_document.h"
#include "cli/json_writer.h"
#include "cli/text_table.h"
#include "host/dsp_filter.h"
#include "plugin.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <filesystem>
#include <numeric>
#include <set>
#include <vector>

namespace velmora::cli {

namespace {

// What is measured, and how it is shown.
struct CMeasureKind
{
    std::string_view m_sName;
    EGraphKind m_eGraph;
    bool m_bStep;
    bool m_bSpectrum; // of the impulse response
    const char* m_pUnit;
};

constexpr std::array<CMeasureKind, 4> KINDS = {{
    {"impulse", EGraphKind::impulseResponse, false, false, ""},
    {"step", EGraphKind::stepResponse, true, false, ""},
    {"frequency", EGraphKind::frequency, false, true, "dB"},
    {"phase", EGraphKind::phaseResponse, false, true, "degrees"},
}};

struct CFormatSuffix
{
    std::string_view m_sSuffix;
    std::string_view m_sFormat;
};

constexpr std::array<CFormatSuffix, 6> FORMAT_SUFFIXES = {
    {{".c", "c"}, {".h", "c"}, {".cpp", "c"}, {".m", "matlab"}, {".txt", "matlab"}, {".csv", "csv"}}};

// What a measurement found, for both channels.
struct CMeasured
{
    const CMeasureKind* m_pKind = nullptr;
    int m_nRate = 0;   // Hz
    int m_nFrames = 0; // of the response in time
    std::array<std::vector<double>, 2> m_values;
    std::array<CFrequencyResponse, 2> m_frequency; // only for kind "frequency"
};

constexpr std::array<const char*, 2> CHANNEL_NAMES = {"left", "right"};

// Where output is to go, settled before anything is measured.
std::string faultOfOptions(const CCommandLine& line, const CMeasureKind& kind)
{
    const auto uLength = static_cast<unsigned>(line.number("--length", CResponseMeasurement::DEFAULT_FRAMES));
    if (kind.m_bSpectrum && (uLength < 2 || !std::has_single_bit(uLength)))
        return "For frequency and phase, --length must be a power of two of at least 2.";
    if (kind.m_bSpectrum && line.has("--normalize"))
        return "The option --normalize applies to impulse and step only.";
    const auto file = line.text("-o");
    if (file && !line.has("--format") &&
        std::ranges::find(FORMAT_SUFFIXES, std::filesystem::path(*file).extension().string(),
                          &CFormatSuffix::m_sSuffix) == FORMAT_SUFFIXES.end())
        return "The format of " + std::filesystem::path(*file).filename().string() +
               " does not follow from its name; give --format.";
    return {};
}

EGraphFormat formatOf(const CCommandLine& line)
{
    const std::string sSuffix = std::filesystem::path(*line.text("-o")).extension().string();
    const auto found = std::ranges::find(FORMAT_SUFFIXES, sSuffix, &CFormatSuffix::m_sSuffix);
    const std::string sName =
        line.text("--format").value_or(found == FORMAT_SUFFIXES.end() ? "" : std::string(found->m_sFormat));
    return graphFormatByName(sName).value_or(EGraphFormat::csv);
}

// Only the step of default length has a way of its own, which normalises differently.
bool runMeasurement(CResponseMeasurement& measurement, CDSPFilter* pFilter, const CMeasured& measured,
                    bool bNormalize)
{
    const double dRate = measured.m_nRate;
    if (!measured.m_pKind->m_bStep)
        return measurement.measureImpulseLong(pFilter, bNormalize, measured.m_nFrames, dRate);
    if (measured.m_nFrames == CResponseMeasurement::DEFAULT_FRAMES)
        return measurement.measureStep(pFilter, bNormalize, dRate);
    return measurement.measureStepLong(pFilter, bNormalize, measured.m_nFrames, dRate);
}

bool measure(CMeasured& measured, CDSPFilter* pFilter, bool bNormalize)
{
    CResponseMeasurement measurement;
    if (!runMeasurement(measurement, pFilter, measured, bNormalize))
        return false;
    for (int nChannel = 0; nChannel < 2; ++nChannel) {
        const auto u = static_cast<std::size_t>(nChannel);
        measured.m_values[u] = measurement.channel(nChannel);
        if (measured.m_pKind->m_eGraph == EGraphKind::frequency) {
            measured.m_frequency[u] = frequencyResponse(measured.m_values[u], measured.m_nRate);
            measured.m_values[u] = measured.m_frequency[u].m_dB;
        } else if (measured.m_pKind->m_eGraph == EGraphKind::phaseResponse) {
            measured.m_values[u] = phaseResponse(measured.m_values[u]);
        }
    }
    return true;
}

std::string asJson(const CMeasured& measured)
{
    CJsonWriter json;
    json.beginObject();
    json.member("rate", measured.m_nRate);
    json.member("frames", measured.m_nFrames);
    for (std::size_t u = 0; u < 2; ++u) {
        json.key(CHANNEL_NAMES[u]);
        json.beginArray();
        for (const double dValue : measured.m_values[u])
            if (measured.m_pKind->m_bSpectrum)
                json.value(dValue);
            else
                json.value(static_cast<float>(dValue)); // the response's own precision
        json.endArray();
    }
    if (measured.m_pKind->m_eGraph == EGraphKind::frequency)
        for (std::size_t u = 0; u < 2; ++u) {
            json.key(std::string(CHANNEL_NAMES[u]) + "Peak");
            json.beginObject();
            json.member("maxdB", measured.m_frequency[u].m_dMaxdB);
            json.member("maxHz", measured.m_frequency[u].m_dMaxHz);
            json.member("dcdB", measured.m_frequency[u].m_dDCdB);
            json.endObject();
        }
    json.endObject();
    return json.text();
}

// Spectra: the bins nearest to the third-octave frequencies, each bin once.
std::string spectrumTable(const CMeasured& measured)
{
    constexpr int LOWEST_THIRD = -17; // about 20 Hz; 0 is 1000 Hz
    constexpr int HIGHEST_THIRD = 14; // about 25 kHz
    const std::size_t uBins = measured.m_values[0].size();
    const double dBinWidth = measured.m_nRate / 2.0 / static_cast<double>(uBins);
    CTextTable table({">Hz", std::string(">left ") + measured.m_pKind->m_pUnit,
                      std::string(">right ") + measured.m_pKind->m_pUnit});
    std::size_t uLastBin = uBins;
    for (int nThird = LOWEST_THIRD; nThird <= HIGHEST_THIRD; ++nThird) {
        const double dBin = std::round(1000.0 * std::exp2(nThird / 3.0) / dBinWidth);
        const auto uBin = static_cast<std::size_t>(dBin);
        if (uBin >= uBins || uBin == uLastBin)
            continue;
        uLastBin = uBin;
        table.addRow({formatted("%.1f", static_cast<double>(uBin) * dBinWidth),
                      fixedDecimals(measured.m_values[0][uBin], 2),
                      fixedDecimals(measured.m_values[1][uBin], 2)});
    }
    return table.text();
}

std::string peakTable(const CMeasured& measured)
{
    CTextTable table({"Channel", ">max dB", ">at Hz", ">DC dB"});
    for (std::size_t u = 0; u < 2; ++u)
        table.addRow({CHANNEL_NAMES[u], fixedDecimals(measured.m_frequency[u].m_dMaxdB, 2),
                      fixedDecimals(measured.m_frequency[u].m_dMaxHz, 1),
                      fixedDecimals(measured.m_frequency[u].m_dDCdB, 2)});
    return table.text();
}

double sizeAt(const CMeasured& measured, std::size_t uFrame)
{
    return std::max(std::abs(measured.m_values[0][uFrame]), std::abs(measured.m_values[1][uFrame]));
}

// The frames 0, 1, 2, 4, 8 and so on and the last one; of an impulse response also the largest ones, so
// that echoes are not missed.
std::set<std::size_t> framesToShow(const CMeasured& measured)
{
    constexpr std::size_t LARGEST = 12;
    const std::size_t uFrames = measured.m_values[0].size();
    std::set<std::size_t> frames{0, uFrames - 1};
    for (std::size_t uFrame = 1; uFrame < uFrames; uFrame *= 2)
        frames.insert(uFrame);
    if (measured.m_pKind->m_bStep)
        return frames;
    std::vector<std::size_t> order(uFrames);
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto middle = order.begin() + static_cast<std::ptrdiff_t>(std::min(LARGEST, uFrames));
    std::ranges::partial_sort(order, middle, [&](std::size_t uLeft, std::size_t uRight) {
        return sizeAt(measured, uLeft) > sizeAt(measured, uRight);
    });
    for (auto frame = order.begin(); frame != middle && sizeAt(measured, *frame) > 0.0; ++frame)
        frames.insert(*frame);
    return frames;
}

// What a person should know about an impulse response that does not end within its length.
std::string decayRemark(const CMeasured& measured)
{
    constexpr double DECAYED = 0.001; // -60 dB
    double dPeak = 0.0;
    double dEnd = 0.0;
    const std::size_t uFrames = measured.m_values[0].size();
    for (std::size_t u = 0; u < uFrames; ++u) {
        dPeak = std::max(dPeak, sizeAt(measured, u));
        if (u >= uFrames - uFrames / 16)
            dEnd = std::max(dEnd, sizeAt(measured, u));
    }
    if (dPeak == 0.0)
        return formatted("Nothing came out within %zu frames; --length measures longer.\n", uFrames);
    if (dEnd > DECAYED * dPeak)
        return formatted("The response has not decayed within %zu frames; --length measures longer.\n",
                         uFrames);
    return {};
}

// Responses in time: the largest sample, then chosen frames.
std::string responseTable(const CMeasured& measured)
{
    CTextTable peaks({"Channel", ">peak", ">at ms", ">last"});
    for (std::size_t u = 0; u < 2; ++u) {
        const auto& values = measured.m_values[u];
        const auto peak = std::ranges::max_element(
            values, [](double dLeft, double dRight) { return std::abs(dLeft) < std::abs(dRight); });
        const auto nPeak = static_cast<double>(peak - values.begin());
        peaks.addRow({CHANNEL_NAMES[u], fixedDecimals(*peak, 6),
                      formatted("%.3f", 1000.0 * nPeak / measured.m_nRate), fixedDecimals(values.back(), 6)});
    }
    CTextTable rows({">frame", ">ms", ">left", ">right"});
    const auto addRow = [&](std::size_t uFrame) {
        rows.addRow({std::to_string(uFrame),
                     formatted("%.3f", 1000.0 * static_cast<double>(uFrame) / measured.m_nRate),
                     fixedDecimals(measured.m_values[0][uFrame], 6),
                     fixedDecimals(measured.m_values[1][uFrame], 6)});
    };
    for (const std::size_t uFrame : framesToShow(measured))
        addRow(uFrame);
    return peaks.text() + "\n" + rows.text();
}

std::string asText(const CMeasured& measured)
{
    std::string sText =
        formatted("%s response, %d frame%s at %d Hz\n\n", std::string(measured.m_pKind->m_sName).c_str(),
                  measured.m_nFrames, measured.m_nFrames == 1 ? "" : "s", measured.m_nRate);
    if (measured.m_pKind->m_eGraph == EGraphKind::frequency)
        sText += peakTable(measured) + "\n";
    sText += measured.m_pKind->m_bSpectrum ? spectrumTable(measured) : responseTable(measured);
    if (measured.m_pKind->m_eGraph == EGraphKind::impulseResponse)
        sText += decayRemark(measured);
    return sText;
}

// "Save Data" of the analyzer, which writes the left graph.
int saveToFile(CCommandContext& context, const CMeasured& measured)
{
    const std::filesystem::path file = std::filesystem::path(*context.line().text("-o")).lexically_normal();
    const std::string sFile = file.string();
    std::error_code error;
    if (const auto plugIn = context.line().text("--plugin");
        plugIn && std::filesystem::equivalent(file, *plugIn, error))
        return context.fail("The file " + sFile + " is the plug-in itself; choose another name.");
    const std::string sText =
        graphDataText(measured.m_values[0], measured.m_pKind->m_eGraph, formatOf(context.line()));
    std::string sError;
    if (!writeFileSafely(sFile, sText, &sError))
        return context.fail("The file " + sFile + " cannot be written: " + sError + ".");
    context.dialogs().showMessage("Graph Data saved to: " + sFile);
    return EXIT_DONE;
}

} // namespace

int runMeasure(CCommandContext& context)
{
    const CCommandLine& line = context.line();
    CMeasured measured;
    measured.m_pKind = &*std::ranges::find(KINDS, *line.argument("KIND"), &CMeasureKind::m_sName);
    measured.m_nRate = static_cast<int>(line.number("--rate", 44100));
    measured.m_nFrames = static_cast<int>(line.number("--length", CResponseMeasurement::DEFAULT_FRAMES));
    const std::string sFault = faultOfOptions(line, *measured.m_pKind);
    if (!sFault.empty())
        return context.usageError(sFault);

    CHeadlessDocument document(context);
    if (!document.applyFilterOptions())
        return EXIT_FAILED;
    CDSPFilter* pFilter = document->currentFilter();
    if (!pFilter)
        return context.fail("You must load a filter first: give --plugin or --module.");
    if (pFilter->m_pPlugIn && pFilter->m_pPlugIn->m_bOutputOnlyPlugIn)
        return context.fail(pFilter->m_sName + " makes sound without input; it has no response to measure.");
    context.announce(formatted("Measuring %d frames ...", measured.m_nFrames));
    if (!document.runPlugIn([&] { return measure(measured, pFilter, line.has("--normalize")); }))
        return context.fail(pFilter->m_sName + " could not be measured.");

    if (line.has("-o"))
        if (const int nStatus = saveToFile(context, measured); nStatus != EXIT_DONE)
            return nStatus;
    if (context.json())
        context.m_sResult = asJson(measured);
    else if (!line.has("-o"))
        context.m_sResult = asText(measured);
    return EXIT_DONE;
}

} // namespace velmora::cli
