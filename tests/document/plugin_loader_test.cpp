#include "audio/audio_engine.h"
#include "base/message_target.h"
#include "document/plugin_loader.h"
#include "host/plugin_library.h"
#include "host/user_dsp_filter.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr const char* STALE_QUESTION =
    "This Plug-In is not compatible with the current Contract Version.\n\n"
    "You can not load this Plug-In until you sucessfully rebuild with the new files.\n\n"
    "Would you like Velmora to copy the new Base Class Files and initiate a Rebuild?\n\n"
    "If you choose <No> you must manually copy and rebuild the project.";

class CRecordingView : public IMessageTarget
{
  public:
    void post(unsigned uMessage, std::size_t, std::ptrdiff_t) override { m_posted.push_back(uMessage); }
    std::ptrdiff_t send(unsigned, std::size_t, std::ptrdiff_t nParam) override
    {
        m_texts.emplace_back(reinterpret_cast<const char*>(nParam));
        return 0;
    }

    std::vector<unsigned> m_posted;
    std::vector<std::string> m_texts;
};

class PlugInLoaderTest : public testing::Test
{
  protected:
    PlugInLoaderTest() : m_directory(std::filesystem::current_path())
    {
        m_loader.setPlugInFolder(m_folder.path());
    }
    ~PlugInLoaderTest() override { std::filesystem::current_path(m_directory); }

    std::string add(const std::string& sBuilt, const std::string& sName)
    {
        std::filesystem::copy_file(std::filesystem::path(PLUGIN_TEST_FOLDER) / (sBuilt + ".so"),
                                   m_folder / (sName + ".so"));
        return sName + ".so";
    }

    std::filesystem::path m_directory;
    test::CTemporaryFolder m_folder;
    test::CRecordingDialogs m_dialogs;
    CRecordingView m_view;
    CTransport m_transport;
    CSidechain m_sidechain;
    CAudioEngine m_engine{m_transport, m_sidechain};
    CPlugInLoader m_loader{m_engine, m_transport, m_dialogs, m_view};
};

TEST_F(PlugInLoaderTest, ALoadTakesItsStepsInOrder)
{
    CDSPFilter* pFilter = m_loader.loadPlugin(add("changeling", "Good"), true);
    ASSERT_NE(pFilter, nullptr);
    EXPECT_TRUE(m_dialogs.m_messages.empty());
    EXPECT_EQ(m_dialogs.m_notes, (std::vector<std::string>{
                                     "Plugin created.", "Plugin-buddy created.", "Buffer event done.",
                                     "Old filter cleanup.", "New filter cleanup.", "Init GUI Form.",
                                     "prepareForPlay()", "m_bPlugInLoaded = true", "loadPlugin( ) Done."}));
    EXPECT_EQ(m_engine.filter(), pFilter);
    EXPECT_EQ(pFilter->m_sName, "Good");
    EXPECT_EQ(pFilter->m_ControlList.size(), 1U);
    EXPECT_TRUE(m_engine.runGate().tryWait()) << "the gate is open again";

    pFilter->m_pPlugIn->sendStatusWndText("hello");
    EXPECT_EQ(m_view.m_texts, std::vector<std::string>{"hello"});
    EXPECT_TRUE(pFilter->m_pPlugIn->m_PlugInName == std::string("Good"));
}

