// Opens, writes the code of, and saves a project with 1,124 controls: every slot of the panel and the whole
// alpha wheel, the rest user variables, with sixteen presets.
//
//     large_project [ROUNDS]        21 rounds unless given; medians, and the slowest round

#include "base/platform_folders.h"
#include "base/user_dialogs.h"
#include "project/codegen/code_central_services.h"
#include "project/codegen/text_surgery.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/control_slots.h"
#include "project/dsp_project.h"
#include "project/project_file.h"
#include "project/user_variables.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace velmora;

constexpr UINT CONTROLS = 1124;

class CConsole : public IUserDialogs
{
  public:
    void showMessage(std::string_view sText) override
    {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(sText.size()), sText.data());
    }
    bool askYesNo(std::string_view) override { return true; }
    bool askOKCancel(std::string_view) override { return true; }
    std::optional<fs::path> chooseSaveFile(std::string_view, const fs::path&) override { return {}; }
    std::optional<fs::path> chooseOpenFile(std::string_view, const fs::path&) override { return {}; }
    void note(std::string_view) override {}
};

void addControl(CDSPProject& project, UINT uId)
{
    CControlEdit edit = newControlEdit(project, uId);
    const std::string sId = std::to_string(uId);
    edit.m_sName = "Control number " + sId;
    edit.m_sVariableName = "m_variable" + sId;
    edit.m_sMeterVariableName = "m_meter" + sId;
    if (edit.m_record.uUserDataType == UINTData && edit.m_sEnumeratedList.empty())
        edit.m_sEnumeratedList = "FIRST" + sId + ",SECOND" + sId;
    const CControlCheck check = checkControl(project, edit, nullptr);
    if (check.isRefused())
        std::fprintf(stderr, "Slot %u: %s\n", uId, check.m_sMessage.c_str());
    else
        storeControl(project, check);
}

void fillProject(CDSPProject& project, const fs::path& folder)
{
    project.m_sProjectName = "Large";
    project.m_sProjectFolder = folder.string();
    project.m_sProjectFile = (folder / "Large.prj").string();
    project.m_sHeaderFile = "Large.h";
    project.m_sSourceFile = "Large.cpp";
    for (const CControlSlots& slots : controlSlots())
        for (UINT uId = slots.m_uFirstId; uId <= slots.m_uLastId; uId++)
            addControl(project, uId);
    for (UINT i = project.m_UIControlList.count(); i < CONTROLS; i++)
        project.m_UIControlList.append(makeUserVariable(project, {1, "m_fUser" + std::to_string(i), "0.5"}));
}

bool makeFiles(const CDSPProject& project)
{
    const fs::path skeletons = programDataFolder("BaseClassFiles");
    fs::create_directories(project.folder() / "Presets");
    for (int nPreset = 0; nPreset < 16; nPreset++) {
        std::string sPreset = "Preset\n" + std::to_string(CONTROLS) + "\n";
        for (const CUICtrl* pControl : controlsOf(project.m_UIControlList))
            sPreset += std::to_string(pControl->uControlId) + ":0.250000\n";
        if (!writeStringToFile(project.folder() / "Presets" / (std::to_string(nPreset) + ".spf"), sPreset))
            return false;
    }
    std::error_code error;
    return fs::copy_file(skeletons / "TemplatePlugIn.h", project.headerPath(), error) &&
           fs::copy_file(skeletons / "TemplatePlugIn.cpp", project.sourcePath(), error);
}

// In milliseconds, of each round.
std::vector<double> timesOf(int nRounds, const std::function<void(int)>& work)
{
    std::vector<double> times;
    for (int i = 0; i < nRounds; i++) {
        const auto start = std::chrono::steady_clock::now();
        work(i);
        times.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::ranges::sort(times);
    return times;
}

void print(const char* pName, const std::vector<double>& times)
{
    std::printf("%-34s %8.1f ms  %8.1f ms\n", pName, times[times.size() / 2], times.back());
}

} // namespace

int main(int nArguments, char** ppArguments)
{
    const int nRounds = nArguments > 1 ? std::max(1, std::atoi(ppArguments[1])) : 21;
    std::string sFolder = (fs::temp_directory_path() / "velmora-large-XXXXXX").string();
    if (!::mkdtemp(sFolder.data()))
        return 1;
    CConsole dialogs;
    CDSPProject project;
    fillProject(project, sFolder);
    bool bDone = makeFiles(project);
    CCodeCentralServices code(nullptr, dialogs);

    std::printf("%u controls                        median     slowest\n", project.m_UIControlList.count());
    print("write the code, one change each", timesOf(nRounds, [&](int i) {
              findControl(project.m_UIControlList, 0)->fInitUserFloatValue = static_cast<float>(i + 1);
              bDone = code.writeCodeRegions(&project) && bDone;
          }));
    print("write the code, unchanged",
          timesOf(nRounds, [&](int) { bDone = code.writeCodeRegions(&project) && bDone; }));
    print("save", timesOf(nRounds, [&](int) {
              bDone = saveProject(project, project.m_sProjectFile, dialogs) && bDone;
          }));
    print("open", timesOf(nRounds, [&](int) {
              CDSPProject opened;
              bDone = loadProject(opened, project.m_sProjectFile, dialogs) && bDone;
          }));
    std::printf("source %.1f MB, project %.2f MB\n",
                static_cast<double>(fs::file_size(project.sourcePath())) / 1e6,
                static_cast<double>(fs::file_size(project.m_sProjectFile)) / 1e6);
    fs::remove_all(sFolder);
    return bDone ? 0 : 1;
}
