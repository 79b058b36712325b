#include "cli_program.h"

namespace velmora::test {

namespace {

using CCliPlugInTest = CCliTest;

TEST_F(CCliPlugInTest, ScansAFolder)
{
    std::filesystem::create_directory(m_folder / "plugins");
    for (const char* pName : {"Gain", "ResonantFilter"})
        std::filesystem::copy(example(pName), m_folder / "plugins");
    std::filesystem::copy(example("Gain"), m_folder / "plugins/Twin.so");
    writeFile(m_folder / "plugins/Text.so", "not a library\n");
    writeFile(m_folder / "plugins/readme.txt", "no business of ours\n");

    const CJsonValue result = runForJson({"plugin", "scan", "plugins"});
    ASSERT_EQ(result["plugIns"].elements().size(), 4U);
    const std::vector<std::array<std::string, 3>> expected = {
        {"Gain.so", "Gain", "loaded"},
        {"ResonantFilter.so", "ResonantFilter", "loaded"},
        {"Text.so", "", "load failed"},
        {"Twin.so", "Gain", "duplicate"}};
    for (std::size_t u = 0; u < expected.size(); ++u) {
        const CJsonValue& entry = result["plugIns"][u];
        EXPECT_EQ(entry["file"].text(), (m_folder / "plugins" / expected[u][0]).string());
        EXPECT_EQ(entry["m_PlugInName"].text(), expected[u][1]);
        EXPECT_EQ(entry["status"].text(), expected[u][2]);
        EXPECT_EQ(entry["reason"].text().empty(), expected[u][2] == "loaded");
        if (!expected[u][1].empty())
            EXPECT_EQ(entry["version"].number(), 61);
        else
            EXPECT_EQ(entry["version"].m_eKind, CJsonValue::EKind::null);
    }
    const CProgramEnd table = run({"plugin", "scan", "plugins"});
    EXPECT_NE(table.m_sErrors.find("The following duplicate Plug-Ins were NOT loaded:"), std::string::npos);
    EXPECT_NE(table.m_sOutput.find("Twin.so"), std::string::npos);

    // Without a folder, the one that the workbench scans.
    EXPECT_TRUE(runForJson({"plugin", "scan"})["plugIns"].elements().empty());
    std::filesystem::copy(example("Gain"), userFolder() / "PlugIns");
    EXPECT_EQ(runForJson({"plugin", "scan"})["plugIns"].elements().size(), 1U);
    expectFailure({"plugin", "scan", "nowhere"}, 1, {(m_folder / "nowhere").string()});
}

TEST_F(CCliPlugInTest, InspectPrintsEveryField)
{
    const CJsonValue result =
        runForJson({"plugin", "inspect", unruly(), "--set", "7=1.9", "--set", "8=-90.5"});
    std::string sMembers;
    for (const std::string& sMember : result.members())
        sMembers += sMember + " ";
    EXPECT_EQ(sMembers,
              "controls file m_PlugInName m_bEnableMIDIControl m_bOutputOnlyPlugIn m_bUseCustomVSTGUI "
              "m_bUserCustomGUI m_bWantAllMIDIMessages m_bWantBuffers m_bWantChannelBuffers m_bWantIRs "
              "m_nIRLength m_uMaxInputChannels m_uMaxOutputChannels m_uPlugInVersion presets ");
    EXPECT_EQ(result["file"].text(), unruly());
    EXPECT_EQ(result["m_PlugInName"].text(), "Unruly");
    EXPECT_EQ(result["m_uPlugInVersion"].number(), 61);
    EXPECT_FALSE(result["m_bWantBuffers"].boolean());

    ASSERT_EQ(result["controls"].elements().size(), 2U);
    const CJsonValue& mood = result["controls"][0];
    EXPECT_EQ(mood["uControlId"].number(), 7);
    EXPECT_EQ(mood["uControlType"].number(), 104);
    EXPECT_EQ(mood["uUserDataType"].number(), 3);
    EXPECT_EQ(mood["cEnumeratedList"].text(),
              "Calm,Fault,Abort,Overflow,Slow,Chatty,Leave,Throw,Divide,Jump,Trap");
    EXPECT_EQ(mood["value"].number(), 1);
    const CJsonValue& angle = result["controls"][1];
    EXPECT_EQ(angle["m_sName"].text(), "Angle");
    EXPECT_EQ(angle["m_sUnits"].text(), "\xC2\xB0");
    EXPECT_EQ(angle["cVariableName"].text(), "m_dAngle");
    EXPECT_EQ(angle["fUserDisplayDataLoLimit"].number(), -180);
    EXPECT_EQ(angle["fUserDisplayDataHiLimit"].number(), 180);
    EXPECT_EQ(angle["value"].number(), -90.5);
    EXPECT_EQ(angle["m_sValue"].text(), "-90.500");
    EXPECT_EQ(angle["m_nPos"].number(), 63);
    EXPECT_NEAR(angle["m_fNormalized"].number(), 89.5 / 360.0, 1e-7);

    const CProgramEnd text = run({"plugin", "inspect", example("PolySynth")});
    EXPECT_EQ(text.m_nExitStatus, 0) << text.m_sErrors;
    EXPECT_NE(text.m_sOutput.find("m_bOutputOnlyPlugIn       yes"), std::string::npos) << text.m_sOutput;
    EXPECT_NE(text.m_sOutput.find("Presets: Init, "), std::string::npos) << text.m_sOutput;
}

TEST_F(CCliPlugInTest, AppliesOptionsInOrderWithTheLawsOfThePanel)
{
    const auto valueOf = [&](const std::vector<std::string>& options) {
        std::vector<std::string> words = {"plugin", "inspect", "--plugin", unruly()};
        words.insert(words.end(), options.begin(), options.end());
        return runForJson(words)["controls"][1]["value"].number();
    };
    EXPECT_NEAR(valueOf({}), 0.1, 1e-7);
    EXPECT_EQ(valueOf({"--set-position", "8=256"}), 180.0);
    EXPECT_EQ(valueOf({"--set-position", "8=0"}), -180.0);
    EXPECT_EQ(valueOf({"--set-position", "8=0", "--set", "8=20"}), 20.0);
    EXPECT_EQ(valueOf({"--set", "8=20", "--set-position", "8=0"}), -180.0);
    EXPECT_EQ(valueOf({"--set", "8=1000"}), 180.0);   // beyond the limit
    EXPECT_EQ(valueOf({"--set", "8=45 \xB0"}), 45.0); // units and all
}

TEST_F(CCliPlugInTest, RefusesWhatCannotBeLoadedOrSet)
{
    writeFile(m_folder / "Text.so", "not a library\n");
    expectFailure({"plugin", "inspect", "nowhere.so"}, 1, {"Path not found for the DLL: ", "nowhere.so"});
    expectFailure({"plugin", "inspect", "Text.so"}, 1, {"Error loading DLL", "Text.so: is not a shared"});
    const std::string sStale = std::string(HOST_TEST_PLUGINS) + "/no_version.so";
    expectFailure({"plugin", "inspect", sStale, "--answer=yes"}, 1,
                  {"initiate a Rebuild?", "Answered with Yes.", "Rebuilding is not possible from here"});
    expectFailure({"plugin", "inspect"}, 2, {"FILE is missing", "Usage:"});
    expectFailure({"plugin", "inspect", unruly(), "--plugin", unruly()}, 2, {"twice", "Usage:"});
    expectFailure({"plugin", "inspect", unruly(), "--set", "9=1"}, 1,
                  {"no control 9", "\n  7  Mood\n", "\n  8  Angle\n"});
    expectFailure({"plugin", "inspect", unruly(), "--set-position", "9=1"}, 1, {"no control 9"});
    expectFailure({"plugin", "inspect", unruly(), "--set", "8=loud"}, 1, {"Angle", "\"loud\""});
    expectFailure({"measure", "step", "--set", "8=1", "--plugin", unruly()}, 1, {"--plugin ahead of it"});
}

TEST_F(CCliPlugInTest, TakesABuiltInModuleByTheBeginningOfItsName)
{
    const CJsonValue eq = runForJson({"plugin", "inspect", "--module", "ten", "--set", "602=-6"});
    EXPECT_EQ(eq["m_PlugInName"].text(), "Ten Band EQ + shelving");
    EXPECT_EQ(eq["file"].m_eKind, CJsonValue::EKind::null);
    ASSERT_EQ(eq["controls"].elements().size(), 12U);
    EXPECT_EQ(eq["controls"][2]["m_sName"].text(), "125 Hz");
    EXPECT_EQ(eq["controls"][2]["value"].number(), -6.0);
    EXPECT_NE(run({"plugin", "inspect", "--module", "ten"}).m_sOutput.find("Hi Shelf"), std::string::npos);

    // Limits and presets in the words in which they are given.
    EXPECT_NE(run({"plugin", "inspect", "--module", "Stereo"}).m_sOutput.find("-100    100"),
              std::string::npos);
    const CJsonValue exciter = runForJson({"plugin", "inspect", "--module", "HF Exciter XM1", "--set",
                                           "600=900", "--preset", "HF_Exciter_XM1.pre"});
    EXPECT_EQ(exciter["presets"][0].text(), "HF_Exciter_XM1.pre");
    EXPECT_EQ(exciter["controls"][0]["value"].number(), 561.0);
    expectFailure({"plugin", "inspect", "--module", "HF Exciter XM1", "--preset", "Loud"}, 1,
                  {"no preset Loud", "HF_Exciter_XM1.pre"});
    expectFailure({"plugin", "inspect", "--module", "Volume", "--preset", "Loud"}, 1,
                  {"Volume has no presets"});

    // Halves the input: level and feedback 0, half of it dry.
    const CJsonValue delay =
        runForJson({"measure", "impulse", "--module", "StereoDelay", "--set", "602=-96", "--rate", "48000"});
    EXPECT_NEAR(delay["right"][0].number(), 0.5 * 32767.0 / 32768.0, 1e-7);

    expectFailure({"measure", "step", "--module", "S"}, 1,
                  {"more than one", "StereoDelay", "SmoothingFilter"});
    expectFailure({"measure", "step", "--module", "Chorus"}, 1, {"no built-in module", "MultiFilter"});
    expectFailure({"measure", "step", "--module", "Volume", "--set", "7=1"}, 1,
                  {"The controls of Volume", "600"});
    expectFailure({"measure", "step", "--module", "Volume", "--plugin", example("Gain")}, 1, {"not both"});
    expectFailure({"plugin", "inspect", example("Gain"), "--module", "Volume"}, 2, {"--module"});
}

// The JSON object stays whole whatever a plug-in prints, and its words are heard unless unwanted.
TEST_F(CCliPlugInTest, KeepsThePlugInsTextsOffStandardOutput)
{
    const std::vector<std::string> words = {"--json", "measure", "step", "--plugin",
                                            unruly(), "--set",   "7=5"};
    const CProgramEnd heard = run(words);
    EXPECT_EQ(heard.m_nExitStatus, 0);
    EXPECT_NO_THROW((void)CJsonValue::parse(heard.m_sOutput));
    EXPECT_NE(heard.m_sErrors.find("    told by the plug-in\n"), std::string::npos) << heard.m_sErrors;
    EXPECT_NE(heard.m_sErrors.find("printed by the plug-in\n"), std::string::npos) << heard.m_sErrors;

    auto quietWords = words;
    quietWords.emplace_back("--quiet");
    EXPECT_EQ(run(quietWords).m_sErrors.find("told by"), std::string::npos);
}

} // namespace

} // namespace velmora::test
