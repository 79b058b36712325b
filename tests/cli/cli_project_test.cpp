#include "base/archive.h"
#include "cli_program.h"
#include "project/dsp_project.h"
#include "project/project_file.h"
#include "project/project_schema.h"

#include <algorithm>
#include <thread>

namespace velmora::test {

namespace {

class CCliProjectTest : public CCliTest
{
  protected:
    void create(const std::string& sName) { runForJson({"project", "create", sName, "--folder", "."}); }

    static std::string fileOf(const std::string& sName) { return sName + "/" + sName + ".prj"; }

    CJsonValue onProject(const std::string& sCommand, std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), {"project", sCommand, fileOf("First")});
        return runForJson(std::move(arguments));
    }
};

TEST_F(CCliProjectTest, CreatesWhatTheOptionsAskFor)
{
    create("First");
    const CJsonValue made = runForJson({"project", "create", "Second", "--folder", "deep/er", "--company",
                                        "Me", "--latency", "64", "--synth", "--custom-gui", "--sidechain",
                                        "--fft", "--stock", "delay", "--module", fileOf("First")});
    const std::filesystem::path folder = m_folder / "deep/er/Second";
    EXPECT_EQ(made["folder"].text(), folder.string());
    EXPECT_EQ(made["project"].text(), (folder / "Second.prj").string());
    std::string sFiles;
    for (const CJsonValue& file : made["files"].elements())
        sFiles += file.text() + "\n";
    for (const char* pName : {"Second.h", "Second.cpp", "plugin.h", "Delay.cpp", "FFT.h", "First.cpp"})
        EXPECT_NE(sFiles.find((folder / pName).string() + "\n"), std::string::npos) << pName << " in\n"
                                                                                    << sFiles;
    const CJsonValue info = runForJson({"project", "info", made["project"].text()});
    EXPECT_EQ(info["m_sCompanyName"].text(), "Me");
    EXPECT_EQ(info["m_fPlugInEx"][0].number(), 64);
    for (const char* pFlag : {"m_bOutputOnlyPlugIn", "m_bUseCustomVSTGUI", "m_bSidechainEnabled"})
        EXPECT_TRUE(info[pFlag].boolean()) << pFlag;

    // Without a folder, in the one of the settings.
    runForJson({"project", "create", "Third"});
    EXPECT_TRUE(std::filesystem::exists(userFolder() / "VelmoraProjects/Third/Third.prj"));

    expectFailure({"project", "create", "First", "--folder", "."}, 1, {"This project already exists;"});
    expectFailure({"project", "create", "No_1"}, 1, {"Invalid Project Name", "suggest using No instead"});
    expectFailure({"project", "create", "X", "--latency", "-1"}, 1, {"Latency can not be less than zero."});
    expectFailure({"project", "create", "X", "--stock", "Nothing"}, 1, {"no stock object", "OnePoleLPF"});
    expectFailure({"project", "create", "X", "--module", "nowhere.prj"}, 1,
                  {"no project file", "nowhere.prj"});
    expectFailure({"project", "create", "X", "--solution", "nowhere.sln"}, 1, {"no solution file"});
    EXPECT_FALSE(std::filesystem::exists(userFolder() / "VelmoraProjects/X"));
    expectFailure({"project", "build", "First"}, 1, {"is a folder"});
    expectFailure({"project", "info", "nowhere.prj"}, 1, {"There is no project file"});
    expectFailure({"project", "create", "X", "--compiler", "5000"}, 1, {"no compiler with the id 5000"});
    expectFailure({"project", "create", "X", "--vst-compatible"}, 1, {"VST Files Not Found."});
}

