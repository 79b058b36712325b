#include "base/message_target.h"
#include "document/filter_swap.h"
#include "document/plugin_loader.h"
#include "document/tonbox_doc.h"
#include "host/plugin_library.h"
#include "host/user_dsp_filter.h"
#include "host/view_messages.h"
#include "support/fake_audio_system.h"
#include "support/test_support.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <utility>

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

class CRecordingWindow : public IDocumentView
{
  public:
    void setTitle(std::string_view sTitle) override { m_sTitle = sTitle; }
    void showFilter(CDSPFilter* pFilter) override { m_pShown = pFilter; }

    std::string m_sTitle;
    CDSPFilter* m_pShown = nullptr;
};

// Puts one value on every output.
class CConstantModule : public CDSPFilter
{
  public:
    CConstantModule(std::string sName, float fValue) : m_fValue(fValue) { m_sName = std::move(sName); }
    bool processInterleaved(float*, float* pOut, UINT, UINT uSamples, UINT) override
    {
        std::fill_n(pOut, uSamples, m_fValue);
        return true;
    }

  private:
    float m_fValue;
};

class PlugInLoaderTest : public testing::Test
{
  protected:
    PlugInLoaderTest() : m_directory(std::filesystem::current_path())
    {
        m_loader.setPlugInFolder(m_folder.path());
        m_document.modules().add(std::make_unique<CConstantModule>("One", 1.0F));
        m_document.modules().add(std::make_unique<CConstantModule>("Two", 2.0F));
    }
    ~PlugInLoaderTest() override { std::filesystem::current_path(m_directory); }

