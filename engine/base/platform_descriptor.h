#pragma once

#include <cerrno>
#include <cstddef>
#include <unistd.h>
#include <utility>

namespace velmora {

// Owner of one file descriptor.
class CDescriptor
{
  public:
    explicit CDescriptor(int nDescriptor = -1) : m_nDescriptor(nDescriptor) {}
    ~CDescriptor() { close(); }
    CDescriptor(CDescriptor&& other) noexcept : m_nDescriptor(std::exchange(other.m_nDescriptor, -1)) {}
    CDescriptor& operator=(CDescriptor&& other) noexcept
    {
        std::swap(m_nDescriptor, other.m_nDescriptor);
        return *this;
    }

    // -1 when there is none.
    [[nodiscard]] int get() const { return m_nDescriptor; }

    // False, with errno set, if the system reports that something written was lost.
    bool close() { return m_nDescriptor < 0 || ::close(std::exchange(m_nDescriptor, -1)) == 0; }

    // Writes all of it, however many calls that takes. False, with errno set, if that fails.
    [[nodiscard]] bool write(const char* pData, std::size_t uSize) const
    {
        while (uSize > 0) {
            const ssize_t nWritten = ::write(m_nDescriptor, pData, uSize);
            if (nWritten < 0 && errno == EINTR)
                continue;
            if (nWritten <= 0)
                return false;
            pData += nWritten;
            uSize -= static_cast<std::size_t>(nWritten);
        }
        return true;
    }

  private:
    int m_nDescriptor;
};

} // namespace velmora
