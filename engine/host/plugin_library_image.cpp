#include "host/plugin_library_image.h"

#include "base/platform_descriptor.h"
#include "base/text.h"
#include "host/plugin_library_check.h"

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <span>
#include <unistd.h>

namespace velmora {

namespace {

using CDynamicEntry = ElfW(Dyn);
using CSymbol = ElfW(Sym);
using CNoteHeader = ElfW(Nhdr);

constexpr std::size_t MAX_IDENTIFIER_BYTES = 64;

std::string inHex(std::span<const unsigned char> bytes)
{
    std::string sHex;
    for (const unsigned char cByte : bytes)
        sHex += formatted("%02x", cByte);
    return sHex;
}

// The GNU build identifier among the notes of one segment.
std::string buildIdAmongNotes(std::span<const unsigned char> notes)
{
    const auto padded = [](std::size_t uSize) { return (uSize + 3) & ~std::size_t{3}; };
    while (notes.size() >= sizeof(CNoteHeader)) {
        CNoteHeader header;
        std::memcpy(&header, notes.data(), sizeof header);
        const std::size_t uName = sizeof header;
        const std::size_t uContent = uName + padded(header.n_namesz);
        const std::size_t uEnd = uContent + padded(header.n_descsz);
        if (uEnd > notes.size())
            break;
        const bool bIsGnu = header.n_namesz == 4 && std::memcmp(notes.data() + uName, "GNU", 4) == 0;
        if (bIsGnu && header.n_type == NT_GNU_BUILD_ID && header.n_descsz <= MAX_IDENTIFIER_BYTES)
            return inHex(notes.subspan(uContent, header.n_descsz));
        notes = notes.subspan(uEnd);
    }
    return {};
}

// The dynamic section of a library in memory, as far as it matters here.
struct CDynamicTables
{
    bool m_bNoDelete = false;
    const CSymbol* m_pSymbols = nullptr;
    const char* m_pStrings = nullptr;
    const std::uint32_t* m_pHash = nullptr; // DT_GNU_HASH

    explicit CDynamicTables(const CDynamicEntry* pEntry)
    {
        for (; pEntry && pEntry->d_tag != DT_NULL; ++pEntry) {
            if (pEntry->d_tag == DT_FLAGS_1)
                m_bNoDelete = (pEntry->d_un.d_val & DF_1_NODELETE) != 0;
            else if (pEntry->d_tag == DT_SYMTAB)
                m_pSymbols = reinterpret_cast<const CSymbol*>(pEntry->d_un.d_ptr);
            else if (pEntry->d_tag == DT_STRTAB)
                m_pStrings = reinterpret_cast<const char*>(pEntry->d_un.d_ptr);
            else if (pEntry->d_tag == DT_GNU_HASH)
                m_pHash = reinterpret_cast<const std::uint32_t*>(pEntry->d_un.d_ptr);
        }
    }

    // One past the last symbol: those ahead of the hash table's first are undefined ones.
    [[nodiscard]] std::uint32_t symbolCount() const
    {
        if (!m_pHash)
            return 0;
        const std::uint32_t uBuckets = m_pHash[0];
        const std::uint32_t uFirst = m_pHash[1];
        const std::uint32_t* pBuckets = m_pHash + 4 + m_pHash[2] * (sizeof(ElfW(Addr)) / 4);
        const std::uint32_t* pChains = pBuckets + uBuckets;
        const std::uint32_t uLast = uBuckets ? *std::max_element(pBuckets, pBuckets + uBuckets) : 0;
        if (uLast < uFirst)
            return uFirst;
        std::uint32_t uAt = uLast;
        while ((pChains[uAt - uFirst] & 1U) == 0)
            ++uAt;
        return uAt + 1;
    }

