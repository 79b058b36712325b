#pragma once

#include "widgets/panel/slot_cell.h"

namespace velmora {

class CLEDMeter;
class CPanelLabel;

// An LED meter with its number below and its text along its side. It takes the focus, so that it can be set
// up by keyboard. [main]
class CMeterCell : public CSlotCell
{
    Q_OBJECT

  public:
    CMeterCell(UINT uSlot, QWidget* pParent);

    void showState(const CPanelSlotState& state, ESlotRole eRole) override;
    [[nodiscard]] QWidget* focusTarget() override;

    [[nodiscard]] CLEDMeter& meter() { return *m_pMeter; }

  protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    CLEDMeter* m_pMeter;
    CPanelLabel* m_pText;
    CPanelLabel* m_pNumber;
};

} // namespace velmora
