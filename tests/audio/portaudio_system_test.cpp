#include "audio/portaudio_instance.h"
#include "audio/portaudio_library.h"
#include "audio/portaudio_system.h"
#include "base/platform_shared_library.h"
#include "base/platform_sound.h"
#include "support/test_support.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

long s_nSlept = 0; // s
int sleepAtOnce(const timespec* pTime, timespec*)
{
    s_nSlept += pTime->tv_sec;
    return 0;
}

CAudioStreamRequest requestFor(int nDevice)
{
    CAudioStreamRequest request;
    request.m_output = CAudioStreamSide{.m_nDevice = nDevice};
    request.m_pCallback = [](const float*, float*, unsigned, unsigned, void*) { return AUDIO_CONTINUE; };
    return request;
}

// A machine of our making: an ALSA card that is not there, a JACK server that does not run.
class PortAudioTest : public ::testing::Test
{
  protected:
    PortAudioTest()
    {
        writeFile(m_folder / "asound.conf", "pcm.null { type null }\npcm.default { type hw card 0 }\n");
        ::setenv("ALSA_CONFIG_PATH", (m_folder / "asound.conf").c_str(), 1);
        ::setenv("JACK_DEFAULT_SERVER", "velmora-test-without-server", 1);
        ::setenv("JACK_NO_START_SERVER", "1", 1);
    }

    CTemporaryFolder m_folder;
};

TEST_F(PortAudioTest, comesUpQuietlyOnAMachineWithoutSound)
{
    CPortAudioSystem system;
    EXPECT_TRUE(system.devices().empty());
    EXPECT_EQ(system.defaultInputDevice(), -1);
    EXPECT_EQ(system.rescan(), CPortAudioSystem::NOT_INITIALIZED);

    const std::optional side = CAudioStreamSide{.m_nDevice = -1};
    const CAudioStreamRequest request = requestFor(-1);
    audioStream stream = nullptr;
    EXPECT_EQ(system.openStream(request, stream), CPortAudioSystem::NOT_INITIALIZED);

    ::testing::internal::CaptureStderr();
    const int nUp = system.initialize();
    const int nAgain = system.rescan();
    EXPECT_EQ(system.openStream(request, stream), -9996);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    ASSERT_EQ(nUp, 0);
    EXPECT_EQ(nAgain, 0);
    EXPECT_EQ(system.errorText(-9996), "The device is not there");
    EXPECT_EQ(stream, nullptr);

    const int nDevices = static_cast<int>(system.devices().size());
    EXPECT_LT(system.defaultInputDevice(), nDevices);
    EXPECT_LT(system.defaultOutputDevice(), nDevices);
    EXPECT_FALSE(system.isFormatSupported(CAudioStreamSide{.m_nDevice = nDevices}, {}, 44100.0));
    EXPECT_FALSE(system.isFormatSupported(side, side, 44100.0));
    EXPECT_FALSE(system.isFormatSupported({}, {}, 44100.0));
    system.terminate();
    EXPECT_TRUE(system.devices().empty());
}

TEST_F(PortAudioTest, hasAStateOfItsOwnInEachInstance)
{
    CPortAudioInstance first;
    CPortAudioInstance second;
    audioStream stream = nullptr;
    ASSERT_EQ(first.initialize(), 0);
    EXPECT_EQ(second.openStream(requestFor(-1), stream), -10000) << "of the second, not the first";
    ASSERT_EQ(second.initialize(), 0);
    first.terminate();
    EXPECT_EQ(second.openStream(requestFor(-1), stream), -9996);
    EXPECT_EQ(second.rescan(), 0);
    EXPECT_EQ(first.initialize(), 0);
    EXPECT_EQ(second.errorText(-9997), "Invalid sample rate");
}

TEST_F(PortAudioTest, redirectsWhatOneCopyOfTheLibraryImports)
{
    using sleepFunction = void(long nMilliseconds);
    s_nSlept = 0;
    silenceSoundLibraries(); // which keeps JACK's library open
    std::string sError;
    EXPECT_TRUE(CSharedLibrary::find("libvelmora-is-not-there.so.1", sError).empty());
    EXPECT_NE(sError.find("libvelmora-is-not-there.so.1"), std::string::npos) << sError;
    const auto file = CSharedLibrary::find("libportaudio.so.2", sError);
    ASSERT_FALSE(file.empty()) << sError;
    std::filesystem::copy_file(file, m_folder / "copy.so");

    CPortAudioLibrary other;
    sleepFunction* pOtherSleep = nullptr;
    ASSERT_TRUE(other.load(sError)) << sError;
    EXPECT_FALSE(other.get("Pa_NoSuchCall", pOtherSleep));
    ASSERT_TRUE(other.get("Pa_Sleep", pOtherSleep));

    CSharedLibrary copy;
    sleepFunction* pSleep = nullptr;
    EXPECT_FALSE(copy.open(m_folder / "none.so", sError));
    EXPECT_EQ(copy.redirect("nanosleep", sleepAtOnce), nullptr);
    ASSERT_TRUE(copy.open(m_folder / "copy.so", sError)) << sError;
    ASSERT_TRUE(copy.get("Pa_Sleep", pSleep));
    EXPECT_EQ(copy.redirect("no_such_import", sleepAtOnce), nullptr);
    EXPECT_NE(copy.redirect("nanosleep", sleepAtOnce), nullptr);
    pSleep(86400000);
    EXPECT_EQ(s_nSlept, 86400);
    pOtherSleep(1);
    EXPECT_EQ(s_nSlept, 86400);
}

} // namespace
} // namespace velmora::test
