#include "project/preset_file.h"
#include "project/preset_folder.h"
#include "support/test_support.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;

// A live plug-in with one control.
class CGainPlugIn : public CPlugIn
{
  public:
    CGainPlugIn()
    {
        CUICtrl control;
        control.uUserDataType = floatData;
        control.m_pUserCookedFloatData = &m_fGain;
        m_UIControlList.append(control);
    }

    float m_fGain = 1.0F;
};

std::vector<std::string> namesIn(const CPresetFolder& presets)
{
    std::vector<std::string> names;
    for (const auto& entry : presets.entries())
        names.push_back(entry.m_sName);
    return names;
}

TEST(PresetFolder, SetUpListsTheFactoryPresetFirst)
{
    const test::CTemporaryFolder project;
    std::filesystem::create_directory(project / "Presets");
    for (const auto& [pFile, pName] : {std::pair{"10.spf", "Ten"},
                                       {"2.spf", "Two"},
                                       {"0.spf", "Old"},
                                       {"Extra.spf", "Extra"},
                                       {".2.part.spf", "Unfinished"},
                                       {"3.txt", "No"}})
        test::writeFile(project / "Presets" / pFile, std::string(pName) + "\n0\n");

    CGainPlugIn plugIn;
    plugIn.m_fGain = 0.5F;
    test::CRecordingDialogs dialogs;
    CPresetFolder presets(project.path());
    ASSERT_TRUE(presets.setUp(plugIn, dialogs));
    EXPECT_THAT(namesIn(presets), ElementsAre("Factory Preset", "Two", "Ten", "Extra"));
    const CPreset factory = readPreset(project / "Presets/0.spf");
    EXPECT_EQ(factory.name(), "Factory Preset");
    EXPECT_EQ(factory.controlValue(0), 0.5);

    plugIn.m_fGain = 2.0F;
    EXPECT_TRUE(presets.load("Factory Preset", plugIn, dialogs));
    EXPECT_EQ(plugIn.m_fGain, 0.5F);
    EXPECT_FALSE(presets.load("None", plugIn, dialogs));
    EXPECT_THAT(dialogs.m_messages, ElementsAre("There is no preset with the name \"None\"."));

    const test::CTemporaryFolder blocked;
    test::writeFile(blocked / "Presets", "not a folder");
    CPresetFolder none(blocked.path());
    EXPECT_FALSE(none.setUp(plugIn, dialogs));
    EXPECT_THAT(namesIn(none), ElementsAre("Factory Preset"));
}

TEST(PresetFolder, SavesOverAndIntoGaps)
{
    const test::CTemporaryFolder project;
    CGainPlugIn plugIn;
    test::CRecordingDialogs dialogs;
    CPresetFolder presets(project.path());
    ASSERT_TRUE(presets.setUp(plugIn, dialogs));
    for (int i = 1; i <= 63; ++i)
        ASSERT_TRUE(presets.save("P" + std::to_string(i), plugIn, dialogs));
    ASSERT_EQ(presets.entries().size(), 64U);
    EXPECT_EQ(presets.entries()[17].m_file, project / "Presets/17.spf");

    EXPECT_FALSE(presets.save("One more", plugIn, dialogs));
    EXPECT_FALSE(presets.save("", plugIn, dialogs));
    plugIn.m_fGain = 7.0F;
    EXPECT_TRUE(presets.save("P17", plugIn, dialogs));
    EXPECT_EQ(readPreset(project / "Presets/17.spf").controlValue(0), 7.0);
    EXPECT_EQ(presets.entries().size(), 64U);

    EXPECT_TRUE(presets.remove("P20", dialogs));
    EXPECT_EQ(presets.nextFreeSlot(), 20);
    EXPECT_TRUE(presets.save("New\nname", plugIn, dialogs));
    EXPECT_EQ(presets.find("New name"), project / "Presets/20.spf");

    EXPECT_FALSE(presets.remove("Factory Preset", dialogs));
    EXPECT_FALSE(presets.remove("P20", dialogs));
    EXPECT_THAT(
        dialogs.m_messages,
        ElementsAre("Maximum number of 64 presets has been reached; delete some of your presets first.",
                    "Preset name can not be empty!", "You can not delete the Factory Preset!",
                    "There is no preset with the name \"P20\"."));
}

} // namespace
} // namespace velmora