TEST_F(CCliProjectTest, PrintsEveryFieldOfAnySchema)
{
    CDSPProject project;
    project.m_sProjectName = "Old";
    project.setTextLabel(1, "a label");
    for (int n = 0; n < MAX_JS_PROGRAM_STEPS * MAX_JS_PROGRAM_STEP_VARS; ++n)
        project.m_pVectorJSProgram[n] = static_cast<float>(n);
    CUICtrl control;
    control.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
    control.uControlId = 7;
    control.cControlName = "Angle";
    control.cControlUnits = "\xB0"; // Latin-1
    control.cVariableName = "m_fAngle";
    control.fInitUserFloatValue = 0.1F;
    project.m_UIControlList.append(control);

    std::string sBytes;
    CArchive archive(sBytes);
    storeProject(archive, project, 24);
    writeFile(m_folder / "old.prj", sBytes);
    CRecordingDialogs dialogs;
    ASSERT_TRUE(saveProject(project, m_folder / "new.prj", dialogs));

    const CJsonValue info = runForJson({"project", "info", "new.prj"});
    EXPECT_EQ(info.members().size(), 45U);
    EXPECT_EQ(info["schema"].number(), 31);
    EXPECT_EQ(info["m_TextLabels"][0].m_eKind, CJsonValue::EKind::null);
    EXPECT_EQ(info["m_TextLabels"][1].text(), "a label");
    ASSERT_EQ(info["m_pVectorJSProgram"].elements().size(), 112U);
    EXPECT_EQ(info["m_pVectorJSProgram"][111].number(), 111);
    EXPECT_EQ(info["m_JS_YCtrl"]["uMIDIControlName"].number(), 17);
    EXPECT_EQ(info["m_uGUIDWords"][0].number(), 0x845207E6);
    EXPECT_EQ(info["m_uX_TrackPadIndex"].number(), 4294967295.0);
    ASSERT_EQ(info["controls"].elements().size(), 1U);
    const CJsonValue& record = info["controls"][0];
    EXPECT_EQ(record.members().size(), 34U);
    EXPECT_EQ(record["cControlUnits"].text(), "\xC2\xB0");
    EXPECT_EQ(record["uControlTheme"].elements().size(), 32U);
    EXPECT_NE(
        run({"--json", "project", "info", "new.prj"}).m_sOutput.find("\"fInitUserFloatValue\":0.100000001,"),
        std::string::npos);

    const CJsonValue converted = runForJson({"project", "convert", "old.prj", "converted.prj"});
    EXPECT_EQ(converted["from"].number(), 24);
    EXPECT_EQ(converted["to"].number(), 31);
    EXPECT_EQ(runForJson({"project", "info", "converted.prj"})["controls"][0]["cVariableName"].text(),
              "m_fAngle");
    writeFile(m_folder / "bad.prj", sBytes.substr(0, 40));
    expectFailure({"project", "info", "bad.prj"}, 1, {"bad.prj"});
    expectFailure({"project", "convert", "bad.prj", "out.prj"}, 1, {"bad.prj"});
    EXPECT_FALSE(std::filesystem::exists(m_folder / "out.prj"));
}

TEST_F(CCliProjectTest, OptionsFillTheRecord)
{
    create("First");
    struct CEdit
    {
        std::vector<std::string> m_options; // of add-control, behind the slot; then of edit-control
        std::vector<std::string> m_later;
        std::vector<std::pair<const char*, double>> m_fields;
    };
    const std::vector<std::pair<std::string, CEdit>> edits = {
        {"0",
         {{"--type", "double", "--lo", "-60", "--hi", "12", "--init", "-3.5", "--log", "--midi", "16,176,7"},
          {"--linear", "--midi", "2,bend"},
          {{"uControlType", 100},
           {"uUserDataType", 2},
           {"fUserDisplayDataLoLimit", -60},
           {"fUserDisplayDataHiLimit", 12},
           {"fInitUserDoubleValue", -3.5},
           {"bLogSlider", 0},
           {"bMIDIControl", 1},
           {"uMIDIControlChannel", 1},
           {"uMIDIControlCommand", 224},
           {"uMIDIControlName", 7}}}},
        {"39",
         {{"--exp", "--lo", "20", "--midi", "1,cc,1"},
          {"--midi", "off"},
          {{"bExpSlider", 1}, {"bMIDIControl", 0}}}},
        {"44",
         {{"--list", "ONE,TWO,THREE", "--init", "2"},
          {"--units", ""},
          {{"uControlType", 102}, {"uUserDataType", 3}, {"fUserDisplayDataHiLimit", 2}}}},
        {"48", {{"--init", "1"}, {}, {{"uControlType", 102}, {"fInitUserUINTValue", 1}}}},
        {"59",
         {{"--detector", "2", "--log-meter", "--invert", "--attack", "5", "--release", "300"},
          {"--linear-meter", "--upright"},
          {{"uControlType", 103},
           {"uDetectorMode", 2},
           {"bLogMeter", 0},
           {"bUpsideDownMeter", 0},
           {"fMeterAttack_ms", 5},
           {"fMeterRelease_ms", 300}}}},
        {"73", {{"--list", "LEFT,RIGHT"}, {}, {{"uControlType", 104}, {"fUserDisplayDataHiLimit", 1}}}},
        {"1123",
         {{"--hi", "9"}, {}, {{"uControlType", 100}, {"uUserDataType", 1}, {"fUserDisplayDataHiLimit", 9}}}},
    };
    for (const auto& [sSlot, edit] : edits) {
        SCOPED_TRACE(sSlot);
        std::vector<std::string> added = {"--slot",    sSlot,        "--name",
                                          "N" + sSlot, "--variable", "m_x" + sSlot};
        added.insert(added.end(), edit.m_options.begin(), edit.m_options.end());
        onProject("add-control", added);
        std::vector<std::string> edited = {sSlot, "--name", "M" + sSlot};
        edited.insert(edited.end(), edit.m_later.begin(), edit.m_later.end());
        const CJsonValue record = onProject("edit-control", edited);
        EXPECT_EQ(record["uControlId"].number(), std::stod(sSlot));
        EXPECT_EQ(record["cControlName"].text(), "M" + sSlot);
        EXPECT_EQ(record[sSlot == "59" ? "cMeterVariableName" : "cVariableName"].text(), "m_x" + sSlot);
        for (const auto& [pField, dValue] : edit.m_fields) {
            const CJsonValue& field = record[pField];
            const bool bFlag = field.m_eKind == CJsonValue::EKind::boolean;
            EXPECT_EQ(bFlag ? field.boolean() : field.number(), dValue) << pField;
        }
    }
    EXPECT_EQ(onProject("remove-control", {"59"})["cMeterVariableName"].text(), "m_x59");
    EXPECT_EQ(onProject("info", {})["controls"].elements().size(), edits.size() - 1);
}

