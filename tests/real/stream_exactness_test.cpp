#include "dsp/modules/oscillator.h"
#include "real/jack_listener.h"
#include "real/jack_server.h"
#include "real/jack_source.h"
#include "real/recording_comparison.h"
#include "real/streaming_document.h"
#include "support/program_runner.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <random>

namespace velmora::test {
namespace {

constexpr int RATE = 48000; // Hz
constexpr std::size_t PERIOD = 64;

std::vector<float> noise(std::size_t uSamples, unsigned uSeed)
{
    std::mt19937 generator(uSeed);
    std::uniform_real_distribution<float> distribution(-0.9F, 0.9F);
    std::vector<float> samples(uSamples);
    for (float& fSample : samples)
        fSample = distribution(generator);
    samples.front() = samples.back() = 0.5F; // so that both ends are heard
    return samples;
}

// A server, a device that listens, and a document that plays to it.
class CStreamExactness : public ::testing::Test
{
  protected:
    // With a source that plays the input, if there is any.
    void begin(const std::vector<float>& input = {}, int nRate = RATE,
               int nServerPeriod = static_cast<int>(PERIOD))
    {
        m_pServer = std::make_unique<CJackServer>(nRate, nServerPeriod);
        m_pListener = std::make_unique<CJackListener>(20.0);
        if (!input.empty())
            m_pSource = std::make_unique<CJackSource>(input);
        m_pDocument = std::make_unique<CStreamingDocument>(CStreamingDocument::COptions{
            "listener", input.empty() ? "system" : "source", static_cast<double>(nRate)});
    }

    void TearDown() override
    {
        m_pDocument.reset();
        m_pSource.reset();
        m_pListener.reset();
        m_pServer.reset();
    }

    void load(const std::string& sPlugIn)
    {
        ASSERT_TRUE(document()->plugInLoader().loadPlugin(
            std::filesystem::path(REAL_PLUGIN_FOLDER) / (sPlugIn + ".so"), false));
    }

    // What the listener hears of a file from Play to its end.
    std::vector<float> played(const std::filesystem::path& file)
    {
        m_pListener->restart();
        document()->transport().setWaveFile(file);
        document()->transport().onPlay();
        EXPECT_EQ(document()->transport().state(), TRANSPORT_PLAY) << document()->transport().reason();
        EXPECT_TRUE(document().waitUntil([&] { return document()->transport().state() == TRANSPORT_STOP; }));
        return m_pListener->recorded();
    }

    // What it has heard when so many more frames were played.
    std::vector<float> heard(std::size_t uFrames)
    {
        EXPECT_TRUE(m_pListener->waitForMore(uFrames));
        return m_pListener->recorded();
    }

    CStreamingDocument& document() { return *m_pDocument; }

