#include "cli/command_process.h"

#include "base/text.h"
#include "cli/headless_document.h"
#include "cli/json_writer.h"
#include "cli/shown_values.h"
#include "dsp/numeric.h"

namespace velmora::cli {

namespace {

void setUpEngine(const CCommandLine& line, CAudioEngine& engine)
{
    engine.m_uChannelMode = static_cast<unsigned>(line.number("--mode", CHANNEL_MODE_STEREO_STEREO));
    engine.m_fInputGain_dB = static_cast<float>(line.number("--in-gain", 0.0));
    engine.m_fOutputGain_dB = static_cast<float>(line.number("--out-gain", 0.0));
    engine.m_bBypass = line.has("--bypass");
}

// False if the sidechain's file cannot be used; the user has been told.
bool setUpSidechain(CCommandContext& context, CSidechain& sidechain)
{
    const CCommandLine& line = context.line();
    const auto file = line.text("--sidechain");
    if (!file)
        return true;
    sidechain.m_fGain_dB = static_cast<float>(line.number("--sidechain-gain", 0.0));
    sidechain.m_bLoop = line.has("--sidechain-loop");
    sidechain.m_bListen = line.has("--listen");
    sidechain.m_bEnabled = true;
    if (sidechain.load(*file, context.dialogs()))
        return true;
    context.showReason(sidechain.reason());
    return false;
}

std::string resultText(const COfflineProcessing::CResult& result, bool bJson)
{
    if (!bJson)
        return formatted("%lld frame%s, %d channel%s, %d Hz: %.3f s of audio in %.3f s, %.0f times real "
                         "time, peak %s dB\n",
                         result.m_nFrames, result.m_nFrames == 1 ? "" : "s", result.m_nChannels,
                         result.m_nChannels == 1 ? "" : "s", result.m_nSampleRate, secondsOfAudio(result),
                         result.m_dSeconds, timesRealTime(result),
                         fixedDecimals(lin2dB(result.m_output.peak()), 1).c_str());
    CJsonWriter json;
    json.beginObject();
    json.member("frames", static_cast<std::int64_t>(result.m_nFrames));
    json.member("channels", result.m_nChannels);
    json.member("rate", result.m_nSampleRate);
    json.member("seconds", result.m_dSeconds);
    json.member("xRealtime", timesRealTime(result));
    json.member("peak", result.m_output.peak());
    json.member("overs", static_cast<std::int64_t>(result.m_output.overs()));
    json.member("notFinite", static_cast<std::int64_t>(result.m_output.notFinite()));
    json.endObject();
    return json.text();
}

} // namespace

int runProcess(CCommandContext& context)
{
    CHeadlessDocument document(context);
    if (!document.applyFilterOptions())
        return EXIT_FAILED;
    setUpEngine(context.line(), document->audioEngine());
    // That there is no filter comes first of all that the processing finds fault with.
    if (document->currentFilter() && !setUpSidechain(context, document->sidechain()))
        return EXIT_FAILED;

    context.dialogs().setSaveFile(*context.line().argument("OUT"));
    if (context.line().has("--force"))
        context.dialogs().allowOverwriting();
    COfflineProcessing& processing = document->offlineProcessing();
    const std::string sInput = *context.line().argument("IN");
    if (!document.runPlugIn([&] { return processing.processIntoWaveFile(sInput, &context.progress()); })) {
        context.showReason(processing.reason());
        return EXIT_FAILED;
    }
    for (const std::string& sRemark : processing.remarks())
        context.dialogs().showMessage(sRemark);
    context.m_sResult = resultText(processing.result(), context.json());
    return EXIT_DONE;
}

} // namespace velmora::cli
