#pragma once

#include "widgets/panel/slot_cell.h"

namespace velmora {

class CPanelButton;

// A switch with two states. [main]
class CSwitchCell : public CSlotCell
{
    Q_OBJECT

  public:
    CSwitchCell(UINT uSlot, QWidget* pParent);

    void showState(const CPanelSlotState& state, ESlotRole eRole) override;
    [[nodiscard]] QWidget* focusTarget() override;

    [[nodiscard]] CPanelButton& button() { return *m_pButton; }

  protected:
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    CPanelButton* m_pButton;
};

} // namespace velmora
