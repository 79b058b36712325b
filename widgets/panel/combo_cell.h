#pragma once

#include "widgets/panel/slot_cell.h"

namespace velmora {

class CPanelCombo;
class CPanelLabel;

// A combo box with its caption above, or inside where the caption is also the control's name. [main]
class CComboCell : public CSlotCell
{
    Q_OBJECT

  public:
    CComboCell(UINT uSlot, QWidget* pParent);

    void showState(const CPanelSlotState& state, ESlotRole eRole) override;
    [[nodiscard]] QWidget* focusTarget() override;
    [[nodiscard]] bool usesArrow(const QWidget& focused, Qt::Key eKey) const override;

    [[nodiscard]] CPanelCombo& combo() { return *m_pCombo; }

  protected:
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    bool m_bFixedName;
    CPanelLabel* m_pCaption;
    CPanelCombo* m_pCombo;
};

} // namespace velmora
