#include "project/compiler/compiler_state.h"

#include "base/platform_descriptor.h"
#include "base/text.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora {

struct CCompilerState::CProcessHandle
{
    CDescriptor m_descriptor; // stays with this process even if its number is given away again
};

CCompilerState::CCompilerState() = default;
CCompilerState::~CCompilerState() = default;
CCompilerState::CCompilerState(CCompilerState&&) noexcept = default;
CCompilerState& CCompilerState::operator=(CCompilerState&&) noexcept = default;

bool CCompilerState::watch(std::uint32_t uProcessId)
{
    if (uProcessId == m_uProcessId && m_pProcess)
        return isProcessAlive();
    m_pProcess.reset();
    m_uProcessId = m_uThreadId = NO_PROCESS;
    m_bAlive = false;
    if (uProcessId == 0 || uProcessId == NO_PROCESS)
        return false;
    const auto nDescriptor = ::syscall(SYS_pidfd_open, static_cast<pid_t>(uProcessId), 0U);
    if (nDescriptor < 0)
        return false;
    m_pProcess = std::make_unique<CProcessHandle>();
    m_pProcess->m_descriptor = CDescriptor(static_cast<int>(nDescriptor));
    m_uProcessId = m_uThreadId = uProcessId;
    return isProcessAlive();
}

bool CCompilerState::isProcessAlive()
{
    if (!m_pProcess)
        return m_bAlive = false;
    pollfd ended{m_pProcess->m_descriptor.get(), POLLIN, 0};
    m_bAlive = ::poll(&ended, 1, 0) == 0;
    if (!m_bAlive) {
        static_cast<void>(::waitpid(static_cast<pid_t>(m_uProcessId), nullptr, WNOHANG));
        m_pProcess.reset();
        m_uProcessId = m_uThreadId = NO_PROCESS;
        m_hWindow = 0;
    }
    return m_bAlive;
}

bool CCompilerState::hasChildren() const
{
    if (!m_pProcess)
        return false;
    const std::filesystem::path tasks = formatted("/proc/%u/task", m_uProcessId);
    std::error_code error;
    for (const auto& task : std::filesystem::directory_iterator(tasks, error)) {
        std::ifstream children(task.path() / "children");
        std::string sFirst;
        if (children >> sFirst)
            return true;
    }
    return false;
}

void CCompilerState::requestEnd()
{
    if (m_pProcess)
        ::syscall(SYS_pidfd_send_signal, m_pProcess->m_descriptor.get(), SIGTERM, nullptr, 0U);
}

} // namespace velmora
