#include "base/text.h"
#include "base/user_dialogs.h"
#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "project/alpha_wheel_items.h"
#include "project/codegen/code_text.h"
#include "project/codegen/compiler_access.h"
#include "project/codegen/control_import.h"
#include "project/codegen/project_history.h"
#include "project/codegen/text_surgery.h"
#include "project/codegen/variable_rename.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/control_slots.h"
#include "project/dsp_project.h"
#include "project/menu_groups.h"
#include "project/user_variables.h"

// The commands that edit the panel, and taking them back.

namespace velmora {

namespace {

constexpr const char* GUI_DOCUMENT = "Velmora.uidesc";

std::string labelOf(const char* pWord, const CUICtrl& control)
{
    return std::string(pWord) + " \"" + control.cControlName + "\"";
}

} // namespace

bool CProjectCommands::acceptControl(const CControlEdit& edit, bool bNew)
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    const UINT uId = edit.m_record.uControlId;
    const CUICtrl* pExisting = findControl(project()->m_UIControlList, uId);
    if (bNew == (pExisting != nullptr)) {
        m_dialogs.showMessage(bNew ? formatted("Slot %u is taken by the control \"%s\". Edit or remove it.",
                                               uId, pExisting->cControlName)
                                   : formatted("There is no control with the id %u.", uId));
        return false;
    }
    const CControlCheck check = checkControl(*project(), edit, pExisting);
    if (!confirmControl(check, m_dialogs))
        return false;
    m_edits.begin(*project(), labelOf(bNew ? "Add" : "Change", check.m_record));
    if (pExisting) {
        const std::string sQuestion = renameQuestion(*pExisting, check.m_record);
        const bool bMeter = pExisting->uControlType == FILTER_CONTROL_LED_METER;
        const std::string sOld =
            bMeter ? meterVariableIdentifier(*pExisting) : variableIdentifier(*pExisting);
        const std::string sNew = bMeter ? check.m_record.cMeterVariableName : check.m_record.cVariableName;
        if (!sQuestion.empty() && m_dialogs.askYesNo(sQuestion)) {
            if (!renameVariable(sOld, sNew)) {
                m_edits.cancel();
                return false;
            }
            m_edits.noteRename(sOld, sNew, sQuestion);
        }
    }
    storeControl(*project(), check);
    return finishEdit();
}

bool CProjectCommands::removeControl(unsigned uControlId)
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    const CUICtrl* pControl =
        findControlSlots(uControlId) ? findControl(project()->m_UIControlList, uControlId) : nullptr;
    if (!pControl) {
        m_dialogs.showMessage(formatted("There is no control with the id %u.", uControlId));
        return false;
    }
    return editPanel(labelOf("Remove", *pControl),
                     [=](CDSPProject& edited) { return edited.m_UIControlList.remove(uControlId); });
}

bool CProjectCommands::setAssignableButtons(const CAssignableButtons& buttons)
{
    return editPanel("Assignable Buttons", [&](CDSPProject& edited) {
        velmora::setAssignableButtons(edited, buttons);
        return true;
    });
}

bool CProjectCommands::moveAlphaWheelItem(unsigned uControlId, bool bUp)
{
    return editPanel(bUp ? "Move Up" : "Move Down", [=](CDSPProject& edited) {
        return velmora::moveAlphaWheelItem(edited.m_UIControlList, uControlId, bUp);
    });
}

bool CProjectCommands::renameMenuGroup(std::string_view sFrom, std::string_view sTo)
{
    return editPanel("Menu Group \"" + std::string(sFrom) + "\"",
                     [=](CDSPProject& edited) { return velmora::renameMenuGroup(edited, sFrom, sTo) > 0; });
}

bool CProjectCommands::editPanel(const std::string& sLabel, const std::function<bool(CDSPProject&)>& change)
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    m_edits.begin(*project(), sLabel);
    if (change(*project()))
        return finishEdit();
    m_edits.cancel();
    return false;
}

// The project holds the edit also when the sources could not be written.
bool CProjectCommands::finishEdit()
{
    const bool bWritten = writeRegions(editorAccess());
    m_edits.commit(*project());
    return bWritten;
}

bool CProjectCommands::undo()
{
    return replay(true);
}

bool CProjectCommands::redo()
{
    return replay(false);
}

