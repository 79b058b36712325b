#pragma once

#include "widgets/panel/slot_cell.h"

namespace velmora {

class CRadioBank;

// A bank of radio buttons. [main]
class CBankCell : public CSlotCell
{
    Q_OBJECT

  public:
    CBankCell(UINT uSlot, QWidget* pParent);

    void showState(const CPanelSlotState& state, ESlotRole eRole) override;
    [[nodiscard]] QWidget* focusTarget() override;
    [[nodiscard]] bool usesArrow(const QWidget& focused, Qt::Key eKey) const override;
    void setTabStop(bool bTabStop) override;

    [[nodiscard]] CRadioBank& bank() { return *m_pBank; }

  protected:
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    CRadioBank* m_pBank;
};

} // namespace velmora
