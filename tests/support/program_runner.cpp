#include "support/program_runner.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora::test {
namespace {

constexpr std::chrono::minutes DEADLINE{2};
constexpr int POLL_MILLISECONDS = 10;

// A pipe whose reading end is drained into a text.
struct CPipe
{
    CPipe()
    {
        if (::pipe2(m_ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error(std::strerror(errno));
    }
    ~CPipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    CPipe(const CPipe&) = delete;
    CPipe& operator=(const CPipe&) = delete;

    void closeEnd(std::size_t uEnd)
    {
        if (m_ends[uEnd] >= 0)
            ::close(m_ends[uEnd]);
        m_ends[uEnd] = -1;
    }

    // Reads what is there; the end is closed when nothing more can come.
    void drain(std::string& sText)
    {
        std::array<char, 4096> buffer;
        const ssize_t nRead = ::read(m_ends[0], buffer.data(), buffer.size());
        if (nRead > 0)
            sText.append(buffer.data(), static_cast<std::size_t>(nRead));
        else if (nRead == 0 || errno != EINTR)
            closeEnd(0);
    }

    std::array<int, 2> m_ends{-1, -1};
};

struct CSpawnActions
{
    CSpawnActions() { ::posix_spawn_file_actions_init(&m_actions); }
    ~CSpawnActions() { ::posix_spawn_file_actions_destroy(&m_actions); }
    CSpawnActions(const CSpawnActions&) = delete;
    CSpawnActions& operator=(const CSpawnActions&) = delete;

    posix_spawn_file_actions_t m_actions;
};

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& sText : texts)
        pointers.push_back(sText.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const std::vector<std::pair<std::string, std::string>>& changes)
{
    std::vector<std::string> variables;
    for (char** pp = environ; *pp; ++pp) {
        const std::string sVariable = *pp;
        bool bChanged = false;
        for (const auto& [sName, sValue] : changes)
            bChanged |= sVariable.starts_with(sName + "=");
        if (!bChanged)
            variables.push_back(sVariable);
    }
    for (const auto& [sName, sValue] : changes)
        variables.push_back(sName + "=" + sValue);
    return variables;
}

pid_t spawn(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            const CProgramStart& start, const CPipe& output, const CPipe& errors)
{
    CSpawnActions spawning;
    auto* pActions = &spawning.m_actions;
    ::posix_spawn_file_actions_addopen(pActions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (start.m_sStandardOutput.empty())
        ::posix_spawn_file_actions_adddup2(pActions, output.m_ends[1], STDOUT_FILENO);
    else
        ::posix_spawn_file_actions_addopen(pActions, STDOUT_FILENO, start.m_sStandardOutput.c_str(), O_WRONLY,
                                           0);
    ::posix_spawn_file_actions_adddup2(pActions, errors.m_ends[1], STDERR_FILENO);
    if (!start.m_workingFolder.empty())
        ::posix_spawn_file_actions_addchdir_np(pActions, start.m_workingFolder.c_str());

    std::vector<std::string> words = {program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = environmentWith(start.m_environment);
    pid_t nProcess = 0;
    const int nError = ::posix_spawn(&nProcess, program.c_str(), pActions, nullptr, pointersTo(words).data(),
                                     pointersTo(variables).data());
    if (nError != 0)
        throw std::runtime_error(program.string() + ": " + std::strerror(nError));
    return nProcess;
}

} // namespace

CProgramEnd runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const CProgramStart& start)
{
    CPipe output;
    CPipe errors;
    const pid_t nProcess = spawn(program, arguments, start, output, errors);
    output.closeEnd(1);
    errors.closeEnd(1);

    CProgramEnd end;
    const auto deadline = std::chrono::steady_clock::now() + DEADLINE;
    while (output.m_ends[0] >= 0 || errors.m_ends[0] >= 0) {
        std::array<pollfd, 2> ends = {{{output.m_ends[0], POLLIN, 0}, {errors.m_ends[0], POLLIN, 0}}};
        ::poll(ends.data(), ends.size(), POLL_MILLISECONDS);
        if (ends[0].revents != 0)
            output.drain(end.m_sOutput);
        if (ends[1].revents != 0)
            errors.drain(end.m_sErrors);
        if (start.m_whileRunning)
            start.m_whileRunning(nProcess);
        if (std::chrono::steady_clock::now() > deadline)
            ::kill(nProcess, SIGKILL);
    }
    int nStatus = 0;
    ::waitpid(nProcess, &nStatus, 0);
    if (WIFEXITED(nStatus))
        end.m_nExitStatus = WEXITSTATUS(nStatus);
    if (WIFSIGNALED(nStatus))
        end.m_nSignal = WTERMSIG(nStatus);
    return end;
}

} // namespace velmora::test
