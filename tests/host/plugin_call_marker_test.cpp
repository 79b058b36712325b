#include "host/loaded_plugin.h"
#include "host/plugin_call_marker.h"
#include "host/plugin_library.h"
#include "host/plugin_test_support.h"
#include "host/user_dsp_filter.h"
#include "support/allocation_guard.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace velmora {
namespace {

TEST(PlugInCallMarkerTest, TellsTheInnermostCallOfTheThread)
{
    const auto name = [] { return std::string(CPlugInCallMarker::current().m_pName); };
    EXPECT_EQ(CPlugInCallMarker::current().m_pName, nullptr);
    {
        const CPlugInCallMarker outer("Outer", EPlugInCall::construction, "/p/Outer.so");
        {
            const CPlugInCallMarker inner("Inner", EPlugInCall::processing);
            EXPECT_EQ(name(), "Inner");
            EXPECT_EQ(CPlugInCallMarker::current().m_pLibrary, nullptr);
            std::thread([] {
                const test::CAllocationGuard guard;
                EXPECT_EQ(CPlugInCallMarker::current().m_pName, nullptr);
                const CPlugInCallMarker other("Other", EPlugInCall::midi);
                EXPECT_EQ(guard.count(), 0U);
            }).join();
            EXPECT_EQ(CPlugInCallMarker::current().m_eCall, EPlugInCall::processing);
        }
        EXPECT_EQ(name(), "Outer");
        EXPECT_STREQ(CPlugInCallMarker::current().m_pLibrary, "/p/Outer.so");
    }
    EXPECT_EQ(CPlugInCallMarker::current().m_pName, nullptr);
}

TEST(PlugInCallMarkerTest, NamesAFiltersPlugInAndNoBuiltInModule)
{
    const test::CPlugInFolder folder;
    const auto file = folder.add("good");
    std::string sError;
    auto pLibrary = CPlugInLibrary::load(file, sError);
    ASSERT_NE(pLibrary, nullptr) << sError;
    CPlugIn* pPlugIn = pLibrary->makeObject(sError);
    const auto pLoaded = CLoadedPlugIn::create(std::move(pLibrary), pPlugIn);
    {
        const CPlugInCallMarker marker(pLoaded->filter(), EPlugInCall::preparing);
        EXPECT_EQ(CPlugInCallMarker::current().m_pName, pLoaded->filter().m_sName);
        EXPECT_EQ(CPlugInCallMarker::current().m_pLibrary, file);
        pLoaded->filter().m_bBuiltInPlugIn = 1;
        const CPlugInCallMarker module(pLoaded->filter(), EPlugInCall::processing);
        EXPECT_EQ(CPlugInCallMarker::current().m_pName, nullptr);
    }
    pLoaded->unload();
    const CPlugInCallMarker marker(pLoaded->filter(), EPlugInCall::processing);
    EXPECT_EQ(CPlugInCallMarker::current().m_pName, nullptr);
}

TEST(PlugInCallMarkerTest, TheTextsStandInTheOrderOfTheCalls)
{
    EXPECT_STREQ(plugInCallText(EPlugInCall::processing), "processing audio");
    EXPECT_STREQ(plugInCallText(EPlugInCall::unloading), "being unloaded");
    EXPECT_STREQ(plugInCallText(static_cast<EPlugInCall>(200)), plugInCallText(EPlugInCall::none));
}

} // namespace
} // namespace velmora
