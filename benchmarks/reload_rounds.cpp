// Rebuilds and reloads one project over and over, with another constant in its source each time, and checks
// that every build runs its own code and that memory stays flat.
//
//     reload_rounds [ROUNDS] [COMPILER ID]        1000 rounds with GCC unless given

#include "audio/portaudio_system.h"
#include "base/message_target.h"
#include "base/platform_folders.h"
#include "base/user_dialogs.h"
#include "benchmarks/resident_memory.h"
#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "host/user_dsp_filter.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/text_surgery.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace {

namespace fs = std::filesystem;

class CConsole : public velmora::IUserDialogs
{
  public:
    void showMessage(std::string_view sText) override
    {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(sText.size()), sText.data());
    }
    bool askYesNo(std::string_view sText) override
    {
        showMessage(sText);
        return false;
    }
    bool askOKCancel(std::string_view sText) override { return askYesNo(sText); }
    std::optional<fs::path> chooseSaveFile(std::string_view, const fs::path&) override { return {}; }
    std::optional<fs::path> chooseOpenFile(std::string_view, const fs::path&) override { return {}; }
    void note(std::string_view sText) override
    {
        if (sText.find("stays in memory") != std::string_view::npos)
            m_nPinned++;
    }

    int m_nPinned = 0;
};

class CNoView : public velmora::IMessageTarget
{
  public:
    void post(unsigned, std::size_t, std::ptrdiff_t) override {}
    std::ptrdiff_t send(unsigned, std::size_t, std::ptrdiff_t) override { return 0; }
};

long openDescriptors()
{
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0.0 : values[values.size() / 2];
}

struct CRounds
{
    int m_nOwnCode = 0;
    std::vector<double> m_seconds;
    std::vector<long> m_memory;
};

bool playRounds(velmora::CProjectCommands& commands, velmora::CTonboxDoc& document, int nRounds,
                CRounds& result)
{
    std::string sBefore = "= 0.5f";
    velmora::CRebuildOptions options;
    options.m_bUnloadFirst = false;
    for (int i = 1; i <= nRounds; i++) {
        std::string sText;
        const auto source = commands.project()->sourcePath();
        const std::string sNow = "= " + std::to_string(i) + ".0f";
        if (!velmora::readFileToString(source, sText, false, 0, true) ||
            velmora::replaceAll(sText, sBefore, sNow) == 0 || !velmora::writeStringToFile(source, sText))
            return false;
        sBefore = sNow;
        const velmora::CRebuildResult built = commands.rebuild(options);
        if (!built.m_bLoaded) {
            std::fprintf(stderr, "Round %d: %s\n", i, built.m_build.m_sError.c_str());
            return false;
        }
        float fIn = 1.0F;
        float fOut[2] = {};
        document.plugInLoader().current()->filter().processUserBuffer(&fIn, fOut, 0, 1, 1, 1, nullptr, 0,
                                                                      false);
        result.m_nOwnCode += fOut[0] == static_cast<float>(i);
        result.m_seconds.push_back(built.m_dWriteSeconds + built.m_build.m_dSeconds + built.m_dLoadSeconds);
        result.m_memory.push_back(residentMemory());
        if (i % 100 == 0)
            std::fprintf(stderr, "%d rounds, %ld kB\n", i, result.m_memory.back());
    }
    return true;
}

} // namespace

int main(int nArguments, char** ppArguments)
{
    const int nRounds = nArguments > 1 ? std::max(1, std::atoi(ppArguments[1])) : 1000;
    std::string sFolder = (fs::temp_directory_path() / "velmora-rounds-XXXXXX").string();
    if (!::mkdtemp(sFolder.data()))
        return 1;
    CRounds rounds;
    CConsole dialogs;
    bool bDone = false;
    long nDescriptors = 0;
    {
        velmora::CPortAudioSystem audio; // never brought up
        CNoView view;
        velmora::CTonboxDoc document(dialogs, audio, view);
        velmora::CTonboxDoc::CStartUp startUp;
        startUp.m_userFolder = fs::path(sFolder) / "user";
        startUp.m_bOpenAudioSystem = false;
        startUp.m_bScanPlugIns = false;
        velmora::CNewProjectRequest request;
        request.m_parentFolder = sFolder;
        request.setName("Rounds");
        if (document.OnNewDocument(startUp)) {
            velmora::CProjectCommands commands(document, dialogs,
                                               velmora::programDataFolder("BaseClassFiles"));
            const int nCompiler =
                nArguments > 2 ? std::atoi(ppArguments[2]) : commands.compilers().chosenId();
            nDescriptors = openDescriptors();
            bDone = commands.compilers().choose(nCompiler) && commands.newProject(request) &&
                    playRounds(commands, document, nRounds, rounds);
            nDescriptors = openDescriptors() - nDescriptors;
        }
    }
    fs::current_path("/");
    fs::remove_all(sFolder);
    if (!bDone)
        return 1;
    const std::size_t uSettled = std::min<std::size_t>(20, rounds.m_memory.size() - 1);
    std::printf("%d rounds, %d ran their own code, %d libraries stayed in memory\n", nRounds,
                rounds.m_nOwnCode, dialogs.m_nPinned);
    std::printf("median %.0f ms from the request to the loaded plug-in\n", 1000.0 * median(rounds.m_seconds));
    std::printf("memory %ld kB after %zu rounds, %ld kB at the end; %ld descriptors more\n",
                rounds.m_memory[uSettled], uSettled + 1, rounds.m_memory.back(), nDescriptors);
    return rounds.m_nOwnCode == nRounds ? 0 : 1;
}
