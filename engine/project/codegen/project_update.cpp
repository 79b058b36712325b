#include "project/codegen/project_update.h"

#include "base/user_dialogs.h"
#include "project/codegen/base_files.h"
#include "project/codegen/product_version.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/vst_migration.h"
#include "project/dsp_project.h"
#include "project/project_file.h"

namespace velmora {

namespace {

constexpr unsigned FIRST_VERSION_WITH_PRESENT_CONTRACT = 6610;
constexpr unsigned FIRST_VERSION_WITH_PRESENT_DEFINITIONS = 6603;

constexpr const char* NEW_VERSION =
    "New VELM version detected; Velmora will now update your project files. This may take a moment.";
constexpr const char* NEW_GUI_VERSION =
    "New VSTGUI4 version detected; Velmora will now update your project files. This may take a moment.";

// One block of the update: when it is due, what it says and does, and the version word that its success
// advances, if it is not the next block's to do.
struct CUpdateBlock
{
    bool (*m_pIsDue)(const CDSPProject&, const CProjectEnvironment&);
    const char* m_pMessage;
    bool (*m_pRun)(CVSTMigration&);
    int m_nVersionWord; // -1: none
};

bool needsDefinitions(const CDSPProject& project, const CProjectEnvironment& environment)
{
    const unsigned uVersion = project.m_uPlugInEx[0];
    return project.m_bVSTCompatible && uVersion != 0 && uVersion < environment.runningVersion() &&
           uVersion < FIRST_VERSION_WITH_PRESENT_DEFINITIONS;
}

bool needsMigration(const CDSPProject& project, const CProjectEnvironment&)
{
    return project.m_uPlugInEx[1] == 0;
}

bool needsGUILayer(const CDSPProject& project, const CProjectEnvironment&)
{
    return project.m_uPlugInEx[1] < VSTGUI_LAYER_VERSION;
}

constexpr CUpdateBlock BLOCKS[] = {
    {needsDefinitions, NEW_VERSION, [](CVSTMigration& migration) { return migration.updateDefinitions(); },
     0},
    {needsMigration, NEW_VERSION, [](CVSTMigration& migration) { return migration.migrate(); }, -1},
    {needsGUILayer, NEW_GUI_VERSION, [](CVSTMigration& migration) { return migration.updateGUILayer(); }, 1}};

} // namespace

void updateBaseFiles(const CDSPProject& project, const CProjectEnvironment& environment,
                     std::vector<std::filesystem::path>& changed)
{
    if (project.m_uPlugInEx[0] < FIRST_VERSION_WITH_PRESENT_CONTRACT)
        copyBaseFiles(contractFileNames(), environment, project.folder(), changed);
}

bool updateProject(CDSPProject& project, const CProjectEnvironment& environment, IUserDialogs& dialogs,
                   std::vector<std::filesystem::path>& changed)
{
    const auto uChangedBefore = changed.size();
    CVSTMigration migration(project, environment, dialogs, changed);
    bool bDone = true;
    bool bAdvanced = false;
    for (const CUpdateBlock& block : BLOCKS) {
        if (!block.m_pIsDue(project, environment))
            continue;
        dialogs.showMessage(block.m_pMessage);
        bDone = block.m_pRun(migration);
        if (!bDone)
            break;
        if (block.m_nVersionWord >= 0) {
            project.m_uPlugInEx[block.m_nVersionWord] =
                block.m_nVersionWord == 0 ? environment.runningVersion() : VSTGUI_LAYER_VERSION;
            bAdvanced = true;
        }
    }
    if (bAdvanced) {
        if (!saveProject(project, project.m_sProjectFile, dialogs))
            return true;
        addChanged(changed, project.m_sProjectFile);
        if (bDone)
            dialogs.showMessage("Upgraded Visual Studio project to latest version: " + productVersion() +
                                "\n\nAnswer YES if Visual Studio prompts you to Reload the solution.");
    }
    return bAdvanced || changed.size() > uChangedBefore;
}

} // namespace velmora
