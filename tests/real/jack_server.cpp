#include "real/jack_server.h"

#include "base/platform_sound.h"

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sched.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace velmora::test {

namespace {

using namespace std::chrono_literals;

constexpr auto START_PATIENCE = 30s; // on a machine under load
constexpr auto END_PATIENCE = 5s;
constexpr auto POLL_INTERVAL = 20ms;

// PortAudio asserts that at least one of the PCMs listed can be opened, and ALSA complains about a default
// that is missing.
constexpr const char* ALSA_CONFIGURATION = "pcm.null { type null }\npcm.default { type hw card 0 }\n";

void writeOnce(const char* pFile, const std::string& sText)
{
    std::ofstream(pFile) << sText;
}

// A mount namespace: as root outright, else inside a user namespace in which we stay who we are.
bool enterMountNamespace()
{
    if (::unshare(CLONE_NEWNS) == 0)
        return true;
    const std::string sUser = std::to_string(::getuid());
    const std::string sGroup = std::to_string(::getgid());
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
        return false;
    writeOnce("/proc/self/setgroups", "deny");
    writeOnce("/proc/self/uid_map", sUser + " " + sUser + " 1");
    writeOnce("/proc/self/gid_map", sGroup + " " + sGroup + " 1");
    return true;
}

} // namespace

void isolateAudioServers()
{
    if (!enterMountNamespace() || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return;
    // Without it the servers share the system's folder, which works as long as nothing stale lies there.
    [[maybe_unused]] const int nMounted =
        ::mount("tmpfs", "/dev/shm", "tmpfs", MS_NOSUID | MS_NODEV, "size=128m,mode=1777");
}

CJackServer::CJackServer(int nSampleRate, int nPeriod) : m_nSampleRate(nSampleRate), m_nPeriod(nPeriod)
{
    static std::atomic<int> s_nServers{0};
    writeFile(m_folder / "alsa.conf", ALSA_CONFIGURATION);
    const std::string sName = "velmora-" + std::to_string(::getpid()) + "-" + std::to_string(s_nServers++);
    ::setenv("JACK_DEFAULT_SERVER", sName.c_str(), 1);
    ::setenv("JACK_NO_START_SERVER", "1", 1);
    ::setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    ::setenv("ALSA_CONFIG_PATH", (m_folder / "alsa.conf").c_str(), 1);
    silenceSoundLibraries();
    start();
    waitUntilUp();
}

CJackServer::~CJackServer()
{
    endWith(SIGTERM);
}

void CJackServer::kill()
{
    endWith(SIGKILL);
}

void CJackServer::start()
{
    // setpriv lets the server die with us, however we end.
    std::vector<std::string> arguments{"setpriv",
                                       "--pdeathsig",
                                       "KILL",
                                       "jackd",
                                       "--silent",
                                       "-R",
                                       "-P",
                                       "70",
                                       "-S",
                                       "-n",
                                       std::getenv("JACK_DEFAULT_SERVER"),
                                       "-p",
                                       "256",
                                       "-t",
                                       "5000",
                                       "-d",
                                       "dummy",
                                       "-r",
                                       std::to_string(m_nSampleRate),
                                       "-p",
                                       std::to_string(m_nPeriod),
                                       "-C",
                                       "2",
                                       "-P",
                                       "2"};
    std::vector<char*> pointers;
    for (std::string& sArgument : arguments)
        pointers.push_back(sArgument.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, (m_folder / "server.log").c_str(),
                                       O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    const int nError =
        ::posix_spawnp(&m_nProcess, pointers.front(), &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (nError != 0) {
        m_nProcess = -1;
        throw std::runtime_error("setpriv cannot be started");
    }
}

void CJackServer::waitUntilUp()
{
    const auto end = std::chrono::steady_clock::now() + START_PATIENCE;
    while (!isJackServerRunning()) {
        const bool bGone = ::waitpid(m_nProcess, nullptr, WNOHANG) != 0;
        if (bGone || std::chrono::steady_clock::now() >= end) {
            if (bGone)
                m_nProcess = -1;
            endWith(SIGKILL);
            throw std::runtime_error("jackd does not start: " + readFile(m_folder / "server.log"));
        }
        std::this_thread::sleep_for(POLL_INTERVAL);
    }
}

void CJackServer::endWith(int nSignal)
{
    if (m_nProcess < 0)
        return;
    ::kill(m_nProcess, nSignal);
    const auto end = std::chrono::steady_clock::now() + END_PATIENCE;
    while (::waitpid(m_nProcess, nullptr, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() >= end) {
            ::kill(m_nProcess, SIGKILL);
            ::waitpid(m_nProcess, nullptr, 0);
            break;
        }
        std::this_thread::sleep_for(POLL_INTERVAL);
    }
    m_nProcess = -1;
}

} // namespace velmora::test
