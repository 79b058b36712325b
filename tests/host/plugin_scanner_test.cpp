#include "base/text.h"
#include "host/plugin_library.h"
#include "host/plugin_scanner.h"
#include "host/plugin_test_support.h"
#include "host/user_dsp_filter.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

namespace velmora {
namespace {

namespace fs = std::filesystem;
using test::CPlugInFolder;
using testing::ElementsAre;
using testing::StartsWith;
using namespace std::chrono_literals;

std::vector<std::string> namesOf(const CPlugInScanner::CResult& result)
{
    std::vector<std::string> names;
    for (const auto& pPlugIn : result.m_plugIns)
        names.push_back(pPlugIn->filter().m_sName);
    return names;
}

class PlugInScanner : public testing::Test
{
  protected:
    CPlugInScanner::CResult scan() { return CPlugInScanner(m_dialogs, m_probe).scanPlugIns(m_folder.path()); }

    CPlugInFolder m_folder;
    CPlugInProbe m_probe{60s};
    test::CRecordingDialogs m_dialogs;
};

TEST_F(PlugInScanner, LoadsInTheOrderOfNamesAndPassesOverTheRest)
{
    m_folder.addAll({"good-b", "good-a"});
    m_folder.add(".good-hidden");
    test::writeFile(m_folder / "readme.txt", "no library");
    fs::create_directory(m_folder / "folder.so");
    const fs::path before = fs::current_path();

    const auto result = scan();
    EXPECT_THAT(namesOf(result), ElementsAre("good-a", "good-b"));
    EXPECT_TRUE(m_dialogs.m_messages.empty());
    EXPECT_THAT(m_dialogs.m_notes, ElementsAre("getAPIVersion: found", "getAPIVersion: found"));
    EXPECT_EQ(fs::current_path(), before);
    for (const auto& pPlugIn : result.m_plugIns) {
        EXPECT_EQ(pPlugIn->filter().m_pPlugIn, pPlugIn->plugIn());
        EXPECT_EQ(pPlugIn->filter().m_hParentDLL, pPlugIn->library());
        EXPECT_EQ(pPlugIn->library()->path().parent_path(), m_folder.path());
    }
}

TEST_F(PlugInScanner, TellsLoudlyWhatCannotBeLoadedAndQuietlyWhatIsStale)
{
    test::writeFile(m_folder / "1text.so", "This is no library.\n");
    m_folder.add("no_exports", "2none");
    m_folder.addAll({"abort", "null_object", "version_60"});

    const auto result = scan();
    EXPECT_TRUE(result.m_plugIns.empty());
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Error loading DLL\n1text.so"));
    EXPECT_THAT(m_dialogs.m_notes,
                ElementsAre("getAPIVersion: does not exist", StartsWith("1text.so: is not a shared library"),
                            "getAPIVersion: does not exist", "2none.so: has no getAPIVersion()",
                            "abort.so: crashed while it was being created (signal 6, Aborted)",
                            "getAPIVersion: found", "null_object.so: returned null from createObject()",
                            "getAPIVersion: found",
                            "version_60.so: was built for contract version 60; it takes version 61"));
    std::vector<std::string> statuses;
    for (const auto& entry : result.m_entries)
        statuses.push_back(scanStatusText(entry.m_eStatus));
    EXPECT_THAT(statuses,
                ElementsAre("load failed", "no version", "crashed", "load failed", "wrong version"));
}

TEST_F(PlugInScanner, KeepsTheFirstOfPlugInsWithOneName)
{
    m_folder.addAll({"good", "twin-1", "twin-2", "twin-3"});
    m_folder.add("Reloaded1", "reload-1");
    m_folder.add("Reloaded2", "reload-2");

    const auto result = scan();
    EXPECT_THAT(namesOf(result), ElementsAre("good", "Reloaded", "Twin"));
    EXPECT_EQ(result.m_plugIns[1]->plugIn()->getAdditionalPresetValue(0), 1.0F);
    EXPECT_THAT(
        m_dialogs.m_messages,
        ElementsAre(
            "The following duplicate Plug-Ins were NOT loaded:\n\nreload-2.so\ntwin-2.so\ntwin-3.so\n\n"
            "because their plug-in names matched one or more of the following:\n\nreload-1.so\n"
            "twin-1.so\n\nThis happens if you change the DLL name without changing the Plug-In name. "
            "Please correct this by first closing Velmora and then deleting the undesired plug-in(s) "
            "in the Velmora PlugIns folder to prevent this messsage from appearing again."));
    EXPECT_EQ(result.m_entries[2].m_eStatus, EScanStatus::duplicate);
    EXPECT_EQ(result.m_entries[2].m_sPlugInName, "Reloaded");
}

TEST_F(PlugInScanner, FindsNothingInAFolderThatIsNotThere)
{
    const auto result = CPlugInScanner(m_dialogs, m_probe).scanPlugIns(m_folder / "absent");
    EXPECT_TRUE(result.m_entries.empty());
    EXPECT_THAT(m_dialogs.m_notes, ElementsAre(StartsWith("The plug-in folder ")));
}

// One library on which the scan runs aground must not cost the others their place.
TEST_F(PlugInScanner, FindsEveryGoodOneAmongHundred)
{
    for (int i = 0; i < 95; ++i)
        m_folder.add(formatted("good-%02d", i));
    m_folder.addAll({"crash_in_constructor", "exit_3", "hang", "throw_error"});
    test::writeFile(m_folder / "good-20-text.so", "This is no library.\n");
    m_probe = CPlugInProbe();

    const auto result = scan();
    EXPECT_EQ(result.m_plugIns.size(), 95u);
    EXPECT_EQ(result.m_entries.size(), 100u);
    std::map<std::string, std::string> refused;
    for (const auto& entry : result.m_entries) {
        if (entry.m_eStatus != EScanStatus::loaded)
            refused[entry.m_file.filename()] = entry.m_sReason;
    }
    const std::map<std::string, std::string> expected{
        {"crash_in_constructor.so", "crashed while it was being created (signal 11, Segmentation fault)"},
        {"exit_3.so", "called exit(3) while it was being created"},
        {"good-20-text.so", "is not a shared library: it does not begin with the ELF signature"},
        {"hang.so", "did not answer within 2.0 s while it was being created"},
        {"throw_error.so", "threw an exception while it was being created: no constructor, 100 % sure"},
    };
    EXPECT_EQ(refused, expected);
    for (const auto& [sFile, sReason] : expected)
        EXPECT_THAT(m_dialogs.m_notes, testing::Contains(sFile + ": " + sReason));
}

} // namespace
} // namespace velmora
