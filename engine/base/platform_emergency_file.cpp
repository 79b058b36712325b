#include "base/platform_emergency_file.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace velmora {

namespace {

constexpr std::size_t LONGEST_VALUE = 4096; // bytes

mode_t permissionsOf(const char* pFile) noexcept
{
    struct stat file = {};
    return pFile && ::stat(pFile, &file) == 0 ? file.st_mode & 0777 : 0666;
}

} // namespace

CEmergencyFile::CEmergencyFile(const char* pUnfinished, const char* pLikeFile) noexcept
    : m_pUnfinished(pUnfinished)
{
    ::unlink(pUnfinished);
    m_file = CDescriptor(
        ::open(pUnfinished, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissionsOf(pLikeFile) | S_IWUSR));
    check(m_file.get() >= 0);
}

CEmergencyFile::~CEmergencyFile()
{
    if (!m_bCommitted && m_file.get() >= 0)
        ::unlink(m_pUnfinished);
}

void CEmergencyFile::check(bool bDone) noexcept
{
    if (!bDone && m_nError == 0)
        m_nError = errno != 0 ? errno : EIO;
}

void CEmergencyFile::write(std::string_view sText) noexcept
{
    if (m_nError == 0)
        check(m_file.write(sText.data(), sText.size()));
}

void CEmergencyFile::writeLine(std::string_view sKey, std::string_view sValue) noexcept
{
    write(sKey);
    write(": ");
    std::array<char, 256> piece;
    sValue = sValue.substr(0, LONGEST_VALUE);
    while (!sValue.empty()) {
        const std::size_t uLength = sValue.copy(piece.data(), piece.size());
        for (std::size_t u = 0; u < uLength; ++u)
            if (static_cast<unsigned char>(piece[u]) < ' ' || piece[u] == '\x7F')
                piece[u] = ' ';
        write({piece.data(), uLength});
        sValue.remove_prefix(uLength);
    }
    write("\n");
}

void CEmergencyFile::writeLine(std::string_view sKey, int nValue) noexcept
{
    std::array<char, 16> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), nValue);
    writeLine(sKey, {digits.data(), static_cast<std::size_t>(result.ptr - digits.data())});
}

int CEmergencyFile::commit(const char* pTarget) noexcept
{
    if (m_nError == 0)
        check(::fsync(m_file.get()) == 0);
    if (m_nError == 0)
        check(::rename(m_pUnfinished, pTarget) == 0);
    m_bCommitted = m_nError == 0;
    return m_nError;
}

} // namespace velmora
