#include "widgets/common/property_table.h"

#include "widgets/common/property_delegate.h"
#include "widgets/common/property_grid.h"

#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>

namespace velmora {

CPropertyTable::CPropertyTable(QWidget* pParent) : QTableWidget(0, 2, pParent)
{
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectItems);
    setEditTriggers(EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrap(true); // messages below a text wrap; so their room is asked for at the width of the cell
    verticalHeader()->hide();
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, &QTableView::resizeRowsToContents);
    connect(this, &QTableWidget::cellClicked, this, [this](int nRow, int nColumn) {
        if (nColumn == 1)
            editRow(nRow, true);
        else
            goToRow(nRow);
    });
}

QWidget* CPropertyTable::editor() const
{
    return indexWidget(currentIndex());
}

int CPropertyTable::editedRow() const
{
    return editor() ? currentIndex().row() : -1;
}

bool CPropertyTable::editRow(int nRow, bool bDropDown)
{
    const QModelIndex cell = model()->index(nRow, 1);
    if (!goToRow(nRow) || !(cell.flags() & Qt::ItemIsEditable))
        return false;
    if (!indexWidget(cell))
        edit(cell);
    if (auto* pBox = qobject_cast<QComboBox*>(indexWidget(cell)); pBox && bDropDown)
        pBox->showPopup();
    return true;
}

void CPropertyTable::commitEditor()
{
    if (QWidget* pEditor = editor()) {
        commitData(pEditor);
        closeEditor(pEditor, QAbstractItemDelegate::NoHint);
    }
}

bool CPropertyTable::goToRow(int nRow)
{
    const QModelIndex cell = model()->index(nRow, 1);
    if (!(cell.flags() & Qt::ItemIsEnabled))
        return false;
    setCurrentIndex(cell);
    return true;
}

int CPropertyTable::rowFrom(int nRow, int nStep) const
{
    const int nDirection = nStep < 0 ? -1 : 1;
    int nFound = -1;
    for (int nAt = nRow + nDirection, nLeft = nStep * nDirection; nAt >= 0 && nAt < rowCount() && nLeft > 0;
         nAt += nDirection) {
        if (!(model()->index(nAt, 1).flags() & Qt::ItemIsEnabled))
            continue;
        nFound = nAt;
        --nLeft;
    }
    return nFound;
}

QModelIndex CPropertyTable::moveCursor(CursorAction eAction, Qt::KeyboardModifiers)
{
    const int nRow = currentIndex().row();
    const int nPage = std::max(1, viewport()->height() / std::max(1, rowHeight(std::max(0, nRow))) - 1);
    int nTo = nRow;
    switch (eAction) {
    case MoveUp:
    case MovePrevious:
        nTo = rowFrom(nRow, -1);
        break;
    case MoveDown:
    case MoveNext:
        nTo = rowFrom(nRow, 1);
        break;
    case MovePageUp:
        nTo = rowFrom(nRow, -nPage);
        break;
    case MovePageDown:
        nTo = rowFrom(nRow, nPage);
        break;
    case MoveHome:
        nTo = rowFrom(-1, 1);
        break;
    case MoveEnd:
        nTo = rowFrom(rowCount(), -1);
        break;
    default:
        break;
    }
    return model()->index(nTo < 0 ? nRow : nTo, 1);
}

void CPropertyTable::keyPressEvent(QKeyEvent* pEvent)
{
    const int nKey = pEvent->key();
    const bool bDrops = nKey == Qt::Key_Space || nKey == Qt::Key_F4 ||
                        (nKey == Qt::Key_Down && pEvent->modifiers().testFlag(Qt::AltModifier));
    const bool bChoice =
        currentIndex().data(PROPERTY_KIND).toInt() == static_cast<int>(EPropertyKind::Choice);
    if (bDrops && bChoice && editRow(currentIndex().row(), true))
        return;
    QTableWidget::keyPressEvent(pEvent);
}

void CPropertyTable::closeEditor(QWidget* pEditor, QAbstractItemDelegate::EndEditHint eHint)
{
    const bool bNext = eHint == QAbstractItemDelegate::EditNextItem;
    const bool bPrevious = eHint == QAbstractItemDelegate::EditPreviousItem;
    QTableWidget::closeEditor(pEditor, QAbstractItemDelegate::NoHint);
    if (bNext || bPrevious)
        focusNextPrevChild(bNext);
}

// A row that is reached shows its right cell, whichever was aimed at.
void CPropertyTable::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableWidget::currentChanged(current, previous);
    if (current.isValid() && current.column() == 0)
        QMetaObject::invokeMethod(
            this, [this, nRow = current.row()] { goToRow(nRow); }, Qt::QueuedConnection);
}

bool CPropertyTable::focusNextPrevChild(bool bNext)
{
    const int nTo = rowFrom(currentIndex().row(), bNext ? 1 : -1);
    if (nTo >= 0 && goToRow(nTo))
        return true;
    return QTableWidget::focusNextPrevChild(bNext);
}

void CPropertyTable::focusInEvent(QFocusEvent* pEvent)
{
    if (pEvent->reason() == Qt::TabFocusReason || currentRow() < 0)
        goToRow(rowFrom(-1, 1));
    else if (pEvent->reason() == Qt::BacktabFocusReason)
        goToRow(rowFrom(rowCount(), -1));
    QTableWidget::focusInEvent(pEvent);
}

} // namespace velmora
