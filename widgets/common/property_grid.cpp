#include "widgets/common/property_grid.h"

#include "widgets/common/property_delegate.h"
#include "widgets/common/property_table.h"
#include "widgets/common/theme.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace velmora {

namespace {

constexpr int LABELS = 0;
constexpr int TEXTS = 1;

QTableWidgetItem* makeLabel(const CPropertyRow& row)
{
    auto* pItem = new QTableWidgetItem(row.m_sLabel);
    pItem->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    pItem->setData(PROPERTY_MARKED, row.m_bMarked);
    return pItem;
}

QTableWidgetItem* makeText(const CPropertyRow& row)
{
    auto* pItem = new QTableWidgetItem(row.m_sText);
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (row.m_eKind != EPropertyKind::ReadOnly)
        flags |= Qt::ItemIsEditable;
    pItem->setFlags(flags);
    pItem->setData(PROPERTY_KIND, static_cast<int>(row.m_eKind));
    pItem->setData(PROPERTY_CHOICES, row.m_choices);
    return pItem;
}

} // namespace

CPropertyGrid::CPropertyGrid(QWidget* pParent) : QWidget(pParent), m_pTable(new CPropertyTable(this))
{
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pTable);
    setFocusProxy(m_pTable);
    m_pTable->setAccessibleName(tr("Properties"));
    setHeadings(QStringLiteral("UI Item"), QStringLiteral("Property"));

    auto* pDelegate = new CPropertyDelegate(m_pTable);
    m_pTable->setItemDelegate(pDelegate);
    connect(pDelegate, &CPropertyDelegate::typing, this,
            [this](const QModelIndex& cell, const QString& sText) { emit typing(cell.row() + 1, sText); });
    connect(m_pTable, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* pItem) {
        nameCell(pItem->row());
        emit edited(pItem->row() + 1, pItem->text());
    });
    connect(m_pTable, &QTableWidget::currentCellChanged, this, [this](int nRow, int, int nFrom, int) {
        if (nRow != nFrom)
            emit selected(nRow + 1);
    });
    connect(&CTheme::instance(), &CTheme::changed, m_pTable, [this] { m_pTable->resizeRowsToContents(); });
}

void CPropertyGrid::setHeadings(const QString& sLabels, const QString& sTexts)
{
    m_pTable->setHorizontalHeaderLabels({sLabels, sTexts});
}

void CPropertyGrid::setRows(const std::vector<CPropertyRow>& rows)
{
    const QSignalBlocker quiet(m_pTable);
    m_pTable->setRowCount(0);
    m_pTable->setRowCount(static_cast<int>(rows.size()));
    for (int n = 0; n < rowCount(); ++n) {
        const CPropertyRow& row = rows[static_cast<std::size_t>(n)];
        m_pTable->setItem(n, LABELS, makeLabel(row));
        m_pTable->setItem(n, TEXTS, makeText(row));
        nameCell(n);
    }
    m_pTable->resizeRowsToContents();
    updateGeometry();
}

int CPropertyGrid::rowCount() const
{
    return m_pTable->rowCount();
}

QString CPropertyGrid::text(int nRow) const
{
    if (m_pTable->editedRow() == nRow - 1 && m_pTable->editor())
        return CPropertyDelegate::editorText(*m_pTable->editor());
    const QTableWidgetItem* pItem = m_pTable->item(nRow - 1, TEXTS);
    return pItem ? pItem->text() : QString();
}

// Cells are read out with their label; what does not fit is shown by the tool tip.
void CPropertyGrid::nameCell(int nRow)
{
    const QSignalBlocker quiet(m_pTable);
    QTableWidgetItem* pItem = m_pTable->item(nRow, TEXTS);
    pItem->setData(Qt::AccessibleTextRole,
                   m_pTable->item(nRow, LABELS)->text() + QStringLiteral(": ") + pItem->text());
    pItem->setToolTip(pItem->text());
}

void CPropertyGrid::setText(int nRow, const QString& sText)
{
    QTableWidgetItem* pItem = m_pTable->item(nRow - 1, TEXTS);
    if (!pItem)
        return;
    const QSignalBlocker quiet(m_pTable);
    pItem->setText(sText);
    if (m_pTable->editedRow() == nRow - 1)
        CPropertyDelegate::showText(*m_pTable->editor(), sText);
    nameCell(nRow - 1);
}

void CPropertyGrid::setChoices(int nRow, const QStringList& choices)
{
    const QSignalBlocker quiet(m_pTable);
    if (QTableWidgetItem* pItem = m_pTable->item(nRow - 1, TEXTS))
        pItem->setData(PROPERTY_CHOICES, choices);
}

void CPropertyGrid::setEnabled(int nRow, bool bEnabled)
{
    const QSignalBlocker quiet(m_pTable);
    for (const int nColumn : {LABELS, TEXTS})
        if (QTableWidgetItem* pItem = m_pTable->item(nRow - 1, nColumn))
            pItem->setFlags(pItem->flags().setFlag(Qt::ItemIsEnabled, bEnabled));
}

bool CPropertyGrid::isRowEnabled(int nRow) const
{
    const QTableWidgetItem* pItem = m_pTable->item(nRow - 1, TEXTS);
    return pItem && pItem->flags().testFlag(Qt::ItemIsEnabled);
}

void CPropertyGrid::setError(int nRow, const QString& sError)
{
    QTableWidgetItem* pItem = m_pTable->item(nRow - 1, TEXTS);
    if (!pItem || error(nRow) == sError)
        return;
    const QSignalBlocker quiet(m_pTable);
    {
        // A change that the view hears of would put the row's text back over what is being typed.
        const QSignalBlocker quietModel(m_pTable->model());
        pItem->setData(PROPERTY_ERROR, sError);
        pItem->setData(Qt::AccessibleDescriptionRole, sError);
    }
    m_pTable->viewport()->update();
    if (m_pTable->editedRow() == nRow - 1)
        m_pTable->editor()->setAccessibleDescription(sError);
    m_pTable->resizeRowToContents(nRow - 1);
}

QString CPropertyGrid::error(int nRow) const
{
    const QTableWidgetItem* pItem = m_pTable->item(nRow - 1, TEXTS);
    return pItem ? pItem->data(PROPERTY_ERROR).toString() : QString();
}

void CPropertyGrid::clearErrors()
{
    for (int n = 1; n <= rowCount(); ++n)
        setError(n, {});
}

void CPropertyGrid::select(int nRow)
{
    m_pTable->setFocus(Qt::OtherFocusReason);
    m_pTable->editRow(nRow - 1, false);
    if (auto* pLine = qobject_cast<QLineEdit*>(m_pTable->editor()))
        pLine->selectAll();
}

int CPropertyGrid::selectedRow() const
{
    return m_pTable->currentRow() + 1;
}

void CPropertyGrid::commit()
{
    m_pTable->commitEditor();
}

QSize CPropertyGrid::sizeHint() const
{
    int nHeight = m_pTable->horizontalHeader()->sizeHint().height() + 2 * m_pTable->frameWidth();
    for (int n = 0; n < rowCount(); ++n)
        nHeight += m_pTable->rowHeight(n);
    return {400, nHeight};
}

} // namespace velmora
