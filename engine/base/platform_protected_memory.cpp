#include "base/platform_protected_memory.h"

#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace velmora {

namespace {

// What the pages begin with; the views of the texts follow, and then the texts.
struct CHeader
{
    std::size_t m_uCount;
};

constexpr std::size_t FIRST_VIEW = sizeof(std::string_view);
static_assert(sizeof(CHeader) <= FIRST_VIEW);

} // namespace

CProtectedMemory::~CProtectedMemory()
{
    release();
}

void CProtectedMemory::release()
{
    if (m_pPages)
        ::munmap(m_pPages, m_uSize);
    m_pPages = nullptr;
    m_uSize = 0;
}

// Pages that can be written, for at least so many bytes.
bool CProtectedMemory::reserve(std::size_t uBytes)
{
    if (uBytes <= m_uSize && ::mprotect(m_pPages, m_uSize, PROT_READ | PROT_WRITE) == 0)
        return true;
    release();
    const auto uPage = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t uRounded = (uBytes + uBytes / 2 + uPage - 1) / uPage * uPage; // with room to grow
    void* const pPages =
        ::mmap(nullptr, uRounded, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pPages == MAP_FAILED)
        return false;
    m_pPages = static_cast<std::byte*>(pPages);
    m_uSize = uRounded;
    return true;
}

bool CProtectedMemory::assign(std::initializer_list<std::string_view> texts)
{
    std::size_t uBytes = FIRST_VIEW;
    for (const std::string_view sText : texts)
        uBytes += sizeof(std::string_view) + sText.size() + 1;
    if (!reserve(uBytes))
        return false;

    ::new (m_pPages) CHeader{texts.size()};
    std::byte* pView = m_pPages + FIRST_VIEW;
    char* pText = reinterpret_cast<char*>(pView + texts.size() * sizeof(std::string_view));
    for (const std::string_view sText : texts) {
        ::new (pView) std::string_view(pText, sText.size());
        pView += sizeof(std::string_view);
        pText += sText.copy(pText, sText.size());
        *pText++ = '\0';
    }
    if (::mprotect(m_pPages, m_uSize, PROT_READ) == 0)
        return true;
    release();
    return false;
}

std::string_view CProtectedMemory::text(std::size_t uIndex) const noexcept
{
    if (!m_pPages || uIndex >= std::launder(reinterpret_cast<const CHeader*>(m_pPages))->m_uCount)
        return {};
    return std::launder(reinterpret_cast<const std::string_view*>(m_pPages + FIRST_VIEW))[uIndex];
}

} // namespace velmora