// The sources follow first: if they cannot, the edit stays as it is.
bool CProjectCommands::replay(bool bUndo)
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    const CPanelEdit* pEdit = bUndo ? m_edits.nextUndo() : m_edits.nextRedo();
    if (!pEdit)
        return false;
    if (!pEdit->m_sRenamedFrom.empty() && m_dialogs.askYesNo(pEdit->m_sRenameQuestion)) {
        const std::string& sFrom = bUndo ? pEdit->m_sRenamedTo : pEdit->m_sRenamedFrom;
        const std::string& sTo = bUndo ? pEdit->m_sRenamedFrom : pEdit->m_sRenamedTo;
        if (!renameVariable(sFrom, sTo))
            return false;
    }
    replaceDocument(*pEdit, bUndo);
    if (bUndo)
        m_edits.undo(*project());
    else
        m_edits.redo(*project());
    return writeRegions(editorAccess());
}

// The GUI document that came with imported controls. One that was changed since then is not touched.
void CProjectCommands::replaceDocument(const CPanelEdit& edit, bool bUndo)
{
    if (edit.m_document.empty() || edit.m_documentBefore == edit.m_documentAfter)
        return;
    const auto& before = bUndo ? edit.m_documentAfter : edit.m_documentBefore;
    const auto& after = bUndo ? edit.m_documentBefore : edit.m_documentAfter;
    std::string sNow;
    const bool bThere = fileExists(edit.m_document);
    const bool bRead = !bThere || readFileToString(edit.m_document, sNow, true, 1, true);
    std::error_code error;
    bool bDone = bRead && (bThere ? before == sNow : !before);
    if (bDone && after)
        bDone = writeStringToFile(edit.m_document, *after);
    else if (bDone)
        bDone = std::filesystem::remove(edit.m_document, error);
    if (!bDone)
        m_dialogs.note(edit.m_document.string() +
                       " was left as it is: it was changed since, or can not be written.");
}

// In the sources of the user; their earlier texts go into the history.
bool CProjectCommands::renameVariable(const std::string& sFrom, const std::string& sTo)
{
    if (ICompilerAccess* pEditor = editorAccess())
        pEditor->saveAll();
    CProjectHistory history(project()->folder());
    const std::string sReason = "Rename " + sFrom + " to " + sTo;
    for (const auto& file : {project()->headerPath(), project()->sourcePath()}) {
        std::string sText;
        constexpr int RETRIES = 20;
        if (!readFileToString(file, sText, true, RETRIES, true)) {
            m_dialogs.showMessage("The file " + file.string() +
                                  " can not be read. Nothing was renamed in it.");
            return false;
        }
        if (renameIdentifier(sText, sFrom, sTo) == 0)
            continue;
        if (!history.keep(file, sReason) || !writeStringToFile(file, sText)) {
            m_dialogs.showMessage("The file " + file.string() + " can not be changed: " +
                                  (history.error().empty() ? "it can not be written" : history.error()) +
                                  ".");
            return false;
        }
    }
    return true;
}

bool CProjectCommands::addUserVariable(const CUserVariableRequest& request)
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    const std::string sRefusal = checkUserVariable(*project(), request);
    if (!sRefusal.empty()) {
        m_dialogs.showMessage(sRefusal);
        return false;
    }
    return editPanel("Add Variable " + request.m_sName, [&](CDSPProject& edited) {
        edited.m_UIControlList.append(makeUserVariable(edited, request));
        m_dialogs.note(USER_VARIABLE_ADDED);
        return true;
    });
}

bool CProjectCommands::removeUserVariable(std::string_view sName)
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    for (const CUICtrl* pControl : controlsOf(project()->m_UIControlList)) {
        if (pControl->uControlId < FIRST_USER_VARIABLE_ID || sName != pControl->cVariableName)
            continue;
        return editPanel("Remove Variable " + std::string(sName), [&](CDSPProject& edited) {
            edited.m_UIControlList.remove(pControl->uControlId);
            m_dialogs.note(USER_VARIABLE_REMOVED);
            return true;
        });
    }
    m_dialogs.showMessage("There is no user-variable named " + std::string(sName) + ".");
    return false;
}

bool CProjectCommands::clearProject()
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    m_edits.begin(*project(), "Clear Project");
    clearControls(*project());
    return finishEdit();
}

bool CProjectCommands::importControls(const CProjectChooser& choose)
{
    if (!requireProject(PROJECT_NEEDED) || !m_dialogs.askYesNo(IMPORT_QUESTION))
        return false;
    const auto otherProject = choose();
    if (!otherProject)
        return false;
    takeOutPlugIn();
    m_edits.begin(*project(), "Import UI Controls");
    m_edits.noteDocument(project()->folder() / GUI_DOCUMENT);
    if (velmora::importControls(*project(), *otherProject, m_dialogs))
        return finishEdit();
    m_edits.cancel();
    return false;
}

} // namespace velmora
