#include "document/crash_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::HasSubstr;

TEST(CrashReportTest, TellsWhatHappenedWhereTheWorkIsAndWhatToDo)
{
    auto report = CCrashReport::parse("Velmora crash report\nplug-in: Echo\nlibrary: /p/Echo.so\n"
                                      "doing: processing audio\nsignal: SIGSEGV\nfault: segmentation fault\n"
                                      "thread: audio thread\naudio: running\nproject: /w/Echo.prj\n"
                                      "autosave: /w/Echo.prj.autosave\n");
    ASSERT_TRUE(report.has_value());
    EXPECT_EQ(
        report->message(),
        "Velmora ended unexpectedly while the plug-in \"Echo\" was processing audio (segmentation "
        "fault).\n\nWhat was not saved yet of the project is in the file\n/w/Echo.prj.autosave\n"
        "To go on with it, open the project in Velmora's window, which offers it, or put the file in the "
        "place of /w/Echo.prj, which is as it was last saved.\n\n"
        "The plug-in's library is /p/Echo.so. Look for the fault in the plug-in's code, and build it "
        "again before you load it.");
    EXPECT_TRUE(report->m_bAudioRan);

    report->m_sAutosave.clear();
    report->m_nAutosaveError = ENOSPC;
    EXPECT_THAT(report->message(), HasSubstr("/w/Echo.prj is lost: No space left on device."));
}

TEST(CrashReportTest, TakesOddBytesForWhatTheyAre)
{
    const std::string sHead = "Velmora crash report\n";
    const std::string sLong(100000, 'x');
    struct COddCase
    {
        std::string m_sText;
        bool m_bReport;
        std::string m_sPlugIn;
        int m_nError = 0;
    };
    const std::vector<COddCase> cases = {
        {"", false, ""},
        {"\n\n", false, ""},
        {"plug-in: Echo\n", false, ""},
        {std::string(64, '\0'), false, ""},
        {"Velmora crash report 2\nplug-in: Echo\n", false, ""},
        {"Velmora crash report", true, ""},
        {"Velmora crash report\r\nplug-in: Echo", true, "Echo"},
        {sHead + "plug-in:Echo\n::\n:\nno colon\nPLUG-IN: Other\nplug-in : Other\n", true, "Echo"},
        {sHead + "plug-in: One\nplug-in: Two\n", true, "Two"},
        {sHead + "plug-in:  a: b \n", true, " a: b "},
        {sHead + "plug-in: " + sLong + "\n", true, sLong.substr(0, 4095)},
        {sHead + std::string(5000, '\n') + "plug-in: Echo\n", true, "Echo"},
        {sHead + "autosave error: 28\n", true, "", 28},
        {sHead + "autosave error: -1\n", true, "", 0},
        {sHead + "autosave error: 1e300\n", true, "", 0},
        {sHead + "autosave error: nan\n", true, "", 0},
        {sHead + "autosave error: 28 of 30\n", true, "", 0},
    };
    for (const COddCase& odd : cases) {
        SCOPED_TRACE(odd.m_sText.substr(0, 60));
        const auto report = CCrashReport::parse(odd.m_sText);
        ASSERT_EQ(report.has_value(), odd.m_bReport);
        if (!report)
            continue;
        EXPECT_EQ(report->m_sPlugIn, odd.m_sPlugIn);
        EXPECT_EQ(report->m_nAutosaveError, odd.m_nError);
    }

    // Nothing of a value can break up the text of the message box.
    const auto report =
        CCrashReport::parse(sHead + "plug-in: a\rb\x1B[2Jc\x7F" + std::string(1, '\0') + "d\n");
    ASSERT_TRUE(report.has_value());
    EXPECT_THAT(report->message(), HasSubstr("\"a?b?[2Jc??d\""));
}

} // namespace
} // namespace velmora
