#include "base/text.h"
#include "cli/command_project.h"
#include "cli/control_options.h"
#include "cli/headless_project.h"
#include "cli/project_json.h"
#include "project/control_list.h"
#include "project/control_slots.h"
#include "project/dsp_project.h"
#include "project/user_variables.h"

#include <algorithm>

namespace velmora::cli {

namespace {

int answerRecord(CCommandContext& context, CUICtrl& record)
{
    context.m_sResult = context.json() ? controlRecordAsJson(record) : controlsAsTable({&record});
    return EXIT_DONE;
}

UINT idOf(const std::string& sText)
{
    return static_cast<UINT>(parseNumber(sText).value_or(0.0));
}

// Applies the options to what the dialog starts with, and presses OK.
int acceptControl(CCommandContext& context, CHeadlessProject& project, CControlEdit& edit, bool bNew)
{
    const std::string sFault = applyControlOptions(context.line(), edit);
    if (!sFault.empty())
        return context.usageError(sFault);
    if (!project->acceptControl(edit, bNew))
        return project.refused();
    return answerRecord(context, *findControl(project->project()->m_UIControlList, edit.m_record.uControlId));
}

// The first user variable of that name; null if there is none.
CUICtrl* findUserVariable(const CDSPProject& project, std::string_view sName)
{
    for (CUICtrl* pControl : controlsOf(project.m_UIControlList))
        if (pControl->uControlId >= FIRST_USER_VARIABLE_ID && sName == pControl->cVariableName)
            return pControl;
    return nullptr;
}

} // namespace

int runProjectAddControl(CCommandContext& context)
{
    const auto slot = context.line().text("--slot");
    if (!slot)
        return context.usageError("The option --slot is missing.");
    CHeadlessProject project(context);
    if (!project.startWith(*context.line().argument("FILE")))
        return EXIT_FAILED;
    CControlEdit edit = newControlEdit(*project->project(), idOf(*slot));
    return acceptControl(context, project, edit, true);
}

int runProjectEditControl(CCommandContext& context)
{
    CHeadlessProject project(context);
    if (!project.startWith(*context.line().argument("FILE")))
        return EXIT_FAILED;
    const UINT uId = idOf(*context.line().argument("ID"));
    const CUICtrl* pControl = findControl(project->project()->m_UIControlList, uId);
    CControlEdit edit = pControl ? controlEditOf(*pControl) : newControlEdit(*project->project(), uId);
    return acceptControl(context, project, edit, false);
}

int runProjectRemoveControl(CCommandContext& context)
{
    CHeadlessProject project(context);
    if (!project.startWith(*context.line().argument("FILE")))
        return EXIT_FAILED;
    const UINT uId = idOf(*context.line().argument("ID"));
    const CUICtrl* pControl = findControl(project->project()->m_UIControlList, uId);
    CUICtrl removed = pControl ? *pControl : CUICtrl();
    return project->removeControl(uId) ? answerRecord(context, removed) : project.refused();
}

int runProjectAddVariable(CCommandContext& context)
{
    const CCommandLine& line = context.line();
    for (const char* pOption : {"--type", "--name"})
        if (!line.has(pOption))
            return context.usageError("The option " + std::string(pOption) + " is missing.");
    CHeadlessProject project(context);
    if (!project.startWith(*line.argument("FILE")))
        return EXIT_FAILED;
    CUserVariableRequest request;
    request.m_uDataType = static_cast<UINT>(
        std::ranges::find(USER_VARIABLE_DATA_TYPES, *line.text("--type")) - USER_VARIABLE_DATA_TYPES.begin());
    request.m_sName = *line.text("--name");
    request.m_sInitialValue = line.text("--value").value_or("0");
    if (!project->addUserVariable(request))
        return project.refused();
    return answerRecord(context, *findUserVariable(*project->project(), request.m_sName));
}

int runProjectRemoveVariable(CCommandContext& context)
{
    const auto name = context.line().text("--name");
    if (!name)
        return context.usageError("The option --name is missing.");
    CHeadlessProject project(context);
    if (!project.startWith(*context.line().argument("FILE")))
        return EXIT_FAILED;
    const CUICtrl* pVariable = findUserVariable(*project->project(), *name);
    CUICtrl removed = pVariable ? *pVariable : CUICtrl();
    return project->removeUserVariable(*name) ? answerRecord(context, removed) : project.refused();
}

} // namespace velmora::cli
