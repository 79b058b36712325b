#include "project/compiler/file_stamp.h"

#include "base/platform_descriptor.h"
#include "base/text.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

constexpr std::int64_t NANOSECONDS = 1'000'000'000;

// Longer than a tick of any clock that stamps files, those of coarse file systems included.
constexpr std::int64_t SETTLING_TIME = 2 * NANOSECONDS;

std::int64_t nanosecondsOf(const timespec& time)
{
    return static_cast<std::int64_t>(time.tv_sec) * NANOSECONDS + time.tv_nsec;
}

template <typename Number>
bool readNumber(std::string_view sText, Number& number, int nBase = 10)
{
    const char* pEnd = sText.data() + sText.size();
    const auto [pStop, error] = std::from_chars(sText.data(), pEnd, number, nBase);
    return error == std::errc() && pStop == pEnd;
}

} // namespace

std::optional<CFileStamp> CFileStamp::of(const std::filesystem::path& file)
{
    struct stat info = {};
    if (::stat(file.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return {};
    CFileStamp stamp;
    stamp.m_uSize = static_cast<std::uint64_t>(info.st_size);
    stamp.m_uInode = info.st_ino;
    stamp.m_nModified = nanosecondsOf(info.st_mtim);
    stamp.m_nChanged = nanosecondsOf(info.st_ctim);
    return stamp;
}

std::optional<CFileStamp> CFileStamp::fromText(std::string_view sText)
{
    const auto parts = split(sText, ',');
    CFileStamp stamp;
    if (parts.size() != 4 || !readNumber(parts[0], stamp.m_uSize) || !readNumber(parts[1], stamp.m_uInode) ||
        !readNumber(parts[2], stamp.m_nModified) || !readNumber(parts[3], stamp.m_nChanged))
        return {};
    return stamp;
}

std::string CFileStamp::text() const
{
    return formatted("%" PRIu64 ",%" PRIu64 ",%" PRId64 ",%" PRId64, m_uSize, m_uInode, m_nModified,
                     m_nChanged);
}

bool CFileStamp::isSettledAt(std::int64_t nNanoseconds) const
{
    return std::max(m_nModified, m_nChanged) + SETTLING_TIME < nNanoseconds;
}

std::int64_t CFileStamp::now()
{
    timespec time = {};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return nanosecondsOf(time);
}

std::uint64_t contentHash(std::string_view sContents)
{
    std::uint64_t uHash = 0xCBF29CE484222325u;
    for (const char cByte : sContents)
        uHash = (uHash ^ static_cast<unsigned char>(cByte)) * 0x100000001B3u;
    return uHash;
}

std::optional<std::string> contentsOfFile(const std::filesystem::path& file)
{
    const CDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info = {};
    if (descriptor.get() < 0 || ::fstat(descriptor.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return {};
    std::string sContents;
    char buffer[16384];
    for (;;) {
        const ssize_t nRead = ::read(descriptor.get(), buffer, sizeof buffer);
        if (nRead == 0)
            return sContents;
        if (nRead > 0)
            sContents.append(buffer, static_cast<std::size_t>(nRead));
        else if (errno != EINTR)
            return {};
    }
}

bool replaceBuildFile(const std::filesystem::path& file, std::string_view sContents)
{
    const std::string sPart = file.string() + ".part";
    CDescriptor descriptor(::open(sPart.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    return descriptor.get() >= 0 && descriptor.write(sContents.data(), sContents.size()) &&
           descriptor.close() && ::rename(sPart.c_str(), file.c_str()) == 0;
}

std::string hashText(std::uint64_t uHash)
{
    return formatted("%016" PRIx64, uHash);
}

std::optional<std::uint64_t> hashFromText(std::string_view sText)
{
    std::uint64_t uHash = 0;
    return sText.size() == 16 && readNumber(sText, uHash, 16) ? std::optional(uHash) : std::nullopt;
}

} // namespace velmora
