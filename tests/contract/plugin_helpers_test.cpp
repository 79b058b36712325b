#include "library_check.h"
#include "plugin.h"
#include "support/test_support.h"

#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

namespace {

using testing::ElementsAre;

constexpr UINT NO_TYPE = 4;

// One control of each data type, from -10 to 10, and a record of what userInterfaceChange() was told.
class CTypedPlugIn : public CPlugIn
{
  public:
    CTypedPlugIn()
    {
        for (UINT uType = intData; uType <= NO_TYPE; uType++) {
            CUICtrl control;
            control.uControlId = 100 + uType;
            control.uUserDataType = uType;
            control.fUserDisplayDataLoLimit = -10.0f;
            control.fUserDisplayDataHiLimit = 10.0f;
            control.m_pUserCookedIntData = &m_nInt;
            control.m_pUserCookedFloatData = &m_fFloat;
            control.m_pUserCookedDoubleData = &m_dDouble;
            control.m_pUserCookedUINTData = &m_uUINT;
            m_UIControlList.append(control);
        }
    }

    bool userInterfaceChange(int nControlIndex) override
    {
        m_changes.push_back(nControlIndex);
        return true;
    }

    int m_nInt = 77;
    float m_fFloat = 77.0f;
    double m_dDouble = 77.0;
    UINT m_uUINT = 77;
    std::vector<int> m_changes;
};

TEST(PlugInHelpers, SetNormalizedParameterWritesOnlyTheVariableOfItsType)
{
    CTypedPlugIn plugIn;
    plugIn.setNormalizedParameter(intData, 0.02f); // -9.6
    EXPECT_EQ(plugIn.m_nInt, -9);
    EXPECT_EQ(plugIn.m_fFloat, 77.0f);
    plugIn.setNormalizedParameter(floatData, 0.25f);
    EXPECT_EQ(plugIn.m_fFloat, -5.0f);
    EXPECT_EQ(plugIn.m_dDouble, 77.0);
    plugIn.setNormalizedParameter(doubleData, 1.0f);
    EXPECT_EQ(plugIn.m_dDouble, 10.0);
    plugIn.setNormalizedParameter(UINTData, 0.99f); // 9.8
    EXPECT_EQ(plugIn.m_uUINT, 9u);
    plugIn.setNormalizedParameter(UINTData, 0.0f); // below what the type can hold
    EXPECT_EQ(plugIn.m_uUINT, 0u);
    EXPECT_THAT(plugIn.m_changes, ElementsAre(100, 101, 102, 103, 103));

    EXPECT_EQ(plugIn.getNormalizedParameter(intData), 0.05f);
    EXPECT_EQ(plugIn.getNormalizedParameter(floatData), 0.25f);
    EXPECT_EQ(plugIn.getNormalizedParameter(doubleData), 1.0f);
    EXPECT_EQ(plugIn.getNormalizedParameter(UINTData), 0.5f);
}

TEST(PlugInHelpers, ARecordWithoutTypeOrVariableStillTellsThePlugIn)
{
    CTypedPlugIn plugIn;
    plugIn.setNormalizedParameter(NO_TYPE, 0.5f);
    CUICtrl unbound;
    unbound.uControlId = 7;
    for (const UINT uType : {intData, floatData, doubleData, UINTData}) {
        unbound.uUserDataType = uType;
        plugIn.m_UIControlList.insertAtHead(unbound);
        plugIn.setNormalizedParameter(0, 1.0f);
        EXPECT_EQ(plugIn.getNormalizedParameter(0), 0.0f);
    }
    EXPECT_THAT(plugIn.m_changes, ElementsAre(104, 7, 7, 7, 7));
    EXPECT_EQ(plugIn.m_nInt + plugIn.m_fFloat + plugIn.m_dDouble + plugIn.m_uUINT, 4 * 77.0);
    EXPECT_EQ(plugIn.getNormalizedParameter(4 + NO_TYPE), 0.0f);

    for (const int nIndex : {9, 1000, -1, std::numeric_limits<int>::min()}) {
        plugIn.setNormalizedParameter(nIndex, 0.5f);
        EXPECT_EQ(plugIn.getNormalizedParameter(nIndex), 0.0f);
    }
    EXPECT_EQ(plugIn.m_changes.size(), 5u);
}

TEST(PlugInHelpers, NumbersBeyondAnIntegerTypeAreHeldToIt)
{
    CTypedPlugIn plugIn;
    for (UINT i = 0; i < 5; i++)
        plugIn.m_UIControlList.getAt(i)->fUserDisplayDataHiLimit = 1.0e20f;
    plugIn.setNormalizedParameter(intData, 1.0f);
    plugIn.setNormalizedParameter(UINTData, 1.0f);
    EXPECT_EQ(plugIn.m_nInt, std::numeric_limits<int>::max());
    EXPECT_EQ(plugIn.m_uUINT, std::numeric_limits<UINT>::max());
    plugIn.setNormalizedParameter(intData, std::nanf(""));
    EXPECT_EQ(plugIn.m_nInt, std::numeric_limits<int>::min());
    EXPECT_EQ(plugIn.calcDisplayVariable(0.1f, 0.7f, 0.3f),
              (double(0.7f) - double(0.1f)) * double(0.3f) + double(0.1f)); // in double, not in float
    EXPECT_EQ(plugIn.calcSliderVariable(3.0f, 3.0f, 3.0f), 0.0f);
}

// A host's window that writes down what it gets.
struct CRecordingWindow : hostWindow
{
    CRecordingWindow() : hostWindow{&CRecordingWindow::onPost, &CRecordingWindow::onSend} {}