    std::unique_ptr<CJackServer> m_pServer;
    std::unique_ptr<CJackListener> m_pListener;
    std::unique_ptr<CJackSource> m_pSource;
    std::unique_ptr<CStreamingDocument> m_pDocument;
};

// The listener's first channels alone.
std::vector<float> firstChannels(const std::vector<float>& recorded, int nChannels)
{
    if (nChannels == 2)
        return recorded;
    std::vector<float> left;
    for (std::size_t i = 0; i < recorded.size(); i += 2)
        left.push_back(recorded[i]);
    return left;
}

// What is set for one file that is played.
struct CPlayCase
{
    unsigned m_uMode;
    int m_nChannels;
    int m_nSidechainChannels; // 0: none
    bool m_bSidechainLoop;
    bool m_bBypass;
    bool m_bListen;
};

std::ostream& operator<<(std::ostream& stream, const CPlayCase& play)
{
    return stream << "mode " << play.m_uMode << ", " << play.m_nChannels << " channels, sidechain "
                  << play.m_nSidechainChannels << (play.m_bSidechainLoop ? " looped" : "")
                  << (play.m_bBypass ? ", bypass" : "") << (play.m_bListen ? ", listen" : "");
}

// A sidechain stays until another one takes its place, so those without one come first.
std::vector<CPlayCase> playCases()
{
    std::vector<CPlayCase> cases;
    for (const unsigned uMode : {0U, 1U, 2U, 3U, 4U, 5U})
        for (const int nChannels : {1, 2}) {
            cases.push_back({uMode, nChannels, 0, false, false, false});
            cases.push_back({uMode, nChannels, 1, false, false, false});
            cases.push_back({uMode, nChannels, 2, true, false, false});
            cases.push_back({uMode, nChannels, 0, false, true, false});
            cases.push_back({uMode, nChannels, 2, true, false, true});
        }
    std::ranges::stable_sort(cases, {}, [](const CPlayCase& play) { return play.m_nSidechainChannels > 0; });
    return cases;
}

// The kind of plug-in, and a server that calls for as much as our buffers hold, or for more at a time.
struct CPlayer
{
    const char* m_pPlugIn;
    int m_nRate; // Hz
    int m_nServerPeriod;
};

std::ostream& operator<<(std::ostream& stream, const CPlayer& player)
{
    return stream << player.m_pPlugIn << ", " << player.m_nRate << " Hz, " << player.m_nServerPeriod;
}

class CPlayedFile : public CStreamExactness, public ::testing::WithParamInterface<CPlayer>
{
  protected:
    void apply(const CPlayCase& play, const std::filesystem::path& sidechainFile)
    {
        CAudioEngine& engine = document()->audioEngine();
        engine.m_uChannelMode = play.m_uMode;
        engine.m_bBypass = play.m_bBypass;
        engine.m_fInputGain_dB = -1.5F;
        engine.m_fOutputGain_dB = 2.25F;
        CSidechain& sidechain = document()->sidechain();
        sidechain.m_bLoop = play.m_bSidechainLoop;
        sidechain.m_bListen = play.m_bListen;
        sidechain.m_bEnabled = true;
        sidechain.m_fGain_dB = -3.0F;
        if (play.m_nSidechainChannels > 0) {
            ASSERT_TRUE(sidechain.load(sidechainFile, document().dialogs()));
        }
    }
};

TEST_P(CPlayedFile, IsWhatOfflineProcessingMakesOfIt)
{
    begin({}, GetParam().m_nRate, GetParam().m_nServerPeriod);
    load(GetParam().m_pPlugIn);
    std::array<std::filesystem::path, 3> files;
    std::array<std::filesystem::path, 3> sidechainFiles;
    for (const int n : {1, 2}) {
        const auto uChannels = static_cast<std::size_t>(n);
        files[uChannels] =
            document().waveFile("in" + std::to_string(n) + ".wav", noise(1000 * uChannels, 1), n);
        sidechainFiles[uChannels] =
            document().waveFile("key" + std::to_string(n) + ".wav", noise(333 * uChannels, 2), n);
    }
    for (const CPlayCase& play : playCases()) {
        SCOPED_TRACE(::testing::PrintToString(play));
        const std::filesystem::path& file = files.at(static_cast<std::size_t>(play.m_nChannels));
        document()->transport().onStop();
        apply(play, sidechainFiles.at(static_cast<std::size_t>(play.m_nSidechainChannels)));
        const std::vector<float> expected = document().processedOffline(file);
        EXPECT_TRUE(holdsExactly(firstChannels(played(file), play.m_nChannels), expected,
                                 static_cast<std::size_t>(play.m_nChannels)));
    }
}

INSTANTIATE_TEST_SUITE_P(PlugIns, CPlayedFile,
                         ::testing::Values(CPlayer{"RememberingFrames", 48000, 64},
                                           CPlayer{"RememberingInterleaved", 44100, 64},
                                           CPlayer{"RememberingPlanes", 96000, 256}),
                         [](const auto& information) { return std::string(information.param.m_pPlugIn); });

// What a stream makes of a file that starts over: each buffer processes what was left of the file; what was
// read behind the end is skipped.
struct CRounds
{
    std::vector<float> m_processed; // the file's frames that are processed, in order
    std::vector<float> m_key; // the sidechain's, of two channels, which is read a whole buffer each time
    std::vector<std::size_t> m_counts; // frames processed in each buffer
};

CRounds rounds(const std::vector<float>& file, std::size_t uChannels, const std::vector<float>& key,
               std::size_t uBuffers)
{
    CRounds result;
    const std::size_t uLength = file.size() / uChannels;
    const std::size_t uKeyLength = key.size() / 2;
    std::size_t uAt = 0;
    for (std::size_t uBuffer = 0; uBuffer < uBuffers; ++uBuffer) {
        const std::size_t uRead = std::min(PERIOD, uLength - uAt);
        for (std::size_t i = uAt * uChannels; i < (uAt + uRead) * uChannels; ++i)
            result.m_processed.push_back(file[i]);
        for (std::size_t i = 0; i < 2 * uRead; ++i)
            result.m_key.push_back(key[(2 * uBuffer * PERIOD + i) % (2 * uKeyLength)]);
        result.m_counts.push_back(uRead);
        uAt = uRead == PERIOD ? uAt + uRead : std::min(uLength, PERIOD - uRead);
    }
    return result;
}

TEST_F(CStreamExactness, ALoopSkipsWhatItReadsBehindTheEnd)
{
    begin();
    load("RememberingFrames");
    const std::vector<float> key = noise(std::size_t{2} * 777, 3);
    CSidechain& sidechain = document()->sidechain();
    sidechain.m_bEnabled = true;
    const std::filesystem::path keyFile = document().waveFile("key.wav", key, 2);
    // Shorter than a buffer, a whole number of buffers, and neither.
    for (const std::size_t uLength : {40U, 640U, 1000U})
        for (const std::size_t uChannels : {std::size_t{1}, std::size_t{2}}) {
            SCOPED_TRACE(std::to_string(uLength) + " frames, " + std::to_string(uChannels) + " channels");
            const int nChannels = static_cast<int>(uChannels);
            const std::vector<float> file = noise(uLength * uChannels, 4);
            const CRounds looped = rounds(file, uChannels, key, 80);

            document()->transport().onStop();
            sidechain.m_bLoop = false;
            ASSERT_TRUE(
                sidechain.load(document().waveFile("rounds key.wav", looped.m_key, 2), document().dialogs()));
            const std::vector<float> processed =
                document().processedOffline(document().waveFile("rounds.wav", looped.m_processed, nChannels));
            std::vector<float> expected;
            std::size_t uFrom = 0;
            for (const std::size_t uCount : looped.m_counts) {
                for (std::size_t i = 0; i < PERIOD * uChannels; ++i)
                    expected.push_back(i < uCount * uChannels ? processed.at(uFrom + i) : 0.0F);
                uFrom += uCount * uChannels;
            }

            sidechain.m_bLoop = true;
            ASSERT_TRUE(sidechain.load(keyFile, document().dialogs()));
            m_pListener->restart();
            document()->transport().setWaveFile(document().waveFile("looped.wav", file, nChannels));
            document()->wave().requestLoop();
            document()->transport().onPlay();
            EXPECT_TRUE(beginsExactly(firstChannels(heard(PERIOD * 100), nChannels), expected, uChannels,
                                      PERIOD * looped.m_counts.size()));
        }
}

// A pause keeps the place in the file and the filter's memory.
TEST_F(CStreamExactness, AfterAPauseTheFileGoesOnWhereItWas)
{
    begin();
    load("RememberingPlanes");
    const std::filesystem::path file = document().waveFile("in.wav", noise(std::size_t{2} * 24000, 5), 2);
    const std::vector<float> expected = document().processedOffline(file);
    m_pListener->restart();
    document()->transport().setWaveFile(file);
    document()->transport().onPlay();
    for (int nPause = 0; nPause < 3; ++nPause) {
        ASSERT_TRUE(m_pListener->waitForMore(PERIOD * 50));
        document()->transport().onPause();
        ASSERT_EQ(document()->transport().state(), TRANSPORT_PAUSE);
        ASSERT_TRUE(m_pListener->waitForMore(PERIOD * 20));
        document()->transport().onPlay();
    }
    EXPECT_TRUE(document().waitUntil([&] { return document()->transport().state() == TRANSPORT_STOP; }));

    // Without the silence between the parts, which no part holds of its own.
    std::vector<float> sound;
    const std::vector<float> recorded = m_pListener->recorded();
    for (std::size_t i = 0; i < recorded.size(); i += 2)
        if (recorded[i] != 0.0F || recorded[i + 1] != 0.0F)
            sound.insert(sound.end(), {recorded[i], recorded[i + 1]});
    EXPECT_TRUE(holdsExactly(sound, expected, 2));
}

TEST_F(CStreamExactness, SoundInputIsProcessedWithAConstantDelay)
{
    // The first sample that is heard tells its place in the input; all others follow from it.
    constexpr std::size_t LENGTH = 16384;
    std::vector<float> source;
    for (std::size_t i = 0; i < LENGTH; ++i) {
        const float fPlace = static_cast<float>(i + 1) / LENGTH;
        source.insert(source.end(), {fPlace, fPlace / 2.0F});
    }
    begin(source);
    load("RememberingFrames");
    constexpr float GAIN_OF_FIRST[] = {0.375F, 0.375F, 0.5F, 1.125F, 1.125F, 1.5F};
    for (unsigned uMode = 0; uMode < std::size(GAIN_OF_FIRST); ++uMode) {
        SCOPED_TRACE("mode " + std::to_string(uMode));
        document()->audioEngine().m_uChannelMode = uMode;
        m_pListener->restart();
        document()->transport().startSoundIn();
        ASSERT_EQ(document()->transport().state(), TRANSPORT_SOUND_IN) << document()->transport().reason();
        const std::vector<float> recorded = heard(LENGTH);
        document()->transport().stopSoundIn();

        const std::size_t uFirst = 2 * soundBegins(recorded, 2);
        ASSERT_LT(uFirst, recorded.size());
        const auto uPlace = static_cast<std::size_t>(
            std::lround(recorded[uFirst] / GAIN_OF_FIRST[uMode] * static_cast<float>(LENGTH)));
        std::vector<float> input = source;
        std::rotate(input.begin(),
                    input.begin() + static_cast<std::ptrdiff_t>(2 * (uPlace - 1) % input.size()),
                    input.end());
        const std::vector<float> expected =
            document().processedOffline(document().waveFile("rotated.wav", input, 2));
        EXPECT_TRUE(beginsExactly(recorded, expected, 2, LENGTH / 2));
    }
    EXPECT_EQ(document().dialogs().m_messages.size(), std::size(GAIN_OF_FIRST)); // one of each processed file
}

// What is heard of each kind is what "osc render" writes into a file.
TEST_F(CStreamExactness, TheOscillatorIsWhatItRenders)
{
    constexpr std::size_t FRAMES = 12000; // both parts of a pulse
    begin();
    const std::filesystem::path file = document().folder() / "rendered.wav";
    std::vector<std::pair<EOscillatorClass, COscillatorKind>> sounds{{OSCILLATOR_SWEEP, OSCILLATOR_KINDS[0]}};
    for (const COscillatorKind& kind : OSCILLATOR_KINDS)
        sounds.emplace_back(OSCILLATOR_STANDARD, kind);
    for (const auto& [eClass, kind] : sounds) {
        SCOPED_TRACE(std::string(kind.m_sName) + (eClass == OSCILLATOR_SWEEP ? " sweep" : ""));
        std::vector<std::string> arguments{"--user-folder", (document().folder() / "cli").string(),
                                           "osc",           "render",
                                           file.string(),   "--force",
                                           "--kind",        std::string(kind.m_sName),
                                           "--frequency",   "997",
                                           "--pulse-rate",  "10",
                                           "--seed",        "7",
                                           "--rate",        std::to_string(RATE),
                                           "--seconds",     "0.25"};
        if (eClass == OSCILLATOR_SWEEP)
            arguments.insert(arguments.end(), {"--sweep", "--low", "20", "--high", "2000", "--period", "2"});
        const CProgramEnd end = runProgram(CLI_PROGRAM, arguments);
        ASSERT_EQ(end.m_nExitStatus, 0) << end.m_sErrors;
        std::vector<float> expected = CStreamingDocument::samplesOf(file);
        ASSERT_EQ(expected.size(), 2 * FRAMES);
        // A sweep begins with a zero.
        expected.erase(expected.begin(),
                       expected.begin() + static_cast<std::ptrdiff_t>(2 * soundBegins(expected, 2)));

        COscillator& oscillator = document()->oscillator();
        ASSERT_TRUE(oscillator.setClass(eClass) && oscillator.setKind(kind.m_eKind));
        oscillator.setFrequency(997.0F);
        oscillator.setFrequencyRange(20.0F, 2000.0F);
        oscillator.setParameter(OSCILLATOR_SWEEP_PERIOD, 2.0F);
        oscillator.setParameter(OSCILLATOR_PULSE_RATE, 10.0F);
        oscillator.setSeed(7);
        oscillator.fireImpulse();
        oscillator.m_nSampleRate = RATE;
        oscillator.prepareForPlay();
        m_pListener->restart();
        document()->transport().startOsc();
        ASSERT_EQ(document()->transport().state(), TRANSPORT_OSC) << document()->transport().reason();
        document()->transport().startOscillator();
        const std::vector<float> recorded = heard(FRAMES + 10 * PERIOD);
        document()->transport().stopOscillator();
        document()->transport().stopOsc();
        EXPECT_TRUE(beginsExactly(recorded, expected, 2, expected.size() / 2));
    }
}

} // namespace
} // namespace velmora::test
