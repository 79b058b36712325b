#pragma once

#include "panel/panel_slot_state.h"
#include "project/control_slots.h"
#include "widgets/common/slot_control.h"

#include <QWidget>

namespace velmora {

// One slot of the panel with all its widgets. It shows what it is told to, and says what a hand does; what
// that means is the model's business. [main]
class CSlotCell : public QWidget
{
    Q_OBJECT

  public:
    CSlotCell(UINT uSlot, QWidget* pParent);

    [[nodiscard]] UINT slot() const { return m_uSlot; }

    virtual void showState(const CPanelSlotState& state, ESlotRole eRole) = 0;

    // What takes the focus when the slot does.
    [[nodiscard]] virtual QWidget* focusTarget() = 0;

    // The arrow keys that the focused widget needs for itself; the others lead to the slots around it.
    [[nodiscard]] virtual bool usesArrow(const QWidget& focused, Qt::Key eKey) const;

    // Takes the slot's widgets into the order of the Tab key, or out of it. They keep taking clicks.
    virtual void setTabStop(bool bTabStop);

  signals:
    void moved(int nPos);
    void resetRequested();
    void textEntered(const QString& sText);
    void itemChosen(int nItem);
    void setupRequested();

  protected:
    // Name for screen readers, such as "Slider 3: Cutoff" or "Slider 3, empty".
    [[nodiscard]] QString spokenName(const CPanelSlotState& state) const;

    // A control whose own context menu would be in the way of the slot's.
    static void leaveMenuToPanel(QWidget* pWidget);

  private:
    UINT m_uSlot;
};

// The cell for a slot's kind of control.
[[nodiscard]] CSlotCell* makeSlotCell(EControlForm eForm, UINT uSlot, QWidget* pParent);

} // namespace velmora
