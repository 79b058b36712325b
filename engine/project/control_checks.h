#pragma once

#include "project/control_properties.h"

#include <span>

namespace velmora {

// What the steps of a check work on: the edited control on its way to the record that will be stored.
struct CControlCheckRun
{
    const CDSPProject& m_project;
    const CUICtrl* m_pExisting; // null for a new control
    const CControlSlots& m_slots;
    CControlEdit m_edit;
    CControlCheck m_check;

    // Always false, for a step to return.
    bool refuse(EControlField eField, std::string_view sMessage);
};

// One step: may change the edited control, and refuses it by returning false.
using CControlStep = bool (*)(CControlCheckRun& run);

// What OK does in a form's dialog, in order. [main]
[[nodiscard]] std::span<const CControlStep> controlSteps(EControlForm eForm);

} // namespace velmora
