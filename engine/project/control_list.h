#pragma once

#include "pluginconstants.h"
#include "project/control_kinds.h"

#include <span>
#include <vector>

namespace velmora {

// Ids of a project's controls: slider slots, then slots of buttons, meters and custom GUIs, then user
// variables. No other id is ever given.
constexpr UINT LAST_SLIDER_ID = 40;
constexpr UINT FIRST_SLOT_ID = 100;
constexpr UINT LAST_SLOT_ID = 1123;
constexpr UINT FIRST_USER_VARIABLE_ID = 0x10000;
constexpr UINT END_OF_USER_VARIABLE_IDS = 0xB0000; // the first id behind them
constexpr UINT NO_USER_VARIABLE_ID = 0xFFFFFFFF;

// Words of a control that tie it to a GUI.
constexpr UINT FLUX_SLOT_BOUND = 0; // uFluxCapControl: 1 when the control is bound to a custom GUI's slot
constexpr UINT FLUX_SLOT_INDEX = 1; // uFluxCapControl: that slot
constexpr UINT CONTROL_THEME_INDEX = 29; // uControlTheme: the control's index in the theme
constexpr UINT CONTROL_THEME_BOUND = 31; // uControlTheme: 1 when it has one

// What follows works in time that grows with the list's length, at most n log n. Positions count from 0. The
// pointers belong to the list and hold until it changes. [main]

// All controls in order.
[[nodiscard]] std::vector<CUICtrl*> controlsOf(const CUIControlList& list);

// The first control with the id; null if there is none.
[[nodiscard]] CUICtrl* findControl(const CUIControlList& list, UINT uControlId);

// The controls that are bound to a custom GUI's slot: how many, and the first one of a slot as a position
// (-1 if there is none) and as a record (null).
[[nodiscard]] UINT countSlotBoundControls(const CUIControlList& list);
[[nodiscard]] int findSlotBoundPosition(const CUIControlList& list, UINT uSlot);
[[nodiscard]] CUICtrl* findSlotBoundControl(const CUIControlList& list, UINT uSlot);

// The position of the first theme-bound control with that theme index; -1 if there is none.
[[nodiscard]] int findThemeBoundPosition(const CUIControlList& list, UINT uThemeIndex);

// The lowest id of a user variable that no control has; NO_USER_VARIABLE_ID when all are taken.
[[nodiscard]] UINT nextFreeUserVariableId(const CUIControlList& list);

// Leaves the given controls of the list, each named once, in the given order, and deletes all others.
void arrangeControls(CUIControlList& list, std::span<CUICtrl* const> controls);

// Brings the list into the order of the generated text: sliders in a cell of the classic GUI, radio banks in
// a row of it, other sliders, other radio banks, meters, combo lists, entry fields, user variables. Sliders,
// and controls of an unknown kind, stand by rising id; all others keep their order. Of sliders with one id
// the first stays; one whose id is no slot's is lost.
void sortControls(CUIControlList& list);

// Numbers the theme-bound controls from 0 in the order of their theme indices, each with a number of its
// own. An index that is not below the number of controls stays as it is. Runs after the sort.
void compactThemeBoundControls(CUIControlList& list);

// Numbers the first control of each slot id from FIRST_SLOT_ID to LAST_SLOT_ID anew, without gaps, binding
// it to the custom GUI's slots from 0 in the same order.
void renumberSlotBoundControls(CUIControlList& list);

} // namespace velmora
