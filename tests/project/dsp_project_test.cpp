#include "base/archive.h"
#include "project/control_list.h"
#include "project/dsp_project.h"
#include "project_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>

namespace {

using namespace velmora;
using namespace velmora::test;

void load(CDSPProject& project, const std::string& sBytes)
{
    CArchive archive(std::as_bytes(std::span(sBytes)));
    project.Serialize(archive);
}

std::string stored(CDSPProject& project)
{
    std::string sBytes;
    CArchive archive(sBytes);
    project.Serialize(archive);
    return sBytes;
}

CUICtrl& addControl(CDSPProject& project, UINT uKind, const char* pName)
{
    CUICtrl control;
    control.uControlType = uKind;
    control.cControlName = pName;
    control.bUseMeter = control.bUpsideDownMeter = control.bLogMeter = true;
    control.nGUIRow = control.nGUIColumn = 3;
    control.uControlTheme[28] = 7;
    project.m_UIControlList.append(control);
    return *project.m_UIControlList.getAt(project.m_UIControlList.count() - 1);
}

TEST(DSPProject, LoadingMendsWhatOldVersionsLeft)
{
    for (const int nGUIType : {68, 67, -1}) {
        CDSPProject original;
        for (const char* pName : {"~Menu~", "-- Menu --", "Gain", "-- Menu --"})
            addControl(original, FILTER_CONTROL_CONTINUOUSLY_VARIABLE, pName);
        addControl(original, FILTER_CONTROL_LED_METER, "Level");
        original.m_nGUIType = nGUIType;
        original.m_nGUIThemeID = 5;
        original.m_uControlTheme[31] = original.m_uControlTheme[32] = 9;
        original.setTextLabel(63, "last");

        CDSPProject project;
        load(project, stored(original));
        const bool bLegacy = nGUIType == 68;
        std::vector<std::string> names;
        for (const CUICtrl* pControl : controlsOf(project.m_UIControlList)) {
            names.emplace_back(pControl->cControlName);
            EXPECT_EQ(pControl->nGUIRow, bLegacy ? -1 : 3);
            EXPECT_EQ(pControl->uControlTheme[28], bLegacy ? 0u : 7u);
            const bool bMeter = pControl->uControlType == FILTER_CONTROL_LED_METER;
            for (const bool bFlag : {pControl->bUseMeter, pControl->bUpsideDownMeter, pControl->bLogMeter})
                EXPECT_EQ(bFlag, bMeter);
        }
        const std::vector<std::string> all = {"~Menu~", "-- Menu --", "Gain", "-- Menu --", "Level"};
        EXPECT_EQ(names, bLegacy ? (std::vector<std::string>{"Gain", "Level"}) : all);
        EXPECT_EQ(project.m_uControlTheme[31], bLegacy ? 0u : 9u);
        EXPECT_EQ(project.m_uControlTheme[32], 9u);
        EXPECT_EQ(project.m_nGUIType, -1);
        EXPECT_EQ(project.m_nGUIThemeID, -1);
        EXPECT_EQ(project.m_TextLabels[0], nullptr);
        EXPECT_STREQ(project.m_TextLabels[63], "last");
    }
}

TEST(DSPProject, TextsOfControlsAreCutBetweenCharacters)
{
    const std::string a1022(1022, 'a');
    const std::pair<std::string, std::string> cases[] = {
        {a1022 + "b", a1022 + "b"},
        {a1022 + "bc", a1022 + "b"},
        {a1022 + "\xC3\xA9", a1022},                                        // two bytes, one fits
        {a1022.substr(1) + "\xC3\xA9" + "b", a1022.substr(1) + "\xC3\xA9"}, // both fit
        {a1022.substr(2) + "\xF0\x9F\x8E\xB5", a1022.substr(2)},            // four bytes, three fit
        {a1022 + "\xE9\xE9\xE9", a1022 + "\xE9"},                           // no UTF-8
        {std::string(2000, '\xA9'), std::string(1023, '\xA9')},             // nor this
        {"zero" + std::string(2, '\0') + "behind", "zero"},
    };
    for (const auto& [sText, sKept] : cases) {
        std::string sBytes = numberedStream(1, 1);
        sBytes.replace(sBytes.find(textBytes("text 101")), textBytes("text 101").size(), textBytes(sText));
        CDSPProject project;
        load(project, sBytes);
        EXPECT_EQ(project.m_UIControlList.getAt(0)->cControlName, sKept);
        EXPECT_STREQ(project.m_UIControlList.getAt(0)->cControlUnits, "text 102");
    }
}

std::string labelled(std::uint32_t uCount)
{
    std::string sBytes = numberedStream(25, 0);
    const std::size_t uLabels = sBytes.size() - 2 * 256;
    std::size_t uStart = sBytes.rfind(littleEndianBytes(64, 2) + '\0' + textBytes("label 1"), uLabels);
    const std::string sCount =
        uCount < 0xFFFF ? littleEndianBytes(uCount, 2) : "\xFF\xFF" + littleEndianBytes(uCount, 4);
    return sBytes.substr(0, uStart) + sCount + std::string(uCount, '\0') + sBytes.substr(uLabels);
}

TEST(DSPProject, DamagedStreamsLeaveAnEmptyProject)
{
    CDSPProject fresh;
    const std::string sFresh = stored(fresh);
    const auto refuses = [&](const std::string& sBytes) {
        CDSPProject project;
        addControl(project, FILTER_CONTROL_LED_METER, "old");
        project.setTextLabel(3, "old");
        EXPECT_THROW(load(project, sBytes), CArchiveError);
        EXPECT_EQ(stored(project), sFresh);
    };
    for (const int nVersion : {1, 14, 31}) {
        const std::string sWhole = numberedStream(nVersion, 1);
        for (std::size_t uSize = 0; uSize < sWhole.size(); uSize += uSize < 300 ? 1 : 37)
            refuses(sWhole.substr(0, uSize));
    }
    const auto announced = [](int nVersion, std::uint32_t uCount, std::size_t uBytes) {
        return littleEndianBytes(static_cast<std::uint32_t>(nVersion), 4) + littleEndianBytes(uCount, 4) +
               std::string(uBytes, '\0');
    };
    refuses(announced(31, 0xFFFFFFFF, 4000));
    refuses(announced(31, 6, 724 * 6 - 1));
    refuses(announced(1, 4097, 4097 * 35 + 100));       // 25 MB for 143 KB
    refuses(announced(1, 1000000, 1000000 * 35 + 100)); // 6 GB for 35 MB
    refuses(labelled(1));
    refuses(labelled(63));

    CDSPProject project;
    load(project, announced(1, 4096, 4096 * 35 + 100));
    EXPECT_EQ(project.m_UIControlList.count(), 4096u);
    load(project, announced(31, 10000, 10000 * 724 + 4000) + std::string(3000, '\0'));
    EXPECT_EQ(project.m_UIControlList.count(), 10000u);
    for (const std::uint32_t uCount : {0u, 64u, 65u, 0xFFFFu, 3000000u}) {
        load(project, labelled(uCount));
        EXPECT_LE(project.m_TextLabelStrings.size(), 64u);
        EXPECT_EQ(project.m_uLabelCY[63], 4163u) << uCount;
    }
}

TEST(DSPProject, NamesOfVariablesAreToldApartById)
{
    CDSPProject project;
    for (const UINT uId : {0u, 1123u, 0xFFFFu, 0x10000u, 0xFFFFFFFFu}) {
        const std::string sName = "m_" + std::to_string(uId);
        CUICtrl control;
        control.uControlId = uId;
        control.cVariableName = sName.c_str();
        project.m_UIControlList.append(control);
    }
    std::vector<std::string> names = {"kept"};
    project.GetUserVariableNames(names);
    project.GetControlVariableNames(names);
    EXPECT_THAT(names, testing::ElementsAre("kept", "m_65536", "m_4294967295", "m_0", "m_1123", "m_65535"));
}

} // namespace
