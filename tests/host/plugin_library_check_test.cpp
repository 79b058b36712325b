#include "base/platform_descriptor.h"
#include "host/plugin_library_check.h"
#include "support/test_support.h"

#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::HasSubstr;

class PlugInLibraryCheck : public testing::Test
{
  protected:
    [[nodiscard]] std::string faultOf(const std::string& sContents) const
    {
        test::writeFile(m_folder / "library.so", sContents);
        const CDescriptor file(::open((m_folder / "library.so").c_str(), O_RDONLY | O_CLOEXEC));
        return faultOfLibraryFile(file.get());
    }

    test::CTemporaryFolder m_folder;
    const std::string m_sWhole = test::readFile(std::filesystem::path(PLUGIN_TEST_FOLDER) / "changeling.so");
};

TEST_F(PlugInLibraryCheck, FindsALibraryCutShortAnywhere)
{
    EXPECT_EQ(faultOf(m_sWhole), "");
    EXPECT_THAT(faultOf(std::string(5000, 'x')), HasSubstr("ELF signature"));
    for (const std::size_t uSize :
         {std::size_t{0}, std::size_t{1}, std::size_t{4}, sizeof(Elf64_Ehdr) - 1, sizeof(Elf64_Ehdr),
          std::size_t{4096}, m_sWhole.size() / 2, m_sWhole.size() - 1})
        EXPECT_THAT(faultOf(m_sWhole.substr(0, uSize)), HasSubstr(uSize == 0        ? "empty"
                                                                  : uSize < SELFMAG ? "ELF signature"
                                                                                    : "is cut short"))
            << uSize;
}

TEST_F(PlugInLibraryCheck, FindsHeadersThatCannotBe)
{
    const std::pair<void (*)(Elf64_Ehdr&), const char*> cases[] = {
        {[](Elf64_Ehdr& header) { header.e_phoff = UINT64_MAX - 8; }, "is cut short"},
        {[](Elf64_Ehdr& header) { header.e_shoff = UINT64_MAX - 8; }, "is cut short"},
        {[](Elf64_Ehdr& header) { header.e_phnum = 0xffff; }, "is "},
        {[](Elf64_Ehdr& header) { header.e_phentsize = 1; }, "program headers cannot be read"},
        {[](Elf64_Ehdr& header) { header.e_ident[EI_CLASS] = ELFCLASS32; }, "another kind of processor"},
    };
    for (const auto& [spoil, pReason] : cases) {
        Elf64_Ehdr header;
        std::memcpy(&header, m_sWhole.data(), sizeof header);
        spoil(header);
        std::string sSpoiled = m_sWhole;
        std::memcpy(sSpoiled.data(), &header, sizeof header);
        EXPECT_THAT(faultOf(sSpoiled), HasSubstr(pReason));
    }
}

} // namespace
} // namespace velmora
