#include "audio/audio_devices.h"

#include <gtest/gtest.h>
#include <tuple>
#include <utility>

namespace velmora::test {
namespace {

constexpr const char* NO_INPUT = "No audio input device found!";
constexpr const char* NO_OUTPUT = "No audio output device found!";
constexpr const char* NEITHER = "No audio input or output device found!";

CAudioDeviceInfo device(std::string sName, int nInputs, int nOutputs)
{
    CAudioDeviceInfo info;
    info.m_sName = std::move(sName);
    info.m_nMaxInputChannels = nInputs;
    info.m_nMaxOutputChannels = nOutputs;
    info.m_dDefaultSampleRate = 48000.0;
    return info;
}

class CPretendedAudioSystem : public IAudioSystem
{
  public:
    bool initialize() override
    {
        m_nUses += m_bWorks ? 1 : 0;
        return m_bWorks;
    }
    void terminate() override { --m_nUses; }
    std::vector<CAudioDeviceInfo> devices() const override { return m_devices; }
    int defaultInputDevice() const override { return m_nDefaultInput; }
    int defaultOutputDevice() const override { return m_nDefaultOutput; }
    bool isInputFormatSupported(int nDevice, int nChannels, double dRate) const override
    {
        return nDevice == m_nTestedDevice && nChannels == 2 && dRate == m_dSupportedRate;
    }

    bool m_bWorks = true;
    int m_nUses = 0;
    std::vector<CAudioDeviceInfo> m_devices;
    int m_nDefaultInput = -1;
    int m_nDefaultOutput = -1;
    int m_nTestedDevice = -1;
    double m_dSupportedRate = 44100.0;
};

TEST(AudioDevices, matchesNamesAndFallsBackToTheDefaults)
{
    const std::vector<CAudioDeviceInfo> devices = {
        device("mic", 1, 0),  device("speaker", 0, 2), device("card", 2, 2), device("both", 2, 2),
        device("both", 0, 2), device("both", 2, 0),    device("dead", 0, 0), device("twin", 0, 2),
        device("twin", 0, 2), device("duo", 2, 2),     device("duo", 2, 2),
    };
    struct
    {
        const char *m_sInput, *m_sOutput, *m_sDUT;
        int m_nDefaultInput, m_nDefaultOutput;
        int m_nInput, m_nOutput, m_nDUT;
        const char *m_sInputAfter, *m_sOutputAfter, *m_sDUTAfter, *m_sMessage;
    } const cases[] = {
        {"mic", "speaker", "None", 2, 2, 0, 1, -1, "mic", "speaker", "None", ""},
        {"card", "card", "card", -1, -1, 2, 2, 2, "card", "card", "card", ""},
        {"both", "both", "both", 0, 1, 5, 4, 4, "both", "both", "both", ""},
        {"duo", "twin", "duo", 0, 1, 10, 8, 10, "duo", "twin", "duo", ""},
        {"speaker", "mic", "mic", 0, 1, 0, 1, -1, "mic", "speaker", "None", ""},
        {"Mic", "", "gone", 2, 3, 2, 3, -1, "card", "both", "None", ""},
        {"dead", "dead", "dead", -1, 1, -1, 1, -1, "None", "speaker", "None", NO_INPUT},
        {"gone", "gone", "speaker", 0, -1, 0, -1, 1, "mic", "None", "speaker", NO_OUTPUT},
        {"gone", "gone", "gone", -1, -1, -1, -1, -1, "None", "None", "None", NEITHER},
        {"gone", "gone", "gone", 99, 11, -1, -1, -1, "None", "None", "None", NEITHER},
        {"mic", "gone", "None", -1, -1, 0, -1, -1, "mic", "None", "None", NO_OUTPUT},
        {"gone", "speaker", "None", -1, -1, -1, 1, -1, "None", "speaker", "None", NO_INPUT},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(::testing::Message() << test.m_sInput << ", " << test.m_sOutput << ", " << test.m_sDUT);
        CPretendedAudioSystem system;
        system.m_devices = devices;
        system.m_nDefaultInput = test.m_nDefaultInput;
        system.m_nDefaultOutput = test.m_nDefaultOutput;
        CAudioDevices chosen(system);
        CAudioDeviceChoice choice{test.m_sInput, test.m_sOutput, test.m_sDUT};
        EXPECT_EQ(chosen.choose(choice), test.m_sMessage);
        EXPECT_EQ(chosen.inputDevice(), test.m_nInput);
        EXPECT_EQ(chosen.outputDevice(), test.m_nOutput);
        EXPECT_EQ(chosen.dutDevice(), test.m_nDUT);
        EXPECT_EQ(choice.m_sInputName, test.m_sInputAfter);
        EXPECT_EQ(choice.m_sOutputName, test.m_sOutputAfter);
        EXPECT_EQ(choice.m_sDUTName, test.m_sDUTAfter);
    }
}

TEST(AudioDevices, takesTheDefaultRateWhereTheInputRefusesTheOneAsked)
{
    const std::tuple<const char*, int, double, double> cases[] = {
        {"mic", 0, 44100.0, 44100.0},
        {"mic", 0, 96000.0, 48000.0},
        {"mic", 1, 44100.0, 48000.0},
        {"none", -1, 96000.0, 96000.0}, // nothing to ask
    };
    for (const auto& [sInput, nTestedDevice, dAsked, dExpected] : cases) {
        CPretendedAudioSystem system;
        system.m_devices = {device("mic", 2, 0), device("speaker", 0, 2)};
        system.m_nTestedDevice = nTestedDevice;
        CAudioDevices chosen(system);
        CAudioDeviceChoice choice{sInput, "speaker", "None", dAsked};
        (void)chosen.choose(choice);
        EXPECT_EQ(choice.m_dSampleRate, dExpected) << sInput << " " << dAsked;
    }
}

TEST(AudioDevices, pairsEveryStartOfTheAudioSystemWithOneEnd)
{
    CPretendedAudioSystem system;
    system.m_devices = {device("card", 2, 2)};
    {
        CAudioDevices chosen(system);
        CAudioDeviceChoice choice{"card", "card", "card"};
        system.m_bWorks = false;
        EXPECT_EQ(chosen.choose(choice), "Could not initialize the Port Audio System.");
        EXPECT_FALSE(chosen.isAvailable());
        EXPECT_EQ(chosen.inputDevice(), -1);
        EXPECT_EQ(choice.m_sInputName, "card");
        system.m_bWorks = true;
        EXPECT_EQ(chosen.choose(choice), "");
        EXPECT_EQ(chosen.choose(choice), "");
        EXPECT_TRUE(chosen.isAvailable());
        EXPECT_EQ(system.m_nUses, 1);
    }
    EXPECT_EQ(system.m_nUses, 0);
}

} // namespace
} // namespace velmora::test
