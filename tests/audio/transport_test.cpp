#include "audio/notice_reporter.h"
#include "host/view_messages.h"
#include "transport_bench.h"

#include <array>
#include <functional>
#include <random>
#include <thread>

namespace velmora {
namespace {

using command = void (*)(CTransport&);
using test::CTransportBench;

struct CCommandRow
{
    const char* m_pName;
    command m_pCommand;
    // From each state 1 to 7: the next state and the audio system's calls, then the messages to the view.
    std::array<const char*, 7> m_outcomes;
};

const CCommandRow COMMANDS[] = {
    {"onPlay",
     [](CTransport& t) { t.onPlay(); },
     {"2 ios", "2 ", "2 s", "2 ios", "2 ", "2 pctios 2065", "2 pctios"}},
    {"onLoop",
     [](CTransport& t) { t.onLoop(); },
     {"2 ios", "2 ", "2 s", "2 ios", "2 ", "2 pctios 2065", "2 pctios"}},
    {"onPause", [](CTransport& t) { t.onPause(); }, {"1 ", "3 p", "3 ", "4 ", "5 ", "6 ", "7 "}},
    {"onStop", [](CTransport& t) { t.onStop(); }, {"4 ", "4 pct", "4 pct", "4 ", "4 pct", "4 pct", "4 pct"}},
    {"stopWaveStream",
     [](CTransport& t) { t.stopWaveStream(); },
     {"4 ", "4 pct", "4 pct", "4 ", "4 pct", "4 pct", "4 pct"}},
    {"startSoundIn",
     [](CTransport& t) { t.startSoundIn(); },
     {"5 ios", "5 pctios", "5 pctios", "5 ios", "5 ", "5 pctios 2065", "5 pctios"}},
    {"stopSoundIn",
     [](CTransport& t) { t.stopSoundIn(); },
     {"4  2065", "2 ", "3 ", "4  2065", "4 pct 2065", "4 pct 2065", "4 pct 2065"}},
    {"startOsc",
     [](CTransport& t) { t.startOsc(); },
     {"6 ios", "6 pctios", "6 pctios", "6 ios", "5  2052", "6 ", "6 pctios"}},
    {"stopOsc", [](CTransport& t) { t.stopOsc(); }, {"1 ", "2 ", "3 ", "4 ", "5 ", "4 pct", "7 "}},
    {"startUserOsc",
     [](CTransport& t) { t.startUserOsc(); },
     {"7 ios", "7 pctios", "7 pctios", "7 ios", "5 ", "7 pctios", "7 "}},
    {"stopUserOsc", [](CTransport& t) { t.stopUserOsc(); }, {"1 ", "2 ", "3 ", "4 ", "5 ", "6 ", "4 pct"}},
    {"onTimer", [](CTransport& t) { t.onTimer(); }, {"1 ", "2 ", "3 ", "4 ", "5 ", "6 ", "7 "}},
    {"close", [](CTransport& t) { t.close(); }, {"1 ", "4 pct", "4 pct", "4 ", "4 pct", "4 pct", "4 pct"}},
};

TEST(TransportTest, EveryCommandInEveryState)
{
    for (const CCommandRow& row : COMMANDS) {
        for (unsigned uState = 1; uState <= row.m_outcomes.size(); ++uState) {
            SCOPED_TRACE(std::string(row.m_pName) + " in state " + std::to_string(uState));
            CTransportBench bench;
            bench.enter(static_cast<ETransportState>(uState));
            ASSERT_EQ(bench.m_transport.state(), uState);
            row.m_pCommand(bench.m_transport);
            std::string sOutcome = std::to_string(bench.m_transport.state()) + " " + bench.calls();
            for (const unsigned uPost : bench.m_posts)
                sOutcome += " " + std::to_string(uPost);
            EXPECT_EQ(sOutcome, row.m_outcomes[uState - 1]);
            EXPECT_TRUE(bench.m_dialogs.m_messages.empty());
            // Each open stream holds the audio system once; none is open where no callback may run.
            EXPECT_EQ(bench.m_system.uses(), 1 + static_cast<int>(bench.m_system.openStreams()));
            const bool bPaused = bench.m_transport.state() == TRANSPORT_PAUSE;
            EXPECT_EQ(bench.m_system.openStreams(), bPaused || bench.m_transport.hasAudioThread() ? 1U : 0U);

            bench.m_transport.close();
            bench.forget();
            bench.m_transport.close();
            EXPECT_EQ(bench.calls(), "");
            EXPECT_EQ(bench.m_system.uses(), 1);
        }
    }
}

TEST(TransportTest, AFilePlaysPausesAndEndsInTheDescribedSteps)
{
    CTransportBench bench;
    bench.m_transport.onPlay();
    const std::vector<std::string> lines = {"",
                                            "-- Wave File Loaded --",
                                            "SampleRate: 48000",
                                            "NumChannels: 2",
                                            "BitDepth: 16",
                                            "pPlugIn->prepareForPlay()",
                                            "Entering Processing Loop: wave file"};
    EXPECT_EQ(bench.m_dialogs.m_notes, lines);
    EXPECT_EQ(bench.m_filter.m_nSampleRate, 48000);
    EXPECT_EQ(bench.m_filter.m_nPrepared, 1);
    EXPECT_EQ(bench.m_nShownRate, 48000);
    EXPECT_EQ(bench.m_system.m_calls[1], "open out 2ch 48000 64");

    bench.m_system.run(3);
    bench.m_transport.onPause();
    EXPECT_EQ(bench.m_filter.m_nStopped, 1); // the filter is told
    bench.forget();
    bench.m_transport.onPlay(); // goes on where it was, with nothing opened or prepared
    EXPECT_EQ(bench.m_system.m_calls, std::vector<std::string>{"start"});
    EXPECT_EQ(bench.m_filter.m_nPrepared, 0);
    EXPECT_TRUE(bench.m_dialogs.m_notes.empty());

    bench.m_system.run(100);
    ASSERT_EQ(bench.m_system.m_output.size(), 17U * 128U); // 16 buffers with samples, one that completes
    for (std::size_t i = 0; i < bench.m_system.m_output.size(); ++i)
        ASSERT_EQ(bench.m_system.m_output[i], i < 2000 ? 2.0F * static_cast<float>(i + 1) / 1024.0F : 0.0F)
            << i;
    EXPECT_EQ(bench.m_system.allocationsInCallbacks(), 0U);
    EXPECT_EQ(bench.m_engine.statistics().figures().m_uBuffers, 17U);
    EXPECT_EQ(bench.m_wave.framesPlayed(), 1000U);

    EXPECT_EQ(bench.m_transport.state(), TRANSPORT_PLAY); // until the timer looks
    bench.m_sTitle = "Doubler";
    bench.m_transport.onTimer();
    EXPECT_EQ(bench.m_transport.state(), TRANSPORT_STOP);
    EXPECT_EQ(bench.m_dialogs.m_notes, std::vector<std::string>{"Exiting Processing Loop: wave file"});
    EXPECT_EQ(bench.m_sTitle, "Velmora(tm)");
    EXPECT_EQ(bench.m_nStopMessages, 1);
    EXPECT_TRUE(bench.m_dialogs.m_messages.empty());
}

TEST(TransportTest, TheLoopRequestTakesHoldAtTheNextStart)
{
    CTransportBench bench;
    bench.m_transport.onPlay();
    bench.m_transport.onLoop();
    EXPECT_FALSE(bench.m_wave.isLooping());
    bench.m_transport.onStop();
    bench.m_transport.onPlay();
    EXPECT_TRUE(bench.m_wave.isLooping());
    EXPECT_EQ(bench.m_system.run(100), 100U);
    bench.m_transport.onPause();
    bench.m_transport.onLoop();
    EXPECT_FALSE(bench.m_wave.isLooping());
    EXPECT_LT(bench.m_system.run(100), 100U);
    bench.m_transport.onPause(); // it has ended
    EXPECT_EQ(bench.m_transport.state(), TRANSPORT_STOP);
}

TEST(TransportTest, AFileThatEndedWhileItWasBeingPausedStartsAnew)
{
    CTransportBench bench;
    bench.m_transport.onPlay();
    bench.m_system.run(1);
    bench.m_transport.onPause();
    bench.m_wave.finish(); // its last callback came during the pause
    bench.m_transport.onPlay();
    bench.m_system.run(1);
    ASSERT_EQ(bench.m_system.m_output.size(), 256U);
    EXPECT_EQ(bench.m_system.m_output[128], bench.m_system.m_output[0]);
}

TEST(TransportTest, TheCaptureBeginsAnewWhereALoopWraps)
{
    CTransportBench bench;
    test::writeCountingWave(bench.m_folder / "file.wav", 3000, 2);
    bench.m_engine.capture().setRunning(true);
    bench.m_wave.requestLoop();
    bench.m_transport.onPlay();
    // 32 buffers of 128 samples make a frame of 4096; the 47th wraps, which leaves the second one unfinished.
    for (const unsigned uBuffers : {32U, 15U, 32U}) {
        bench.m_posts.clear();
        bench.m_system.run(uBuffers);
        bench.m_transport.onTimer();
        EXPECT_EQ(bench.m_posts.size(), uBuffers == 32 ? 1U : 0U) << uBuffers;
    }
}

TEST(TransportTest, EachStartOpensTheSidechainAnewAndEachStopClosesAllFiles)
{
    CTransportBench bench;
    test::writeCountingWave(bench.m_folder / "side.wav", 100, 1);
    ASSERT_TRUE(bench.m_sidechain.load(bench.m_folder / "side.wav", bench.m_dialogs));
    for (int nRound = 0; nRound < 2; ++nRound) {
        bench.m_transport.onPlay();
        bench.m_system.run(1);
        ASSERT_NE(bench.m_sidechain.buffer(), nullptr);
        EXPECT_EQ(bench.m_sidechain.buffer()[1], 2.0F / 1024.0F);
        bench.m_system.run(2);
        EXPECT_FALSE(bench.m_sidechain.isOpen()); // it is over, the file plays on
        EXPECT_TRUE(bench.m_wave.isOpen());
        bench.m_transport.onStop();
        EXPECT_EQ(bench.m_sidechain.buffer(), nullptr);
        EXPECT_FALSE(bench.m_wave.hasFile());
    }
    test::writeCountingWave(bench.m_folder / "three.wav", 4, 3);
    bench.m_transport.setWaveFile(bench.m_folder / "three.wav");
    bench.m_transport.onPlay();
    EXPECT_TRUE(bench.m_wave.hasFile()); // refused after it was opened, and left so until the next start
}

TEST(TransportTest, LiveStreamsPrepareTheFilterForTheirOwnFormat)
{
    for (const command start :
         {command([](CTransport& t) { t.startSoundIn(); }), command([](CTransport& t) { t.startOsc(); }),
          command([](CTransport& t) { t.startUserOsc(); })}) {
        CTransportBench bench;
        bench.enter(TRANSPORT_PLAY);
        start(bench.m_transport);
        EXPECT_EQ(bench.m_filter.m_nSampleRate, 44100);
        EXPECT_EQ(bench.m_filter.m_nPrepared, 1); // it had been prepared for 48 kHz
        bench.m_transport.close();
        start(bench.m_transport);
        EXPECT_EQ(bench.m_filter.m_nPrepared, 2); // stopped: always
        EXPECT_EQ(bench.m_system.run(3), 3U);
        EXPECT_EQ(bench.m_system.allocationsInCallbacks(), 0U);
    }
}

TEST(TransportTest, TheOscillatorSoundsBetweenItsStartAndStop)
{
    CTransportBench bench;
    struct COnes : CDSPFilter
    {
        bool processInterleaved(float*, float* pOut, UINT, UINT uSamples, UINT) override
        {
            std::fill_n(pOut, uSamples, 1.0F);
            return true;
        }
    } ones;
    bench.m_engine.setOscillator(&ones);
    bench.m_transport.startOsc();
    bench.m_system.run(1);
    bench.m_transport.startOscillator();
    EXPECT_EQ(bench.m_format.m_nSampleRate, 44100);
    bench.m_system.run(1);
    bench.m_transport.stopOscillator();
    bench.m_system.run(1);
    const std::vector<float>& out = bench.m_system.m_output;
    ASSERT_EQ(out.size(), 3U * 128U);
    EXPECT_EQ(out[0], 0.0F);
    EXPECT_EQ(out[128], 2.0F);
    EXPECT_EQ(out[256], 0.0F);
    bench.m_transport.onTimer();
    bench.m_system.run(1);
    bench.m_transport.onTimer();
    const std::vector<std::string> lines = {
        "startPortAudioOSCStream( ) called.",     "startPortAudioOSCStream( ) finished.",
        "Entering Processing Loop: oscillator()", "Entering Processing Loop: oscillator",
        "Exiting Processing Loop: oscillator",    "processPortAudioOSC called once!"};
    EXPECT_EQ(bench.m_dialogs.m_notes, lines);
}

constexpr const char* NO_OUTPUT = "Portaudio reports: No audio output device!";
constexpr const char* BAD_FILE = "Failed to open this audio File; incompatible type or corrupt file. Velmora "
                                 "currently supports .WAV and .AIF file types.";

TEST(TransportTest, EveryFailureSaysWhyAndLeavesTheDescribedState)
{
    struct CRow
    {
        const char* m_pName;
        std::function<void(CTransportBench&)> m_setUp;
        command m_pCommand;
        std::string m_sMessage; // one; empty: none
        unsigned m_uState;
        const char* m_pReasonPart;
    };
    const auto error = [](const char* pOperation) {
        return [pOperation](CTransportBench& bench) { bench.m_system.m_errors[pOperation] = -9996; };
    };
    const auto noDevice = [](CTransportBench& bench) {
        bench.m_system.m_nDefaultInput = bench.m_system.m_nDefaultOutput = -1;
        bench.m_system.m_devices.clear();
        static_cast<void>(bench.m_devices.choose(bench.m_choice));
    };
    const auto file = [](const char* pName) {
        return [pName](CTransportBench& bench) {
            test::writeCountingWave(bench.m_folder / "three.wav", 4, 3);
            test::writeFile(bench.m_folder / "text.wav", "no audio");
            bench.m_transport.setWaveFile(*pName ? bench.m_folder / pName : std::filesystem::path());
        };
    };
    const command play = [](CTransport& t) { t.onPlay(); };
    const command in = [](CTransport& t) { t.startSoundIn(); };
    const command osc = [](CTransport& t) { t.startOsc(); };
    const command synth = [](CTransport& t) { t.startUserOsc(); };
    const std::string sOpen = "Error in Port Audio Pa_OpenStream( ) Error Code: -9996";
    const std::string sStart = "Error in Port Audio Pa_StartStream( ) Error Code: -9996";
    const CRow rows[] = {
        {"no path", file(""), play, "", 1, "No wave file"},
        {"missing", file("none.wav"), play, "Could not find the file: ", 1, "none.wav"},
        {"corrupt", file("text.wav"), play, BAD_FILE, 1, "text.wav"},
        {"three channels", file("three.wav"), play,
         "Velmora currently supports MONO and STEREO files only. This is a 3 channel file. Can not continue.",
         1, "3 channel"},
        {"filter throws", [](CTransportBench& bench) { bench.m_filter.m_bThrows = true; }, play,
         "Doubler threw an exception in prepareForPlay(): out of luck.", 1, "out of luck"},
        {"wave: no device", noDevice, play, NO_OUTPUT, 2, NO_OUTPUT},
        {"wave: initialize", error("initialize"), play, "", 2, "Fake error -9996"},
        {"wave: open", error("open"), play, "", 2, "\"card\" at 48000 Hz could not be opened"},
        {"wave: start", error("start"), play, "", 2, "\"card\" at 48000 Hz could not be started"},
        {"input: no device", noDevice, in, "Portaudio reports: No audio input device!", 5, "No audio input"},
        {"input: no output",
         [](CTransportBench& bench) {
             bench.m_system.m_nDefaultOutput = -1;
             bench.m_system.m_devices[0].m_nMaxOutputChannels = 0;
             static_cast<void>(bench.m_devices.choose(bench.m_choice));
         },
         in, NO_OUTPUT, 5, NO_OUTPUT},
        {"input: open", error("open"), in, sOpen, 5, "sound input"},
        {"osc: initialize", error("initialize"), osc, "Error initializing Port Audio! Error Code: -9996", 1,
         "did not come up"},
        {"osc: no device", noDevice, osc, NO_OUTPUT, 1, NO_OUTPUT},
        {"osc: open", error("open"), osc, sOpen, 1, "oscillator"},
        {"osc: start", error("start"), osc, sStart, 1, "oscillator"},
        {"synth: start", error("start"), synth, sStart, 7, "oscillator"},
    };
    for (const CRow& row : rows) {
        SCOPED_TRACE(row.m_pName);
        CTransportBench bench;
        row.m_setUp(bench);
        bench.forget();
        row.m_pCommand(bench.m_transport);
        EXPECT_EQ(bench.m_transport.state(), row.m_uState);
        ASSERT_EQ(bench.m_dialogs.m_messages.size(), row.m_sMessage.empty() ? 0U : 1U);
        if (!row.m_sMessage.empty()) {
            EXPECT_EQ(bench.m_dialogs.m_messages[0].find(row.m_sMessage), 0U)
                << bench.m_dialogs.m_messages[0];
        }
        EXPECT_NE(bench.m_transport.reason().find(row.m_pReasonPart), std::string::npos)
            << bench.m_transport.reason();
        if (row.m_uState == 2 && row.m_sMessage.empty()) {
            EXPECT_TRUE(bench.hasNote(row.m_pReasonPart)); // silent, but explained
        }
        EXPECT_EQ(bench.m_system.uses(), 1);
        EXPECT_EQ(bench.m_system.openStreams(), 0U);

        bench.m_transport.onTimer(); // repairs state 2
        bench.m_transport.stopSoundIn();
        EXPECT_EQ(bench.m_transport.state(), TRANSPORT_STOP);
    }
}

TEST(TransportTest, AStreamThatCannotBeHeldOrEndedIsTold)
{
    struct CRow
    {
        ETransportState m_eState;
        const char* m_pFailing;
        command m_pCommand;
        const char* m_pMessage;
        unsigned m_uState;
    };
    const CRow rows[] = {
        {TRANSPORT_PLAY, "stop", [](CTransport& t) { t.onPause(); }, "Pa_StopStream streamWAV failed.", 2},
        {TRANSPORT_PAUSE, "start", [](CTransport& t) { t.onPlay(); }, "Pa_StartStream streamWAV failed.", 3},
        {TRANSPORT_SOUND_IN, "close", [](CTransport& t) { t.stopSoundIn(); }, "Pa_CloseStream stream failed.",
         4},
        {TRANSPORT_OSC, "close", [](CTransport& t) { t.stopOsc(); }, "Pa_CloseStream streamWAV failed.", 4},
    };
    for (const CRow& row : rows) {
        SCOPED_TRACE(row.m_pMessage);
        CTransportBench bench;
        bench.enter(row.m_eState);
        bench.m_system.m_errors[row.m_pFailing] = -1;
        row.m_pCommand(bench.m_transport);
        EXPECT_EQ(bench.m_dialogs.m_messages, std::vector<std::string>{row.m_pMessage});
        EXPECT_EQ(bench.m_transport.state(), row.m_uState);
        bench.m_system.m_errors.clear();
        bench.m_transport.close();
        EXPECT_EQ(bench.m_system.uses(), 1);
    }
}

TEST(TransportTest, ALostDeviceIsToldOnceAndAnotherStartWorks)
{
    for (const bool bHangs : {false, true}) {
        for (const ETransportState eState :
             {TRANSPORT_PLAY, TRANSPORT_SOUND_IN, TRANSPORT_OSC, TRANSPORT_USER_OSC}) {
            SCOPED_TRACE(eState);
            CTransportBench bench;
            bench.enter(eState);
            bench.m_system.kill(bHangs);
            bench.m_transport.onTimer();
            bench.m_transport.onTimer();
            EXPECT_EQ(bench.m_transport.state(), TRANSPORT_STOP);
            ASSERT_EQ(bench.m_dialogs.m_messages.size(), 1U);
            EXPECT_EQ(bench.m_dialogs.m_messages[0].find("The audio device \"card\" has stopped"), 0U);
            EXPECT_EQ(bench.m_system.uses(), 1);

            // Whoever still calls with the old stream's data touches nothing.
            float buffer[128];
            std::ranges::fill(buffer, 1.0F);
            const CAudioStreamRequest request = bench.m_system.lastRequest();
            if (bHangs) {
                EXPECT_EQ(request.m_pCallback(buffer, buffer, 64, 0, request.m_pUser), AUDIO_COMPLETE);
                EXPECT_EQ(buffer[127], 0.0F);
            }
            bench.m_system.revive();
            bench.m_transport.onPlay();
            EXPECT_EQ(bench.m_system.run(2), 2U);
            EXPECT_EQ(bench.m_transport.reason(), "");
        }
    }
}

// Neither is the device accused, nor is anything freed or started while the plug-in is still at work.
TEST(TransportTest, AFilterThatHangsIsNamedAndHoldsUpEveryStart)
{
    struct CHangingFilter : test::CDoublingFilter
    {
        bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override
        {
            while (m_bHangs)
                std::this_thread::yield();
            return test::CDoublingFilter::processInterleaved(pIn, pOut, uChannels, uSamples, uWord);
        }
        std::atomic<bool> m_bHangs{true};
    } filter;
    CTransportBench bench;
    test::writeCountingWave(bench.m_folder / "side.wav", 1000, 2);
    ASSERT_TRUE(bench.m_sidechain.load(bench.m_folder / "side.wav", bench.m_dialogs));
    bench.m_engine.setFilter(&filter);
    bench.enter(TRANSPORT_PLAY);
    const CAudioStreamRequest request = bench.m_system.lastRequest();
    std::vector<float> out(128);
    std::jthread audio([&] { request.m_pCallback(nullptr, out.data(), 64, 0, request.m_pUser); });
    while (!bench.m_engine.gate().isInside())
        std::this_thread::yield();
    bench.m_system.kill(true);
    bench.m_transport.onTimer();
    EXPECT_EQ(bench.m_transport.state(), TRANSPORT_STOP);
    EXPECT_EQ(bench.m_dialogs.m_messages.size(), 1U);
    EXPECT_EQ(bench.m_transport.reason().find("The audio has stopped: Doubler does not come back"), 0U);
    EXPECT_FALSE(bench.m_engine.gate().close(std::chrono::milliseconds(5)));
    bench.forget();
    for (const command start :
         {command([](CTransport& t) { t.onPlay(); }), command([](CTransport& t) { t.startSoundIn(); }),
          command([](CTransport& t) { t.startOsc(); }), command([](CTransport& t) { t.startUserOsc(); })}) {
        start(bench.m_transport);
        EXPECT_EQ(bench.m_transport.state(), TRANSPORT_STOP);
        EXPECT_EQ(bench.m_transport.reason().find("No audio can start: Doubler does not come back"), 0U);
    }
    bench.m_transport.close();
    EXPECT_EQ(bench.m_dialogs.m_messages.size(), 4U);
    EXPECT_EQ(bench.calls(), "");

    filter.m_bHangs = false;
    audio.join();
    EXPECT_EQ(out[127], 2.0F * 128.0F / 1024.0F);
    bench.m_system.revive();
    bench.m_transport.onPlay();
    EXPECT_EQ(bench.m_system.run(2), 2U);
    EXPECT_TRUE(bench.m_engine.gate().close());
}

TEST(TransportTest, NoticesBecomeNotes)
{
    CTransportBench bench;
    bench.enter(TRANSPORT_PLAY);
    CAudioNotices& notices = bench.m_engine.notices();
    notices.post(EAudioNotice::captureReady);
    notices.post(EAudioNotice::captureReady);
    notices.post(EAudioNotice::driverError);
    notices.post(EAudioNotice::notFinite);
    notices.post(EAudioNotice::limited, 31.6228F);
    notices.post(EAudioNotice::overload, 1.5F);
    bench.m_transport.onTimer();
    EXPECT_EQ(bench.m_posts, std::vector<unsigned>{2048});
    ASSERT_EQ(bench.m_dialogs.m_notes.size(), 4U);
    EXPECT_EQ(bench.m_dialogs.m_notes[0],
              "Error writing to driver: Velmora does not yet support ASIO or hardware-specific drivers, only "
              "Microsoft WDM drivers. Choose Microsoft Sound Mapper in the Audio Setup Dialog");
    EXPECT_EQ(bench.m_dialogs.m_notes[1].find("The module Doubler puts out samples that are infinite"), 0U);
    EXPECT_EQ(bench.m_dialogs.m_notes[2].find("The module Doubler puts out +30.0 dB;"), 0U);
    EXPECT_EQ(
        bench.m_dialogs.m_notes[3].find("The module Doubler needs 150 % of the time that a buffer of 64 "
                                        "frames lasts (1.33 ms);"),
        0U);
    EXPECT_TRUE(bench.m_dialogs.m_messages.empty());
}

TEST(TransportTest, ARandomWalkWithRunningAudioStaysWhole)
{
    CTransportBench bench;
    bench.m_system.runOnThreads(std::chrono::microseconds(50));
    test::CDoublingFilter second;
    const auto isSounding = [&] {
        return bench.m_transport.hasAudioThread() && bench.m_system.openStreams() > 0 &&
               (bench.m_transport.state() != TRANSPORT_PLAY || bench.m_wave.isOpen());
    };
    std::mt19937 random(4);
    for (int i = 0; i < 2000; ++i) {
        const unsigned uChoice = random() % (std::size(COMMANDS) + 4);
        if (uChoice < std::size(COMMANDS)) {
            COMMANDS[uChoice].m_pCommand(bench.m_transport);
        } else if (uChoice == std::size(COMMANDS)) {
            bench.m_system.kill(random() % 2 == 0);
            bench.m_transport.onTimer();
            bench.m_system.revive();
        } else if (uChoice == std::size(COMMANDS) + 1) {
            bench.m_transport.startOscillator();
        } else {
            // A swap, with a command while the gate is closed.
            const CClosedGate closed(bench.m_engine.gate());
            ASSERT_TRUE(closed);
            bench.m_engine.setFilter(random() % 2 ? &second : &bench.m_filter);
            if (random() % 4 == 0)
                bench.m_transport.stopWaveStream();
        }
        const bool bPaused = bench.m_transport.state() == TRANSPORT_PAUSE;
        ASSERT_LE(bench.m_system.openStreams(), bPaused || bench.m_transport.hasAudioThread() ? 1U : 0U) << i;
        const unsigned long uBefore = bench.m_system.callbacks();
        const bool bWaits = random() % 2 == 0;
        while (bWaits && isSounding() && bench.m_system.callbacks() == uBefore)
            std::this_thread::yield();
    }
    bench.m_transport.close();
    EXPECT_EQ(bench.m_system.uses(), 1);
    EXPECT_GT(bench.m_system.callbacks(), 100U);
}

} // namespace
} // namespace velmora
