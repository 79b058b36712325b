#pragma once

#include "base/user_dialogs.h"
#include "project/control_slots.h"
#include "project/dsp_project.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// What the property dialogs of the panel and the command line do with a control: defaults, the checks of OK
// in their order, and what storing it brings with it. [main]

// A control being edited: a record, and its texts at their full length (a record's own hold 1023 bytes).
struct CControlEdit
{
    CUICtrl m_record; // everything but the texts
    std::string m_sName;
    std::string m_sUnits;
    std::string m_sVariableName;
    std::string m_sEnumeratedList;
    std::string m_sMeterVariableName;
};

// What an empty slot's dialog starts with. An id in a gap gives a slider, which checkControl() refuses.
[[nodiscard]] CControlEdit newControlEdit(const CDSPProject& project, UINT uControlId);

// What an existing control's dialog starts with.
[[nodiscard]] CControlEdit controlEditOf(const CUICtrl& record);

// The initial value that belongs to the record's data type; that of floatData for none of the four.
[[nodiscard]] float& initialValueOf(CUICtrl& record);

// The row or box of a dialog that a refusal points at.
enum class EControlField
{
    None,
    ControlName,
    Units,
    VariableName, // the meter variable of a meter
    LowLimit,
    InitialValue,
    EnumeratedList,
    MIDIControl,
    MeterTimes
};

// What OK comes to.
struct CControlCheck
{
    std::string m_sMessage; // why the control is refused; empty when it is not
    EControlField m_eField = EControlField::None;
    std::vector<std::string> m_questions;    // Yes or No; the control is stored only if each is answered Yes
    std::vector<std::string> m_notices;      // shown before it is stored
    std::vector<std::string> m_alteredLists; // lists of other controls that change into this control's
    CUICtrl m_record;                        // the control as it is to be stored

    [[nodiscard]] bool isRefused() const { return !m_sMessage.empty(); }
};

// Checks an edited control; its id says by which dialog's rules. pExisting is the control of the project that
// it replaces, null for a new one. Changes nothing.
[[nodiscard]] CControlCheck checkControl(const CDSPProject& project, const CControlEdit& edit,
                                         const CUICtrl* pExisting);

// Shows the refusal, or asks the questions and shows the notices. True if the control is to be stored.
[[nodiscard]] bool confirmControl(const CControlCheck& check, IUserDialogs& dialogs);

// Replaces the control with that id or appends a new one, and alters shared lists along with it.
void storeControl(CDSPProject& project, const CControlCheck& check);

// The question whether the code is to follow a variable's new name, answered Yes or No; empty if the variable
// keeps its name. Asked after OK for a control that existed.
[[nodiscard]] std::string renameQuestion(const CUICtrl& before, const CUICtrl& after);

} // namespace velmora
