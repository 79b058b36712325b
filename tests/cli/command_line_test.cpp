#include "cli/command.h"
#include "cli/command_line.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace velmora::cli {

namespace {

struct CGoodLine
{
    std::vector<std::string> m_words;
    std::string m_sCommand;
    std::map<std::string, std::string> m_options;
    std::map<std::string, std::string> m_arguments;
};

TEST(CommandLine, TakesOptionsAnywhereInEitherForm)
{
    const std::string sHere = std::filesystem::current_path().string() + "/";
    const std::vector<CGoodLine> lines = {
        {{"settings", "show"}, "settings show", {}, {}},
        {{"--json", "settings", "--answer", "yes", "show"},
         "settings show",
         {{"--json", ""}, {"--answer", "yes"}},
         {}},
        {{"settings", "set", "62", "-5"}, "settings set", {}, {{"LINE", "62"}, {"VALUE", "-5"}}},
        {{"settings", "set", "62", "--", "--json"}, "settings set", {}, {{"VALUE", "--json"}}},
        {{"process", "a.wav", "b.wav", "--in-gain", "-6.5", "--out-gain=-1e1"},
         "process",
         {{"--in-gain", "-6.5"}, {"--out-gain", "-1e1"}},
         {{"IN", sHere + "a.wav"}, {"OUT", sHere + "b.wav"}}},
        {{"--in-gain", "3", "process", "/a", "/b"},
         "process",
         {{"--in-gain", "3"}},
         {{"IN", "/a"}, {"OUT", "/b"}}},
        {{"measure", "-o", "x.csv", "step"}, "measure", {{"-o", sHere + "x.csv"}}, {{"KIND", "step"}}},
        {{"measure", "step", "-o=-x.csv"}, "measure", {{"-o", sHere + "-x.csv"}}, {}},
        {{"measure", "step", "--set", "3=a=b", "--set=4=-1"}, "measure", {{"--set", "3=a=b"}}, {}},
        {{"plugin", "scan"}, "plugin scan", {}, {}},
        {{"plugin", "scan", "dir"}, "plugin scan", {}, {{"DIR", sHere + "dir"}}},
    };
    for (const CGoodLine& good : lines) {
        SCOPED_TRACE(::testing::PrintToString(good.m_words));
        const CCommandLine line = parseCommandLine(good.m_words);
        ASSERT_EQ(line.error(), "");
        ASSERT_NE(line.command(), nullptr);
        EXPECT_EQ(line.command()->m_sName, good.m_sCommand);
        for (const auto& [sName, sValue] : good.m_options)
            EXPECT_EQ(line.text(sName), sValue) << sName;
        for (const auto& [sName, sValue] : good.m_arguments)
            EXPECT_EQ(line.argument(sName), sValue) << sName;
    }
}

TEST(CommandLine, SaysWhatIsWrong)
{
    struct CBadLine
    {
        std::vector<std::string> m_words;
        std::string m_sError;
    };
    const std::vector<CBadLine> lines = {
        {{}, "No command was given."},
        {{"settings"}, "The command settings needs a second word."},
        {{"proces"}, "Unknown command proces. Did you mean process?"},
        {{"settings", "shwo"}, "Unknown command settings shwo. Did you mean settings show?"},
        {{"xyzzy"}, "Unknown command xyzzy."},
        {{"settings", "show", "--jsno"}, "Unknown option --jsno. Did you mean --json?"},
        {{"settings", "show", "--in-gain", "3"}, "Unknown option --in-gain."},
        {{"settings", "show", "--json=1"}, "The option --json takes no value."},
        {{"settings", "show", "x"}, "There is one argument too many: \"x\"."},
        {{"settings", "set", "1"}, "The argument VALUE is missing."},
        {{"settings", "show", "--answer"}, "The option --answer needs a value: yes|no."},
        {{"settings", "show", "--answer", "--json"}, "The option --answer needs a value: yes|no."},
        {{"settings", "show", "--answer=maybe"}, "The value of --answer, \"maybe\", must be one of yes, no."},
        {{"process", "a", "b", "--mode", "6"},
         "The value of --mode, \"6\", must be a whole number from 0 to 5."},
        {{"process", "a", "b", "--mode=1.5"},
         "The value of --mode, \"1.5\", must be a whole number from 0 to 5."},
        {{"process", "a", "b", "--in-gain", "-inf"},
         "The value of --in-gain, \"-inf\", must be a number from -200 to 200."},
        {{"process", "a", "b", "--in-gain", "1", "--in-gain", "2"}, "The option --in-gain is given twice."},
        {{"process", "a", "b", "--listen"}, "The option --listen needs the option --sidechain."},
        {{"process", "", "b"}, "The argument IN, \"\", must not be empty."},
        {{"measure", "loudness"},
         "The argument KIND, \"loudness\", must be one of impulse, step, frequency, phase."},
        {{"measure", "step", "--set", "gain=3"},
         "The value of --set, \"gain=3\", must be a control's id, an equals sign and a value."},
        {{"measure", "step", "--set", "3"},
         "The value of --set, \"3\", must be a control's id, an equals sign and a value."},
        {{"measure", "step", "--set=-1=3"},
         "The value of --set, \"-1=3\", must be a control's id, an equals sign and a value."},
        {{"measure", "step", "--set-position", "3=257"},
         "The value of --set-position, \"3=257\", must be a control's id, an equals sign and a whole number "
         "from 0 to 256."},
    };
    for (const CBadLine& bad : lines)
        EXPECT_EQ(parseCommandLine(bad.m_words).error(), bad.m_sError)
            << ::testing::PrintToString(bad.m_words);
}

// What parsing and help rely on.
TEST(CommandTable, IsSound)
{
    std::set<std::string_view> names;
    for (const CCommand& command : commandTable()) {
        SCOPED_TRACE(command.m_sName);
        EXPECT_TRUE(names.insert(command.m_sName).second);
        std::set<std::string_view> options;
        for (const COption& option : optionsOf(command))
            EXPECT_TRUE(options.insert(option.m_sName).second) << option.m_sName;
        for (const COption& option : optionsOf(command))
            EXPECT_TRUE(option.m_sNeeds.empty() || options.contains(option.m_sNeeds)) << option.m_sName;
        bool bOptional = false;
        for (const CArgument& argument : command.m_arguments) {
            EXPECT_TRUE(argument.m_bOptional || !bOptional) << argument.m_sName;
            bOptional = argument.m_bOptional;
        }
    }
}

} // namespace

} // namespace velmora::cli
