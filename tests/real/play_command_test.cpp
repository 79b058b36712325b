#include "audio/sound_file.h"
#include "cli/cli_program.h"
#include "real/jack_listener.h"
#include "real/jack_server.h"
#include "real/jack_source.h"
#include "support/wave_bytes.h"

#include <algorithm>
#include <csignal>
#include <optional>

namespace velmora::test {

namespace {

constexpr unsigned RATE = 48000;
constexpr int BLOCK = 64; // frames, of the server and of the program's buffers
constexpr float LEVEL = 0.5F;

// The built program on a server of the test's own; what it plays is heard.
class CPlayCommandTest : public CCliTest
{
  protected:
    // A stereo file of so many frames in which no two frames are alike and none is zero.
    void writeRamp(const std::string& sFile, int nFrames)
    {
        m_ramp.clear();
        for (int n = 1; n <= nFrames; ++n) {
            m_ramp.push_back(static_cast<double>(n) / 65536.0);
            m_ramp.push_back(static_cast<double>(-n) / 65536.0);
        }
        writeFile(m_folder / sFile, waveBytes({.m_uTag = 3, .m_uRate = RATE, .m_uBits = 32}, m_ramp));
    }

    // A stereo file of one second at LEVEL.
    void writeLevel(const std::string& sFile)
    {
        writeFile(m_folder / sFile, waveBytes({.m_uTag = 3, .m_uRate = RATE, .m_uBits = 32},
                                              std::vector<double>(2 * RATE, LEVEL)));
    }

    static std::string build(int nNumber)
    {
        return std::string(REBUILT_FOLDER) + "/Rebuilt" + std::to_string(nNumber) + ".so";
    }

    // What was heard between the silence ahead and the silence behind.
    std::vector<float> heard() const
    {
        const std::vector<float> all = m_listener.recorded();
        const auto isSound = [](float f) { return f != 0.0F; };
        const auto begin = std::ranges::find_if(all, isSound);
        const auto end = std::find_if(all.rbegin(), std::make_reverse_iterator(begin), isSound).base();
        return {begin, end};
    }

    float lastHeard() const
    {
        const std::vector<float> all = m_listener.recorded();
        return all.empty() ? 0.0F : all.back();
    }

    // Interrupts the program, once, when the condition holds.
    std::function<void(pid_t)> interruptWhen(std::function<bool()> condition)
    {
        return [condition = std::move(condition), bSent = false](pid_t nProcess) mutable {
            if (!bSent && condition())
                bSent = ::kill(nProcess, SIGINT) == 0;
        };
    }

    CJackServer m_server{static_cast<int>(RATE), BLOCK};
    CJackListener m_listener{60.0};
    std::vector<double> m_ramp;
};

TEST_F(CPlayCommandTest, PlaysAFileToItsEnd)
{
    constexpr int FRAMES = 10000;
    writeRamp("ramp.wav", FRAMES);
    struct CCase
    {
        std::vector<std::string> m_options;
        float m_fFactor;
        int m_nFramesPerBuffer;
    };
    const std::vector<CCase> cases = {
        {{}, 1.0F, BLOCK},
        {{"--frames", "256", "--bypass", "--plugin", build(2)}, 1.0F, 256},
        {{"--plugin", build(2), "--set", "0=0.25"}, 0.5F, BLOCK},
    };
    for (const CCase& single : cases) {
        SCOPED_TRACE(::testing::PrintToString(single.m_options));
        const std::size_t uBefore = m_listener.recorded().size();
        std::vector<std::string> words = {"play", "ramp.wav", "--output-device", "LIST"};
        words.insert(words.end(), single.m_options.begin(), single.m_options.end());
        const CJsonValue result = runForJson(words);
        EXPECT_EQ(result.members(),
                  (std::vector<std::string>{"buffers", "device", "framesPerBuffer", "inputDevice",
                                            "inputLosses", "overruns", "peakFilterLoad", "peakLoad", "rate",
                                            "seconds", "swaps", "underruns"}));
        EXPECT_EQ(result["device"].text(), "listener");
        EXPECT_EQ(result["rate"].number(), RATE);
        EXPECT_EQ(result["framesPerBuffer"].number(), single.m_nFramesPerBuffer);
        EXPECT_GE(result["buffers"].number() * single.m_nFramesPerBuffer, FRAMES);
        EXPECT_GE(result["seconds"].number() * RATE, FRAMES);
        EXPECT_GT(result["peakLoad"].number(), 0.0);

        std::vector<float> expected;
        for (const double dSample : m_ramp)
            expected.push_back(single.m_fFactor * static_cast<float>(dSample));
        const std::vector<float> all = m_listener.recorded();
        const auto first = std::find_if(all.begin() + static_cast<std::ptrdiff_t>(uBefore), all.end(),
                                        [](float f) { return f != 0.0F; });
        ASSERT_GE(all.end() - first, static_cast<std::ptrdiff_t>(expected.size()));
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), first));
    }
    // What was asked for held for those runs alone.
    const std::string sSettings = run({"settings", "show"}).m_sOutput;
    EXPECT_EQ(sSettings.find("listener"), std::string::npos) << sSettings;
    EXPECT_NE(sSettings.find("m_uFramesPerBuffer           64\n"), std::string::npos) << sSettings;
}

