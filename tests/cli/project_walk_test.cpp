#include "cli_program.h"

#include <cmath>
#include <cstdlib>

namespace velmora::test {

namespace {

// The shell blocks of a page, one after the other.
std::string shellBlocks(const std::string& sPage)
{
    constexpr std::string_view OPENING = "\n```sh\n";
    constexpr std::string_view CLOSING = "\n```\n";
    std::string sScript;
    for (auto uAt = sPage.find(OPENING); uAt != std::string::npos; uAt = sPage.find(OPENING, uAt)) {
        uAt += OPENING.size();
        const auto uEnd = sPage.find(CLOSING, uAt);
        sScript += sPage.substr(uAt, uEnd - uAt) + "\n";
        uAt = uEnd;
    }
    return sScript;
}

// Runs the lines of docs/projects.md as a reader types them, and looks at what they leave behind.
class CProjectWalkTest : public CCliTest
{
  protected:
    void walk()
    {
        const std::filesystem::path sources = SOURCE_FOLDER;
        std::filesystem::copy(sources / "examples/audio/demo.wav", m_folder / "voice.wav");
        const std::string sScript = shellBlocks(readFile(sources / "docs/projects.md"));
        const std::string sPath = std::filesystem::path(CLI_PROGRAM).parent_path().string();
        m_start.m_workingFolder = m_folder.path();
        m_start.m_environment = {{"APPDATA", m_userBase.path().string()},
                                 {"LC_ALL", "C"},
                                 {"PATH", sPath + ":" + std::getenv("PATH")}};
        const CProgramEnd end = runProgram("/bin/sh", {"-eu", "-c", sScript}, m_start);
        ASSERT_EQ(end.m_nExitStatus, 0) << end.m_sOutput << "\n" << end.m_sErrors;
        m_sOutput = end.m_sOutput;
    }

    std::string m_sOutput;
};

TEST_F(CProjectWalkTest, LeadsFromAnEmptyFolderToCompiledPresets)
{
    ASSERT_NO_FATAL_FAILURE(walk());
    const std::string sPlugIn = (userFolder() / "PlugIns/Softener.so").string();

    // Every kind of control and variable, but for what was removed and renamed in the end.
    const CJsonValue info = runForJson({"project", "info", "Softener/Softener.prj"});
    std::string sControls;
    for (const CJsonValue& control : info["controls"].elements()) {
        const bool bMeter = control["uControlType"].number() == 103;
        sControls += std::to_string(static_cast<int>(control["uControlType"].number())) + ":" +
                     std::to_string(static_cast<int>(control["uUserDataType"].number())) + ":" +
                     control[bMeter ? "cMeterVariableName" : "cVariableName"].text() + " ";
    }
    EXPECT_EQ(sControls, "100:1:m_fCorner 100:1:m_fDrive 100:0:m_nBits 100:2:m_dOutput 100:3:m_uPoles "
                         "100:1:m_fTrim 102:3:m_uSide 102:3:m_uBypass 103:1:m_fLevel 104:3:m_uChannels "
                         "105:0:m_nTake 105:1:m_fSpread 105:2:m_dTuning 105:3:m_uColour ");
    EXPECT_EQ(info["m_sCompanyName"].text(), "Loud Noises");

    // The library holds the presets, and its code is the class of the page.
    const CJsonValue plugIn = runForJson({"plugin", "inspect", sPlugIn});
    ASSERT_EQ(plugIn["presets"].elements().size(), 3U);
    EXPECT_EQ(plugIn["presets"][1].text(), "Warm");
    EXPECT_NE(m_sOutput.find("Presets: Factory Preset, Warm, Bright\n"), std::string::npos);
    const CJsonValue warm = runForJson({"preset", "load", "Warm", "--plugin", sPlugIn, "--project",
                                        "Softener/Softener.prj", "--set", "3=-6"});
    EXPECT_EQ(warm["controls"][0]["value"].number(), 400);
    EXPECT_EQ(warm["controls"][1]["value"].number(), 12);
    EXPECT_EQ(warm["controls"][3]["value"].number(), -6); // behind the preset
    const CJsonValue pole = runForJson({"measure", "frequency", "--length", "1024", "--rate", "51200",
                                        "--plugin", sPlugIn, "--set", "0=500", "--set", "3=6"});
    EXPECT_NEAR(pole["leftPeak"]["dcdB"].number(), 6.0, 0.01);
    EXPECT_NEAR(pole["left"][10].number(), 6.0 - 10.0 * std::log10(2.0), 0.05); // 500 Hz, where it is -3 dB

    // The file was processed, and earlier texts can be had.
    EXPECT_NE(readFile(m_folder / "soft.wav"), readFile(m_folder / "voice.wav"));
    EXPECT_NE(readFile(m_folder / "soft.wav"), readFile(m_folder / "warm.wav"));
    EXPECT_EQ(readFile(m_folder / "soft.wav").size(), readFile(m_folder / "voice.wav").size());
    EXPECT_NE(m_sOutput.find("Rename m_fCutoff to m_fCorner"), std::string::npos);
}

} // namespace

} // namespace velmora::test
