#include "widgets/panel/slot_focus.h"

#include "widgets/common/value_box.h"
#include "widgets/panel/slider_cell.h"

#include <QKeyEvent>
#include <algorithm>
#include <iterator>

namespace velmora {

namespace {

struct CStep
{
    int m_nKey;
    int m_nColumns;
    int m_nRows;
};

constexpr CStep STEPS[] = {
    {Qt::Key_Left, -1, 0}, {Qt::Key_Right, 1, 0}, {Qt::Key_Up, 0, -1}, {Qt::Key_Down, 0, 1}};

} // namespace

CSlotFocus::CSlotFocus(std::vector<CSlotCell*> cells, int nColumns, QObject* pParent)
    : QObject(pParent), m_cells(std::move(cells)), m_nColumns(nColumns)
{
    for (CSlotCell* pCell : m_cells) {
        pCell->setTabStop(false);
        for (QWidget* pWidget : pCell->findChildren<QWidget*>())
            pWidget->installEventFilter(this);
    }
    setStop(m_cells.front());
}

void CSlotFocus::setStop(CSlotCell* pCell)
{
    if (pCell == m_pStop)
        return;
    if (m_pStop)
        m_pStop->setTabStop(false);
    m_pStop = pCell;
    m_pStop->setTabStop(true);
}

CSlotCell* CSlotFocus::cellOf(const QWidget* pWidget) const
{
    const auto found =
        std::ranges::find_if(m_cells, [=](const CSlotCell* pCell) { return pCell->isAncestorOf(pWidget); });
    return found == m_cells.end() ? nullptr : *found;
}

bool CSlotFocus::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    auto* pWidget = qobject_cast<QWidget*>(pWatched);
    if (pWidget && pEvent->type() == QEvent::FocusIn) {
        if (CSlotCell* pCell = cellOf(pWidget))
            setStop(pCell);
    }
    if (pWidget && pEvent->type() == QEvent::KeyPress &&
        handleKey(*static_cast<QKeyEvent*>(pEvent), *pWidget))
        return true;
    return QObject::eventFilter(pWatched, pEvent);
}

// True for a key that is ours, also at the rim of the grid: there it does nothing.
bool CSlotFocus::handleKey(const QKeyEvent& key, const QWidget& focused)
{
    const auto pStep = std::ranges::find(STEPS, key.key(), &CStep::m_nKey);
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if (pStep == std::end(STEPS) || (modifiers != Qt::NoModifier && modifiers != Qt::ControlModifier))
        return false;
    const auto found =
        std::ranges::find_if(m_cells, [&](const CSlotCell* pCell) { return pCell->isAncestorOf(&focused); });
    if (found == m_cells.end())
        return false;
    const auto* pBox = qobject_cast<const CValueBox*>(&focused);
    const bool bForced = modifiers == Qt::ControlModifier && !pBox;
    if (!bForced && (modifiers != Qt::NoModifier || (*found)->usesArrow(focused, Qt::Key(key.key()))))
        return false;

    const int nIndex = static_cast<int>(found - m_cells.begin());
    const int nColumn = nIndex % m_nColumns + pStep->m_nColumns;
    const int nTarget = nIndex + pStep->m_nColumns + pStep->m_nRows * m_nColumns;
    if (nColumn < 0 || nColumn >= m_nColumns || nTarget < 0 || nTarget >= static_cast<int>(m_cells.size()))
        return true;
    CSlotCell* pTarget = m_cells[static_cast<std::size_t>(nTarget)];
    auto* pSlider = qobject_cast<CSliderCell*>(pTarget);
    // From box to box, where there is one.
    if (pBox && pSlider && pSlider->isWritable())
        pSlider->editValue();
    else
        pTarget->focusTarget()->setFocus(Qt::OtherFocusReason);
    return true;
}

} // namespace velmora
