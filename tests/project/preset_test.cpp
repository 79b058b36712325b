#include "project/preset.h"
#include "project/preset_file.h"
#include "support/test_support.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A live plug-in with a control of each type, a meter, and two additional values.
class CPresetPlugIn : public CPlugIn
{
  public:
    CPresetPlugIn()
    {
        const auto add = [this](UINT uId, UINT uDataType) {
            CUICtrl control;
            control.uControlId = uId;
            control.uUserDataType = uDataType;
            control.m_pUserCookedIntData = uDataType == intData ? &m_nValue : nullptr;
            control.m_pUserCookedFloatData = uDataType == floatData ? &m_fValue : nullptr;
            control.m_pUserCookedDoubleData = uDataType == doubleData ? &m_dValue : nullptr;
            control.m_pUserCookedUINTData = uDataType == UINTData ? &m_uValue : nullptr;
            m_UIControlList.append(control);
        };
        add(7, intData);
        add(1, floatData);
        add(50, 4); // a meter
        add(0x10000, doubleData);
        add(41, UINTData);
    }

    bool userInterfaceChange(int nControlIndex) override
    {
        m_changes.push_back(nControlIndex);
        return true;
    }
    int getAdditionalPresetValueCount() override { return m_nAdditional; }
    float getAdditionalPresetValue(int nIndex) override { return 0.5F + static_cast<float>(nIndex); }

    int m_nValue = -3;
    float m_fValue = 0.25F;
    double m_dValue = 1.0 / 3.0;
    UINT m_uValue = 4000000000U;
    int m_nAdditional = 2;
    std::vector<int> m_changes;
};

std::string zeroLines(std::size_t uCount)
{
    std::string sLines;
    for (std::size_t i = 0; i < uCount; ++i)
        sLines += "0.000000\n";
    return sLines;
}

TEST(Preset, TextLineByLine)
{
    CPresetPlugIn plugIn;
    plugIn.m_uY_TrackPadIndex = 7;
    plugIn.m_pVectorJSProgram[JS_PROG_INDEX(0, 1)] = 2.5F;
    EXPECT_EQ(
        presetText(plugIn, "Soft\r\nlead"),
        "Soft  lead\n4\n7:-3\n1:0.250000\n65536:0.333333\n41:4000000000\n-1\n7\n16\n0.000000\n2.500000\n" +
            zeroLines(110) + "0:0.500000\n1:1.500000\n");
    plugIn.m_nAdditional = -1;
    EXPECT_TRUE(presetText(plugIn, "x").ends_with("16\n0.000000\n2.500000\n" + zeroLines(110)));
}

TEST(Preset, WhatIsWrittenIsReadBack)
{
    CPresetPlugIn plugIn;
    plugIn.m_uX_TrackPadIndex = 41;
    plugIn.m_pVectorJSProgram[JS_PROG_INDEX(15, 6)] = -1.5F;
    const std::string sText = presetText(plugIn, "Lead");
    const CPreset preset(sText);
    EXPECT_EQ(preset.name(), "Lead");
    EXPECT_EQ(preset.controlValue(7), -3.0);
    EXPECT_EQ(preset.controlValue(0x10000), 0.333333);
    EXPECT_EQ(preset.controlValue(8), 0.0);
    EXPECT_EQ(preset.joystickValue(15, 6), -1.5F);
    EXPECT_EQ(preset.joystickValue(16, 0), 0.0F);
    EXPECT_EQ(preset.joystickValue(0, 7), 0.0F);
    EXPECT_EQ(preset.additionalCount(), 2U);
    EXPECT_EQ(preset.additionalValue(1), 1.5F);
    EXPECT_EQ(preset.additionalValue(2), 0.0F);

    CPresetPlugIn other;
    other.m_nValue = 0;
    other.m_fValue = 0.0F;
    other.m_dValue = 0.0;
    other.m_uValue = 0;
    applyPreset(preset, other);
    EXPECT_EQ(presetText(other, "Lead"), sText);
    EXPECT_THAT(other.m_changes, ElementsAre(7, 1, 0x10000, 41, -1));
}

