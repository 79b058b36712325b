#include "host/plugin_library_check.h"

#include "base/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <elf.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace velmora {

namespace {

// A library is copied before it is opened, as a rule into memory.
constexpr std::uint64_t MAX_LIBRARY_SIZE = std::uint64_t{512} << 20;

using FileHeader = ElfW(Ehdr);
using ProgramHeader = ElfW(Phdr);

constexpr unsigned char NATIVE_CLASS = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
constexpr unsigned char NATIVE_ORDER = ELFDATA2LSB;
constexpr std::size_t MAX_PROGRAM_HEADERS = 4096;

bool readAt(int nDescriptor, std::uint64_t uOffset, void* pTarget, std::size_t uSize)
{
    return ::pread(nDescriptor, pTarget, uSize, static_cast<off_t>(uOffset)) == static_cast<ssize_t>(uSize);
}

// Where a piece of the file ends; the highest number for one that no file could hold.
std::uint64_t endOf(std::uint64_t uOffset, std::uint64_t uSize)
{
    return uSize > UINT64_MAX - uOffset ? UINT64_MAX : uOffset + uSize;
}

std::string tooShort(std::uint64_t uSize, std::uint64_t uNeeded)
{
    return formatted("is cut short: it has %llu bytes, but its headers reach to byte %llu",
                     static_cast<unsigned long long>(uSize), static_cast<unsigned long long>(uNeeded));
}

// How many bytes the headers say that the file has; 0 if they cannot be read.
std::uint64_t sizeByHeaders(int nDescriptor, const FileHeader& header, std::uint64_t uFileSize)
{
    std::uint64_t uNeeded =
        header.e_shoff == 0 ? 0 : endOf(header.e_shoff, std::uint64_t{header.e_shnum} * header.e_shentsize);
    uNeeded = std::max(uNeeded, endOf(header.e_phoff, std::uint64_t{header.e_phnum} * sizeof(ProgramHeader)));
    if (uNeeded > uFileSize)
        return uNeeded;
    if (header.e_phentsize != sizeof(ProgramHeader) || header.e_phnum > MAX_PROGRAM_HEADERS)
        return 0;
    std::vector<ProgramHeader> segments(header.e_phnum);
    if (!readAt(nDescriptor, header.e_phoff, segments.data(), segments.size() * sizeof(ProgramHeader)))
        return 0;
    for (const auto& segment : segments) {
        if (segment.p_type == PT_LOAD || segment.p_type == PT_DYNAMIC)
            uNeeded = std::max(uNeeded, endOf(segment.p_offset, segment.p_filesz));
    }
    return uNeeded;
}

} // namespace

std::string faultOfLibraryFile(int nDescriptor)
{
    struct stat status = {};
    if (::fstat(nDescriptor, &status) != 0)
        return std::strerror(errno);
    if (!S_ISREG(status.st_mode))
        return "is not a regular file";
    if (status.st_size == 0)
        return "is an empty file";

    const auto uSize = static_cast<std::uint64_t>(status.st_size);
    if (uSize > MAX_LIBRARY_SIZE)
        return "is larger than 512 MiB";
    unsigned char identification[EI_NIDENT] = {};
    if (uSize < SELFMAG || !readAt(nDescriptor, 0, identification, SELFMAG) ||
        std::memcmp(identification, ELFMAG, SELFMAG) != 0)
        return "is not a shared library: it does not begin with the ELF signature";

    FileHeader header = {};
    if (uSize < sizeof header || !readAt(nDescriptor, 0, &header, sizeof header))
        return tooShort(uSize, sizeof header);
    if (header.e_ident[EI_CLASS] != NATIVE_CLASS || header.e_ident[EI_DATA] != NATIVE_ORDER)
        return "was built for another kind of processor";
    const std::uint64_t uNeeded = sizeByHeaders(nDescriptor, header, uSize);
    if (uNeeded == 0)
        return "is not a shared library: its program headers cannot be read";
    return uNeeded > uSize ? tooShort(uSize, uNeeded) : std::string();
}

} // namespace velmora
