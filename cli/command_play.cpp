#include "cli/command_play.h"

#include "base/text.h"
#include "cli/engine_options.h"
#include "cli/oscillator_options.h"
#include "cli/stream_session.h"
#include "host/dsp_filter.h"
#include "plugin.h"

#include <algorithm>

namespace velmora::cli {

namespace {

// A plug-in that makes its own sound and takes no input.
bool isSynth(const CDSPFilter* pFilter)
{
    return pFilter && pFilter->m_pPlugIn && pFilter->m_pPlugIn->m_bOutputOnlyPlugIn;
}

// Brings up all that stands ahead of the stream; false if that fails, which has been told.
bool prepare(CCommandContext& context, CStreamSession& session, bool bInput)
{
    if (!session.start(bInput) || !session.document().applyFilterOptions())
        return false;
    applyEngineOptions(context.line(), session.document()->audioEngine());
    return true;
}

// False, with a message, for a plug-in that would not hear what it is to be played.
bool takesInput(CCommandContext& context, CStreamSession& session)
{
    const CDSPFilter* pFilter = session.document()->currentFilter();
    if (!isSynth(pFilter))
        return true;
    context.dialogs().showMessage("The plug-in " + pFilter->m_sName +
                                  " makes its own sound and has no audio input. \"tone\" plays it.");
    return false;
}

// Why less is heard than the user may expect.
void tellOfShortFile(CCommandContext& context, CStreamSession& session)
{
    const CSoundFile& file = session.document()->wave().second();
    const std::string sName = *context.line().argument("IN");
    if (file.missingFrames() > 0)
        context.dialogs().showMessage(
            formatted("The file %s is cut short: it holds %lld of the %lld frames that it promises.",
                      sName.c_str(), file.info().m_nFrames, file.info().m_nFrames + file.missingFrames()));
    else if (file.isOpen() && file.info().m_nFrames == 0)
        context.dialogs().showMessage("The file " + sName + " holds no audio.");
}

// Nothing is resampled.
void tellOfSidechainRate(CCommandContext& context, CStreamSession& session)
{
    const int nSidechainRate = session.document()->sidechain().sampleRate();
    const int nRate = session.document()->wave().info().m_nSampleRate;
    if (nSidechainRate > 0 && nSidechainRate != nRate)
        context.dialogs().showMessage(formatted(
            "The sidechain file has a rate of %d Hz and is played at %d Hz.", nSidechainRate, nRate));
}

int playOscillator(CCommandContext& context, CStreamSession& session)
{
    CTonboxDoc& document = *session.document();
    const int nRate = static_cast<int>(document.streams().sampleRate());
    const std::string sFault = oscillatorFault(context.line(), nRate);
    if (!sFault.empty())
        return context.fail(sFault);
    COscillator& oscillator = document.oscillator();
    applyOscillatorOptions(context.line(), oscillator);
    oscillator.m_nSampleRate = nRate;
    oscillator.prepareForPlay();
    return session.run([](CTransport& transport) {
        transport.startOsc();
        transport.startOscillator();
    });
}

} // namespace

int runPlay(CCommandContext& context)
{
    CStreamSession session(context);
    if (!prepare(context, session, false) || !takesInput(context, session) ||
        !applySidechainOptions(context, session.document()->sidechain()))
        return EXIT_FAILED;
    return session.run([&](CTransport& transport) {
        transport.setWaveFile(*context.line().argument("IN"));
        if (context.line().has("--loop"))
            session.document()->wave().requestLoop();
        transport.onPlay();
        tellOfShortFile(context, session);
        tellOfSidechainRate(context, session);
    });
}

int runListen(CCommandContext& context)
{
    CStreamSession session(context);
    if (!prepare(context, session, true) || !takesInput(context, session))
        return EXIT_FAILED;
    return session.run([](CTransport& transport) { transport.startSoundIn(); });
}

int runTone(CCommandContext& context)
{
    CStreamSession session(context);
    if (!prepare(context, session, false))
        return EXIT_FAILED;
    if (!isSynth(session.document()->currentFilter()))
        return playOscillator(context, session);
    for (const COption& option : oscillatorOptions())
        if (context.line().has(option.m_sName))
            return context.usageError("The plug-in " + session.document()->currentFilter()->m_sName +
                                      " makes its own sound; the option " + std::string(option.m_sName) +
                                      " is the test oscillator's.");
    return session.run([](CTransport& transport) { transport.startUserOsc(); });
}

} // namespace velmora::cli
