#include "audio/portaudio_system.h"
#include "support/test_support.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

// A machine of our making: an ALSA card that is not there, a JACK server that does not run.
TEST(PortAudioSystem, comesUpQuietlyOnAMachineWithoutSound)
{
    const CTemporaryFolder folder;
    writeFile(folder / "asound.conf", "pcm.null { type null }\npcm.default { type hw card 0 }\n");
    ::setenv("ALSA_CONFIG_PATH", (folder / "asound.conf").c_str(), 1);
    ::setenv("JACK_DEFAULT_SERVER", "velmora-test-without-server", 1);
    ::setenv("JACK_NO_START_SERVER", "1", 1);

    CPortAudioSystem system;
    EXPECT_TRUE(system.devices().empty());
    EXPECT_EQ(system.defaultInputDevice(), -1);
    ::testing::internal::CaptureStderr();
    const bool bUp = system.initialize();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    ASSERT_TRUE(bUp);
    const int nDevices = static_cast<int>(system.devices().size());
    EXPECT_LT(system.defaultInputDevice(), nDevices);
    EXPECT_LT(system.defaultOutputDevice(), nDevices);
    EXPECT_FALSE(system.isInputFormatSupported(nDevices, 2, 44100.0));
    EXPECT_FALSE(system.isInputFormatSupported(-1, 2, 44100.0));
    system.terminate();
    EXPECT_TRUE(system.devices().empty());
}

} // namespace
} // namespace velmora::test
