#include "cli/command_process.h"

#include "base/text.h"
#include "cli/engine_options.h"
#include "cli/headless_document.h"
#include "cli/json_writer.h"
#include "cli/shown_values.h"
#include "dsp/numeric.h"

namespace velmora::cli {

namespace {

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
    applyEngineOptions(context.line(), document->audioEngine());
    // That there is no filter comes first of all that the processing finds fault with.
    if (document->currentFilter() && !applySidechainOptions(context, document->sidechain()))
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
