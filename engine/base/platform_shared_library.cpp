#include "base/platform_shared_library.h"

#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <span>
#include <sys/mman.h>
#include <unistd.h>

namespace velmora {

namespace {

std::string linkerError()
{
    const char* pError = ::dlerror();
    return pError ? pError : "cannot be opened";
}

link_map* mapOf(void* pHandle)
{
    link_map* pMap = nullptr;
    return ::dlinfo(pHandle, RTLD_DI_LINKMAP, &pMap) == 0 ? pMap : nullptr;
}

ElfW(Addr) dynamicValue(const link_map& map, ElfW(Sxword) nTag)
{
    for (const ElfW(Dyn)* pEntry = map.l_ld; pEntry->d_tag != DT_NULL; ++pEntry)
        if (pEntry->d_tag == nTag)
            return pEntry->d_un.d_ptr;
    return 0;
}

std::span<const ElfW(Rela)> relocations(const link_map& map, ElfW(Sxword) nTable, ElfW(Sxword) nSize)
{
    return {reinterpret_cast<const ElfW(Rela)*>(dynamicValue(map, nTable)),
            dynamicValue(map, nTable) ? dynamicValue(map, nSize) / sizeof(ElfW(Rela)) : 0};
}

// The linker made the table read-only when it was done with it.
bool makeWritable(void** pEntry)
{
    const auto uPageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto uPage = reinterpret_cast<std::uintptr_t>(pEntry) & ~(uPageSize - 1);
    return ::mprotect(reinterpret_cast<void*>(uPage), uPageSize, PROT_READ | PROT_WRITE) == 0;
}

} // namespace

std::filesystem::path CSharedLibrary::find(const char* pName, std::string& sError)
{
    void* const pHandle = ::dlopen(pName, RTLD_LAZY | RTLD_LOCAL);
    if (!pHandle) {
        sError = linkerError();
        return {};
    }
    const link_map* const pMap = mapOf(pHandle);
    const std::filesystem::path file = pMap ? pMap->l_name : pName;
    ::dlclose(pHandle);
    return file;
}

CSharedLibrary::~CSharedLibrary()
{
    if (m_pHandle)
        ::dlclose(m_pHandle);
}

bool CSharedLibrary::open(const std::filesystem::path& file, std::string& sError)
{
    m_pHandle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_pHandle)
        sError = linkerError();
    return m_pHandle != nullptr;
}

void* CSharedLibrary::address(const char* pName) const
{
    return m_pHandle ? ::dlsym(m_pHandle, pName) : nullptr;
}

void* CSharedLibrary::redirect(const char* pName, void* pReplacement)
{
    const link_map* const pMap = m_pHandle ? mapOf(m_pHandle) : nullptr;
    if (!pMap)
        return nullptr;
    const auto* const pSymbols = reinterpret_cast<const ElfW(Sym)*>(dynamicValue(*pMap, DT_SYMTAB));
    const auto* const pNames = reinterpret_cast<const char*>(dynamicValue(*pMap, DT_STRTAB));
    void* pFormer = nullptr;
    for (const auto& table :
         {relocations(*pMap, DT_JMPREL, DT_PLTRELSZ), relocations(*pMap, DT_RELA, DT_RELASZ)}) {
        for (const ElfW(Rela) & relocation : table) {
            const ElfW(Sym)& symbol = pSymbols[ELF64_R_SYM(relocation.r_info)];
            auto* const pEntry = reinterpret_cast<void**>(pMap->l_addr + relocation.r_offset);
            if (symbol.st_shndx != SHN_UNDEF || relocation.r_addend != 0 ||
                std::strcmp(pNames + symbol.st_name, pName) != 0 || !makeWritable(pEntry))
                continue;
            pFormer = *pEntry;
            *pEntry = pReplacement;
        }
    }
    return pFormer;
}

} // namespace velmora