TEST_F(PlugInLoaderTest, EachFailureIsToldAndLeavesTheOldFilterCurrent)
{
    CDSPFilter* pOld = m_loader.loadPlugin(add("changeling", "Good"), false);
    ASSERT_NE(pOld, nullptr);
    test::writeFile(m_folder / "text.so", "no library");
    const struct
    {
        std::string m_sFile;
        std::vector<std::string> m_messages;
        std::vector<std::string> m_questions;
    } cases[] = {
        {"none.so", {"Path not found for the DLL: none.so"}, {}},
        {"text.so", {"Error loading DLL"}, {}},
        {add("no_exports", "no_exports"), {"Error getting DLL function pointer"}, {STALE_QUESTION}},
        {add("no_version", "no_version"), {}, {STALE_QUESTION}},
        {add("changeling", "version_60"), {}, {STALE_QUESTION}},
        {add("changeling", "version_62"), {}, {STALE_QUESTION}},
        {add("no_object", "no_object"),
         {"Error getting DLL function pointer", "Could not create the Plug In object."},
         {}},
        {add("changeling", "null_object"), {"Could not create the Plug In object."}, {}},
    };
    for (const auto& oneCase : cases) {
        SCOPED_TRACE(oneCase.m_sFile);
        m_dialogs = {};
        EXPECT_EQ(m_loader.loadPlugin(oneCase.m_sFile, true), nullptr);
        EXPECT_EQ(m_dialogs.m_messages, oneCase.m_messages);
        EXPECT_EQ(m_dialogs.m_questions, oneCase.m_questions);
        EXPECT_EQ(m_engine.filter(), pOld);
        EXPECT_FALSE(m_loader.isRebuildRequested());
    }
}

TEST_F(PlugInLoaderTest, ALibraryThatWouldTakeUsDownIsNamedAndNotOpened)
{
    for (const std::string sDeed : {"crash_in_constructor", "exit_3", "throw_error", "crash_at_load"}) {
        m_dialogs = {};
        EXPECT_EQ(m_loader.loadPlugin(add("changeling", sDeed), false), nullptr);
        ASSERT_EQ(m_dialogs.m_messages.size(), 1U) << sDeed;
        EXPECT_NE(m_dialogs.m_messages.front().find(sDeed + ".so"), std::string::npos)
            << m_dialogs.m_messages.front();
    }
}

TEST_F(PlugInLoaderTest, YesToTheQuestionAsksForARebuild)
{
    m_dialogs.m_bAnswer = true;
    EXPECT_EQ(m_loader.loadPlugin(add("changeling", "version_60"), false), nullptr);
    EXPECT_TRUE(m_loader.isRebuildRequested());
    EXPECT_NE(m_loader.loadPlugin(add("changeling", "Good"), false), nullptr);
    EXPECT_FALSE(m_loader.isRebuildRequested());
}

TEST_F(PlugInLoaderTest, LoadingAgainReplacesTheCodeAndUnloadingFreesIt)
{
    const std::string sFile = add("Reloaded1", "Reloaded");
    ASSERT_NE(m_loader.loadPlugin(sFile, false), nullptr);
    std::filesystem::remove(m_folder / sFile);
    add("Reloaded2", "Reloaded");
    const CDSPFilter* pSecond = m_loader.loadPlugin(m_folder / sFile, false);
    ASSERT_NE(pSecond, nullptr);
    EXPECT_EQ(m_engine.filter(), pSecond);

    m_loader.unloadPlugin(false);
    EXPECT_TRUE(m_dialogs.m_messages.empty());
    EXPECT_EQ(m_engine.filter(), nullptr);
    EXPECT_FALSE(m_loader.isPlugInLoaded());
    m_loader.unloadPlugin(false);
    EXPECT_TRUE(m_dialogs.m_messages.empty());
}

TEST_F(PlugInLoaderTest, AScannedFolderIsListedAndItsPlugInsStayLoaded)
{
    add("changeling", "First");
    add("changeling", "Second");
    add("changeling", "version_60");
    m_loader.scanPlugIns(m_folder.path());
    EXPECT_EQ(m_loader.plugIns().size(), 2U);
    ASSERT_EQ(m_loader.scanEntries().size(), 3U);
    EXPECT_EQ(m_loader.scanEntries()[2].m_eStatus, EScanStatus::wrongVersion);
    EXPECT_EQ(m_engine.filter(), nullptr);
    EXPECT_EQ(std::filesystem::current_path(), std::filesystem::canonical(m_folder.path()));
}

} // namespace
} // namespace velmora
