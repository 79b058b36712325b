#pragma once

#include <csignal>
#include <sys/resource.h>

namespace velmora::test {

// While this lives, no file of the process can grow beyond uBytes: writing fails as on a full disk.
class CFullDisk
{
  public:
    explicit CFullDisk(rlim_t uBytes) : m_pOldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit = {uBytes, m_old.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~CFullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_pOldHandler);
    }

    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

  private:
    rlimit m_old = {};
    void (*m_pOldHandler)(int);
};

} // namespace velmora::test
