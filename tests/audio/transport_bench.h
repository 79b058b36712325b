#pragma once

#include "audio/audio_devices.h"
#include "audio/audio_engine.h"
#include "audio/audio_streams.h"
#include "audio/transport.h"
#include "audio/wave_stream.h"
#include "host/audio_format.h"
#include "host/document_view.h"
#include "host/dsp_filter.h"
#include "host/settings.h"
#include "support/fake_audio_system.h"
#include "support/test_support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <stdexcept>

namespace velmora::test {

// Doubles what it hears, and counts what it is told.
class CDoublingFilter : public CDSPFilter
{
  public:
    CDoublingFilter() { m_sName = "Doubler"; }

    bool processInterleaved(float* pIn, float* pOut, UINT, UINT uSamples, UINT) override
    {
        for (UINT i = 0; i < uSamples; ++i)
            pOut[i] = m_fFactor * pIn[i];
        return true;
    }
    bool prepareForPlay() override
    {
        ++m_nPrepared;
        if (m_bThrows)
            throw std::runtime_error("out of luck");
        return true;
    }
    bool stop() override
    {
        ++m_nStopped;
        return true;
    }

    int m_nPrepared = 0;
    int m_nStopped = 0;
    bool m_bThrows = false;
    std::atomic<float> m_fFactor{2.0F};
};

// A wave file of float samples 1/1024, 2/1024 ... over all channels.
inline void writeCountingWave(const std::filesystem::path& path, int nFrames, int nChannels,
                              int nRate = 44100)
{
    CSoundFile file;
    std::string sError;
    ASSERT_TRUE(file.openForWriting(path, {0, nChannels, nRate, 0x010006}, sError)) << sError;
    std::vector<float> samples;
    for (int i = 0; i < nFrames * nChannels; ++i)
        samples.push_back(static_cast<float>(i + 1) / 1024.0F);
    file.writeFloats(samples.data(), static_cast<long long>(samples.size()));
    ASSERT_TRUE(file.close());
}

// A transport with all that it needs, on an audio system without sound, and a file of 1000 frames at 48 kHz.
struct CTransportBench : IMessageTarget, IDocumentView
{
    CTransportBench()
    {
        writeCountingWave(m_folder / "file.wav", 1000, 2, 48000);
        static_cast<void>(m_devices.choose(m_choice));
        m_engine.setFilter(&m_filter);
        m_transport.setWaveFile(m_folder / "file.wav");
        m_system.m_calls.clear();
    }

    void post(unsigned uMessage, std::size_t, std::ptrdiff_t) override { m_posts.push_back(uMessage); }
    std::ptrdiff_t send(unsigned, std::size_t, std::ptrdiff_t) override { return 0; }
    void setTitle(std::string_view sTitle) override { m_sTitle = sTitle; }
    void refresh() override { ++m_nRefreshed; }
    void showFormat(const CAudioFormat& format) override { m_nShownRate = format.m_nSampleRate; }
    void streamStopped() override { ++m_nStopMessages; }

    // Goes to a state from the first one, by the commands.
    void enter(ETransportState eState)
    {
        if (eState == TRANSPORT_PLAY || eState == TRANSPORT_PAUSE)
            m_transport.onPlay();
        if (eState == TRANSPORT_PAUSE)
            m_transport.onPause();
        if (eState == TRANSPORT_STOP)
            m_transport.onStop();
        if (eState == TRANSPORT_SOUND_IN)
            m_transport.startSoundIn();
        if (eState == TRANSPORT_OSC)
            m_transport.startOsc();
        if (eState == TRANSPORT_USER_OSC)
            m_transport.startUserOsc();
        forget();
    }

    void forget()
    {
        m_system.m_calls.clear();
        m_dialogs.m_messages.clear();
        m_dialogs.m_notes.clear();
        m_posts.clear();
        m_filter.m_nPrepared = m_filter.m_nStopped = m_nStopMessages = m_nRefreshed = 0;
    }

    // The audio system's calls by their first letters: "ios" is initialize, open, start; "pct" is stop (a
    // pause), close, terminate.
    [[nodiscard]] std::string calls() const
    {
        std::string sCalls;
        for (const std::string& sCall : m_system.m_calls)
            sCalls += sCall == "stop" ? 'p' : sCall[0];
        return sCalls;
    }

    [[nodiscard]] bool hasNote(std::string_view sPart) const
    {
        return std::ranges::any_of(m_dialogs.m_notes, [&](const std::string& sNote) {
            return sNote.find(sPart) != std::string::npos;
        });
    }

    CTemporaryFolder m_folder;
    CFakeAudioSystem m_system;
    CRecordingDialogs m_dialogs;
    CSettings m_settings;
    CAudioDeviceChoice m_choice{"card", "card", "None", 44100.0};
    CAudioDevices m_devices{m_system};
    CTransportState m_state;
    CAudioFormat m_format;
    CSidechain m_sidechain;
    CWaveStream m_wave;
    CAudioEngine m_engine{m_state, m_sidechain};
    CDoublingFilter m_filter;
    CDoublingFilter m_oscillator;
    CAudioStreams m_streams{m_system, m_devices, m_engine, m_sidechain, m_wave, m_settings, m_dialogs};
    CTransport m_transport{
        {m_state, m_engine, m_streams, m_wave, m_sidechain, m_format, m_dialogs, *this, *this}};
    std::vector<unsigned> m_posts;
    std::string m_sTitle;
    int m_nRefreshed = 0;
    int m_nStopMessages = 0;
    int m_nShownRate = 0;
};

} // namespace velmora::test
