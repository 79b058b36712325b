#include "project/control_list.h"
#include "project/dsp_project.h"
#include "project/project_schema.h"
#include "project_stream.h"

#include <cmath>
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

std::string stored(CDSPProject& project, int nVersion = NEWEST_SCHEMA)
{
    std::string sBytes;
    CArchive archive(sBytes);
    storeProject(archive, project, nVersion);
    return sBytes;
}

TEST(ProjectSchema, EveryVersionRoundTripsThroughItselfAndTheNewest)
{
    std::mt19937 random(2468);
    for (int nVersion = FIRST_SCHEMA; nVersion <= NEWEST_SCHEMA; ++nVersion)
        for (int nRound = 0; nRound < 200; ++nRound) {
            const std::string sBytes = randomStream(nVersion, random);
            CDSPProject project;
            load(project, sBytes);
            ASSERT_EQ(project.loadedSchema(), nVersion);
            ASSERT_EQ(stored(project, nVersion), sBytes) << nVersion << ", round " << nRound;
            const std::string sNewest = stored(project);
            load(project, sNewest);
            ASSERT_EQ(project.loadedSchema(), NEWEST_SCHEMA);
            ASSERT_EQ(stored(project), sNewest);
            ASSERT_EQ(stored(project, nVersion), sBytes) << nVersion << ", round " << nRound;
        }
}

// A file of version 4 written out byte by byte.
TEST(ProjectSchema, LoadsTheBytesOfVersionFour)
{
    using namespace std::string_literals;
    CDSPProject project;
    load(project, "\x04\0\0\0\x01\0\0\0"
                  "\x04Gain\x02"
                  "dB\x06m_fVol"
                  "\0\0\x80\x3F\0\0\0\x40\0\0\x40\x40\0\0\x80\x40\0\0\x80\xC0"
                  "\x05\0\0\0\x64\0\0\0\x01\0\0\0\0\0\xA0\x40\x06"
                  "ON,OFF"
                  "\x02/p\x08/p/a.prj\x01"
                  "a\x03"
                  "a.h\x05"
                  "a.cpp\0\x02"s);
    const auto controls = controlsOf(project.m_UIControlList);
    ASSERT_EQ(controls.size(), 1u);
    const CUICtrl& control = *controls[0];
    EXPECT_STREQ(control.cControlName, "Gain");
    EXPECT_STREQ(control.cControlUnits, "dB");
    EXPECT_STREQ(control.cVariableName, "m_fVol");
    EXPECT_STREQ(control.cEnumeratedList, "ON,OFF");
    EXPECT_EQ(control.fInitUserDoubleValue, 1.0f);
    EXPECT_EQ(control.fInitUserFloatValue, 2.0f);
    EXPECT_EQ(control.fInitUserIntValue, 3.0f);
    EXPECT_EQ(control.fUserDisplayDataHiLimit, 4.0f);
    EXPECT_EQ(control.fUserDisplayDataLoLimit, -4.0f);
    EXPECT_EQ(control.uControlId, 5u);
    EXPECT_EQ(control.uControlType, 100u);
    EXPECT_EQ(control.uUserDataType, 1u);
    EXPECT_EQ(control.fInitUserUINTValue, 5.0f);
    EXPECT_STREQ(control.cMeterVariableName, "");
    EXPECT_EQ(control.uDetectorMode, DETECT_MODE_RMS);
    EXPECT_EQ(control.nGUIRow, -1);
    EXPECT_EQ(project.m_sProjectFolder, "/p");
    EXPECT_EQ(project.m_sProjectFile, "/p/a.prj");
    EXPECT_EQ(project.m_sProjectName, "a");
    EXPECT_EQ(project.m_sHeaderFile, "a.h");
    EXPECT_EQ(project.m_sSourceFile, "a.cpp");
    EXPECT_EQ(project.m_sSolutionFile, "");
    EXPECT_TRUE(project.m_bProjectFlagV3);
    EXPECT_EQ(project.m_AssignButton1Name, "B1");
    EXPECT_EQ(project.m_uX_TrackPadIndex, 0xFFFFFFFF);
    EXPECT_EQ(project.m_uControlTheme[0], 0xFFFFFFFF);
    EXPECT_EQ(project.m_sCompanyName, "Velmora User");
}

