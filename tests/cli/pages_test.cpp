#include "base/text.h"
#include "cli/completion_scripts.h"
#include "cli/help_text.h"
#include "cli/man_page.h"
#include "cli/markdown_page.h"
#include "cli_program.h"

#include <cstdlib>

namespace velmora::cli {

namespace {

using test::runProgram;

class CPagesTest : public test::CCliTest
{
};

TEST_F(CPagesTest, HelpOnEveryLevelTellsEverything)
{
    const auto expectHelp = [&](std::vector<std::string> words, const std::vector<std::string>& texts) {
        words.emplace_back("--help");
        const test::CProgramEnd end = run(words);
        EXPECT_EQ(end.m_nExitStatus, 0);
        EXPECT_EQ(end.m_sErrors, "");
        for (const std::string& sText : texts)
            EXPECT_NE(end.m_sOutput.find(sText), std::string::npos) << sText << " in:\n" << end.m_sOutput;
        for (const std::string& sLine : split(end.m_sOutput, '\n'))
            EXPECT_TRUE(sLine.size() <= 80 || sLine.find("velmora-cli ") != std::string::npos) << sLine;
    };
    std::vector<std::string> everyCommand;
    for (const CCommand& command : commandTable()) {
        everyCommand.push_back("  " + std::string(command.m_sName));
        std::vector<std::string> texts = {"Usage: " + usageLine(command)};
        for (const COption& option : optionsOf(command))
            texts.push_back("  " + optionSyntax(option));
        for (const CArgument& argument : command.m_arguments)
            texts.push_back("\n  " + std::string(argument.m_sName) + " ");
        expectHelp(split(command.m_sName, ' '), texts);
    }
    for (const CCommandGroup& group : commandGroups())
        expectHelp({std::string(group.m_sName)},
                   {std::string(group.m_sSummary), std::string(group.m_sName) + " "});
    expectHelp({}, everyCommand);
    expectHelp({"process", "--bogus"}, {"Usage: velmora-cli process"}); // help answers even a wrong line
    expectFailure({"frobnicate", "--help"}, 2,
                  {"Unknown command frobnicate."}); // but not on what is not there
    expectFailure({"settings", "frobnicate", "--help"}, 2, {"Unknown command settings frobnicate."});
    EXPECT_EQ(run({"-h"}).m_sOutput, programHelp());
    EXPECT_EQ(run({"--version"}).m_sOutput, "Velmora 7.0.0.0\n");
}

// docs/cli.md is kept in the repository for readers; with VELMORA_UPDATE_DOCS=1 this writes it anew.
TEST_F(CPagesTest, ReferenceIsUpToDate)
{
    const std::filesystem::path file = std::filesystem::path(SOURCE_FOLDER) / "docs" / "cli.md";
    const char* pUpdate = std::getenv("VELMORA_UPDATE_DOCS");
    if (pUpdate && std::string(pUpdate) == "1")
        test::writeFile(file, markdownPage());
    EXPECT_EQ(test::readFile(file), markdownPage()) << "Run the tests once with VELMORA_UPDATE_DOCS=1.";
}

TEST_F(CPagesTest, ManualPageIsSoundAndComplete)
{
    test::writeFile(m_folder / "velmora-cli.1", manPage());
    m_start.m_environment = {{"LC_ALL", "C"}, {"MANWIDTH", "200"}};
    const auto page = (m_folder / "velmora-cli.1").string();
    const test::CProgramEnd end = runProgram("/usr/bin/man", {"--warnings", "-l", page}, m_start);
    EXPECT_EQ(end.m_nExitStatus, 0);
    EXPECT_EQ(end.m_sErrors, "");
    for (const CCommand& command : commandTable())
        EXPECT_NE(end.m_sOutput.find(usageLine(command)), std::string::npos) << command.m_sName;
}

TEST_F(CPagesTest, BashCompletes)
{
    struct CCompletion
    {
        std::string m_sWords; // the last one is completed
        std::string m_sExpected;
    };
    test::writeFile(m_folder / "a file.wav", "");
    test::writeFile(m_folder / "completion", bashCompletion());
    const std::vector<CCompletion> completions = {
        {"proc", "process"},
        {"--json proc", "process"},
        {"settings ''", "show set --json --user-folder --answer --quiet --help --version"},
        {"--user-folder plugin settings s", "show set"},
        {"measure ''", "impulse step frequency phase"},
        {"measure step --form", "--format"},
        {"measure step --format ''", "c matlab csv"},
        {"process --set 1=2 'a f'", "a file.wav"},
        {"process --mode ''", ""},
        {"project add-c", "add-control"},
        {"project add-variable P.prj --type U", "UINT"},
    };
    for (const CCompletion& completion : completions) {
        const std::string sScript = "source ./completion; compopt() { :; }; COMP_WORDS=(velmora-cli " +
                                    completion.m_sWords +
                                    "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _velmora_cli; "
                                    "echo \"${COMPREPLY[*]}\"";
        m_start.m_workingFolder = m_folder.path();
        const test::CProgramEnd end = runProgram("/bin/bash", {"-u", "-c", sScript}, m_start);
        EXPECT_EQ(end.m_sErrors, "") << completion.m_sWords;
        EXPECT_EQ(end.m_sOutput, completion.m_sExpected + "\n") << completion.m_sWords;
    }
}

// The other shells need not be installed; their scripts name every command and option.
TEST_F(CPagesTest, OtherShellsKnowEveryOption)
{
    const std::string sZsh = zshCompletion();
    const std::string sFish = fishCompletion();
    for (const CCommand& command : commandTable()) {
        EXPECT_NE(sZsh.find("    '" + std::string(command.m_sName) + "')"), std::string::npos);
        for (const COption& option : optionsOf(command)) {
            EXPECT_NE(sZsh.find(std::string(option.m_sName) + "["), std::string::npos) << option.m_sName;
            const bool bLong = option.m_sName.starts_with("--");
            EXPECT_NE(
                sFish.find((bLong ? " -l " : " -s ") + std::string(option.m_sName.substr(bLong ? 2 : 1))),
                std::string::npos)
                << option.m_sName;
        }
    }
    const std::vector<std::pair<std::string, std::string>> shells = {{"/usr/bin/zsh", sZsh},
                                                                     {"/usr/bin/fish", sFish}};
    for (const auto& [sShell, sScript] : shells) {
        if (!std::filesystem::exists(sShell))
            continue;
        test::writeFile(m_folder / "script", sScript);
        EXPECT_EQ(runProgram(sShell, {"-n", (m_folder / "script").string()}).m_nExitStatus, 0) << sShell;
    }
}

} // namespace

} // namespace velmora::cli
