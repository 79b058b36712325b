#include "project/control_properties.h"

#include "base/text.h"
#include "project/control_checks.h"
#include "project/enumerated_list.h"

#include <algorithm>

namespace velmora {

namespace {

// The edited record with its texts, which the copy takes over.
CUICtrl recordOf(const CControlEdit& edit)
{
    CUICtrl record = edit.m_record;
    record.cControlName = edit.m_sName.c_str();
    record.cControlUnits = edit.m_sUnits.c_str();
    record.cVariableName = edit.m_sVariableName.c_str();
    record.cEnumeratedList = edit.m_sEnumeratedList.c_str();
    record.cMeterVariableName = edit.m_sMeterVariableName.c_str();
    return CUICtrl(record);
}

} // namespace

CControlCheck checkControl(const CDSPProject& project, const CControlEdit& edit, const CUICtrl* pExisting)
{
    const UINT uId = edit.m_record.uControlId;
    const CControlSlots* pSlots = findControlSlots(uId);
    if (!pSlots) {
        CControlCheck check;
        check.m_sMessage =
            formatted("There is no slot with the number %u. Sliders are 0 to 39, radio banks 41 to 44, "
                      "switches 45 to 48, meters 50 to 59, combo boxes 60 to 63 and 70 to 73, items of "
                      "the alpha wheel 100 to 1123.",
                      uId);
        return check;
    }
    CControlCheckRun run = {project, pExisting, *pSlots, edit, {}};
    for (CControlStep step : controlSteps(pSlots->m_eForm))
        if (!step(run))
            return run.m_check;
    run.m_check.m_record = recordOf(run.m_edit);
    return run.m_check;
}

bool confirmControl(const CControlCheck& check, IUserDialogs& dialogs)
{
    if (check.isRefused()) {
        dialogs.showMessage(check.m_sMessage);
        return false;
    }
    if (!std::ranges::all_of(check.m_questions, [&](const auto& sText) { return dialogs.askYesNo(sText); }))
        return false;
    for (const std::string& sNotice : check.m_notices)
        dialogs.showMessage(sNotice);
    return true;
}

void storeControl(CDSPProject& project, const CControlCheck& check)
{
    alterEnumeratedLists(project.m_UIControlList, check.m_alteredLists, check.m_record.cEnumeratedList);
    if (!project.m_UIControlList.replace(check.m_record.uControlId, check.m_record))
        project.m_UIControlList.append(check.m_record);
}

std::string renameQuestion(const CUICtrl& before, const CUICtrl& after)
{
    const bool bMeter = after.uControlType == FILTER_CONTROL_LED_METER;
    const std::string_view sBefore = bMeter ? before.cMeterVariableName : before.cVariableName;
    const std::string_view sAfter = bMeter ? after.cMeterVariableName : after.cVariableName;
    if (sBefore == sAfter)
        return {};
    return std::string(bMeter ? "The Meter Variable name has changed." : "The variable name has changed.") +
           " This will change the UI control code information.\n\nDo you want Designer to change all "
           "instances of "
           "the variable for you? NOTE: This is risky, depending on your variable name. \n\n<Yes> = change "
           "all "
           "instances for me\n<No> = I will change them on my own";
}

} // namespace velmora