TEST(ProjectSchema, NewestFieldsFindTheirMembers)
{
    CDSPProject p;
    load(p, numberedStream(31, 2));
    const auto controls = controlsOf(p.m_UIControlList);
    ASSERT_EQ(controls.size(), 2u);
    for (int nControl = 0; nControl < 2; ++nControl) {
        const CUICtrl& c = *controls[static_cast<std::size_t>(nControl)];
        const int nFirst = 100 * (nControl + 1);
        for (const auto& [nField, pText] : {std::pair(1, c.cControlName),
                                            {2, c.cControlUnits},
                                            {3, c.cVariableName},
                                            {13, c.cEnumeratedList},
                                            {14, c.cMeterVariableName}})
            EXPECT_EQ(pText, "text " + std::to_string(nFirst + nField));
        const std::pair<int, double> numbers[] = {{400, c.fInitUserDoubleValue},
                                                  {500, c.fInitUserFloatValue},
                                                  {600, c.fInitUserIntValue},
                                                  {700, c.fUserDisplayDataHiLimit},
                                                  {800, c.fUserDisplayDataLoLimit},
                                                  {900, c.uControlId},
                                                  {1100, c.uUserDataType},
                                                  {1200, c.fInitUserUINTValue},
                                                  {1800, c.uDetectorMode},
                                                  {2000, c.uMeterColorScheme},
                                                  {2100, c.fMeterAttack_ms},
                                                  {2200, c.fMeterRelease_ms},
                                                  {2300, c.uControlTheme[0]},
                                                  {2331, c.uControlTheme[31]},
                                                  {2400, c.nGUIRow},
                                                  {2500, c.nGUIColumn},
                                                  {2700, c.uMIDIControlCommand},
                                                  {2800, c.uMIDIControlName},
                                                  {2900, c.uMIDIControlChannel},
                                                  {3200, c.uFluxCapControl[0]},
                                                  {3263, c.uFluxCapControl[63]},
                                                  {3300, c.fFluxCapData[0]},
                                                  {3363, c.fFluxCapData[63]}};
        for (const auto& [nNumber, dValue] : numbers)
            EXPECT_EQ(dValue, 100 * nFirst + nNumber);
        EXPECT_EQ(c.uControlType, FILTER_CONTROL_LED_METER);
    }
    for (const auto& [nField, sText] : {std::pair(4, p.m_sProjectFolder),
                                        {5, p.m_sProjectFile},
                                        {6, p.m_sProjectName},
                                        {7, p.m_sHeaderFile},
                                        {8, p.m_sSourceFile},
                                        {9, p.m_sSolutionFile},
                                        {13, p.m_AssignButton1Name},
                                        {14, p.m_AssignButton2Name},
                                        {15, p.m_AssignButton3Name},
                                        {43, p.m_sCompanyName},
                                        {44, p.m_sCompanyCode},
                                        {45, p.m_sPlugInCode},
                                        {50, p.m_sVSTPlugInCode},
                                        {52, p.m_sSidechainFile}})
        EXPECT_EQ(sText, "text " + std::to_string(nField));
    const std::pair<int, double> numbers[] = {{1100, p.m_uX_TrackPadIndex},
                                              {1200, p.m_uY_TrackPadIndex},
                                              {2300, p.m_uControlTheme[0]},
                                              {2363, p.m_uControlTheme[63]},
                                              {2400, p.m_pVectorJSProgram[0]},
                                              {2404, p.m_pVectorJSProgram[64]}, // step 0, value 4
                                              {2475, p.m_pVectorJSProgram[15]}, // step 15, value 0
                                              {2600, p.m_JS_XCtrl.uControlId},
                                              {2800, p.m_JS_XCtrl.uMIDIControlCommand},
                                              {2900, p.m_JS_XCtrl.uMIDIControlName},
                                              {3000, p.m_JS_XCtrl.uMIDIControlChannel},
                                              {3100, p.m_JS_YCtrl.uControlId},
                                              {3300, p.m_JS_YCtrl.uMIDIControlCommand},
                                              {3400, p.m_JS_YCtrl.uMIDIControlName},
                                              {3500, p.m_JS_YCtrl.uMIDIControlChannel},
                                              {3600, p.m_pVectorJSProgram[80]},
                                              {3603, p.m_pVectorJSProgram[97]}, // step 1, value 6
                                              {3700, p.m_uPlugInEx[0]},
                                              {3863, p.m_fPlugInEx[63]},
                                              {4001, p.m_uLabelCX[1]},
                                              {4163, p.m_uLabelCY[63]},
                                              {5107, p.m_uGUIDWords[7]}};
    for (const auto& [nNumber, dValue] : numbers)
        EXPECT_EQ(dValue, nNumber);
    EXPECT_EQ(p.m_TextLabels[0], nullptr);
    EXPECT_STREQ(p.m_TextLabels[63], "label 63");
    EXPECT_EQ(p.m_nGUIType, -1);
}

