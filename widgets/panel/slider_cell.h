#pragma once

#include "widgets/panel/slot_cell.h"

namespace velmora {

class CPanelLabel;
class CTrackBar;
class CValueBox;

// A slider slot: the track bar at the left over the whole height, beside it name, value box and units. [main]
class CSliderCell : public CSlotCell
{
    Q_OBJECT

  public:
    CSliderCell(UINT uSlot, QWidget* pParent);

    void showState(const CPanelSlotState& state, ESlotRole eRole) override;
    [[nodiscard]] QWidget* focusTarget() override;
    [[nodiscard]] bool usesArrow(const QWidget& focused, Qt::Key eKey) const override;
    void setTabStop(bool bTabStop) override;

    // Whether a value can be typed in.
    [[nodiscard]] bool isWritable() const;
    void editValue();

    [[nodiscard]] CTrackBar& trackBar() { return *m_pTrackBar; }
    [[nodiscard]] CValueBox& valueBox() { return *m_pValueBox; }

  protected:
    void changeEvent(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;

  private:
    void place();
    void fitValue();

    ESlotRole m_eRole = ESlotRole::Empty;
    CTrackBar* m_pTrackBar;
    CPanelLabel* m_pName;
    CValueBox* m_pValueBox;
    CPanelLabel* m_pUnits;
};

} // namespace velmora
