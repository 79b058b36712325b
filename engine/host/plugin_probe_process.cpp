#include "host/plugin_probe_process.h"

#include "base/patience.h"
#include "host/plugin_library_copy.h"
#include "host/probe_protocol.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace velmora {

namespace {

// How often a death is looked for where the system has no descriptor that tells of it.
constexpr std::chrono::milliseconds DEATH_POLL{20};

// How long the thread that serves a window looks away from it.
constexpr std::chrono::milliseconds PATIENT_POLL{10};

// The child's descriptors: the pipe, three streams that lead nowhere, nothing else.
class CFileActions
{
  public:
    explicit CFileActions(int nPipe)
    {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawn_file_actions_adddup2(&m_actions, nPipe, PROBE_CHANNEL);
        for (const int nStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::posix_spawn_file_actions_addopen(&m_actions, nStream, "/dev/null", O_RDWR, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&m_actions, PROBE_CHANNEL + 1);
    }
    ~CFileActions() { ::posix_spawn_file_actions_destroy(&m_actions); }
    CFileActions(const CFileActions&) = delete;
    CFileActions& operator=(const CFileActions&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &m_actions; }

  private:
    posix_spawn_file_actions_t m_actions;
};

// A process group of its own, every signal as the system sets it.
class CSpawnAttributes
{
  public:
    CSpawnAttributes()
    {
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_init(&m_attributes);
        ::posix_spawnattr_setpgroup(&m_attributes, 0);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &all);
        ::posix_spawnattr_setflags(&m_attributes,
                                   POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~CSpawnAttributes() { ::posix_spawnattr_destroy(&m_attributes); }
    CSpawnAttributes(const CSpawnAttributes&) = delete;
    CSpawnAttributes& operator=(const CSpawnAttributes&) = delete;

    [[nodiscard]] const posix_spawnattr_t* get() const { return &m_attributes; }

  private:
    posix_spawnattr_t m_attributes;
};

// Whether the process is dead, or unknown to the system; information.si_pid is 0 in the latter case. Leaves
// it a zombie, so that its number cannot be given to another one.
bool isOver(pid_t nProcess, int nFlags, siginfo_t& information)
{
    int nResult;
    do {
        information = {};
        nResult = ::waitid(P_PID, static_cast<id_t>(nProcess), &information, WEXITED | WNOWAIT | nFlags);
    } while (nResult != 0 && errno == EINTR);
    return nResult != 0 || information.si_pid == nProcess;
}

} // namespace

CPlugInProbeProcess::CPlugInProbeProcess(const std::filesystem::path& helper,
                                         const std::vector<std::string>& arguments)
{
    start(helper, arguments);
}

void CPlugInProbeProcess::start(const std::filesystem::path& helper,
                                const std::vector<std::string>& arguments)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        m_sStartError = std::strerror(errno);
        return;
    }
    m_pipe = CDescriptor(ends[0]);
    const CDescriptor writeEnd(ends[1]);
    ::fcntl(m_pipe.get(), F_SETFL, O_NONBLOCK);

    std::string sProgram = helper.string();
    std::vector<std::string> texts = arguments;
    std::vector<char*> pointers{sProgram.data()};
    for (auto& sText : texts)
        pointers.push_back(sText.data());
    pointers.push_back(nullptr);

    const CFileActions actions(writeEnd.get());
    const CSpawnAttributes attributes;
    const int nError = ::posix_spawn(&m_nProcess, sProgram.c_str(), actions.get(), attributes.get(),
                                     pointers.data(), ::environ);
    if (nError != 0) {
        m_nProcess = -1;
        m_sStartError = std::strerror(nError);
        return;
    }
    m_process = CDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, m_nProcess, 0)));
}

CPlugInProbeProcess::~CPlugInProbeProcess()
{
    if (m_nProcess < 0)
        return;
    // The group has the process's number, which stays taken until the process is waited for. The process
    // itself may have moved to another group.
    ::kill(-m_nProcess, SIGKILL);
    ::kill(m_nProcess, SIGKILL);
    siginfo_t information;
    isOver(m_nProcess, 0, information);
    CPlugInLibraryCopy::removeLeftovers(m_nProcess, CPlugInLibraryCopy::usualFolders());
    while (::waitpid(m_nProcess, nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool CPlugInProbeProcess::takeLine(std::string& sLine)
{
    const auto uEnd = m_sBuffer.find('\n');
    if (uEnd == std::string::npos && m_sBuffer.size() <= MAX_PROBE_LINE)
        return false;
    sLine = m_sBuffer.substr(0, uEnd);
    m_sBuffer.erase(0, uEnd == std::string::npos ? uEnd : uEnd + 1);
    return true;
}

CPlugInProbeProcess::EFill CPlugInProbeProcess::fillBuffer()
{
    std::array<char, 4096> piece;
    if (m_pipe.get() < 0)
        return EFill::closed;
    const ssize_t nRead = ::read(m_pipe.get(), piece.data(), piece.size());
    if (nRead > 0) {
        m_sBuffer.append(piece.data(), static_cast<std::size_t>(nRead));
        return EFill::some;
    }
    if (nRead < 0 && (errno == EAGAIN || errno == EINTR))
        return EFill::nothing;
    m_pipe.close();
    return EFill::closed;
}

bool CPlugInProbeProcess::waitForEvent(CTime deadline) const
{
    using std::chrono::milliseconds;
    const auto now = std::chrono::steady_clock::now();
    if (now >= deadline)
        return false;
    auto wait = std::chrono::ceil<milliseconds>(deadline - now);
    if (m_process.get() < 0)
        wait = std::min(wait, DEATH_POLL);
    if (isPatient())
        wait = std::min(wait, PATIENT_POLL);
    std::array<pollfd, 2> watched{{{m_pipe.get(), POLLIN, 0}, {m_process.get(), POLLIN, 0}}};
    ::poll(watched.data(), watched.size(), static_cast<int>(std::min(wait, milliseconds(3600000)).count()));
    if (isPatient())
        static_cast<void>(waitPatiently(milliseconds::zero())); // the deadline ends it, nothing else
    return true;
}

CPlugInProbeProcess::ERead CPlugInProbeProcess::readLine(std::string& sLine, CTime deadline)
{
    for (;;) {
        if (takeLine(sLine))
            return ERead::line;
        // Death is looked for first: what was written before it is then in the pipe for sure.
        siginfo_t information;
        const bool bDead = isOver(m_nProcess, WNOHANG, information);
        if (fillBuffer() == EFill::some)
            continue;
        if (bDead)
            return ERead::ended;
        if (!waitForEvent(deadline))
            return ERead::timedOut;
    }
}

std::optional<CPlugInProbeProcess::CEnding> CPlugInProbeProcess::ending() const
{
    siginfo_t information;
    if (m_nProcess < 0 || !isOver(m_nProcess, WNOHANG, information) || information.si_pid == 0)
        return std::nullopt;
    return CEnding{information.si_code != CLD_EXITED, information.si_status};
}

} // namespace velmora