    // Sound input runs, on a thread of its own.
    void startStream()
    {
        static_cast<void>(m_document.audioDevices().choose(m_choice));
        m_audio.runOnThreads(std::chrono::milliseconds(1));
        m_document.transport().startSoundIn();
        ASSERT_EQ(m_document.transport().state(), TRANSPORT_SOUND_IN) << m_document.transport().reason();
        m_dialogs = {};
    }
    void select(int nPlugIn)
    {
        m_loader.setSelectedPlugIn(nPlugIn);
        m_loader.selectPlugIn();
    }
    void selectModule(int nModule)
    {
        m_loader.setSelectedModule(nModule);
        m_loader.selectModule();
    }
    std::string nameOfCurrent() const
    {
        const CDSPFilter* pFilter = m_document.currentFilter();
        return pFilter ? pFilter->m_sName : "none";
    }
    std::vector<std::string> takeMessages() { return std::exchange(m_dialogs.m_messages, {}); }

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
    CRecordingWindow m_window;
    test::CFakeAudioSystem m_audio;
    CAudioDeviceChoice m_choice;
    CTonboxDoc m_document{m_dialogs, m_audio, m_view, &m_window};
    CPlugInLoader& m_loader = m_document.plugInLoader();
    CAudioEngine& m_engine = m_document.audioEngine();
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
    EXPECT_FALSE(m_engine.gate().isClosed());
    EXPECT_EQ(m_window.m_sTitle, "Good");
    EXPECT_EQ(m_window.m_pShown, pFilter);

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

// Each is tried twice: what was tried before does not count as done.
TEST_F(PlugInLoaderTest, APlugInThatThrowsOnItsWayInIsNotSwappedIn)
{
    const std::string files[] = {add("changeling", "throw_in_init"), add("changeling", "throw_in_prepare")};
    m_loader.scanPlugIns(m_folder.path());
    selectModule(0);
    startStream();
    for (const bool bCrossFade : {true, true, false}) {
        m_loader.setCrossFade(bCrossFade);
        for (const int nPlugIn : {0, 1}) {
            SCOPED_TRACE(files[nPlugIn]);
            const std::string sThrown = nPlugIn == 0 ? "exception: no init." : "exception: no prepare.";
            EXPECT_EQ(m_loader.loadPlugin(files[nPlugIn], true), nullptr);
            EXPECT_NE(m_loader.reason().find(sThrown), std::string::npos) << m_loader.reason();
            EXPECT_EQ(takeMessages(), std::vector<std::string>{"Could not create the Plug In object."});
            select(nPlugIn);
            EXPECT_NE(m_loader.reason().find(sThrown), std::string::npos) << m_loader.reason();
            EXPECT_EQ(takeMessages(), std::vector<std::string>{m_loader.reason()});
            EXPECT_EQ(nameOfCurrent(), "One");
            EXPECT_EQ(m_window.m_pShown, m_engine.filter());
            EXPECT_FALSE(m_engine.gate().isClosed());
        }
    }
}

TEST_F(PlugInLoaderTest, WhatIsCarriedOverIsForOneLoadAlsoIfItFails)
{
    int nSeen = 0;
    const auto load = [&](const std::string& sFile, bool bCarry) {
        if (bCarry)
            m_loader.carryOver({}, [&nSeen](CPlugIn&) { ++nSeen; });
        m_loader.loadPlugin(sFile, false);
        return nSeen;
    };
    const std::string sFile = add("changeling", "Good");
    EXPECT_EQ(load("none.so", true), 0);
    EXPECT_EQ(load(sFile, false), 0);
    EXPECT_EQ(load(sFile, true), 1);
    EXPECT_EQ(load(sFile, false), 1);
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

    select(7);
    selectModule(-1);
    EXPECT_EQ(nameOfCurrent(), "none") << "nothing is selected";
    select(1);
    EXPECT_EQ(nameOfCurrent(), "Second");
    EXPECT_EQ(m_loader.current(), m_loader.plugIns()[1].get());
    EXPECT_FALSE(m_loader.isPlugInLoaded()) << "that is for one that was loaded";
    selectModule(1);
    EXPECT_EQ(nameOfCurrent(), "Two");
    EXPECT_EQ(m_window.m_sTitle, "Two");
    EXPECT_EQ(m_loader.current(), nullptr);
    m_loader.deselectModule();
    EXPECT_EQ(nameOfCurrent(), "none");
    EXPECT_EQ(m_window.m_sTitle, MAIN_TITLE);
    select(1);
    m_loader.deselectModule();
    EXPECT_EQ(nameOfCurrent(), "Second") << "a plug-in stays";
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(PlugInLoaderTest, UnloadingTellsWhenThereIsNoLibraryOrAnotherOne)
{
    add("changeling", "First");
    m_loader.scanPlugIns(m_folder.path());
    select(0);
    m_loader.unloadPlugin(true);
    EXPECT_TRUE(takeMessages().empty());
    m_loader.unloadPlugin(false);
    EXPECT_EQ(takeMessages(), std::vector<std::string>{"Error un-loading DLL"});
    EXPECT_EQ(nameOfCurrent(), "First");

    // A library of the list that was loaded anew is the one that counts; a module has none.
    m_loader.unloadPlugInByName("First");
    startStream();
    select(0);
    selectModule(0);
    m_dialogs = {};
    m_loader.unloadPlugin(true);
    EXPECT_TRUE(takeMessages().empty());
    m_loader.unloadPlugin(false);
    EXPECT_EQ(takeMessages(), std::vector<std::string>{"Error: UserDLL does not match parent DLL."});
    EXPECT_EQ(m_window.m_sTitle, "Velmora(tm)");
    EXPECT_EQ(nameOfCurrent(), "One");
    EXPECT_FALSE(m_engine.gate().isClosed());
}

TEST_F(PlugInLoaderTest, AListedPlugInCanBeFreedRebuiltAndSelectedAgain)
{
    add("Reloaded1", "Reloaded");
    m_loader.scanPlugIns(m_folder.path());
    select(0);
    const std::string sFirstBuild = m_loader.current()->library()->buildId();
    const std::string sName = nameOfCurrent();

    for (const bool bStreaming : {false, true}) {
        SCOPED_TRACE(bStreaming);
        if (bStreaming)
            startStream();
        m_dialogs = {};
        m_loader.unloadPlugInByName(sName);
        m_loader.unloadPlugInByName(sName);
        EXPECT_EQ(m_dialogs.m_notes,
                  (std::vector<std::string>{sName + ": Unloaded", sName + ": m_hParentDLL is NULL"}));
        EXPECT_EQ(nameOfCurrent(), "none");
        EXPECT_EQ(m_window.m_pShown, nullptr);
        ASSERT_EQ(m_loader.plugIns().size(), 1U);

        std::filesystem::remove(m_folder / "Reloaded.so");
        select(0);
        EXPECT_EQ(takeMessages(), (std::vector<std::string>{"Path not found for the DLL: Reloaded.so",
                                                            "This Plug-In is no longer available. Did you "
                                                            "re-compile it with errors?"}));
        add(bStreaming ? "Reloaded1" : "Reloaded2", "Reloaded");
        select(0);
        EXPECT_TRUE(takeMessages().empty());
        ASSERT_EQ(m_loader.current(), m_loader.plugIns()[0].get()) << "it took its place in the list";
        EXPECT_EQ(m_loader.current()->library()->buildId() == sFirstBuild, bStreaming);
    }
}

TEST_F(PlugInLoaderTest, EverySwapUnderARunningStreamLeavesTheStreamRunning)
{
    add("changeling", "First");
    add("changeling", "Second");
    m_loader.scanPlugIns(m_folder.path());
    const std::string sThird = add("changeling", "Third");
    for (const bool bCrossFade : {true, false}) {
        SCOPED_TRACE(bCrossFade);
        m_loader.setCrossFade(bCrossFade);
        startStream();
        const struct
        {
            std::function<void()> m_swap;
            std::string m_sCurrent;
        } swaps[] = {
            {[&] { select(0); }, "First"},
            {[&] { select(1); }, "Second"},
            {[&] { selectModule(0); }, "One"},
            {[&] { m_loader.loadPlugin(sThird, true); }, "Third"},
            {[&] { m_loader.loadPlugin(sThird, true); }, "Third"},
            {[&] { selectModule(1); }, "Two"},
            {[&] { selectModule(1); }, "Two"},
            {[&] { m_loader.loadPlugin(sThird, true); }, "Third"},
            {[&] { select(0); }, "First"},
            {[&] { m_loader.loadPlugin(sThird, true); }, "Third"},
            {[&] { m_loader.unloadPlugin(false); }, "none"},
        };
        for (const auto& [swap, sCurrent] : swaps) {
            swap();
            EXPECT_EQ(nameOfCurrent(), sCurrent);
            EXPECT_FALSE(m_engine.gate().isClosed());
            const unsigned long uSeen = m_audio.callbacks();
            while (m_audio.callbacks() < uSeen + 2) // hangs if the stream does not run on
                std::this_thread::yield();
        }
        EXPECT_EQ(takeMessages(), std::vector<std::string>{});
        EXPECT_EQ(m_document.transport().state(), TRANSPORT_SOUND_IN);
        m_document.transport().stopSoundIn();
    }
}

TEST_F(PlugInLoaderTest, ASynthBringsAStreamOfItsOwn)
{
    const std::string sSynth = add("changeling", "synth");
    const std::string sOther = add("changeling", "synth-2");
    const std::string sEffect = add("changeling", "Effect");
    startStream();
    ASSERT_NE(m_loader.loadPlugin(sSynth, true), nullptr);
    EXPECT_EQ(m_document.transport().state(), TRANSPORT_USER_OSC);
    EXPECT_EQ(m_audio.openStreams(), 1U);

    m_audio.m_calls.clear();
    ASSERT_NE(m_loader.loadPlugin(sOther, true), nullptr);
    EXPECT_EQ(m_document.transport().state(), TRANSPORT_USER_OSC);
    EXPECT_TRUE(m_audio.m_calls.empty()) << "from synth to synth the stream plays on";

    ASSERT_NE(m_loader.loadPlugin(sEffect, true), nullptr);
    EXPECT_EQ(m_document.transport().state(), TRANSPORT_STOP);
    EXPECT_EQ(m_audio.openStreams(), 0U);
    EXPECT_TRUE(takeMessages().empty());
}

// Waits inside a buffer for as long as it is told to.
class CStuckModule : public CDSPFilter
{
  public:
    bool processInterleaved(float*, float*, UINT, UINT, UINT) override
    {
        m_bEntered = true;
        m_bEntered.notify_all();
        m_bStuck.wait(true);
        return true;
    }

    std::atomic<bool> m_bEntered{false};
    std::atomic<bool> m_bStuck{true};
};

TEST_F(PlugInLoaderTest, AFilterThatDoesNotComeBackIsToldAndNotSwapped)
{
    auto pModule = std::make_unique<CStuckModule>();
    CStuckModule& stuck = *pModule;
    selectModule(m_document.modules().add(std::move(pModule)));
    startStream();
    stuck.m_bEntered.wait(false);

    CFilterSwap swap(m_engine, m_document.transportState(), m_dialogs);
    swap.setCrossFade(false);
    CConstantModule other("Other", 1.0F);
    EXPECT_FALSE(swap.swapTo(&other, [] { return true; }));
    ASSERT_EQ(m_dialogs.m_messages.size(), 1U);
    EXPECT_NE(m_dialogs.m_messages.front().find("does not come back"), std::string::npos);
    EXPECT_EQ(m_engine.filter(), &stuck);
    EXPECT_FALSE(m_engine.gate().isClosed());

    stuck.m_bStuck = false;
    stuck.m_bStuck.notify_all();
    EXPECT_TRUE(swap.swapTo(nullptr, [] { return true; }));
}

TEST_F(PlugInLoaderTest, ALibraryFromElsewhereIsChosenByHand)
{
    add("changeling", "Elsewhere");
    test::CTemporaryFolder plugIns;
    m_loader.setPlugInFolder(plugIns.path());
    const auto directory = std::filesystem::current_path();
    for (const std::string sChosen : {"Elsewhere.txt", "Elsewhere.so"}) {
        m_dialogs.m_openFile = m_folder / sChosen;
        m_loader.loadRemotePlugin();
        EXPECT_EQ(std::filesystem::current_path(), directory);
    }
    EXPECT_EQ(takeMessages(), std::vector<std::string>{"Not a .DLL file."});
    EXPECT_EQ(nameOfCurrent(), "Elsewhere");
}

} // namespace
} // namespace velmora