    static void onPost(hostWindow* pWindow, UINT uMessage, size_t uParam, ptrdiff_t nParam)
    {
        static_cast<CRecordingWindow*>(pWindow)->note("post", uMessage, uParam, std::to_string(nParam));
    }
    static ptrdiff_t onSend(hostWindow* pWindow, UINT uMessage, size_t uParam, ptrdiff_t nParam)
    {
        const bool bText = uMessage == PLUGIN_MESSAGE_STATUS_TEXT;
        static_cast<CRecordingWindow*>(pWindow)->note(
            "send", uMessage, uParam, bText ? reinterpret_cast<const char*>(nParam) : std::to_string(nParam));
        return 0;
    }
    void note(const char* pHow, UINT uMessage, size_t uParam, const std::string& sParam)
    {
        m_messages.push_back(std::string(pHow) + " " + std::to_string(uMessage) + " " +
                             std::to_string(uParam) + " " + sParam);
    }

    std::vector<std::string> m_messages;
};

TEST(PlugInHelpers, MessagesReachTheHostsWindow)
{
    CRecordingWindow window;
    CPlugIn plugIn;
    const std::string sLong(3000, 'x');
    const auto sendAll = [&] {
        plugIn.sendStatusWndText("Hello");
        plugIn.sendStatusWndText(sLong.c_str());
        plugIn.sendStatusWndText(nullptr);
        plugIn.sendUpdateGUI(41);
        plugIn.sendButtonChange(51);
        plugIn.sendGUIClosing();
    };
    sendAll(); // without a window
    EXPECT_EQ(plugIn.m_uPlugInEx[3], 1u);

    plugIn.m_uPlugInEx[3] = 0;
    plugIn.m_hParentWnd = &window;
    sendAll();
    EXPECT_THAT(window.m_messages, ElementsAre("send 4024 0 Hello", "send 4024 0 " + sLong.substr(0, 1023),
                                               "post 4025 0 41", "post 4030 0 51", "send 4031 0 0"));
    EXPECT_EQ(plugIn.m_uPlugInEx[3], 1u);
}

TEST(PlugInHelpers, TheDestructorFreesWhatTheConstructorsAllocated)
{
    CPlugIn plugIn; // a leak or a double delete shows under the address sanitizer
    plugIn.m_UIControlList.append(CUICtrl());
    plugIn.m_UIControlList.append(CUICtrl());
    plugIn.m_PresetJSPrograms[15] = new float[MAX_JS_PROGRAM_STEPS * MAX_JS_PROGRAM_STEP_VARS];
    plugIn.m_AddlPresetValues[0] = new float[3];
    plugIn.m_PresetNames[0] = "a literal";
    plugIn.m_TextLabels[0] = "another";
    EXPECT_EQ(JS_PROG_INDEX(15, 6), MAX_JS_PROGRAM_STEPS * MAX_JS_PROGRAM_STEP_VARS - 1);
    EXPECT_EQ(JS_PROG_INDEX(1, 2), 33);
}

// A recorder library loaded from a file of another name and folder, as the host loads it from a copy.
class CLoadedCopy
{
  public:
    explicit CLoadedCopy(const std::filesystem::path& copy)
    {
        std::filesystem::create_directories(copy.parent_path());
        std::filesystem::copy_file(GCC_RECORDER, copy);
        m_pLibrary.reset(dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL));
        m_pPlugIn.reset(function<createObjectFunction>("createObject")());
    }

