#pragma once

#include "panel/panel_slot_state.h"

#include <map>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPProject;

// The slots while no filter is loaded: they show the records of the open project, and moving one changes the
// record's initial value. Where a slider was not moved yet, its thumb stands by the plain share of its
// initial value in the range's width. [main]
class CProjectSlots
{
  public:
    // Not owned; null for none. Forgets where sliders were moved.
    void setProject(CDSPProject* pProject);
    [[nodiscard]] CDSPProject* project() const { return m_pProject; }

    // An unassigned state for an empty slot.
    [[nodiscard]] CPanelSlotState state(UINT uSlot) const;

    [[nodiscard]] std::vector<UINT> alphaWheelSlots() const;

    // As the operations of the same names of CPanelModel.
    bool moveSlider(UINT uSlot, int nPos);
    bool resetSlider(UINT uSlot);
    bool enterText(UINT uSlot, std::string_view sText);
    bool selectItem(UINT uSlot, int nItem);

  private:
    // A slider after a move. It holds as long as the record keeps value and range.
    struct CMoved
    {
        float m_fValue;
        float m_fBefore; // the initial value ahead of the first move
        float m_fLo;
        float m_fHi;
        int m_nPos;
    };

    [[nodiscard]] CUICtrl* record(UINT uSlot) const;
    [[nodiscard]] const CMoved* moved(CUICtrl& record) const;
    void store(CUICtrl& record, double dValue, int nPos);

    CDSPProject* m_pProject = nullptr;
    std::map<UINT, CMoved> m_moved; // by slot
};

} // namespace velmora
