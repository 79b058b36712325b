#include "widgets/project/request_dialog.h"

#include "widgets/common/theme.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora {

CRequestDialog::CRequestDialog(const QString& sTitle, QWidget* pParent)
    : QDialog(pParent), m_pContent(new QVBoxLayout)
{
    setWindowTitle(sTitle);
    m_pContent->setSpacing(CTheme::SPACING);
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pRoot = new QVBoxLayout(this);
    pRoot->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pRoot->setSpacing(CTheme::MARGIN);
    pRoot->addLayout(m_pContent, 1);
    pRoot->addWidget(pButtons);
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
}

void CRequestDialog::accept()
{
    if (m_bStoring || !check())
        return;
    m_bStoring = true;
    const bool bStored = store();
    m_bStoring = false;
    if (bStored)
        QDialog::accept();
}

void CRequestDialog::reject()
{
    if (!m_bStoring)
        QDialog::reject();
}

} // namespace velmora