// Commands on one project wait for each other, so that none undoes what another did.
TEST_F(CCliProjectTest, CommandsAtTheSameTimeLoseNothing)
{
    create("First");
    const CProgramStart start = m_start;
    std::vector<std::thread> commands;
    for (const char* pSlot : {"0", "1", "2", "3", "4", "5"})
        commands.emplace_back([&start, sSlot = std::string(pSlot)] {
            const CProgramEnd end = runProgram(CLI_PROGRAM,
                                               {"project", "add-control", fileOf("First"), "--slot", sSlot,
                                                "--name", "N" + sSlot, "--variable", "m_x" + sSlot},
                                               start);
            EXPECT_EQ(end.m_nExitStatus, 0) << end.m_sErrors;
        });
    for (std::thread& command : commands)
        command.join();
    EXPECT_EQ(onProject("info", {})["controls"].elements().size(), commands.size());
    const std::string sHeader = readFile(m_folder / "First/First.h");
    for (const char* pVariable : {"m_x0;", "m_x1;", "m_x2;", "m_x3;", "m_x4;", "m_x5;"})
        EXPECT_NE(sHeader.find(pVariable), std::string::npos) << pVariable;
}

TEST_F(CCliProjectTest, RefusesWithTheDialogsOwnWords)
{
    create("First");
    onProject("add-control", {"--slot", "0", "--name", "Gain", "--variable", "m_fGain"});
    onProject("add-variable", {"--type", "float", "--name", "m_fUser"});
    const std::string sBefore = readFile(m_folder / "First/First.prj");
    struct CRefusal
    {
        std::vector<std::string> m_words; // the first one belongs ahead of the project
        int m_nStatus;
        std::string m_sText;
    };
    const std::vector<CRefusal> refusals = {
        {{"add-control", "--name", "X"}, 2, "The option --slot is missing."},
        {{"add-control", "--slot", "0", "--name", "X"}, 1, "Slot 0 is taken by the control \"Gain\"."},
        {{"add-control", "--slot", "40"}, 1, "40"},
        {{"add-control", "--slot", "1", "--name", "Gain", "--variable", "m_fX"}, 1, "already exists"},
        {{"add-control", "--slot", "1", "--name", "X", "--variable", "1x"},
         1,
         "Variable name can only contain"},
        {{"add-control", "--slot", "1", "--variable", "m_fGain"}, 1, "Variable name is already in use."},
        {{"add-control", "--slot", "1", "--exp"}, 1, "Low limit must be greater than zero"},
        {{"add-control", "--slot", "41", "--list", "ONE"}, 1, "must be separated by commas"},
        {{"add-control", "--slot", "1", "--detector", "1"},
         2,
         "--detector means nothing for slot 1 (slider)"},
        {{"add-control", "--slot", "50", "--lo", "1"}, 2, "--lo means nothing for slot 50 (LED meter)"},
        {{"add-control", "--slot", "1", "--list", "A,B"}, 2, "--type enum gives it one"},
        {{"add-control", "--slot", "1", "--type", "enum", "--lo", "1"}, 2, "--lo means nothing for a slider"},
        {{"add-control", "--slot", "1124"}, 2, "from 0 to 1123"},
        {{"add-control", "--slot", "1", "--lo", "nan"}, 2, "from -3.4e+38 to 3.4e+38"},
        {{"add-control", "--slot", "1", "--log", "--exp"}, 2, "exclude each other"},
        {{"add-control", "--slot", "1", "--midi", "0,cc,7"}, 2, "channel 1 to 16"},
        {{"add-control", "--slot", "1", "--midi", "1,cc"}, 2, "channel 1 to 16"},
        {{"add-control", "--slot", "1", "--type", "long"}, 2, "must be one of int, float, double, enum"},
        {{"edit-control", "5", "--name", "X"}, 1, "no control with the id 5"},
        {{"remove-control", "5"}, 1, "no control with the id 5"},
        {{"add-variable", "--type", "float", "--name", "m_fUser"}, 1, "already in use as a user-variable"},
        {{"add-variable", "--type", "UINT", "--name", "m_u", "--value", "-1"}, 1, "must be non-negative"},
        {{"remove-variable", "--name", "m_fGain"}, 1, "no user-variable named m_fGain"},
        {{"import-controls", "First/First.prj"}, 1, "--answer yes replies"},
        {{"save-as", "First"}, 1, "New Project Name must be different"},
        {{"history", "--show", "99"}, 1, "The history has no entry 99"},
        {{"history", "--show", "1", "--restore", "1"}, 2, "exclude each other"},
    };
    for (const CRefusal& refusal : refusals) {
        std::vector<std::string> words = {"project", refusal.m_words[0], fileOf("First")};
        words.insert(words.end(), refusal.m_words.begin() + 1, refusal.m_words.end());
        expectFailure(words, refusal.m_nStatus, {refusal.m_sText});
    }
    EXPECT_EQ(readFile(m_folder / "First/First.prj"), sBefore);
    for (const char* pCommand : {"save", "load", "delete"})
        expectFailure({"preset", pCommand, "X"}, 2, {"The option --project is missing."});
    expectFailure({"preset", "save", "X", "--project", fileOf("First")}, 2,
                  {"The option --plugin is missing."});
    expectFailure({"preset", "delete", "Factory Preset", "--project", fileOf("First")}, 1,
                  {"Factory Preset"});
}

