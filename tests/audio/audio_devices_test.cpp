#include "audio/audio_devices.h"
#include "support/fake_audio_system.h"

#include <gtest/gtest.h>
#include <tuple>
#include <utility>

namespace velmora::test {
namespace {

constexpr const char* NOT_UP = "Could not initialize the Port Audio System.";
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
        CFakeAudioSystem system;
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
    const std::tuple<const char*, double, double> cases[] = {
        {"mic", 44100.0, 44100.0},
        {"mic", 96000.0, 48000.0},
        {"mono", 44100.0, 48000.0}, // has not the two channels
        {"none", 96000.0, 96000.0}, // nothing to ask
    };
    for (const auto& [sInput, dAsked, dExpected] : cases) {
        CFakeAudioSystem system;
        system.m_devices = {device("mic", 2, 0), device("speaker", 0, 2), device("mono", 1, 0)};
        system.m_refusedRates = {96000.0};
        system.m_nDefaultInput = -1;
        CAudioDevices chosen(system);
        CAudioDeviceChoice choice{sInput, "speaker", "None", dAsked};
        (void)chosen.choose(choice);
        EXPECT_EQ(choice.m_dSampleRate, dExpected) << sInput << " " << dAsked;
    }
}

TEST(AudioDevices, pairsEveryStartOfTheAudioSystemWithOneEnd)
{
    CFakeAudioSystem system;
    {
        CAudioDevices chosen(system);
        CAudioDeviceChoice choice{"card", "card", "card"};
        system.m_errors["initialize"] = -9999;
        EXPECT_EQ(chosen.choose(choice), NOT_UP);
        EXPECT_FALSE(chosen.isAvailable());
        EXPECT_EQ(chosen.inputDevice(), -1);
        EXPECT_EQ(choice.m_sInputName, "card");
        system.m_errors.clear();
        EXPECT_EQ(chosen.rescan(choice), "");
        EXPECT_EQ(chosen.choose(choice), "");
        EXPECT_TRUE(chosen.isAvailable());
        EXPECT_FALSE(chosen.supportedRates(0, 0).empty());
        EXPECT_EQ(system.uses(), 1);
    }
    EXPECT_EQ(system.uses(), 0);
}

TEST(AudioDevices, findsTheNamesOfTheSettingsAgainAfterARescan)
{
    CFakeAudioSystem system;
    system.m_devices = {device("mic", 2, 0), device("speaker", 0, 2)};
    system.m_nDefaultInput = 0;
    system.m_nDefaultOutput = 1;
    CAudioDevices chosen(system);
    CAudioDeviceChoice choice{"mic", "speaker", "speaker"};
    ASSERT_EQ(chosen.choose(choice), "");

    system.m_afterRescan = {device("new", 2, 2), device("speaker", 0, 2), device("mic", 2, 0)};
    ASSERT_EQ(chosen.rescan(choice), "");
    EXPECT_EQ(chosen.inputDevice(), 2);
    EXPECT_EQ(chosen.devices().size(), 3U);

    system.m_errors["rescan"] = -9999;
    system.m_afterRescan.emplace();
    EXPECT_EQ(chosen.rescan(choice), NOT_UP);
    EXPECT_EQ(chosen.inputDevice(), 2);

    system.m_errors.clear();
    system.m_afterRescan = {device("new", 0, 2)};
    system.m_nDefaultInput = -1;
    system.m_nDefaultOutput = 0;
    EXPECT_EQ(chosen.rescan(choice), NO_INPUT);
    EXPECT_EQ(choice.m_sInputName + choice.m_sOutputName + choice.m_sDUTName, "NonenewNone");
    EXPECT_EQ(chosen.outputDevice(), 0);
}

TEST(AudioDevices, testsRatesWithAllChannelsAndTakesLatencyFromTheDevice)
{
    CFakeAudioSystem system;
    system.m_devices = {device("mic", 2, 0), device("speaker", 0, 2)};
    for (const double dRate : CAudioDevices::usualRates())
        if (dRate != 44100.0 && dRate != 192000.0)
            system.m_refusedRates.insert(dRate);
    CAudioDevices chosen(system);
    CAudioDeviceChoice choice;
    (void)chosen.choose(choice);
    const std::vector<double> both = {44100.0, 192000.0};
    EXPECT_EQ(chosen.supportedRates(0, 1), both);
    EXPECT_EQ(chosen.supportedRates(-1, 1), both);
    const std::pair<int, int> impossible[] = {{-1, -1}, {2, -1}, {1, 0}};
    for (const auto& [nInput, nOutput] : impossible)
        EXPECT_TRUE(chosen.supportedRates(nInput, nOutput).empty()) << nInput << " " << nOutput;
    system.m_errors["initialize"] = -9999;
    EXPECT_FALSE(chosen.isRateSupported(0, 1, 44100.0));

    CAudioDeviceInfo info;
    info.m_dDefaultLowInputLatency = 0.1;
    info.m_dDefaultHighInputLatency = 0.2;
    info.m_dDefaultLowOutputLatency = 0.3;
    info.m_dDefaultHighOutputLatency = 0.4;
    EXPECT_EQ(streamLatency(info, true, true, 1), 0.1);
    EXPECT_EQ(streamLatency(info, true, false, 2), 0.4);
    EXPECT_EQ(streamLatency(info, false, true, 0), 0.0);
    EXPECT_EQ(streamLatency(info, false, false, 3), 0.4 * 3);
}

} // namespace
} // namespace velmora::test