// What is read of the beginning in the buffer in which the file's end is found is not played, so that a round
// lasts as long as the file.
TEST_F(CPlayCommandTest, LoopsUntilTheTimeIsOver)
{
    writeRamp("ramp.wav", 20 * BLOCK);
    const CJsonValue result =
        runForJson({"play", "ramp.wav", "--loop", "--seconds", "0.5", "--output-device", "listener"});
    const std::vector<float> sound = heard();
    ASSERT_GT(sound.size(), 3 * m_ramp.size());
    for (std::size_t u = 0; u < sound.size(); ++u) {
        const std::size_t uInRound = u % m_ramp.size();
        const bool bAtSeam = u >= m_ramp.size() && uInRound < 2 * BLOCK;
        ASSERT_EQ(sound[u], bAtSeam ? 0.0F : static_cast<float>(m_ramp[uInRound])) << u;
    }
    EXPECT_GE(result["buffers"].number() * 2 * BLOCK, static_cast<double>(sound.size()));
}

TEST_F(CPlayCommandTest, AnInterruptEndsEachOfThemWithItsResult)
{
    const CJackSource source({0.25F, -0.25F});
    writeLevel("level.wav");
    struct CCase
    {
        std::vector<std::string> m_words;
        float m_fFirst; // sample that tells that it runs
    };
    const std::string sQuarter = "--set=0=0.25";
    const std::vector<CCase> cases = {
        {{"play", "level.wav", "--loop"}, LEVEL},
        {{"listen", "--input-device", "source"}, 0.25F},
        {{"listen", "--input-device", "source", "--plugin", build(2), sQuarter}, 0.125F},
        {{"tone", "--kind", "square", "--frequency", "480", "--amplitude", "0"}, 1.0F},
        {{"tone", "--kind", "square", "--amplitude", "0", "--plugin", build(2), sQuarter}, 0.5F},
    };
    for (CCase single : cases) {
        SCOPED_TRACE(::testing::PrintToString(single.m_words));
        const std::size_t uBefore = m_listener.recorded().size();
        m_start.m_whileRunning = interruptWhen([&] {
            const std::vector<float> all = m_listener.recorded();
            return std::find(all.begin() + static_cast<std::ptrdiff_t>(uBefore), all.end(),
                             single.m_fFirst) != all.end();
        });
        single.m_words.insert(single.m_words.end(), {"--output-device", "listener"});
        const CJsonValue result = runForJson(single.m_words);
        EXPECT_GT(result["buffers"].number(), 0.0);
        EXPECT_EQ(result["rate"].number(), RATE);
        EXPECT_EQ(result["inputDevice"].m_eKind,
                  single.m_words[0] == "listen" ? CJsonValue::EKind::text : CJsonValue::EKind::null);
    }
}

// What is heard of the oscillator is what it renders into a file.
TEST_F(CPlayCommandTest, ToneIsWhatTheOscillatorRenders)
{
    const std::vector<std::string> options = {"--kind", "pulsed-noise", "--pulse-rate", "10", "--seed",
                                              "7",      "--rate",       "48000"};
    std::vector<std::string> render = {"osc", "render", "noise.wav", "--seconds", "1"};
    std::vector<std::string> tone = {"tone", "--seconds", "1", "--output-device", "listener"};
    render.insert(render.end(), options.begin(), options.end());
    tone.insert(tone.end(), options.begin(), options.end());
    (void)runForJson(render);
    (void)runForJson(tone);

    CSoundFile file;
    std::string sError;
    ASSERT_TRUE(file.openForReading(m_folder / "noise.wav", sError)) << sError;
    std::vector<float> rendered(static_cast<std::size_t>(file.info().m_nFrames * file.info().m_nChannels));
    ASSERT_EQ(file.readFloats(rendered.data(), static_cast<long long>(rendered.size())),
              static_cast<long long>(rendered.size()));
    const std::vector<float> sound = heard();
    const auto begin = std::ranges::find_if(rendered, [](float f) { return f != 0.0F; });
    const auto nCommon = std::min(rendered.end() - begin, static_cast<std::ptrdiff_t>(sound.size()));
    EXPECT_GT(nCommon, RATE);
    EXPECT_TRUE(std::equal(begin, begin + nCommon, sound.begin()));
}

