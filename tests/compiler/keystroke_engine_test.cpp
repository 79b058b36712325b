#include "compiler/recording_window_system.h"
#include "project/compiler/key_record.h"
#include "project/compiler/key_table.h"
#include "project/compiler/keystroke_engine.h"
#include "project/compiler/window_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> typed(CRecordingWindowSystem& system, std::string_view sKeys, unsigned uKeyDelay = 0,
                               unsigned uLeaveDown = 0)
{
    {
        CKeystrokeEngine engine(system, sKeys);
        engine.setKeyDelay(uKeyDelay);
        engine.setLeaveDown(uLeaveDown);
        EXPECT_TRUE(engine.send()) << engine.error();
    }
    std::vector<std::string> calls = system.takeCalls();
    EXPECT_EQ(calls.back(), ALL_MODIFIERS_UP);
    calls.pop_back();
    return calls;
}

TEST(KeystrokeEngine, SendsEachKeyWithItsModifiersAsOne)
{
    const struct
    {
        const char* m_pKeys;
        std::vector<std::string> m_expected;
    } cases[] = {
        {"aB1!", {"keys +41 -41", "keys +10 +42 -42 -10", "keys +31 -31", "keys +10 +31 -31 -10"}},
        {"<CTRL+SHIFT>S", {"keys +11 +10 +53 -53 -10 -11"}},
        {"<CTRL><ALT>a", {"keys +11 +12 +41 -41 -12 -11"}},
        {"<CTRL><F11><F7>", {"keys +11 +7A -7A -11", "keys +76 -76"}},
        {"<SHIFT><F5>x", {"keys +10 +74 -74 -10", "keys +58 -58"}},
        {"<REPEAT 2>a<REPEAT 2><TAB><END_REPEAT><END_REPEAT>",
         {"keys +41 -41", "keys +09 -09", "keys +09 -09", "keys +41 -41", "keys +09 -09", "keys +09 -09"}},
        {"<REPEAT 0>a<END_REPEAT>b", {"keys +42 -42"}},
        {"<SHIFT_LOCK>aB<CTRL>c<SHIFT_UNLOCK>d",
         {"keys +10 +41 -41 +42 -42 +11 +43 -43 -11 -10", "keys +44 -44"}},
        // No modifier is down while the engine waits, or when it is done.
        {"<ALT_LOCK>a<DELAY 20>b", {"keys +12 +41 -41 -12", "keys +12 +42 -42 -12"}},
        {"<CAPSLOCK_ON><NUMLOCK_OFF><SCROLLLOCK_ON>", {"keys +14 -14", "keys +91 -91"}},
    };
    for (const auto& test : cases) {
        CRecordingWindowSystem system;
        EXPECT_EQ(typed(system, test.m_pKeys), test.m_expected) << test.m_pKeys;
    }
}

TEST(KeystrokeEngine, WaitsLeavesModifiersDownAndBoundsWhatItSendsAtOnce)
{
    CRecordingWindowSystem system;
    EXPECT_THAT(typed(system, "<CTRL_LOCK>ab<DELAY 500>", 100),
                ElementsAre("keys +11 +41 -41 -11", "keys +11 +42 -42 -11"));
    EXPECT_NEAR(system.m_dSeconds, 1000.7, 1e-9);
    EXPECT_THAT(typed(system, "<CTRL>a<SHIFT>b", 0, MODIFIER_CTRL),
                ElementsAre("keys +11 +41 -41", "keys +10 +42 -42 -10"));
    for (const std::string& sCall : typed(system, "<CTRL_LOCK><REPEAT 1000>a<END_REPEAT>"))
        EXPECT_LT(sCall.size(), 900u);

    // What was never sent needs no release; a display that is not asked stays closed.
    {
        CKeystrokeEngine engine(system, "a");
    }
    EXPECT_TRUE(system.takeCalls().empty());
}

TEST(KeystrokeEngine, KnowsEveryKeyword)
{
    EXPECT_EQ(keywordTable().size(), 66u);
    for (const CKeywordRow& row : keywordTable()) {
        const bool bNumber = row.m_eKind == EKeyword::delay || row.m_eKind == EKeyword::repeat;
        std::string sKeys = row.m_eKind == EKeyword::endRepeat ? "<REPEAT 2>" : "";
        sKeys += "<" + std::string(row.m_sName) + (bNumber ? " 2>" : ">") + "a";
        sKeys += row.m_eKind == EKeyword::repeat ? "<END_REPEAT>" : "";
        std::vector<CKeyRecord> records;
        EXPECT_EQ(parseKeys(sKeys, records), "");
        EXPECT_GE(records.size(), 2u);
    }
    for (char c = ' '; c <= '~'; ++c)
        EXPECT_TRUE(keyOfCharacter(c)) << c;
}