TEST_F(CCliProjectTest, KeepsEverythingWhenAMarkIsMissing)
{
    create("First");
    onProject("add-control", {"--slot", "0", "--name", "Gain", "--variable", "m_fGain"});
    for (const auto& [pFile, sMark] : {std::pair("First.h", "**--0x07FD--**"),
                                       {"First.h", "**--0x1A7F--**"},
                                       {"First.cpp", "**--0xDEA7--**"},
                                       {"First.cpp", "**--0xEDA5--**"},
                                       {"First.cpp", "**--0xFFDD--**"}}) {
        const std::filesystem::path path = m_folder / "First" / pFile;
        const std::string sWhole = readFile(path);
        const std::string sProject = readFile(m_folder / fileOf("First"));
        std::string sText = sWhole;
        sText.erase(sText.find(sMark), std::string(sMark).size());
        writeFile(path, sText);
        for (const char* pCommand : {"build", "clear"})
            expectFailure({"project", pCommand, fileOf("First")}, 1,
                          {path.string(), "the mark " + std::string(sMark) + " is missing"});
        EXPECT_EQ(readFile(path), sText) << sMark;
        EXPECT_EQ(readFile(m_folder / fileOf("First")), sProject) << sMark;
        writeFile(path, sWhole);
    }
}

TEST_F(CCliProjectTest, KeepsThePresetsFromAnotherPlugIn)
{
    create("First");
    create("Second");
    const std::string sLibrary = onProject("build", {})["library"].text();
    runForJson({"project", "build", fileOf("Second")});
    const std::string sFactory = readFile(m_folder / "Second/Presets/0.spf");
    for (const char* pCommand : {"save", "load"})
        expectFailure({"preset", pCommand, "X", "--plugin", sLibrary, "--project", fileOf("Second")}, 1,
                      {"does not belong to the project Second"});
    EXPECT_EQ(readFile(m_folder / "Second/Presets/0.spf"), sFactory);
}

