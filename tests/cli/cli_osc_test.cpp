#include "audio/sound_file.h"
#include "cli_program.h"
#include "dsp/modules/oscillator.h"
#include "support/full_disk.h"

#include <csignal>

namespace velmora::test {

namespace {

class CCliOscTest : public CCliTest
{
  protected:
    std::vector<std::string> rendering(const std::vector<std::string>& more = {})
    {
        std::vector<std::string> words = {"osc", "render", "out.wav"};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    // The samples of out.wav, after a look at its header.
    std::vector<float> samplesOf(int nChannels, int nRate)
    {
        CSoundFile file;
        std::string sError;
        EXPECT_TRUE(file.openForReading(m_folder / "out.wav", sError)) << sError;
        EXPECT_EQ(file.info().m_nChannels, nChannels);
        EXPECT_EQ(file.info().m_nSampleRate, nRate);
        EXPECT_EQ(file.info().m_nFormat, 0x010006); // WAV, 32-bit floats
        std::vector<float> samples(static_cast<std::size_t>(file.info().m_nFrames * nChannels));
        file.readFloats(samples.data(), static_cast<long long>(samples.size()));
        return samples;
    }
};

TEST_F(CCliOscTest, RendersTheSamplesOfAStream)
{
    struct CCase
    {
        std::vector<std::string> m_options;
        UINT m_uKind;
        std::vector<std::pair<EOscillatorParameter, float>> m_values;
        UINT m_uChannels = 2;
        int m_nRate = 44100;
    };
    const std::vector<CCase> cases = {
        {{}, OSCILLATOR_SINUSOID, {}},
        {{"--kind", "square", "--frequency", "441.5", "--amplitude", "-12.5", "--channels", "1"},
         OSCILLATOR_SQUARE,
         {{OSCILLATOR_FREQUENCY, 441.5F}, {OSCILLATOR_AMPLITUDE, -12.5F}},
         1},
        {{"--kind=pulsed-noise", "--pulse-rate=7", "--duty=20", "--seed=4000000000", "--rate", "96000"},
         OSCILLATOR_PULSED_NOISE,
         {{OSCILLATOR_PULSE_RATE, 7.0F}, {OSCILLATOR_DUTY_CYCLE, 20.0F}},
         2,
         96000},
        {{"--kind=single-impulse", "--impulse-height=0.25"},
         OSCILLATOR_SINGLE_IMPULSE,
         {{OSCILLATOR_IMPULSE_HEIGHT, 0.25F}}},
        {{"--sweep", "--low=50", "--high=4000", "--period=0.4", "--rate=8000"},
         OSCILLATOR_SWEEP,
         {{OSCILLATOR_SWEEP_PERIOD, 0.4F}},
         2,
         8000},
    };
    for (const auto& [options, uKind, values, uChannels, nRate] : cases) {
        SCOPED_TRACE(::testing::PrintToString(options));
        auto words = rendering({"--seconds", "0.7", "--force"});
        words.insert(words.end(), options.begin(), options.end());
        const CJsonValue result = runForJson(words);
        EXPECT_EQ(result.members(), (std::vector<std::string>{"frames", "peak", "rms"}));

        COscillator oscillator;
        oscillator.setFrequencyRange(50.0F, 4000.0F);
        EXPECT_TRUE(oscillator.setKind(uKind) || oscillator.setClass(uKind));
        for (const auto& [eParameter, fValue] : values)
            oscillator.setParameter(eParameter, fValue);
        oscillator.setSeed(4000000000U);
        oscillator.fireImpulse();
        oscillator.m_nSampleRate = nRate;
        oscillator.prepareForPlay();
        std::vector<float> expected(static_cast<std::size_t>(nRate) * 7 / 10 * uChannels);
        for (std::size_t u = 0; u < expected.size(); u += 100)
            oscillator.processInterleaved(nullptr, &expected[u], uChannels,
                                          static_cast<UINT>(std::min<std::size_t>(100, expected.size() - u)),
                                          0);
        EXPECT_EQ(samplesOf(static_cast<int>(uChannels), nRate), expected);

        double dSquares = 0.0;
        for (const float fSample : expected)
            dSquares += static_cast<double>(fSample) * fSample / static_cast<double>(expected.size());
        EXPECT_EQ(result["frames"].number(), expected.size() / uChannels);
        EXPECT_NEAR(result["peak"].number(), std::ranges::max(expected), 1e-3);
        EXPECT_NEAR(result["rms"].number(), std::sqrt(dSquares), 1e-9);
    }
}

TEST_F(CCliOscTest, SameSeedSameFile)
{
    const auto render = [&](const char* pSeed) {
        (void)runForJson(rendering({"--kind", "white-noise", "--seconds=0.1", "--force", "--seed", pSeed}));
        return readFile(m_folder / "out.wav");
    };
    const std::string sFirst = render("5");
    EXPECT_EQ(sFirst.find("PEAK"), std::string::npos); // a chunk with the time of day
    EXPECT_EQ(render("5"), sFirst);
    EXPECT_NE(render("6"), sFirst);
    const CProgramEnd text = run(rendering({"--seconds=0.1", "--answer", "yes"}));
    EXPECT_EQ(text.m_sOutput, "4410 frames, 2 channels, 44100 Hz: 0.100 s, peak -6.0 dB, rms -9.0 dB\n");
}

TEST_F(CCliOscTest, RefusesWhatCannotBeAndLeavesFilesAlone)
{
    writeFile(m_folder / "out.wav", "precious");
    std::filesystem::create_directory(m_folder / "folder.wav");
    struct CCase
    {
        std::vector<std::string> m_words;
        int m_nStatus;
        std::vector<std::string> m_texts;
    };
    const std::vector<CCase> cases = {
        {rendering(), 1, {"out.wav already exists", "was left as it is"}},
        {{"osc", "render", "tone.aiff"}, 1, {"You may only export .wav files. Check file name."}},
        {{"osc", "render", "folder.wav"}, 1, {"folder.wav is a folder"}},
        {{"osc", "render", "nowhere/a.wav"}, 1, {"nowhere/a.wav", "could not be created"}},
        {{"osc", "render"}, 2, {"OUT"}},
        {rendering({"--kind", "sawtooth"}), 2, {"--kind"}},
        {rendering({"--frequency", "0"}), 2, {"--frequency"}},
        {rendering({"--frequency", "22051"}), 2, {"22051 Hz", "above half the sample rate, 22050 Hz"}},
        {rendering({"--kind=pulsed-noise", "--pulse-rate=600", "--rate=1000"}), 2, {"pulse rate, 600 Hz"}},
        {rendering({"--amplitude", "1"}), 2, {"--amplitude"}},
        {rendering({"--seconds", "0.00001"}), 2, {"shorter than one sample"}},
        {rendering({"--seconds", "13000"}), 2, {"at most 12173 seconds"}},
        {rendering({"--low", "5"}), 2, {"needs the option --sweep"}},
        {rendering({"--sweep", "--low=500", "--high=400"}), 2, {"500 Hz", "400 Hz"}},
        {rendering({"--sweep", "--rate=8000"}), 2, {"22050 Hz", "4000 Hz", "--high"}},
    };
    for (const auto& [words, nStatus, texts] : cases)
        expectFailure(words, nStatus, texts);

    bool bSent = false;
    m_start.m_whileRunning = [&](pid_t nProcess) {
        if (!bSent && entriesOf(m_folder.path()).size() > 2)
            bSent = ::kill(nProcess, SIGINT) == 0;
    };
    expectFailure(rendering({"--force", "--seconds=3000", "--rate=96000"}), 1, {"Rendering was cancelled"});
    EXPECT_TRUE(bSent);
    m_start.m_whileRunning = nullptr;
    {
        const CFullDisk disk(1 << 20);
        expectFailure(rendering({"--force"}), 1, {"disk is full"});
    }
    EXPECT_EQ(readFile(m_folder / "out.wav"), "precious");
    EXPECT_EQ(entriesOf(m_folder.path()), (std::vector<std::string>{"folder.wav", "out.wav"}));
}

} // namespace

} // namespace velmora::test
