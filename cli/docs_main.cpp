// velmora-cli-docs FOLDER: writes the manual page, the completion scripts and the Markdown page of
// velmora-cli into the folder. Runs while the program is built and is not installed.

#include "base/safe_file.h"
#include "cli/completion_scripts.h"
#include "cli/man_page.h"
#include "cli/markdown_page.h"

#include <array>
#include <cstdio>

int main(int nArguments, char** ppArguments)
{
    using namespace velmora::cli;
    struct CPage
    {
        const char* m_pFile;
        std::string (*m_pMake)();
    };
    constexpr std::array<CPage, 5> PAGES = {{{"velmora-cli.1", manPage},
                                             {"velmora-cli.bash", bashCompletion},
                                             {"_velmora-cli", zshCompletion},
                                             {"velmora-cli.fish", fishCompletion},
                                             {"cli.md", markdownPage}}};
    if (nArguments != 2) {
        std::fputs("Usage: velmora-cli-docs FOLDER\n", stderr);
        return 2;
    }
    for (const CPage& page : PAGES) {
        const std::filesystem::path file = std::filesystem::path(ppArguments[1]) / page.m_pFile;
        std::string sError;
        if (!velmora::writeFileSafely(file, page.m_pMake(), &sError)) {
            std::fprintf(stderr, "%s: %s\n", file.c_str(), sError.c_str());
            return 1;
        }
    }
    return 0;
}
