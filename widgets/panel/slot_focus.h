#pragma once

#include <QObject>
#include <vector>

class QKeyEvent;
class QWidget;

namespace velmora {

class CSlotCell;

// The keyboard's way through slots that stand in a grid: the Tab key stops at one of them, the last that had
// the focus, and the arrow keys lead on to the others wherever the control in the slot does not need them.
// With Ctrl they always do. [main]
class CSlotFocus : public QObject
{
    Q_OBJECT

  public:
    CSlotFocus(std::vector<CSlotCell*> cells, int nColumns, QObject* pParent);

    // Lets the Tab key stop at that one. The first slot in use is a good start.
    void setStop(CSlotCell* pCell);
    [[nodiscard]] CSlotCell* stop() const { return m_pStop; }

  protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

  private:
    [[nodiscard]] CSlotCell* cellOf(const QWidget* pWidget) const;
    bool handleKey(const QKeyEvent& key, const QWidget& focused);

    std::vector<CSlotCell*> m_cells;
    int m_nColumns;
    CSlotCell* m_pStop = nullptr;
};

} // namespace velmora
