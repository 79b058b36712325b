#include "widgets/panel/assignable_button_dlg.h"

#include "widgets/common/panel_button.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>

namespace velmora {

CAssignableButtonDlg::CAssignableButtonDlg(const CAssignableButtons& buttons, QWidget* pParent)
    : QDialog(pParent)
{
    setWindowTitle(tr("Assignable Button Setup"));
    auto* pNote = new QLabel(tr("These three assignable buttons will trigger function calls to your "
                                "userInterfaceChange() function with their control IDs set. There is no "
                                "underlying variable to declare or maintiain."));
    pNote->setWordWrap(true);
    auto* pGrid = new QGridLayout;
    pGrid->setSpacing(CTheme::SPACING);
    pGrid->setColumnStretch(1, 1);
    for (std::size_t uButton = 0; uButton < m_rows.size(); ++uButton)
        buildRow(uButton, buttons.at(uButton), *pGrid);

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pRoot = new QVBoxLayout(this);
    pRoot->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pRoot->setSpacing(CTheme::MARGIN);
    pRoot->addLayout(pGrid);
    pRoot->addWidget(pNote);
    pRoot->addStretch();
    pRoot->addWidget(pButtons);
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
    setMinimumWidth(fontMetrics().averageCharWidth() * 76);
}

void CAssignableButtonDlg::buildRow(std::size_t uButton, const CAssignableButton& button, QGridLayout& grid)
{
    const int nButton = static_cast<int>(uButton);
    const QString sButton = tr("Button %1").arg(nButton + 1);
    CRow& row = m_rows.at(uButton);
    row.m_pName = new QLineEdit(qs(button.m_sName));
    row.m_pName->setAccessibleName(sButton);
    row.m_pName->setCursorPosition(0);
    row.m_pLatching = new QCheckBox(tr("Latching"));
    row.m_pLatching->setAccessibleName(tr("%1 latching").arg(sButton));
    row.m_pLatching->setChecked(button.m_bLatching);
    row.m_pPreview = new CPanelButton;
    row.m_pPreview->setAccessibleName(tr("%1 preview").arg(sButton));
    row.m_pPreview->setFocusPolicy(Qt::NoFocus);
    row.m_pPreview->setFixedWidth(fontMetrics().averageCharWidth() * 18);
    auto* pLabel = new QLabel(tr("Button &%1:").arg(nButton + 1));
    pLabel->setBuddy(row.m_pName);
    pLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    int nColumn = 0;
    for (QWidget* pWidget : {static_cast<QWidget*>(pLabel), static_cast<QWidget*>(row.m_pName),
                             static_cast<QWidget*>(row.m_pLatching), static_cast<QWidget*>(row.m_pPreview)})
        grid.addWidget(pWidget, nButton, nColumn++);
    connect(row.m_pName, &QLineEdit::textEdited, this, [&row] { showPreview(row); });
    connect(row.m_pLatching, &QCheckBox::toggled, this, [&row] { showPreview(row); });
    showPreview(row);
}

// The text stands as typed; an ampersand in it is no shortcut.
void CAssignableButtonDlg::showPreview(const CRow& row)
{
    row.m_pPreview->setKind(row.m_pLatching->isChecked() ? EButtonKind::Latching : EButtonKind::Push);
    row.m_pPreview->setText(row.m_pName->text());
    row.m_pPreview->setShortcut(QKeySequence());
}

CAssignableButtons CAssignableButtonDlg::buttons() const
{
    CAssignableButtons result;
    for (std::size_t uButton = 0; uButton < m_rows.size(); ++uButton)
        result.at(uButton) = {utf8(m_rows.at(uButton).m_pName->text()),
                              m_rows.at(uButton).m_pLatching->isChecked()};
    return result;
}

void CAssignableButtonDlg::accept()
{
    if (m_bStoring)
        return;
    m_bStoring = true;
    const bool bStored = !m_store || m_store(buttons());
    m_bStoring = false;
    if (bStored)
        QDialog::accept();
}

void CAssignableButtonDlg::reject()
{
    if (!m_bStoring)
        QDialog::reject();
}

} // namespace velmora
