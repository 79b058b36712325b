#include "base/platform_sound.h"
#include "midi/midi_devices.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>

namespace velmora::test {
namespace {

TEST(RtMidiSystem, listsQuietlyWhateverTheMachineHas)
{
    ::setenv("JACK_DEFAULT_SERVER", "velmora-test-without-server", 1);
    ::setenv("JACK_NO_START_SERVER", "1", 1);
    const CRtMidiSystem system;
    ::testing::internal::CaptureStderr();
    const auto inputs = system.inputs();
    const auto outputs = system.outputs();
    EXPECT_FALSE(isJackServerRunning());
    std::cerr << "still here" << std::flush;
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "still here");
    for (const auto* pList : {&inputs, &outputs}) {
        for (const auto& info : *pList) {
            EXPECT_EQ(info.m_sApi, "ALSA"); // there is no JACK server
            EXPECT_FALSE(info.m_sName.empty());
        }
    }
}

} // namespace
} // namespace velmora::test
