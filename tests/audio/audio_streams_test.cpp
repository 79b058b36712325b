#include "audio/stream_callbacks.h"
#include "support/allocation_guard.h"
#include "transport_bench.h"

#include <thread>

namespace velmora {
namespace {

using test::CTransportBench;

bool openStream(CAudioStreams& streams, EAudioStream eStream)
{
    return eStream == STREAM_INPUT ? streams.openInputStream() : streams.openOscStream();
}

TEST(AudioStreamsTest, DevicesAndLatencyFollowTheSettings)
{
    struct CRow
    {
        const char* m_pFrames;
        const char* m_pLow;
        const char* m_pMultiplier;
        unsigned m_uFrames;
        double m_dLatency; // of the output; the input's is half
    };
    const CRow rows[] = {
        {"64", "true", "1", 64, 0.01},
        {"256", "false", "3", 256, 0.12},
        {"0", "true", "2", 64, 0.02},
        {"100000", "true", "0", 8192, 0.0},
    };
    for (const CRow& row : rows) {
        CTransportBench bench;
        bench.m_system.m_devices[0].m_dDefaultLowInputLatency = 0.005;
        bench.m_system.m_devices[0].m_dDefaultHighInputLatency = 0.02;
        static_cast<void>(bench.m_devices.choose(bench.m_choice));
        std::string sError;
        ASSERT_TRUE(bench.m_settings.set(10, row.m_pFrames, sError));
        ASSERT_TRUE(bench.m_settings.set(11, row.m_pLow, sError));
        ASSERT_TRUE(bench.m_settings.set(12, row.m_pMultiplier, sError));
        ASSERT_TRUE(bench.m_streams.openInputStream());
        const CAudioStreamRequest& request = bench.m_system.lastRequest();
        EXPECT_EQ(request.m_uFramesPerBuffer, row.m_uFrames);
        EXPECT_DOUBLE_EQ(request.m_output->m_dLatency, row.m_dLatency);
        EXPECT_DOUBLE_EQ(request.m_input->m_dLatency, row.m_dLatency / 2.0);
    }
}

TEST(AudioStreamsTest, AMeasurementPlaysToTheDeviceUnderTest)
{
    CTransportBench bench;
    CAudioDeviceInfo dut = bench.m_system.m_devices[0];
    dut.m_sName = "dut";
    bench.m_system.m_devices.push_back(dut);
    bench.m_choice.m_sDUTName = "dut";
    static_cast<void>(bench.m_devices.choose(bench.m_choice));
    for (const bool bMeasures : {false, true})
        for (const char* pName : {"None", "dut"}) {
            bench.m_settings.setDUTDeviceName(pName);
            bench.m_engine.m_nSoundMode = bMeasures ? 1 : 0;
            ASSERT_TRUE(bench.m_streams.openInputStream());
            const bool bToDUT = bMeasures && std::string(pName) == "dut";
            EXPECT_EQ(bench.m_system.lastRequest().m_output->m_nDevice, bToDUT ? 1 : 0);
            EXPECT_EQ(bench.m_streams.deviceNames(STREAM_INPUT),
                      bToDUT ? "\"card\" and \"dut\"" : "\"card\"");
        }

    bench.m_engine.measurementRing()[1] = 0.5F;
    ASSERT_TRUE(bench.m_streams.openOutputStream());
    EXPECT_EQ(bench.m_system.lastRequest().m_output->m_nDevice, 1);
    EXPECT_EQ(bench.m_system.run(33), 33U);
    EXPECT_EQ(bench.m_system.m_output[1], 0.5F);
    EXPECT_EQ(bench.m_system.m_output[4097], 0.5F);                  // the ring goes round
    EXPECT_EQ(bench.m_engine.statistics().figures().m_uBuffers, 0U); // the input stream's alone count
    bench.m_streams.closeOutputStream();
    bench.m_streams.closeAll();
    EXPECT_EQ(bench.m_system.uses(), 1);
}

TEST(AudioStreamsTest, BuffersOfAnyLengthAreTakenWithoutAllocation)
{
    for (const unsigned uFrames : {1U, 63U, 64U, 65U, 200U, 1000U}) {
        CTransportBench bench;
        const std::size_t uSamples = 2 * std::size_t{uFrames};
        std::vector<float> in(uSamples);
        for (std::size_t i = 0; i < uSamples; ++i)
            in[i] = static_cast<float>(i + 1) / 1024.0F;
        const auto call = [&](bool bInput) {
            std::vector<float> out(uSamples + 1, 99.0F);
            const CAudioStreamRequest request = bench.m_system.lastRequest();
            const test::CAllocationGuard guard;
            EXPECT_EQ(
                request.m_pCallback(bInput ? in.data() : nullptr, out.data(), uFrames, 0, request.m_pUser),
                AUDIO_CONTINUE);
            EXPECT_EQ(guard.count(), 0U);
            EXPECT_EQ(out.back(), 99.0F);
            out.pop_back();
            return out;
        };
        std::vector<float> doubled = in;
        for (float& fSample : doubled)
            fSample *= 2.0F;
        bench.m_transport.startSoundIn();
        EXPECT_EQ(call(true), doubled);
        EXPECT_EQ(in[0], 1.0F / 1024.0F); // the audio system's buffer stays as it was
        EXPECT_EQ(call(false), std::vector<float>(uSamples, 0.0F));
        EXPECT_EQ(bench.m_engine.statistics().figures().m_uInputLosses, 1U);
        bench.m_transport.stopSoundIn();
        bench.m_transport.onPlay(); // a file that holds the same samples
        EXPECT_EQ(call(false), doubled);
        bench.m_transport.startUserOsc();
        EXPECT_EQ(call(false), std::vector<float>(uSamples, 0.0F));
    }
}

TEST(AudioStreamsTest, WithoutAnOutputBufferEachStreamTellsItOnce)
{
    for (const ETransportState eState : {TRANSPORT_PLAY, TRANSPORT_SOUND_IN, TRANSPORT_OSC}) {
        CTransportBench bench;
        bench.enter(eState);
        const CAudioStreamRequest request = bench.m_system.lastRequest();
        const std::vector<float> in(128);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(request.m_pCallback(in.data(), nullptr, 64, 0, request.m_pUser), AUDIO_CONTINUE);
            bench.m_transport.onTimer();
        }
        ASSERT_EQ(bench.m_dialogs.m_notes.size(), 1U);
        EXPECT_TRUE(bench.hasNote("Error writing to driver: "));
    }
}

TEST(AudioStreamsTest, AStreamEndsWhileTheGateIsClosed)
{
    for (const EAudioStream eStream : {STREAM_INPUT, STREAM_OSCILLATOR}) {
        CTransportBench bench;
        bench.m_system.runOnThreads(std::chrono::microseconds(100));
        ASSERT_TRUE(openStream(bench.m_streams, eStream));
        while (bench.m_system.callbacks() < 3)
            std::this_thread::yield();
        CRunGate& gate = bench.m_engine.gate();
        ASSERT_TRUE(gate.close());
        std::this_thread::sleep_for(std::chrono::milliseconds(2)); // a callback waits at the gate
        bench.m_streams.close(eStream);
        EXPECT_TRUE(gate.isClosed());
        EXPECT_EQ(bench.m_system.openStreams(), 0U);
        gate.open();
    }
}

TEST(AudioStreamsTest, EndingAContextWaitsForTheCallbackInside)
{
    CTransportBench bench;
    CStreamContext context{bench.m_engine, bench.m_wave, bench.m_sidechain, 64, 2, {}};
    ASSERT_TRUE(context.enter());
    std::atomic<bool> bLeft{false};
    std::jthread callback([&] {
        while (context.m_bAlive)
            std::this_thread::yield();
        EXPECT_FALSE(context.enter()); // another one comes too late
        bLeft = true;
        context.leave();
    });
    EXPECT_TRUE(context.end());
    EXPECT_TRUE(bLeft);
}

} // namespace
} // namespace velmora
