#include "host/loaded_plugin.h"
#include "host/plugin_library.h"
#include "host/plugin_library_copy.h"
#include "host/plugin_library_image.h"
#include "host/plugin_test_support.h"
#include "host/user_dsp_filter.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace velmora {
namespace {

namespace fs = std::filesystem;
using test::CPlugInFolder;
using testing::HasSubstr;
using testing::Not;

int countMappings(const std::string& sWord)
{
    std::ifstream maps("/proc/self/maps");
    int nCount = 0;
    for (std::string sLine; std::getline(maps, sLine);)
        nCount += sLine.find(sWord) != std::string::npos;
    return nCount;
}

TEST(PlugInLibrary, RunsAPlugInWhoseFileIsGone)
{
    const CPlugInFolder folder;
    const fs::path file = folder.add("good");
    std::string sError;
    const auto pLibrary = CPlugInLibrary::load(fs::relative(file), sError);
    ASSERT_TRUE(pLibrary) << sError;
    EXPECT_EQ(fs::weakly_canonical(pLibrary->path()), fs::weakly_canonical(file));
    fs::remove(file);

    EXPECT_EQ(pLibrary->version(), PLUGIN_API_VERSION);
    const std::unique_ptr<CPlugIn> pPlugIn(pLibrary->makeObject(sError));
    ASSERT_TRUE(pPlugIn) << sError;
    EXPECT_STREQ(pPlugIn->m_PlugInName, "good");
    EXPECT_EQ(fs::weakly_canonical(pPlugIn->m_AssignButton1Name), fs::weakly_canonical(folder.path()))
        << "where the plug-in thinks that it lies";
}

TEST(PlugInLibrary, AlwaysRunsTheCodeThatStandsInTheFile)
{
    const CPlugInFolder folder;
    int nMappings = 0;
    for (int i = 0; i < 50; ++i) {
        const int nVersion = 1 + i % 3;
        const fs::path file = folder.add("Reloaded" + std::to_string(nVersion), "Reloaded");
        std::string sError;
        auto pLibrary = CPlugInLibrary::load(file, sError);
        ASSERT_TRUE(pLibrary) << sError;
        CPlugIn* pPlugIn = pLibrary->makeObject(sError);
        ASSERT_TRUE(pPlugIn) << sError;
        const auto pLoaded = CLoadedPlugIn::create(std::move(pLibrary), pPlugIn);
        EXPECT_EQ(pPlugIn->getAdditionalPresetValue(0), static_cast<float>(nVersion));
        EXPECT_EQ(pPlugIn->getAdditionalPresetValue(1), 1.0F) << "an inline variable survived";
        EXPECT_EQ(pPlugIn->getAdditionalPresetValue(2), 1.0F) << "a template's variable survived";
        EXPECT_TRUE(pLoaded->unload());
        EXPECT_EQ(countMappings("Reloaded"), 0);
        if (i == 2)
            nMappings = countMappings(".so");
    }
    EXPECT_EQ(countMappings(".so"), nMappings);
}

TEST(PlugInLibrary, KeepsTwoBuildsOfOneFileApart)
{
    const CPlugInFolder folder;
    std::string sError;
    const auto pOld = CPlugInLibrary::load(folder.add("Reloaded1", "Reloaded"), sError);
    const auto pNew = CPlugInLibrary::load(folder.add("Reloaded2", "Reloaded"), sError);
    ASSERT_TRUE(pOld && pNew) << sError;
    const std::unique_ptr<CPlugIn> pOldPlugIn(pOld->makeObject(sError));
    const std::unique_ptr<CPlugIn> pNewPlugIn(pNew->makeObject(sError));
    EXPECT_EQ(pOldPlugIn->getAdditionalPresetValue(0), 1.0F);
    EXPECT_EQ(pNewPlugIn->getAdditionalPresetValue(0), 2.0F);
    EXPECT_EQ(pNewPlugIn->getAdditionalPresetValue(2), 1.0F);
}

TEST(PlugInLibrary, TellsWhenItsCodeStays)
{
    const CPlugInFolder folder;
    std::string sError;
    const auto pLibrary = CPlugInLibrary::load(folder.add("pinned", "pinned"), sError);
    ASSERT_TRUE(pLibrary) << sError;
    EXPECT_FALSE(pLibrary->unload());
    EXPECT_THAT(pLibrary->pinReason(), ::testing::HasSubstr("-z nodelete"));
    EXPECT_EQ(pLibrary->handle(), nullptr);
    EXPECT_TRUE(pLibrary->unload()) << "nothing is left to free";
}

TEST(PlugInLibrary, NamesTheSymbolThatPinsIt)
{
    const CPlugInFolder folder;
    std::string sError;
    const auto pLibrary = CPlugInLibrary::load(folder.add("unique", "unique"), sError);
    ASSERT_TRUE(pLibrary) << sError;
    delete pLibrary->makeObject(sError);
    EXPECT_FALSE(pLibrary->unload());
    EXPECT_THAT(pLibrary->pinReason(), ::testing::HasSubstr("g_nInlineCount"));
    EXPECT_THAT(pLibrary->pinReason(), ::testing::HasSubstr("-fno-gnu-unique"));
}

TEST(PlugInLibrary, TellsWhichBuildIsInMemory)
{
    const CPlugInFolder folder;
    std::string sError;
    std::vector<std::string> ids;
    for (const char* pName : {"Reloaded1", "Reloaded2"}) {
        const auto file = folder.add(pName, "Reloaded");
        const auto pLibrary = CPlugInLibrary::load(file, sError);
        ASSERT_TRUE(pLibrary) << sError;
        EXPECT_EQ(pLibrary->buildId(), buildIdOfFile(file));
        ids.push_back(pLibrary->buildId());
    }
    EXPECT_EQ(ids[0].size(), 40U);
    EXPECT_NE(ids[0], ids[1]);
    test::writeFile(folder / "cut.so", test::readFile(folder / "Reloaded.so").substr(0, 3000));
    EXPECT_EQ(buildIdOfFile(folder / "cut.so"), "");
    EXPECT_EQ(buildIdOfFile(folder / "none.so"), "");
}

TEST(PlugInLibrary, SaysWhyItCannotBeLoaded)
{
    const CPlugInFolder folder;
    folder.add("missing_function", "unlinked");
    test::writeFile(folder / "text.so", "This is no library.\n");
    test::writeFile(folder / "empty.so", "");
    const std::string sWhole = test::readFile(folder.add("good"));
    test::writeFile(folder / "cut.so", sWhole.substr(0, sWhole.size() / 2));
    fs::create_directory(folder / "folder.so");
    ASSERT_EQ(::mkfifo((folder / "pipe.so").c_str(), 0600), 0);

    const std::pair<const char*, const char*> cases[] = {
        {"absent.so", "No such file"},        {"text.so", "does not begin with the ELF signature"},
        {"empty.so", "is an empty file"},     {"folder.so", "is not a regular file"},
        {"pipe.so", "is not a regular file"}, {"unlinked.so", "functionThatNobodyHas"},
        {"cut.so", "is cut short"},
    };
    for (const auto& [pFile, pReason] : cases) {
        std::string sError;
        EXPECT_FALSE(CPlugInLibrary::load(folder / pFile, sError)) << pFile;
        EXPECT_THAT(sError, HasSubstr(pReason));
        EXPECT_THAT(sError, Not(HasSubstr("velmora-"))) << "the copy's path means nothing to a user";
    }
}

TEST(PlugInLibrary, HoldsBackWhatAConstructorThrows)
{
    const CPlugInFolder folder;
    const std::pair<const char*, const char*> cases[] = {{"throw_error", "no constructor, 100 % sure"},
                                                         {"throw_42", "not a std::exception"},
                                                         {"null_object", "returned null"}};
    for (const auto& [pName, pReason] : cases) {
        std::string sError;
        const auto pLibrary = CPlugInLibrary::load(folder.add(pName), sError);
        ASSERT_TRUE(pLibrary) << sError;
        EXPECT_EQ(pLibrary->makeObject(sError), nullptr);
        EXPECT_THAT(sError, HasSubstr(pReason));
    }
    std::string sError;
    EXPECT_EQ(CPlugInLibrary::load(folder.add("throw_at_version"), sError)->version(), std::nullopt);
    EXPECT_EQ(CPlugInLibrary::load(folder.add("no_exports", "none"), sError)->version(), std::nullopt);
}

TEST(PlugInLibraryCopy, TakesTheFirstFolderThatWillDo)
{
    const CPlugInFolder folder;
    const fs::path file = folder.add("good");
    test::writeFile(folder / "occupied", "not a folder");
    const std::vector<fs::path> folders{folder / "occupied", folder / "new" / "deep"};
    std::string sError;
    {
        const auto pCopy = CPlugInLibraryCopy::make(file, folders, sError);
        ASSERT_TRUE(pCopy) << sError;
        EXPECT_EQ(pCopy->path().filename(), "good.so");
        EXPECT_EQ(pCopy->path().parent_path().parent_path(), folders[1]);
        EXPECT_EQ(test::readFile(pCopy->path()), test::readFile(file));
    }
    EXPECT_TRUE(fs::is_empty(folders[1]));
    EXPECT_FALSE(CPlugInLibraryCopy::make(file, std::span(folders).first(1), sError));
    EXPECT_THAT(sError, HasSubstr("cannot be copied to " + folders[0].string()));
}

TEST(LoadedPlugIn, KeepsItsFilterWhenItIsUnloaded)
{
    const CPlugInFolder folder;
    std::string sError;
    auto pLibrary = CPlugInLibrary::load(folder.add("good"), sError);
    ASSERT_TRUE(pLibrary) << sError;
    CPlugIn* pPlugIn = pLibrary->makeObject(sError);
    const CPlugInLibrary* pSame = pLibrary.get();
    const auto pLoaded = CLoadedPlugIn::create(std::move(pLibrary), pPlugIn);
    CUserDSPFilter& filter = pLoaded->filter();
    EXPECT_EQ(filter.m_pPlugIn, pPlugIn);
    EXPECT_EQ(filter.m_hParentDLL, pSame);
    EXPECT_TRUE(filter.createControls());

    EXPECT_TRUE(pLoaded->unload());
    EXPECT_EQ(filter.m_pPlugIn, nullptr);
    EXPECT_EQ(filter.m_hParentDLL, nullptr);
    EXPECT_EQ(pLoaded->library(), nullptr);
    EXPECT_EQ(filter.m_sName, "good");
    EXPECT_EQ(countMappings("/good.so"), 0);
    EXPECT_TRUE(pLoaded->unload());
}

} // namespace
} // namespace velmora
