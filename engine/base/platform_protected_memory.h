#pragma once

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace velmora {

// Texts in pages of memory of their own, which can be read and not written: whoever writes beside his own
// memory faults here and spoils nothing. Reading is safe in a signal handler. [main]
class CProtectedMemory
{
  public:
    CProtectedMemory() = default;
    ~CProtectedMemory();
    CProtectedMemory(const CProtectedMemory&) = delete;
    CProtectedMemory& operator=(const CProtectedMemory&) = delete;

    // Takes copies of the texts in place of those held before, each with a zero behind it. The pages grow
    // when they are too few and are kept otherwise. False if there is no memory; it is empty then.
    [[nodiscard]] bool assign(std::initializer_list<std::string_view> texts);

    // The text at this position of the list; empty past its end.
    [[nodiscard]] std::string_view text(std::size_t uIndex) const noexcept;

  private:
    bool reserve(std::size_t uBytes);
    void release();

    std::byte* m_pPages = nullptr;
    std::size_t m_uSize = 0; // bytes of the pages
};

} // namespace velmora
