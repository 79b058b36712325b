#include "cli/stream_session.h"

#include "base/text.h"
#include "cli/device_options.h"
#include "cli/json_writer.h"
#include "cli/stream_display.h"

#include <algorithm>
#include <limits>
#include <thread>

namespace velmora::cli {

namespace {

// How often the transport is looked after and the line on the terminal is drawn.
constexpr double TICK_SECONDS = 0.05;

std::string counted(unsigned long long uCount, const char* pThing)
{
    return formatted("%llu %s%s", uCount, pThing, uCount == 1 ? "" : "s");
}

} // namespace

CStreamSession::CStreamSession(CCommandContext& context) : m_context(context), m_document(context) {}

bool CStreamSession::start(bool bInput)
{
    m_bInput = bInput;
    if (!m_document.start(true) || !applyDeviceOptions(m_context, *m_document, bInput))
        return false;
    if (m_context.line().has("--watch")) // ahead of the loading, so that no build is missed
        m_watch.emplace(m_context, m_document, *m_context.line().text("--plugin"));
    return true;
}

int CStreamSession::run(const std::function<void(CTransport&)>& startStream)
{
    CTransport& transport = m_document->transport();
    const bool bStarted = m_document.runPlugIn([&] {
        startStream(transport);
        return transport.reason().empty() && transport.hasAudioThread();
    });
    std::string sReason = transport.reason();
    if (bStarted) {
        takeDownFormat();
        sReason = follow();
    }
    const std::string sRateFault = bStarted ? std::string() : faultOfFileRate();
    transport.close();
    if (bStarted && sReason.empty()) {
        m_context.m_sResult = m_context.json() ? resultAsJson() : resultAsText();
        return EXIT_DONE;
    }
    m_context.showReason(sReason);
    if (!sRateFault.empty())
        m_context.dialogs().showMessage(sRateFault);
    return EXIT_FAILED;
}

// Why the device cannot play the file that is open, if its rate is to blame.
std::string CStreamSession::faultOfFileRate()
{
    const CWaveStream& wave = m_document->wave();
    return wave.hasFile() ? rateFault(m_document->audioDevices(), false, wave.info().m_nSampleRate)
                          : std::string();
}

// The file is closed when it has been played, and its format with it.
void CStreamSession::takeDownFormat()
{
    const CWaveStream& wave = m_document->wave();
    m_nRate =
        wave.hasFile() ? wave.info().m_nSampleRate : static_cast<int>(m_document->streams().sampleRate());
    if (wave.hasFile() && !wave.isLooping())
        m_dLength = static_cast<double>(wave.info().m_nFrames) / m_nRate;
}

// Answers why the stream ended, if it should not have.
std::string CStreamSession::follow()
{
    m_document->plugInLoader().setPlaysSynths(true); // a new build may have become one
    CTransport& transport = m_document->transport();
    const double dSeconds = m_context.line().number("--seconds", std::numeric_limits<double>::max());
    const auto begin = clock::now();
    const auto isTimeOver = [&] {
        return std::chrono::duration<double>(clock::now() - begin).count() >= dSeconds;
    };
    setCancellable(true);
    while (!wasInterrupted() && !isTimeOver()) {
        const std::string sOldReason = transport.reason();
        m_context.dialogs().showSentences(true); // what the audio thread has noticed
        transport.onTimer();
        m_context.dialogs().showSentences(false);
        if (!transport.hasAudioThread())
            return transport.reason() == sOldReason ? std::string() : transport.reason();
        show();
        wait();
    }
    return {};
}

void CStreamSession::wait()
{
    if (m_watch)
        m_watch->wait(TICK_SECONDS);
    else
        std::this_thread::sleep_for(std::chrono::duration<double>(TICK_SECONDS));
}

void CStreamSession::show()
{
    if (m_context.json())
        return;
    CAudioEngine& engine = m_document->audioEngine();
    CStreamPicture picture;
    picture.m_dSeconds = secondsPlayed();
    picture.m_dLength = m_dLength;
    for (unsigned uMeter = 0; uMeter < METER_COUNT; ++uMeter)
        picture.m_meters[uMeter] = engine.meter(static_cast<EMeter>(uMeter));
    picture.m_bSidechain = !m_document->sidechain().path().empty();
    picture.m_dLoad = figures().m_dLoad;
    picture.m_uUnderruns = figures().m_uHostUnderruns;
    m_context.announce(streamLine(picture, terminalColumns() - 1)); // the last column may begin a new line
}

CCallbackStatistics::CFigures CStreamSession::figures()
{
    return m_document->audioEngine().statistics().figures();
}

double CStreamSession::secondsPlayed()
{
    return static_cast<double>(figures().m_uBuffers) * m_document->streams().framesPerBuffer() /
           std::max(m_nRate, 1);
}

std::string CStreamSession::resultAsText()
{
    const auto [uBuffers, uUnderruns, uInputLosses, uOverruns, dLoad, dPeakLoad, dPeakFilterLoad] = figures();
    std::string sText =
        formatted("%.3f s at %d Hz on %s: %s of %s, %s, load at most %.1f %%", secondsPlayed(), m_nRate,
                  deviceName(false).c_str(), counted(uBuffers, "buffer").c_str(),
                  counted(static_cast<unsigned>(m_document->streams().framesPerBuffer()), "frame").c_str(),
                  counted(uUnderruns, "underrun").c_str(), 100.0 * dPeakLoad);
    if (m_bInput && uInputLosses > 0)
        sText += ", input lost " + counted(uInputLosses, "time");
    if (uOverruns > 0)
        sText += ", " + counted(uOverruns, "buffer") +
                 (uOverruns == 1 ? " took longer than it lasts" : " took longer than they last");
    if (m_watch)
        sText += ", " + counted(m_watch->swaps(), "new build");
    return sText + "\n";
}

std::string CStreamSession::resultAsJson()
{
    const CCallbackStatistics::CFigures figures = this->figures();
    CJsonWriter json;
    json.beginObject();
    json.member("buffers", figures.m_uBuffers);
    json.member("underruns", figures.m_uHostUnderruns);
    json.member("peakLoad", figures.m_dPeakLoad);
    json.member("overruns", figures.m_uOverruns);
    json.member("inputLosses", m_bInput ? figures.m_uInputLosses : 0); // some systems count without an input
    json.member("peakFilterLoad", figures.m_dPeakFilterLoad);
    json.member("device", deviceName(false));
    json.key("inputDevice");
    if (m_bInput)
        json.value(deviceName(true));
    else
        json.null();
    json.member("rate", m_nRate);
    json.member("framesPerBuffer", m_document->streams().framesPerBuffer());
    json.member("seconds", secondsPlayed());
    json.member("swaps", m_watch ? m_watch->swaps() : 0U);
    json.endObject();
    return json.text();
}

std::string CStreamSession::deviceName(bool bInput)
{
    const CAudioDevices& devices = m_document->audioDevices();
    const CAudioDeviceInfo* pDevice = devices.device(bInput ? devices.inputDevice() : devices.outputDevice());
    return pDevice ? pDevice->m_sName : std::string();
}

} // namespace velmora::cli