TEST_F(CCliProjectTest, CopiesMovesClearsAndRestores)
{
    create("First");
    onProject("add-control", {"--slot", "0", "--name", "Gain", "--variable", "m_fGain"});
    onProject("build", {});

    const CJsonValue copy = onProject("save-as", {"Other", "--copy-all"});
    EXPECT_EQ(copy["project"].text(), (m_folder / "Other/Other.prj").string());
    EXPECT_NE(readFile(m_folder / "Other/Other.cpp").find("COther::processAudioFrame"), std::string::npos);
    EXPECT_EQ(runForJson({"project", "build", fileOf("Other")})["result"].text(), "succeeded");

    std::filesystem::rename(m_folder / "First", m_folder / "Moved");
    EXPECT_FALSE(runForJson({"project", "open", "Moved/First.prj"})["changed"].elements().empty());
    EXPECT_TRUE(runForJson({"project", "open", "Moved/First.prj"})["changed"].elements().empty());
    EXPECT_EQ(runForJson({"project", "info", "Moved/First.prj"})["m_sProjectFolder"].text(),
              (m_folder / "Moved").string());

    const std::filesystem::path source = m_folder / "Moved/First.cpp";
    const std::string sBefore = readFile(source);
    const CJsonValue cleared = runForJson({"project", "clear", "Moved/First.prj"});
    EXPECT_EQ(cleared["written"].elements().size(), 2U);
    EXPECT_TRUE(runForJson({"project", "write-code", "Moved/First.prj"})["written"].elements().empty());
    const CJsonValue history = runForJson({"project", "history", "Moved/First.prj"});
    std::string sNumber;
    for (const CJsonValue& entry : history["entries"].elements())
        if (entry["file"].text() == "First.cpp")
            sNumber = std::to_string(static_cast<int>(entry["number"].number()));
    EXPECT_EQ(run({"project", "history", "Moved/First.prj", "--show", sNumber}).m_sOutput, sBefore);
    EXPECT_EQ(run({"project", "history", "Moved/First.prj", "--restore", sNumber}).m_nExitStatus, 0);
    EXPECT_EQ(readFile(source), sBefore);

    runForJson({"project", "import-controls", "Moved/First.prj", fileOf("Other"), "--answer", "yes"});
    EXPECT_EQ(runForJson({"project", "info", "Moved/First.prj"})["controls"][0]["cVariableName"].text(),
              "m_fGain");
    std::filesystem::remove(m_folder / "Moved/plugin.cpp");
    EXPECT_FALSE(runForJson({"project", "sync", "Moved/First.prj"})["written"].elements().empty());
    EXPECT_TRUE(std::filesystem::exists(m_folder / "Moved/plugin.cpp"));
}

TEST_F(CCliProjectTest, FailedBuildsTellFileLineAndText)
{
    create("First");
    std::string sSource = readFile(m_folder / "First/First.cpp");
    const std::string sRight = "FIXED_VOLUME = 0.5f";
    sSource.replace(sSource.find(sRight), sRight.size(), "FIXED_VOLUME = wrong");
    writeFile(m_folder / "First/First.cpp", sSource);
    const auto nLine =
        1 + std::count(sSource.begin(), sSource.begin() + static_cast<std::ptrdiff_t>(sSource.find("wrong")),
                       '\n');

    const CProgramEnd end = run({"--json", "project", "build", fileOf("First")});
    EXPECT_EQ(end.m_nExitStatus, 1);
    const CJsonValue result = CJsonValue::parse(end.m_sOutput);
    EXPECT_EQ(result["result"].text(), "failed");
    EXPECT_EQ(result["errors"][0]["file"].text(), "First.cpp");
    EXPECT_EQ(result["errors"][0]["line"].number(), static_cast<double>(nLine));
    EXPECT_FALSE(result["loaded"].boolean());
    const CProgramEnd text = run({"project", "build", fileOf("First")});
    EXPECT_EQ(text.m_sOutput.find("First.cpp:" + std::to_string(nLine) + ":"), 0U) << text.m_sOutput;

    // Good code that cannot be made: built, but not loaded.
    sSource.replace(sSource.find("wrong"), 5, "0.5f");
    sSource.replace(sSource.find("initUI();"), 9, "*(volatile int*)0 = 1;");
    writeFile(m_folder / "First/First.cpp", sSource);
    const CProgramEnd crashing = run({"project", "build", fileOf("First")});
    EXPECT_EQ(crashing.m_nExitStatus, 1);
    EXPECT_NE(crashing.m_sErrors.find("crashed"), std::string::npos) << crashing.m_sErrors;
}

} // namespace

} // namespace velmora::test
