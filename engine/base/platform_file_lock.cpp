#include "base/platform_file_lock.h"

#include "base/platform_descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace velmora {

CFileLock::CFileLock(std::filesystem::path file) : m_file(std::move(file)) {}

CFileLock::~CFileLock()
{
    letGo();
}

bool CFileLock::tryToTake()
{
    return takeWith(LOCK_EX | LOCK_NB);
}

void CFileLock::take()
{
    static_cast<void>(takeWith(LOCK_EX));
}

void CFileLock::letGo()
{
    setText({});
    m_pFile.reset();
}

void CFileLock::setText(std::string_view sText)
{
    if (!m_pFile || m_pFile->get() < 0 || ::ftruncate(m_pFile->get(), 0) != 0)
        return;
    ::lseek(m_pFile->get(), 0, SEEK_SET);
    static_cast<void>(m_pFile->write(sText.data(), sText.size())); // a note, which may be missing
}

// False only if the lock is held by another and the mode does not wait.
bool CFileLock::takeWith(int nMode)
{
    std::error_code error;
    std::filesystem::create_directories(m_file.parent_path(), error);
    constexpr mode_t ANYBODY = 0666;
    auto pFile = std::make_unique<CDescriptor>(::open(m_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, ANYBODY));
    while (pFile->get() >= 0 && ::flock(pFile->get(), nMode) != 0) {
        if (errno == EWOULDBLOCK)
            return false;
        if (errno != EINTR)
            break; // a file system without locks
    }
    m_pFile = std::move(pFile);
    setText({});
    return true;
}

} // namespace velmora
