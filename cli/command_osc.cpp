#include "cli/command_osc.h"

#include "base/text.h"
#include "cli/command_context.h"
#include "cli/json_writer.h"
#include "cli/oscillator_options.h"
#include "cli/oscillator_rendering.h"
#include "dsp/modules/oscillator.h"
#include "dsp/numeric.h"

#include <cmath>

namespace velmora::cli {

namespace {

constexpr double DEFAULT_SECONDS = 10.0;

COscillatorRendering::CFormat formatOf(const CCommandLine& line)
{
    COscillatorRendering::CFormat format;
    format.m_nSampleRate = static_cast<int>(line.number("--rate", 44100));
    format.m_nChannels = static_cast<int>(line.number("--channels", 2));
    format.m_nFrames = std::llround(line.number("--seconds", DEFAULT_SECONDS) * format.m_nSampleRate);
    return format;
}

std::string faultOfFormat(const COscillatorRendering::CFormat& format)
{
    if (format.m_nFrames < 1)
        return "--seconds is shorter than one sample at this rate; give more.";
    if (format.m_nFrames > COscillatorRendering::mostFrames(format.m_nChannels))
        return formatted(
            "A WAV file holds at most %.0f seconds of this; give fewer --seconds, a lower --rate "
            "or --channels 1.",
            std::floor(static_cast<double>(COscillatorRendering::mostFrames(format.m_nChannels)) /
                       format.m_nSampleRate));
    return {};
}

// False if the file is not to be written; the user has been told.
bool settleTarget(CCommandContext& context, const std::filesystem::path& target)
{
    if (target.string().find(".wav") == std::string::npos) {
        context.dialogs().showMessage("You may only export .wav files. Check file name.");
        return false;
    }
    if (context.line().has("--force"))
        context.dialogs().allowOverwriting();
    std::error_code error;
    if (!std::filesystem::is_regular_file(target, error) ||
        context.dialogs().askYesNo("The file " + target.string() +
                                   " already exists. This operation will overwrite it.\n\n"
                                   "Are you sure you want to render into this file?"))
        return true;
    context.showReason("The file " + target.string() + " already exists and was left as it is.");
    return false;
}

std::string resultText(const COscillatorRendering& rendering, const COscillatorRendering::CFormat& format,
                       bool bJson)
{
    if (!bJson)
        return formatted("%lld frame%s, %d channel%s, %d Hz: %.3f s, peak %s dB, rms %s dB\n",
                         format.m_nFrames, format.m_nFrames == 1 ? "" : "s", format.m_nChannels,
                         format.m_nChannels == 1 ? "" : "s", format.m_nSampleRate,
                         static_cast<double>(format.m_nFrames) / format.m_nSampleRate,
                         fixedDecimals(lin2dB(rendering.peak()), 1).c_str(),
                         fixedDecimals(20.0 * std::log10(rendering.rms()), 1).c_str());
    CJsonWriter json;
    json.beginObject();
    json.member("frames", static_cast<std::int64_t>(format.m_nFrames));
    json.member("peak", rendering.peak());
    json.member("rms", rendering.rms());
    json.endObject();
    return json.text();
}

} // namespace

int runOscRender(CCommandContext& context)
{
    const CCommandLine& line = context.line();
    const COscillatorRendering::CFormat format = formatOf(line);
    for (const std::string& sFault : {oscillatorFault(line, format.m_nSampleRate), faultOfFormat(format)})
        if (!sFault.empty())
            return context.usageError(sFault);
    const std::filesystem::path target = *line.argument("OUT");
    if (!settleTarget(context, target))
        return EXIT_FAILED;

    COscillator oscillator;
    applyOscillatorOptions(line, oscillator);
    COscillatorRendering rendering;
    if (!rendering.renderInto(target, oscillator, format, context.progress()))
        return context.fail(rendering.reason());
    context.m_sResult = resultText(rendering, format, context.json());
    return EXIT_DONE;
}

} // namespace velmora::cli