// One flag set at a time.
TEST(ProjectSchema, NewestFlagsFindTheirMembers)
{
    const int flags[] = {115, 116, 117, 119, 126, 130, 131, 10, 16, 17, 18,
                         19,  20,  25,  27,  32,  42,  46,  47, 48, 49, 53};
    for (const int nFlag : flags) {
        CDSPProject p;
        load(p, numberedStream(31, 1, nFlag));
        const CUICtrl& c = *p.m_UIControlList.getAt(0);
        const bool values[] = {c.bUseMeter,
                               c.bUpsideDownMeter,
                               c.bOwnerControl,
                               c.bLogMeter,
                               c.bMIDIControl,
                               c.bLogSlider,
                               c.bExpSlider,
                               p.m_bProjectFlagV3,
                               p.m_bVSTCompatible,
                               p.m_bLatchingAssignButton1,
                               p.m_bLatchingAssignButton2,
                               p.m_bLatchingAssignButton3,
                               p.m_bUseCustomVSTGUI,
                               p.m_bOutputOnlyPlugIn,
                               p.m_JS_XCtrl.bMIDIControl,
                               p.m_JS_YCtrl.bMIDIControl,
                               p.m_bUserCustomGUI,
                               p.m_bWriteAUWrapper,
                               p.m_bCarbonGUI,
                               p.m_bCocoaGUI,
                               p.m_bWriteVSTWrapper,
                               p.m_bSidechainEnabled};
        static_assert(std::size(values) == std::size(flags));
        for (std::size_t i = 0; i < std::size(flags); ++i)
            EXPECT_EQ(values[i], flags[i] == nFlag) << flags[i] << " of " << nFlag;
    }
}

TEST(ProjectSchema, FieldsThatAnOldFileLacksAreAsInAFreshProject)
{
    CDSPProject p;
    load(p, numberedStream(31, 3)); // everything set, and gone with the next load
    load(p, numberedStream(15, 1));
    EXPECT_EQ(p.m_UIControlList.count(), 1u);
    EXPECT_EQ(p.m_UIControlList.getAt(0)->uControlTheme[31], 12331u);
    EXPECT_EQ(p.m_UIControlList.getAt(0)->nGUIRow, -1);
    EXPECT_EQ(p.m_UIControlList.getAt(0)->uMIDIControlName, 3u);
    EXPECT_EQ(p.m_uControlTheme[31], 2331u);
    EXPECT_EQ(p.m_uControlTheme[32], 0u);
    EXPECT_EQ(p.m_pVectorJSProgram[0], 0.0f);
    EXPECT_EQ(p.m_JS_YCtrl.uMIDIControlName, 17u);
    EXPECT_EQ(p.m_TextLabels[1], nullptr);
    EXPECT_EQ(p.m_uGUIDWords[0], 0x845207E6u);

    load(p, numberedStream(14, 0));
    EXPECT_EQ(p.m_uControlTheme[0], 0xFFFFFFFF);
    load(p, numberedStream(21, 1));
    EXPECT_EQ(p.m_uControlTheme[63], 2363u);
    EXPECT_EQ(p.m_pVectorJSProgram[64], 2404.0f);
    EXPECT_EQ(p.m_pVectorJSProgram[80], 0.0f);
    EXPECT_EQ(p.m_UIControlList.getAt(0)->uFluxCapControl[1], 0u);

    load(p, numberedStream(28, 1));
    EXPECT_EQ(p.m_sCompanyName, "Velmora User");
    EXPECT_FALSE(p.m_bWriteAUWrapper);
    EXPECT_TRUE(p.m_bWriteVSTWrapper);
    EXPECT_EQ(p.m_sVSTPlugInCode, "text 44");
    EXPECT_EQ(p.m_uGUIDWords[7], 0x38B37056u);
}

TEST(ProjectSchema, OtherVersionNumbersReadAsTheNewest)
{
    EXPECT_EQ(CProjectSchema::of(1).smallestControl(), 35u);
    EXPECT_EQ(CProjectSchema::of(99).smallestControl(), 724u);
    for (const int nVersion : {0, -1, 32, 0x7FFFFFFF}) {
        std::string sBytes = numberedStream(31, 1);
        sBytes.replace(0, 4, littleEndianBytes(static_cast<std::uint32_t>(nVersion), 4));
        CDSPProject project;
        load(project, sBytes);
        EXPECT_EQ(project.loadedSchema(), nVersion);
        EXPECT_EQ(stored(project).substr(4), stored(project, nVersion).substr(4));
        EXPECT_TRUE(project.m_bSidechainEnabled);
    }
}

} // namespace