// A file, what a plug-in's values are after loading it, and what the plug-in was told.
TEST(Preset, LoadsWhatThereIs)
{
    constexpr int MAX_INT = std::numeric_limits<int>::max();
    constexpr float MAX_FLOAT = std::numeric_limits<float>::max();
    struct CCase
    {
        std::string m_sContents;
        int m_nValue;
        float m_fValue;
        UINT m_uValue;
        std::vector<int> m_changes;
    };
    const CCase cases[] = {
        {"", -3, 0.25F, 4000000000U, {}},
        {"x", -3, 0.25F, 4000000000U, {}},
        {"name\n", -3, 0.25F, 4000000000U, {}},
        {"name\n0\n\n", -3, 0.25F, 4000000000U, {-1}},
        {"name\n-5\n\n", -3, 0.25F, 4000000000U, {-1}},
        {"name\n9999999999999999999\n7:1\n", -3, 0.25F, 4000000000U, {-1}}, // no number of lines
        // A control saved since is left as it was, one deleted since is skipped.
        {"name\n2\n7:0.500000\n99:4\n\n", 1, 0.25F, 4000000000U, {7, -1}},
        {"name\r\n2\r\n7:2\r\n1:3\r\n\n", 2, 3.0F, 4000000000U, {7, 1, -1}},
        // Fewer lines than told: what there is, and no end.
        {"name\n2000000000\n7:5\n1:12\n", 5, 12.0F, 4000000000U, {7, 1}},
        // Without a final line end the last character is lost.
        {"name\n2\n7:5\n1:12", 5, 1.0F, 4000000000U, {7, 1, -1}},
        {"name\n3\n7:1e300\n1:1e300\n41:-1\n\n", MAX_INT, MAX_FLOAT, 0, {7, 1, 41, -1}},
        {"name\n4\n7:nan\n1:inf\n41:1e999\n1\n\n", -3, 0.25F, 4000000000U, {-1}},
        {"name\n4\n:5\n-7:5\n7\n99999999999:5\n\n", -3, 0.25F, 4000000000U, {-1}},
        {"name\n2\n7:1\n7:2\n\n", 2, 0.25F, 4000000000U, {7, 7, -1}},
        {"name\n1\n50:1\n\n", -3, 0.25F, 4000000000U, {-1}}, // a meter has no variable
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const CCase& test = cases[i];
        CPresetPlugIn plugIn;
        applyPreset(CPreset(test.m_sContents), plugIn);
        EXPECT_EQ(plugIn.m_nValue, test.m_nValue) << "case " << i;
        EXPECT_EQ(plugIn.m_fValue, test.m_fValue) << "case " << i;
        EXPECT_EQ(plugIn.m_uValue, test.m_uValue) << "case " << i;
        EXPECT_EQ(plugIn.m_changes, test.m_changes) << "case " << i;
    }
    EXPECT_EQ(CPreset("name\n2\n7:1\n7:2\n\n").controlValue(7), 1.0);
    EXPECT_EQ(CPreset("name\n9\n7:6\n\n").controlValue(7), 6.0); // cut short
}

TEST(Preset, JoystickAndAdditionalValuesStayInBounds)
{
    CPresetPlugIn plugIn;
    plugIn.m_pVectorJSProgram[JS_PROG_INDEX(1, 0)] = 9.0F;
    const CPreset tooMany("name\n0\n3\n-1\n20\n1\nx\nnan\n" + zeroLines(109) + zeroLines(28) +
                          "0:1e99\nx\n5:2\n4000000000:7\n");
    applyPreset(tooMany, plugIn);
    EXPECT_EQ(plugIn.m_uX_TrackPadIndex, 3U);
    EXPECT_EQ(plugIn.m_uY_TrackPadIndex, 0xFFFFFFFFU);
    EXPECT_EQ(plugIn.m_pVectorJSProgram[JS_PROG_INDEX(0, 0)], 1.0F);
    EXPECT_EQ(plugIn.m_pVectorJSProgram[JS_PROG_INDEX(1, 0)], 0.0F);
    EXPECT_EQ(tooMany.additionalCount(), 3U);
    EXPECT_EQ(tooMany.additionalValue(0), std::numeric_limits<float>::max());
    EXPECT_EQ(tooMany.additionalValue(4000000000U), 7.0F);

    const CPreset tooFew("name\n0\n3\n-1\n9000000000000000000\n4\n5\n\n");
    plugIn.m_pVectorJSProgram[JS_PROG_INDEX(0, 5)] = 8.0F;
    applyPreset(tooFew, plugIn);
    EXPECT_EQ(plugIn.m_pVectorJSProgram[JS_PROG_INDEX(0, 1)], 5.0F);
    EXPECT_EQ(plugIn.m_pVectorJSProgram[JS_PROG_INDEX(0, 5)], 8.0F);

    delete[] plugIn.m_pVectorJSProgram;
    plugIn.m_pVectorJSProgram = nullptr; // a plug-in may do so
    applyPreset(tooMany, plugIn);
    EXPECT_TRUE(presetText(plugIn, "x").ends_with(zeroLines(112) + "0:0.500000\n1:1.500000\n"));
}

TEST(Preset, FilesThatCanNotBeUsed)
{
    const test::CTemporaryFolder folder;
    CPresetPlugIn plugIn;
    test::CRecordingDialogs dialogs;
    const auto huge = folder / "huge.spf";
    test::writeFile(huge, "x");
    std::filesystem::resize_file(huge, 1ULL << 32); // takes no room on the disc
    EXPECT_FALSE(savePreset(plugIn, folder / "none/1.spf", "x", dialogs));
    EXPECT_FALSE(loadPreset(plugIn, folder / "1.spf", dialogs));
    EXPECT_FALSE(loadPreset(plugIn, folder.path(), dialogs));
    EXPECT_FALSE(loadPreset(plugIn, huge, dialogs));
    EXPECT_THAT(dialogs.m_messages,
                ElementsAre((folder / "none/1.spf").string() + " could not be opened for saving!",
                            (folder / "1.spf").string() + " could not be opened for reading!",
                            folder.path().string() + " could not be opened for reading!",
                            huge.string() + ": Error while reading file."));
    EXPECT_THAT(plugIn.m_changes, IsEmpty());
    EXPECT_EQ(readPreset(folder / "1.spf").name(), "");

    std::filesystem::create_directories(folder / "full.spf/x");
    EXPECT_FALSE(savePreset(plugIn, folder / "full.spf", "x", dialogs));
    EXPECT_EQ(dialogs.m_messages.back(), "Error while writing preset file; WriteFile() failed.");
    EXPECT_THAT(test::entriesOf(folder.path()), ElementsAre("full.spf", "huge.spf"));
}

} // namespace
} // namespace velmora
