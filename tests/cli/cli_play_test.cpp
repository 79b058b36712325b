#include "cli/device_options.h"
#include "cli/stream_display.h"
#include "cli_program.h"
#include "document/tonbox_doc.h"
#include "support/wave_bytes.h"

namespace velmora::test {

namespace {

class CCliPlayTest : public CCliTest
{
};

// What is found ahead of any sound, on machines with and without devices alike.
TEST_F(CCliPlayTest, RefusesWhatCannotPlayAnywhere)
{
    writeFile(m_folder / "in.wav", waveBytes({}, std::vector<double>(2000, 0.5)));
    const std::string sNobody = "--output-device=no such device";
    expectFailure({"play", "in.wav", sNobody}, 1, {"There is no audio output device"});
    expectFailure({"tone", sNobody}, 1, {"There is no audio output device"});
    expectFailure({"listen", "--input-device=no such device", sNobody}, 1, {"There is no audio "});
    expectFailure({"play", "in.wav", "--user-folder", "in.wav/user", sNobody}, 1, {"in.wav/user"});

    expectFailure({"play"}, 2, {"The argument IN is missing."});
    expectFailure({"play", "in.wav", "--watch"}, 2, {"The option --watch needs the option --plugin."});
    expectFailure({"play", "in.wav", "--listen"}, 2, {"The option --listen needs the option --sidechain."});
    expectFailure({"play", "in.wav", "--rate", "48000"}, 2, {"Unknown option --rate."});
    expectFailure({"play", "in.wav", "--seconds", "0"}, 2, {"must be a number from 0.001"});
    expectFailure({"listen", "--sidechain", "in.wav"}, 2, {"Unknown option --sidechain."});
    expectFailure({"listen", "--frames", "8193"}, 2, {"must be a whole number from 1 to 8192"});
    expectFailure({"tone", "--kind", "hum"}, 2, {"sinusoid"});
}

TEST(DeviceOptions, NameIsWholeOrAnUnambiguousBeginning)
{
    const auto device = [](const char* pName, int nInputs, int nOutputs) {
        CAudioDeviceInfo info;
        info.m_sName = pName;
        info.m_nMaxInputChannels = nInputs;
        info.m_nMaxOutputChannels = nOutputs;
        return info;
    };
    const std::vector<CAudioDeviceInfo> devices = {device("HDA Intel: ALC257 (hw:0,0)", 2, 2),
                                                   device("HDA Intel: HDMI (hw:0,3)", 0, 8),
                                                   device("Microphone", 1, 0),
                                                   device("USB", 2, 2),
                                                   device("USB", 0, 2),
                                                   device("USB Two", 2, 2)};
    struct CCase
    {
        const char* m_pTyped;
        bool m_bInput;
        std::optional<std::string> m_name;
        const char* m_pError;
    };
    const CCase cases[] = {
        {"USB", false, "USB", ""}, // whole, though another begins so
        {"usb t", false, "USB Two", ""},
        {"hda", true, "HDA Intel: ALC257 (hw:0,0)", ""}, // the other one has no input
        {"hda", false, {}, "several audio output devices"},
        {"Mic", true, "Microphone", ""},
        {"Mic", false, {}, "no audio output device whose name begins with \"Mic\""},
        {"USB Two and more", true, {}, "no audio input device"},
    };
    for (const CCase& single : cases) {
        std::string sError;
        EXPECT_EQ(cli::deviceNamed(devices, single.m_pTyped, single.m_bInput, sError), single.m_name)
            << single.m_pTyped;
        EXPECT_NE(sError.find(single.m_pError), std::string::npos) << sError;
    }
}

TEST(StreamDisplay, FitsTheTerminal)
{
    cli::CStreamPicture picture;
    picture.m_dSeconds = 67.9;
    picture.m_meters = {0.5F, 0.01F, 1.0F, 0.0F, 0.25F, 2.0F};
    picture.m_dLoad = 0.126;
    picture.m_uUnderruns = 3;
    EXPECT_EQ(cli::streamLine(picture, 79),
              "1:07  in ####....|#.......  out ########|........  load  12.6 %  underruns 3");
    picture.m_dLength = 600.0;
    picture.m_bSidechain = true;
    EXPECT_EQ(cli::streamLine(picture, 79),
              "1:07/10:00  in ##.|#..  out ###|...  side #..|###  load  12.6 %  underruns 3");
    EXPECT_EQ(cli::streamLine(picture, 50), "1:07/10:00  load  12.6 %  underruns 3");
    for (std::size_t uColumns = 0; uColumns < 200; ++uColumns)
        EXPECT_LE(cli::streamLine(picture, uColumns).size(), uColumns);
}

} // namespace

} // namespace velmora::test
