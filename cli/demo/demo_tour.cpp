#include "cli/demo/demo_tour.h"

#include "base/platform_folders.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "cli/demo/plot_axis.h"
#include "cli/demo/response_curves.h"
#include "cli/demo/sound_summary.h"
#include "cli/demo/source_excerpt.h"
#include "cli/shown_values.h"
#include "host/dsp_filter.h"
#include "host/loaded_plugin.h"
#include "plugin.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fstream>
#include <iterator>
#include <system_error>

namespace velmora::cli {

namespace {

constexpr const char* EXAMPLE = "ResonantFilter";
constexpr const char* ANOTHER_FOLDER = "Choose another one: velmora-cli demo DIR";
constexpr int WAVEFORM_COLUMNS = 1200;

// Where the controls are put: a low-pass that sings, with room for its resonance.
struct CSetting
{
    std::string_view m_sControl;
    const char* m_pValue;
};
constexpr CSetting SETTINGS[] = {{"Cutoff", "640"}, {"Resonance", "6"}, {"Level", "-3"}};

std::filesystem::path contractFolder()
{
    return programDataFolder("BaseClassFiles");
}

std::optional<std::string> contentsOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string sContents{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return stream ? std::optional(std::move(sContents)) : std::nullopt;
}

std::string sizeText(const std::filesystem::path& file)
{
    std::error_code error;
    const auto uBytes = std::filesystem::file_size(file, error);
    return error ? "?" : printedNumber(static_cast<double>(uBytes) / 1000.0, 1) + " kB";
}

std::string signedDecibels(double dValue)
{
    return (dValue > 0.0 ? "+" : "") + printedNumber(dValue, 1) + " dB";
}

double millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

std::string withMinusSign(const std::string& sNumber)
{
    return sNumber.starts_with('-') ? "\u2212" + sNumber.substr(1) : sNumber;
}

// The value as the panel shows it, or the item of a list, with its unit.
std::string valueText(const CDSPFilterControl& control)
{
    if (std::string sItem = chosenItem(control); !sItem.empty())
        return sItem;
    const std::string sNumber = withMinusSign(control.m_sValue);
    return control.m_sUnits.empty() ? sNumber : sNumber + " " + control.m_sUnits;
}

std::string limitText(double dLimit, const std::string& sUnits)
{
    return withMinusSign(formatted("%g", dLimit)) + (sUnits.empty() ? "" : " " + sUnits);
}

CReportSound describeSound(const CRecording& recording, const std::filesystem::path& file)
{
    return {file.filename().string(),
            recording.seconds(),
            peakLevel(recording),
            rmsLevel(recording),
            waveformColumns(recording, WAVEFORM_COLUMNS),
            averageSpectrum(recording),
            contentsOf(file).value_or("")};
}

} // namespace

CDemoTour::CDemoTour(CCommandContext& context, std::filesystem::path folder)
    : m_context(context), m_document(context), m_compiler(contractFolder()),
      m_folder(std::filesystem::absolute(folder).lexically_normal()),
      m_recording(programDataFolder("examples") / "audio" / "demo.wav")
{
    m_report.m_sPlugInName = EXAMPLE;
    m_report.m_sProgramVersion = VELMORA_VERSION;
}

bool CDemoTour::run()
{
    return takeStep("Copy the sources", [this] { return copySources(); }) &&
           takeStep("Compile", [this] { return compile(); }) &&
           takeStep("Probe and load", [this] { return load(); }) &&
           takeStep("Set the controls", [this] { return setControls(); }) &&
           takeStep("Process", [this] { return process(); }) &&
           takeStep("Compare the sounds", [this] { return compareSounds(); }) &&
           takeStep("Measure", [this] { return measure(); }) &&
           takeStep("Write the report", [this] { return writeReport(); });
}

bool CDemoTour::takeStep(const char* pName, const std::function<COutcome()>& step)
{
    const auto start = std::chrono::steady_clock::now();
    const COutcome outcome = step();
    const double dMilliseconds = millisecondsSince(start);
    if (!outcome.m_sError.empty()) {
        m_context.showReason(outcome.m_sError); // the offline processing may have shown it itself
        return false;
    }
    m_report.m_steps.push_back({pName, outcome.m_sDetail, dMilliseconds});
    if (!m_context.line().has("--quiet"))
        printToStandardError(
            formatted("%-18s %9.1f ms  %s", pName, dMilliseconds, outcome.m_sDetail.c_str()));
    return true;
}

// The files of an earlier tour are replaced without a word; its report tells that there was one.
CDemoTour::COutcome CDemoTour::askAboutFiles()
{
    if (contentsOf(reportFile()).value_or("").find(REPORT_MARK) != std::string::npos)
        return {};
    std::error_code error;
    for (const auto& file : {reportFile(), processedFile()})
        if (std::filesystem::exists(file, error) &&
            !m_context.dialogs().askYesNo("The file " + file.string() +
                                          " already exists. This operation will overwrite it.\n\n"
                                          "Are you sure you want to write into this folder?"))
            return {{},
                    "The file " + file.string() + " was left as it is, and so was its folder. " +
                        ANOTHER_FOLDER};
    return {};
}

CDemoTour::COutcome CDemoTour::copySources()
{
    const auto source = programDataFolder("examples") / EXAMPLE;
    std::error_code error;
    if (!std::filesystem::is_directory(source, error) || !std::filesystem::exists(m_recording, error) ||
        contractFolder().empty())
        return {{},
                std::string("The example ") + EXAMPLE +
                    ", its recording or the folder BaseClassFiles is missing beside the program. "
                    "Build or install Velmora completely."};
    if (COutcome outcome = askAboutFiles(); !outcome.m_sError.empty())
        return outcome;
    const auto target = m_folder / EXAMPLE;
    std::filesystem::create_directories(target, error);
    if (error)
        return {{},
                "The folder " + target.string() + " could not be made: " + error.message() + ". " +
                    ANOTHER_FOLDER};
    int nFiles = 0;
    std::string sKept;
    for (const auto& entry : std::filesystem::directory_iterator(source, error)) {
        const auto sContents = entry.is_regular_file(error) ? contentsOf(entry.path()) : std::nullopt;
        const std::string sName = entry.path().filename().string();
        if (sContents && std::filesystem::is_regular_file(target / sName, error) &&
            contentsOf(target / sName) != sContents) {
            sKept += "; your changed " + sName + " was kept";
            continue;
        }
        std::string sReason = "it cannot be read";
        if (!sContents || !writeFileSafely(target / sName, *sContents, &sReason))
            return {{},
                    "The file " + sName + " could not be copied to " + target.string() + ": " + sReason +
                        "."};
        ++nFiles;
    }
    return {formatted("%d files to %s", nFiles, EXAMPLE) + sKept, {}};
}

CDemoTour::COutcome CDemoTour::compile()
{
    const auto folder = m_folder / EXAMPLE;
    const auto source = folder / (std::string(EXAMPLE) + ".cpp");
    const CCompileResult result = m_compiler.compile(
        {{source}, {folder}, folder / (std::string(EXAMPLE) + PLUGIN_LIBRARY_SUFFIX)}, &m_context.progress());
    if (!result.m_bSucceeded)
        return {{}, result.m_sError + (result.m_sMessages.empty() ? "" : "\n" + result.m_sMessages)};
    m_report.m_sCommandLine = result.m_sCommandLine;
    m_report.m_sSource = processingOperationIn(contentsOf(source).value_or(""));
    m_report.m_sSourceFile = source.filename().string();
    m_report.m_highlights.push_back({"Compiled in", printedNumber(result.m_dSeconds, 2) + " s"});
    m_report.m_facts.push_back(
        {"Library", result.m_library.string() + " (" + sizeText(result.m_library) + ")"});
    m_report.m_facts.push_back({"Compiler", m_compiler.versionText()});
    return {m_compiler.name(), {}};
}

CDemoTour::COutcome CDemoTour::load()
{
    const auto library = m_folder / EXAMPLE / (std::string(EXAMPLE) + PLUGIN_LIBRARY_SUFFIX);
    const auto start = std::chrono::steady_clock::now();
    if (!m_document.loadPlugIn(library))
        return {{}, "The library " + library.string() + " was compiled but could not be loaded."};
    m_report.m_highlights.push_back({"Loaded in", printedNumber(millisecondsSince(start), 1) + " ms"});
    const unsigned uVersion = m_document->plugInLoader().current()->plugIn()->m_uPlugInVersion;
    m_report.m_facts.push_back({"Contract", "version " + std::to_string(uVersion)});
    return {"contract version " + std::to_string(uVersion), {}};
}

CDemoTour::COutcome CDemoTour::setControls()
{
    CDSPFilter& filter = *m_document->currentFilter();
    std::string sDetail;
    for (const CSetting& setting : SETTINGS) {
        const auto found =
            std::ranges::find(filter.m_ControlList, setting.m_sControl,
                              [](const auto& pControl) { return std::string_view(pControl->m_sName); });
        if (found == filter.m_ControlList.end() ||
            !filter.setControlText((*found)->uControlId, setting.m_pValue, false))
            return {{},
                    "The example has no control \"" + std::string(setting.m_sControl) +
                        "\" that can be set. Is its source the one that came with the program?"};
        sDetail += (sDetail.empty() ? "" : ", ") + (*found)->m_sName + " " + valueText(**found);
    }
    describeControls();
    return {sDetail, {}};
}

void CDemoTour::describeControls()
{
    CLoadedPlugIn& loaded = *m_document->plugInLoader().current();
    for (const auto& pControl : m_document->currentFilter()->m_ControlList) {
        CReportControl control;
        control.m_sName = pControl->m_sName;
        control.m_sVariable = variableNameOf(*loaded.plugIn(), *pControl);
        control.m_sValue = valueText(*pControl);
        control.m_dPosition = static_cast<double>(pControl->m_fNormalized);
        control.m_bChanged =
            std::ranges::find(SETTINGS, pControl->m_sName, &CSetting::m_sControl) != std::end(SETTINGS);
        const auto items = itemsOf(*pControl);
        control.m_choices.assign(items.begin(), items.end());
        if (items.empty()) {
            control.m_sLow =
                limitText(static_cast<double>(pControl->fUserDisplayDataLoLimit), pControl->m_sUnits);
            control.m_sHigh =
                limitText(static_cast<double>(pControl->fUserDisplayDataHiLimit), pControl->m_sUnits);
        }
        m_report.m_controls.push_back(std::move(control));
    }
}

CDemoTour::COutcome CDemoTour::process()
{
    CSafeFile output(processedFile());
    m_context.dialogs().setSaveFile(output.path());
    COfflineProcessing& processing = m_document->offlineProcessing();
    if (!m_document.runPlugIn(
            [&] { return processing.processIntoWaveFile(m_recording, &m_context.progress()); }))
        return {{}, processing.reason().empty() ? "The recording was not processed." : processing.reason()};
    if (!output.commit())
        return {{},
                "The file " + processedFile().string() + " could not be written: " + output.error() + "."};

    const COfflineProcessing::CResult& result = processing.result();
    const std::string sTimes = printedNumber(timesRealTime(result), 0);
    m_dRecordingRate = result.m_nSampleRate;
    m_report.m_highlights.push_back({"Processing", sTimes + " \u00d7 real time"});
    m_report.m_facts.push_back({"Recording", m_recording.string()});
    m_report.m_facts.push_back(
        {"Processed",
         processedFile().string() + formatted(" (%lld frames, %d channels, %d Hz)", result.m_nFrames,
                                              result.m_nChannels, result.m_nSampleRate)});
    return {printedNumber(secondsOfAudio(result), 1) + " s of sound, " + sTimes + " times real time", {}};
}

CDemoTour::COutcome CDemoTour::compareSounds()
{
    std::string sError;
    for (const auto& [file, pSound] :
         {std::pair(m_recording, &m_report.m_before), std::pair(processedFile(), &m_report.m_after)}) {
        const auto recording = readRecording(file, sError);
        if (!recording)
            return {{}, sError};
        *pSound = describeSound(*recording, file);
    }
    return {"levels, waveforms and spectra", {}};
}

CDemoTour::COutcome CDemoTour::measure()
{
    CResponseCurves curves;
    CDSPFilter* pFilter = m_document->currentFilter();
    if (!m_document.runPlugIn([&] { return measureResponses(pFilter, m_dRecordingRate, curves); }))
        return {{}, "The filter could not be measured."};
    m_report.m_frequency = std::move(curves.m_frequency);
    m_report.m_phase = std::move(curves.m_phase);
    m_report.m_impulse = std::move(curves.m_impulse);
    m_report.m_step = std::move(curves.m_step);
    return {formatted("impulse, step, frequency and phase, %d frames at %.0f Hz", curves.m_nFrames,
                      m_dRecordingRate),
            {}};
}

void CDemoTour::describeResults()
{
    const auto byLevel = [](const CPlotPoint& a, const CPlotPoint& b) { return a.m_dY < b.m_dY; };
    const auto peak = std::ranges::max_element(m_report.m_frequency.m_left, byLevel);
    m_report.m_highlights.push_back(
        {"Resonance", signedDecibels(peak->m_dY) + " at " + printedNumber(peak->m_dX, 0) + " Hz"});
    m_report.m_highlights.push_back(
        {"Level change", signedDecibels(m_report.m_after.m_dRMSdB - m_report.m_before.m_dRMSdB) + " RMS"});
    double dTotal = 0.0;
    for (const CReportStep& step : m_report.m_steps)
        dTotal += step.m_dMilliseconds;
    m_report.m_sSummary = "A plug-in that was compiled from its source, loaded into the running program, "
                          "heard and measured, all within " +
                          printedNumber(dTotal / 1000.0, 2) + " seconds.";
}

CDemoTour::COutcome CDemoTour::writeReport()
{
    describeResults();
    std::string sReason;
    if (!writeFileSafely(reportFile(), makeReportHtml(m_report), &sReason))
        return {{}, "The report " + reportFile().string() + " could not be written: " + sReason + "."};
    return {sizeText(reportFile()), {}};
}

} // namespace velmora::cli
