#include "base/platform_child_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace velmora {

namespace {

using CClock = std::chrono::steady_clock;

constexpr std::size_t MAX_KEPT_OUTPUT = 4u * 1024 * 1024;
constexpr int POLL_MILLISECONDS = 50;
constexpr std::chrono::milliseconds GRACE_PERIOD{500};

double secondsSince(CClock::time_point start)
{
    return std::chrono::duration<double>(CClock::now() - start).count();
}

class CPipe
{
  public:
    CPipe() { m_bOpen = ::pipe2(m_ends.data(), O_CLOEXEC) == 0; }
    ~CPipe()
    {
        closeWriteEnd();
        if (m_bOpen)
            ::close(m_ends[0]);
    }
    CPipe(const CPipe&) = delete;
    CPipe& operator=(const CPipe&) = delete;

    [[nodiscard]] bool isOpen() const { return m_bOpen; }
    [[nodiscard]] int readEnd() const { return m_ends[0]; }
    [[nodiscard]] int writeEnd() const { return m_ends[1]; }

    void closeWriteEnd()
    {
        if (m_bOpen && m_ends[1] >= 0)
            ::close(m_ends[1]);
        m_ends[1] = -1;
    }

  private:
    std::array<int, 2> m_ends{-1, -1};
    bool m_bOpen = false;
};

// What posix_spawn is told: streams, process group, and signals as a fresh program expects them.
class CSpawnSettings
{
  public:
    explicit CSpawnSettings(int nOutput)
    {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_adddup2(&m_actions, nOutput, STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&m_actions, nOutput, STDERR_FILENO);

        sigset_t none, defaults;
        ::sigemptyset(&none);
        ::sigemptyset(&defaults);
        for (const int nSignal : {SIGPIPE, SIGINT, SIGTERM, SIGCHLD})
            ::sigaddset(&defaults, nSignal);
        ::posix_spawnattr_init(&m_attributes);
        ::posix_spawnattr_setflags(&m_attributes,
                                   POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        ::posix_spawnattr_setpgroup(&m_attributes, 0);
        ::posix_spawnattr_setsigdefault(&m_attributes, &defaults);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
    }
    ~CSpawnSettings()
    {
        ::posix_spawn_file_actions_destroy(&m_actions);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    CSpawnSettings(const CSpawnSettings&) = delete;
    CSpawnSettings& operator=(const CSpawnSettings&) = delete;

    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& sText : texts)
        pointers.push_back(sText.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const std::vector<std::pair<std::string, std::string>>& variables)
{
    std::vector<std::string> result;
    for (char** ppEntry = environ; ppEntry && *ppEntry; ++ppEntry) {
        const std::string_view sEntry(*ppEntry);
        const auto sets = [&](const auto& variable) { return sEntry.starts_with(variable.first + "="); };
        if (std::none_of(variables.begin(), variables.end(), sets))
            result.emplace_back(sEntry);
    }
    for (const auto& [sName, sValue] : variables)
        result.push_back(sName + "=" + sValue);
    return result;
}

// Takes over what lies in the pipe, up to a pipe's fill, without waiting; false at its end.
bool drain(int nDescriptor, CChildResult& result)
{
    std::array<char, 16384> buffer;
    for (int nRound = 0; nRound < 4; ++nRound) {
        const ssize_t nRead = ::read(nDescriptor, buffer.data(), buffer.size());
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead <= 0)
            return nRead < 0 && errno == EAGAIN;
        const std::size_t uRoom = MAX_KEPT_OUTPUT - result.m_sOutput.size();
        const std::size_t uKept = std::min(uRoom, static_cast<std::size_t>(nRead));
        result.m_sOutput.append(buffer.data(), uKept);
        result.m_bOutputCut |= uKept < static_cast<std::size_t>(nRead);
    }
    return true;
}

// Whether the child has ended, and how; it is released then.
bool reap(pid_t nChild, CChildResult& result)
{
    int nStatus = 0;
    pid_t nReaped = 0;
    do
        nReaped = ::waitpid(nChild, &nStatus, WNOHANG);
    while (nReaped < 0 && errno == EINTR);
    if (nReaped == 0)
        return false;
    const bool bSignalled = nReaped == nChild && WIFSIGNALED(nStatus);
    result.m_eEnd = bSignalled ? EChildEnd::signalled : EChildEnd::exited;
    result.m_nStatus = nReaped != nChild ? -1 : bSignalled ? WTERMSIG(nStatus) : WEXITSTATUS(nStatus);
    return true;
}

void stopGroup(pid_t nChild, int nOutput, CChildResult& result)
{
    ::kill(-nChild, SIGTERM);
    const auto start = CClock::now();
    siginfo_t info = {};
    const auto hasEnded = [&] {
        // Not reaped yet: the group's number stays ours until the last signal was sent.
        info.si_pid = 0;
        return ::waitid(P_PID, static_cast<id_t>(nChild), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               info.si_pid == nChild;
    };
    while (!hasEnded() && CClock::now() - start < GRACE_PERIOD) {
        static_cast<void>(drain(nOutput, result)); // a full pipe would keep it from ending
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ::kill(-nChild, SIGKILL);
    while (!reap(nChild, result))
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

} // namespace

void CChildProcess::setVariable(std::string sName, std::string sValue)
{
    m_variables.emplace_back(std::move(sName), std::move(sValue));
}

CChildResult CChildProcess::run() const
{
    CChildResult result;
    CPipe pipe;
    if (m_arguments.empty() || !pipe.isOpen()) {
        result.m_sError = m_arguments.empty() ? "no program given" : std::strerror(errno);
        return result;
    }
    ::fcntl(pipe.readEnd(), F_SETFL, O_NONBLOCK);

    std::vector<std::string> arguments = m_arguments;
    std::vector<std::string> environment = environmentWith(m_variables);
    CSpawnSettings settings(pipe.writeEnd());
    pid_t nChild = 0;
    const auto start = CClock::now();
    const int nError =
        ::posix_spawnp(&nChild, arguments[0].c_str(), &settings.m_actions, &settings.m_attributes,
                       pointersTo(arguments).data(), pointersTo(environment).data());
    pipe.closeWriteEnd();
    if (nError != 0) {
        result.m_sError = std::strerror(nError);
        return result;
    }

    bool bPipeOpen = true;
    for (;;) {
        pollfd output{bPipeOpen ? pipe.readEnd() : -1, POLLIN, 0};
        // Output is over a moment before the process is: look again soon.
        ::poll(&output, 1, bPipeOpen ? POLL_MILLISECONDS : 1);
        bPipeOpen = bPipeOpen && drain(pipe.readEnd(), result);
        if (reap(nChild, result))
            break;
        const bool bLate = m_dDeadlineSeconds > 0.0 && secondsSince(start) >= m_dDeadlineSeconds;
        if (bLate || (m_goOn && !m_goOn())) {
            stopGroup(nChild, pipe.readEnd(), result);
            result.m_eEnd = bLate ? EChildEnd::timedOut : EChildEnd::cancelled;
            break;
        }
    }
    static_cast<void>(drain(pipe.readEnd(), result));
    result.m_dSeconds = secondsSince(start);
    return result;
}

std::filesystem::path CChildProcess::findProgram(std::string_view sName)
{
    const char* pPath = std::getenv("PATH");
    std::string_view sRest = pPath ? pPath : "";
    while (!sRest.empty()) {
        const std::size_t uEnd = std::min(sRest.find(':'), sRest.size());
        std::filesystem::path candidate = std::filesystem::path(sRest.substr(0, uEnd)) / sName;
        sRest.remove_prefix(std::min(uEnd + 1, sRest.size()));
        struct stat file = {};
        if (candidate.is_absolute() && ::stat(candidate.c_str(), &file) == 0 && S_ISREG(file.st_mode) &&
            ::access(candidate.c_str(), X_OK) == 0)
            return candidate;
    }
    return {};
}

} // namespace velmora