TEST_F(CPlayCommandTest, ASynthesizerPlaysItself)
{
    const std::string sSynth = example("PolySynth");
    writeLevel("level.wav");
    EXPECT_GT(runForJson({"tone", "--plugin", sSynth, "--seconds", "0.2"})["buffers"].number(), 0.0);
    expectFailure({"tone", "--plugin", sSynth, "--frequency", "440"}, 2,
                  {"PolySynth", "makes its own sound", "--frequency"});
    expectFailure({"play", "level.wav", "--plugin", sSynth}, 1, {"makes its own sound", "\"tone\""});
    expectFailure({"listen", "--plugin", sSynth}, 1, {"makes its own sound"});
}

// From the first build to one that is broken, to the second: each plays as soon as it lies there, the broken
// one never, and the control's value goes along.
TEST_F(CPlayCommandTest, WatchGoesOverToEachNewBuild)
{
    writeLevel("level.wav");
    const auto library = m_folder / "Watched.so";
    std::filesystem::copy_file(build(1), library);
    const auto replace = [&](const std::string& sContents) {
        writeFile(m_folder / "new", sContents);
        std::filesystem::rename(m_folder / "new", library);
    };
    std::size_t uStep = 0;
    int nPolls = 0;
    m_start.m_whileRunning = [&](pid_t nProcess) {
        const float fFactor = lastHeard() / LEVEL;
        if (uStep == 0 && fFactor == 0.25F) {
            replace("no library at all");
            ++uStep;
        } else if (uStep == 1 && ++nPolls == 50) { // the broken one has been told by now, or is passed over
            replace(readFile(build(2)));
            ++uStep;
        } else if (uStep == 2 && fFactor == 0.5F) {
            ::kill(nProcess, SIGINT);
            ++uStep;
        }
    };
    const CProgramEnd end = run({"--json", "play", "level.wav", "--loop", "--plugin", "Watched.so", "--set",
                                 "0=0.25", "--watch", "--output-device", "listener"});
    EXPECT_EQ(end.m_nExitStatus, 0) << end.m_sErrors;
    EXPECT_EQ(uStep, 3U);
    EXPECT_EQ(CJsonValue::parse(end.m_sOutput)["swaps"].number(), 1);
    for (const char* pText : {"Error loading DLL", "The build of before plays on.", " plays now",
                              "values carried over: m_fLevel"})
        EXPECT_NE(end.m_sErrors.find(pText), std::string::npos) << pText << " in\n" << end.m_sErrors;
    // A swap neither clicks nor leaves a gap: never back, never beyond.
    const std::vector<float> sound = heard();
    EXPECT_TRUE(std::ranges::is_sorted(sound.begin(), sound.end()));
}

TEST_F(CPlayCommandTest, RefusesWhatCannotPlay)
{
    writeLevel("level.wav");
    writeFile(m_folder / "slow.wav", waveBytes({.m_uRate = 44100}, std::vector<double>(2000, 0.5)));
    writeFile(m_folder / "three.wav",
              waveBytes({.m_uChannels = 3, .m_uRate = RATE}, std::vector<double>(300, 0.5)));
    writeFile(m_folder / "text.wav", "no audio at all");
    const CJackListener second(1.0, "listener two");
    struct CCase
    {
        std::vector<std::string> m_words;
        std::vector<std::string> m_texts;
    };
    const std::vector<CCase> cases = {
        {{"play", "nowhere.wav"}, {"Could not find the file: ", "nowhere.wav"}},
        {{"play", "text.wav"}, {"Failed to open this audio File"}},
        {{"play", "three.wav"}, {"This is a 3 channel file."}},
        {{"play", "slow.wav"},
         {"Invalid sample rate", "\"system\" does not take 44100 Hz. It takes: 48000 Hz."}},
        {{"play", "level.wav", "--output-device", "nobody"},
         {"There is no audio output device whose name begins with \"nobody\"", "\n  listener\n"}},
        {{"play", "level.wav", "--output-device", "listen"},
         {"There are several", "\n  listener\n  listener two\n"}},
        {{"listen", "--input-device", "listener"}, {"There is no audio input device whose name begins"}},
        {{"tone", "--rate", "44100"}, {"does not take 44100 Hz", "48000"}},
        {{"play", "level.wav", "--sidechain", "nowhere.wav"}, {"nowhere.wav"}},
    };
    for (const CCase& single : cases)
        expectFailure(single.m_words, 1, single.m_texts);
    EXPECT_TRUE(heard().empty());
}

class CPlayWithoutServerTest : public CCliTest
{
};

TEST_F(CPlayWithoutServerTest, AServerThatDiesIsTold)
{
    std::optional<CJackServer> server(std::in_place, static_cast<int>(RATE), BLOCK);
    int nPolls = 0;
    m_start.m_whileRunning = [&](pid_t) {
        if (++nPolls == 150)
            server->kill();
    };
    expectFailure({"tone", "--output-device", "system"}, 1, {"system"});
    EXPECT_GE(nPolls, 150);
}

} // namespace

} // namespace velmora::test