TEST(KeystrokeEngine, RefusesWhatItDoesNotUnderstand)
{
    constexpr std::pair<const char*, const char*> CASES[] = {
        {"ab<CRTL>c", "character 3: there is no keyword \"CRTL\""},
        {"<enter>", "no keyword \"enter\""},
        {"<>", "no keyword \"\""},
        {"a<F7", "\"<\" has no \">\""},
        {"<REPEAT>a<END_REPEAT>", "<REPEAT> needs a whole number"},
        {"<REPEAT -1>a<END_REPEAT>", "needs a whole number"},
        {"<REPEAT 3x>a<END_REPEAT>", "needs a whole number"},
        {"<REPEAT 99999999999>a<END_REPEAT>", "needs a whole number"},
        {"<REPEAT 4000000000>a<END_REPEAT>", "too many; the most is 1000"},
        {"<REPEAT 1000><REPEAT 1000>a<END_REPEAT><END_REPEAT>", "more than 10000 steps"},
        {"<DELAY 60001>", "more than 60000 ms"},
        {"<REPEAT 1000><DELAY 61><END_REPEAT>", "more than 60000 ms"},
        {"<DELAY>", "<DELAY> needs a whole number"},
        {"<REPEAT 2>a", "character 1: <REPEAT> has no <END_REPEAT>"},
        {"a<END_REPEAT>", "character 2: <END_REPEAT> has no <REPEAT>"},
        {"<F7 2>", "<F7> takes no number"},
        {"<CTRL>", "the modifier has no key behind it"},
        {"<CTRL><DELAY 5>a", "the modifier has no key behind it"},
        {"gr\xC3\xBCn", "character 3: no key types the byte 0xC3"},
    };
    for (const auto& [pKeys, pError] : CASES) {
        CRecordingWindowSystem system;
        CKeystrokeEngine engine(system, pKeys);
        EXPECT_FALSE(engine.send()) << pKeys;
        EXPECT_THAT(engine.error(), HasSubstr(pError)) << pKeys;
        EXPECT_TRUE(engine.records().empty());
        EXPECT_TRUE(system.takeCalls().empty()) << pKeys;
    }
    std::string sDeep;
    for (int i = 0; i < 100; ++i)
        sDeep += "<REPEAT 1>";
    std::vector<CKeyRecord> records;
    EXPECT_THAT(parseKeys(sDeep, records), HasSubstr("8 deep"));
}

TEST(KeystrokeEngine, TypesOnlyIntoItsWindow)
{
    CRecordingWindowSystem system;
    system.m_windows = {{7, "The one", "c", 1, false, false}, {8, "Other", "c", 1, false, false}};
    system.m_hForeground = 7;
    CKeystrokeEngine engine(system, "abc");
    engine.setWindow("one", "c");
    engine.setCheckForeground(true);

    // Another window comes to the front behind the first key.
    system.m_onKeys = [&](const std::string&) { system.m_hForeground = 8; };
    EXPECT_FALSE(engine.send());
    EXPECT_THAT(engine.error(), HasSubstr("focus"));
    EXPECT_THAT(system.takeCalls(), ElementsAre("keys +41 -41"));

    engine.setRetry(true, 3);
    EXPECT_TRUE(engine.send());
    EXPECT_GE(system.m_dSeconds, 1009.0);
    system.m_bGivesFocus = false;
    EXPECT_FALSE(engine.send());
    system.m_windows.clear();
    EXPECT_FALSE(engine.send());

    // Keys that a person holds down would mix with ours.
    system.m_onKeys = {};
    system.m_windows = {{7, "The one", "c", 1, false, false}};
    system.m_hForeground = 7;
    system.m_dHeldUntil = system.m_dSeconds + 1.0;
    EXPECT_TRUE(engine.send()) << engine.error();
    system.m_dHeldUntil = system.m_dSeconds + 3.0;
    EXPECT_FALSE(engine.send());
    EXPECT_THAT(engine.error(), HasSubstr("held"));
}

TEST(WindowEngine, WorksOnAllWindowsOfItsTexts)
{
    CRecordingWindowSystem system;
    system.m_windows = {{1, "A b", "x", 0, false, false},
                        {2, "A b c", "x", 0, false, false},
                        {3, "A b", "y", 0, false, false},
                        {4, "A b", "x", 0, true, false}};
    const auto found = [&](const char* pTitle, const char* pClass, const CWindowMatch& match = {}) {
        return CWindowEngine(system, pTitle, pClass, match).windows();
    };
    EXPECT_THAT(found("A b", "x"), ElementsAre(1, 2));
    EXPECT_THAT(found("A b", "x", {true, false}), ElementsAre(1));
    EXPECT_THAT(found("A b", "x", {true, true}), ElementsAre(1, 4));
    EXPECT_THAT(found("", ""), ElementsAre(1, 2, 3));

    CWindowEngine engine(system, "A b", "x");
    engine.minimize();
    engine.restore();
    system.m_bZoomed = true;
    engine.restore();
    EXPECT_THAT(system.takeCalls(), ElementsAre("minimize 1", "foreground 1", "minimize 2", "foreground 2",
                                                "restore 1", "restore 2"));

    system.m_hForeground = 0;
    EXPECT_TRUE(engine.setForeground());
    EXPECT_EQ(system.m_hForeground, 2u);
    system.m_hForeground = 3;
    system.m_bGivesFocus = false;
    EXPECT_FALSE(engine.setForeground(1.0));
    EXPECT_EQ(system.takeCalls().size(), 4u); // asked again every 400 ms
    EXPECT_FALSE(CWindowEngine(system, "None", "").setForeground());
}

} // namespace
} // namespace velmora::test