    void tellPath(const char* pPath) { function<setLibraryPathFunction>("setLibraryPath")(pPath); }

    // "(null)" for none; a result always has room for 260 characters.
    std::string directory()
    {
        const std::unique_ptr<char[]> pDirectory(
            function<char* (*)(CPlugIn*)>("directoryOf")(m_pPlugIn.get()));
        if (!pDirectory)
            return "(null)";
        const std::string sDirectory = pDirectory.get();
        std::memset(pDirectory.get(), 'x', 260);
        return sDirectory;
    }

    CPlugIn& plugIn() { return *m_pPlugIn; }

  private:
    struct CCloser
    {
        void operator()(void* pLibrary) const { dlclose(pLibrary); }
    };

    template <typename Function>
    Function function(const char* pName)
    {
        return reinterpret_cast<Function>(dlsym(m_pLibrary.get(), pName));
    }

    std::unique_ptr<void, CCloser> m_pLibrary; // closed after the object is gone
    std::unique_ptr<CPlugIn> m_pPlugIn;
};

TEST(PlugInDirectory, IsTheFolderOfAFileWithThePlugInsName)
{
    const velmora::test::CTemporaryFolder folder;
    CLoadedCopy library(folder.path() / "right" / "RecorderGCC.so");
    EXPECT_EQ(library.directory(), (folder.path() / "right").string());
    for (const char* pName : {"Recorder", "ecorderGCC", "XRecorderGCC", "recordergcc", ""}) {
        library.plugIn().m_PlugInName = pName;
        EXPECT_EQ(library.directory(), "(null)") << pName;
    }
    library.plugIn().m_PlugInName = nullptr;
    EXPECT_EQ(library.directory(), "(null)");
    EXPECT_EQ(CPlugIn().getMyDLLDirectory(), nullptr); // the program itself is no such library
}

TEST(PlugInDirectory, OfACopyIsWhatTheHostTells)
{
    const velmora::test::CTemporaryFolder folder;
    CLoadedCopy library(folder.path() / "copy-17.so");
    EXPECT_EQ(library.directory(), "(null)");

    const std::string sLongest = "/" + std::string(259 - 16, 'd');
    const std::pair<std::string, std::string> cases[] = {
        {"/home/me/PlugIns/RecorderGCC.so", "/home/me/PlugIns"},
        {"/RecorderGCC.so", ""},
        {"RecorderGCC.so", "(null)"},
        {"/home/me/RecorderGCC.so/", "(null)"},
        {"/home/me/RecorderGCC.dll", "(null)"},
        {"", "(null)"},
        {sLongest + "/RecorderGCC.so", sLongest},
        {sLongest + "d/RecorderGCC.so", "(null)"},
    };
    for (const auto& [sTold, sDirectory] : cases) {
        library.tellPath(sTold.c_str());
        EXPECT_EQ(library.directory(), sDirectory) << sTold;
    }
    library.tellPath(nullptr); // back to what the platform says
    EXPECT_EQ(library.directory(), "(null)");
}

} // namespace