    // The name of the first symbol for which the predicate holds; empty if there is none.
    template <typename Predicate>
    [[nodiscard]] std::string_view findSymbol(Predicate predicate) const
    {
        if (!m_pSymbols || !m_pStrings)
            return {};
        const std::uint32_t uCount = symbolCount();
        for (std::uint32_t i = 1; i < uCount; ++i)
            if (predicate(m_pSymbols[i], std::string_view(m_pStrings + m_pSymbols[i].st_name)))
                return m_pStrings + m_pSymbols[i].st_name;
        return {};
    }
};

} // namespace

std::optional<CPlugInLibraryImage> CPlugInLibraryImage::find(const std::filesystem::path& name)
{
    struct CSearch
    {
        std::string_view m_sName;
        CPlugInLibraryImage m_image;
        bool m_bFound = false;
    } search;
    search.m_sName = name.native();
    ::dl_iterate_phdr(
        [](dl_phdr_info* pInfo, std::size_t, void* pData) {
            auto& wanted = *static_cast<CSearch*>(pData);
            if (wanted.m_sName != pInfo->dlpi_name)
                return 0;
            wanted.m_bFound = true;
            wanted.m_image.m_uBase = pInfo->dlpi_addr;
            for (int i = 0; i < pInfo->dlpi_phnum; ++i) {
                const auto& header = pInfo->dlpi_phdr[i];
                wanted.m_image.m_segments.push_back(
                    {header.p_type, pInfo->dlpi_addr + header.p_vaddr, header.p_memsz});
            }
            return 1;
        },
        &search);
    if (!search.m_bFound)
        return {};
    return search.m_image;
}

std::string CPlugInLibraryImage::buildId() const
{
    for (const CSegment& segment : m_segments) {
        if (segment.m_uType != PT_NOTE)
            continue;
        std::string sId =
            buildIdAmongNotes({reinterpret_cast<const unsigned char*>(segment.m_uAddress), segment.m_uSize});
        if (!sId.empty())
            return sId;
    }
    return {};
}

std::string CPlugInLibraryImage::pinReason() const
{
    const auto dynamic = std::ranges::find(m_segments, PT_DYNAMIC, &CSegment::m_uType);
    const CDynamicTables tables(
        dynamic == m_segments.end() ? nullptr : reinterpret_cast<const CDynamicEntry*>(dynamic->m_uAddress));
    if (tables.m_bNoDelete)
        return "is linked with -z nodelete; link it without";
    const auto sUnique = tables.findSymbol([](const CSymbol& symbol, std::string_view) {
        return ELF64_ST_BIND(symbol.st_info) == STB_GNU_UNIQUE;
    });
    if (!sUnique.empty())
        return "has symbols that are unique in the process, such as " + std::string(sUnique) +
               "; compile it with -fno-gnu-unique";
    const auto sThreadExit = tables.findSymbol([](const CSymbol& symbol, std::string_view sName) {
        return symbol.st_shndx == SHN_UNDEF && sName.starts_with("__cxa_thread_atexit");
    });
    if (!sThreadExit.empty())
        return "has a thread_local object with a destructor, which lasts until its thread ends; make it a "
               "member of the plug-in";
    return "is still used by something else in the program, such as a library that it opened";
}

std::string buildIdOfFile(const std::filesystem::path& file)
{
    const CDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (descriptor.get() < 0 || !faultOfLibraryFile(descriptor.get()).empty())
        return {};
    ElfW(Ehdr) header = {};
    if (::pread(descriptor.get(), &header, sizeof header, 0) != sizeof header)
        return {};
    constexpr std::size_t MAX_NOTES = 65536;
    for (unsigned i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) segment = {};
        const auto nOffset = static_cast<off_t>(header.e_phoff + i * sizeof segment);
        if (::pread(descriptor.get(), &segment, sizeof segment, nOffset) != sizeof segment)
            return {};
        if (segment.p_type != PT_NOTE || segment.p_filesz > MAX_NOTES)
            continue;
        std::vector<unsigned char> notes(segment.p_filesz);
        const ssize_t nRead =
            ::pread(descriptor.get(), notes.data(), notes.size(), static_cast<off_t>(segment.p_offset));
        if (nRead != static_cast<ssize_t>(notes.size()))
            return {};
        std::string sId = buildIdAmongNotes(notes);
        if (!sId.empty())
            return sId;
    }
    return {};
}

} // namespace velmora
