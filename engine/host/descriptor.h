#pragma once

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

    void close()
    {
        if (m_nDescriptor >= 0)
            ::close(std::exchange(m_nDescriptor, -1));
    }

  private:
    int m_nDescriptor;
};

} // namespace velmora
