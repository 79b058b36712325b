#include "project/codegen/control_import.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/codegen/base_files.h"
#include "project/codegen/project_history.h"
#include "project/codegen/text_surgery.h"
#include "project/control_list.h"
#include "project/dsp_project.h"
#include "project/project_file.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr const char* GUI_DOCUMENT = "Velmora.uidesc";

template <typename T, std::size_t N>
void copyArray(const T (&from)[N], T (&to)[N])
{
    std::copy(std::begin(from), std::end(from), std::begin(to));
}

void importLabels(CDSPProject& project, const CDSPProject& other)
{
    for (std::size_t i = 0; i < std::size(other.m_TextLabels); ++i)
        project.setTextLabel(i, other.m_TextLabels[i] ? other.m_TextLabels[i] : "");
    copyArray(other.m_uLabelCX, project.m_uLabelCX);
    copyArray(other.m_uLabelCY, project.m_uLabelCY);
}

void importJoystick(CDSPProject& project, const CDSPProject& other)
{
    if (project.m_pVectorJSProgram && other.m_pVectorJSProgram)
        std::copy_n(other.m_pVectorJSProgram, MAX_JS_PROGRAM_STEPS * MAX_JS_PROGRAM_STEP_VARS,
                    project.m_pVectorJSProgram);
    project.m_JS_XCtrl = other.m_JS_XCtrl;
    project.m_JS_YCtrl = other.m_JS_YCtrl;
    project.m_uX_TrackPadIndex = other.m_uX_TrackPadIndex;
    project.m_uY_TrackPadIndex = other.m_uY_TrackPadIndex;
}

void importButtons(CDSPProject& project, const CDSPProject& other)
{
    project.m_AssignButton1Name = other.m_AssignButton1Name;
    project.m_AssignButton2Name = other.m_AssignButton2Name;
    project.m_AssignButton3Name = other.m_AssignButton3Name;
    project.m_bLatchingAssignButton1 = other.m_bLatchingAssignButton1;
    project.m_bLatchingAssignButton2 = other.m_bLatchingAssignButton2;
    project.m_bLatchingAssignButton3 = other.m_bLatchingAssignButton3;
}

// The document that is replaced is kept in the history.
bool importGUIDocument(const CDSPProject& project, const std::filesystem::path& otherFolder,
                       IUserDialogs& dialogs)
{
    if (!fileExists(otherFolder / GUI_DOCUMENT))
        return true;
    CProjectHistory history(project.folder());
    if (!history.keep(project.folder() / GUI_DOCUMENT, "Import UI Controls")) {
        dialogs.showMessage(history.error());
        return false;
    }
    std::vector<std::filesystem::path> changed;
    copyFileIfDifferent(otherFolder / GUI_DOCUMENT, project.folder() / GUI_DOCUMENT, changed);
    return true;
}

} // namespace

void clearControls(CDSPProject& project)
{
    project.m_UIControlList.clear();
}

bool importControls(CDSPProject& project, const std::filesystem::path& otherProject, IUserDialogs& dialogs)
{
    if (!equalsIgnoreCase(otherProject.extension().string(), ".prj")) {
        dialogs.showMessage(NO_PROJECT_FILE);
        return false;
    }
    CDSPProject other;
    if (!loadProject(other, otherProject, dialogs) ||
        !importGUIDocument(project, otherProject.parent_path(), dialogs))
        return false;

    project.m_UIControlList.clear();
    for (const CUICtrl* pControl : controlsOf(other.m_UIControlList))
        project.m_UIControlList.append(*pControl);
    importLabels(project, other);
    importJoystick(project, other);
    importButtons(project, other);
    copyArray(other.m_uControlTheme, project.m_uControlTheme);
    project.m_nGUIThemeID = other.m_nGUIThemeID;
    project.m_nGUIType = other.m_nGUIType;
    project.m_bUseCustomVSTGUI = other.m_bUseCustomVSTGUI;
    return true;
}

} // namespace velmora
