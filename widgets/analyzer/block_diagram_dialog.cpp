#include "widgets/analyzer/block_diagram_dialog.h"

#include "dsp/modules/module_filter.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QShortcut>
#include <QTableWidget>
#include <QVBoxLayout>
#include <set>

namespace velmora {

namespace {

enum EColumn
{
    COLUMN_LABEL,
    COLUMN_VALUE,
    COLUMN_COUNT
};

QTableWidgetItem* makeItem(const std::string& sText, int nColumn)
{
    auto* pItem = new QTableWidgetItem(qs(sText));
    pItem->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    if (nColumn == COLUMN_VALUE) {
        pItem->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        pItem->setFont(CTheme::figures());
    }
    return pItem;
}

} // namespace

CBlockDiagramDialog::CBlockDiagramDialog(QWidget* pParent)
    : QDialog(pParent), m_pName(new QLabel(this)), m_pTable(new QTableWidget(0, COLUMN_COUNT, this)),
      m_pEmpty(new QLabel(m_pTable))
{
    setWindowTitle(tr("Block Diagram"));
    resize(340, 420);
    m_pName->setTextFormat(Qt::PlainText);
    m_pName->setFont(CTheme::font(1.0, true));
    m_pTable->setHorizontalHeaderLabels({tr("Coefficient"), tr("Value")});
    m_pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_pTable->horizontalHeader()->setHighlightSections(false);
    m_pTable->verticalHeader()->hide();
    m_pTable->verticalHeader()->setDefaultSectionSize(m_pTable->fontMetrics().height() + CTheme::SPACING);
    m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pTable->setTabKeyNavigation(false);
    m_pTable->setAccessibleName(tr("Coefficients"));
    m_pEmpty->setForegroundRole(QPalette::PlaceholderText);
    m_pEmpty->setAlignment(Qt::AlignCenter);
    m_pEmpty->setWordWrap(true);
    (new QVBoxLayout(m_pTable->viewport()))->addWidget(m_pEmpty);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(CTheme::SPACING);
    pLayout->addWidget(m_pName);
    pLayout->addWidget(m_pTable, 1);
    connect(new QShortcut(QKeySequence::Copy, m_pTable, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &CBlockDiagramDialog::copySelection);
    rebuild();
}

void CBlockDiagramDialog::setFilter(CDSPFilter* pFilter)
{
    m_pFilter = pFilter;
    rebuild();
}

void CBlockDiagramDialog::takeCoefficients()
{
    const auto* pModule = dynamic_cast<const CModuleFilter*>(m_pFilter);
    m_coefficients.setCoefficients(pModule ? pModule->coefficients() : std::vector<CModuleCoefficient>{});
}

void CBlockDiagramDialog::rebuild()
{
    takeCoefficients();
    m_coefficients.open();
    m_pTable->setRowCount(0);
    showRows();
    m_pName->setText(m_pFilter ? qs(m_pFilter->m_sName) : QString());
    m_pName->setVisible(m_pFilter != nullptr);
    m_pEmpty->setText(m_pFilter ? tr("This filter shows no coefficients.") : tr("No filter is loaded."));
    m_pEmpty->setVisible(m_coefficients.rows().empty());
}

void CBlockDiagramDialog::refresh()
{
    takeCoefficients();
    m_coefficients.refresh();
    showRows();
    m_pEmpty->setVisible(m_coefficients.rows().empty());
}

// Items that are there keep their place and their selection.
void CBlockDiagramDialog::showRows()
{
    const auto& rows = m_coefficients.rows();
    m_pTable->setRowCount(static_cast<int>(rows.size()));
    for (int nRow = 0; const CBlockDiagramTable::CRow& row : rows) {
        if (QTableWidgetItem* pValue = m_pTable->item(nRow, COLUMN_VALUE)) {
            pValue->setText(qs(row.m_sValue));
        } else {
            m_pTable->setItem(nRow, COLUMN_LABEL, makeItem(row.m_sLabel, COLUMN_LABEL));
            m_pTable->setItem(nRow, COLUMN_VALUE, makeItem(row.m_sValue, COLUMN_VALUE));
        }
        ++nRow;
    }
}

void CBlockDiagramDialog::copySelection() const
{
    std::set<int> rows;
    for (const QTableWidgetItem* pItem : m_pTable->selectedItems())
        rows.insert(pItem->row());
    QString sText;
    for (const int nRow : rows)
        sText += m_pTable->item(nRow, COLUMN_LABEL)->text() + QLatin1Char('\t') +
                 m_pTable->item(nRow, COLUMN_VALUE)->text() + QLatin1Char('\n');
    if (!sText.isEmpty())
        QGuiApplication::clipboard()->setText(sText);
}

void CBlockDiagramDialog::showEvent(QShowEvent* pEvent)
{
    rebuild();
    QDialog::showEvent(pEvent);
}

} // namespace velmora
