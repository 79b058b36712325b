#include "base/text.h"
#include "cli_program.h"

#include <algorithm>
#include <csignal>
#include <functional>

namespace velmora::test {

namespace {

// Something that happens to a project while it is watched, and what the next line has to say.
struct CWatchStep
{
    std::function<void()> m_change;
    std::string m_sChanged; // names of the files
    std::string m_sResult;
    std::string m_sControls; // "carried; new; dropped"
    bool m_bNewCode = true;
};

std::string namesOf(const CJsonValue& list)
{
    std::string sNames;
    for (const CJsonValue& name : list.elements())
        sNames += (sNames.empty() ? "" : " ") + name.text();
    return sNames;
}

class CProjectWatchTest : public CCliTest
{
  protected:
    void SetUp() override
    {
        runForJson({"project", "create", "Watched", "--folder", "."});
        addControl("0", "m_fOne");
    }

    std::filesystem::path source() const { return m_folder / "Watched/Watched.cpp"; }

    // From a second program, as from a second terminal.
    void addControl(const std::string& sSlot, const std::string& sVariable)
    {
        runOther({"project", "add-control", "Watched/Watched.prj", "--slot", sSlot, "--variable", sVariable,
                  "--name", sVariable});
    }
    void runOther(const std::vector<std::string>& arguments)
    {
        CProgramStart start;
        start.m_workingFolder = m_folder.path();
        start.m_environment = {{"APPDATA", m_userBase.path().string()}, {"LC_ALL", "C"}};
        EXPECT_EQ(runProgram(CLI_PROGRAM, arguments, start).m_nExitStatus, 0);
    }

    // Replaces a text of the source the way many editors save: a second file, renamed.
    void edit(const std::string& sFrom, const std::string& sTo)
    {
        std::string sText = readFile(source());
        const auto uAt = sText.find(sFrom);
        ASSERT_NE(uAt, std::string::npos) << sFrom;
        writeFile(source().string() + ".new", sText.replace(uAt, sFrom.size(), sTo));
        std::filesystem::rename(source().string() + ".new", source());
    }
};

TEST_F(CProjectWatchTest, BuildsAndLoadsOnEachSave)
{
    const std::vector<CWatchStep> steps = {
        {{}, "", "succeeded", "; ; "},
        {[&] { edit("FIXED_VOLUME = 0.5f", "FIXED_VOLUME = 0.25f"); }, "Watched.cpp", "succeeded",
         "m_fOne; ; "},
        {[&] { edit("FIXED_VOLUME = 0.25f", "FIXED_VOLUME = oops"); }, "Watched.cpp", "failed", "; ; "},
        {[&] { edit("FIXED_VOLUME = oops", "FIXED_VOLUME = 0.75f"); }, "Watched.cpp", "succeeded",
         "m_fOne; ; "},
        {[&] { addControl("1", "m_fTwo"); }, "Watched.cpp Watched.h Watched.prj", "succeeded",
         "m_fOne; m_fTwo; "},
        {[&] {
             runOther({"project", "remove-control", "Watched/Watched.prj", "0"});
         },
         "Watched.cpp Watched.h Watched.prj", "succeeded", "m_fTwo; ; m_fOne"},
        // Text between the marks is written anew, which makes no second build.
        {[&] { edit("// **--0xDEA7--**", "// **--0xDEA7--**\n\tspoilt;"); }, "Watched.cpp", "succeeded",
         "m_fTwo; ; ", false},
    };
    const std::filesystem::path output = m_folder / "lines";
    writeFile(output, "");
    m_start.m_sStandardOutput = output.string();
    std::size_t uStep = 0;
    m_start.m_whileRunning = [&](pid_t nProcess) {
        const std::string sLines = readFile(output);
        if (static_cast<std::size_t>(std::ranges::count(sLines, '\n')) <= uStep)
            return;
        if (++uStep < steps.size())
            steps[uStep].m_change();
        else
            ::kill(nProcess, SIGINT);
    };
    const CProgramEnd end = run({"--json", "project", "build", "Watched/Watched.prj", "--watch"});
    EXPECT_EQ(end.m_nExitStatus, 0) << end.m_sErrors;

    const auto lines = split(readFile(output), '\n');
    ASSERT_EQ(lines.size() - (lines.back().empty() ? 1 : 0), steps.size()) << readFile(output);
    std::string sLastBuild;
    for (std::size_t u = 0; u < steps.size(); ++u) {
        SCOPED_TRACE(lines[u]);
        const CJsonValue result = CJsonValue::parse(lines[u]);
        EXPECT_EQ(namesOf(result["changed"]), steps[u].m_sChanged);
        EXPECT_EQ(result["result"].text(), steps[u].m_sResult);
        EXPECT_EQ(result["errors"].elements().empty(), steps[u].m_sResult == "succeeded");
        const CJsonValue& controls = result["controls"];
        EXPECT_EQ(namesOf(controls["carried"]) + "; " + namesOf(controls["new"]) + "; " +
                      namesOf(controls["dropped"]),
                  steps[u].m_sControls);
        EXPECT_EQ(result["loaded"].boolean(), steps[u].m_sResult == "succeeded");
        if (steps[u].m_bNewCode) { // and it is the new one that runs
            EXPECT_NE(result["buildId"].text(), sLastBuild);
        }
        sLastBuild = result["buildId"].text();
    }
}

} // namespace

} // namespace velmora::test
