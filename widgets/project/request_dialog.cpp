#include "widgets/project/request_dialog.h"

#include "widgets/common/theme.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora {

CRequestDialog::CRequestDialog(const QString& sTitle, QWidget* pParent)
    : QDialog(pParent), m_pContent(new QVBoxLayout),
      m_pButtons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setWindowTitle(sTitle);
    m_pContent->setSpacing(CTheme::SPACING);
    connect(m_pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pRoot = new QVBoxLayout(this);
    pRoot->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pRoot->setSpacing(CTheme::MARGIN);
    pRoot->addLayout(m_pContent, 1);
    pRoot->addWidget(m_pButtons);
    m_pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
}

// The fields were added behind the buttons; for the keyboard they come first.
void CRequestDialog::setVisible(bool bVisible)
{
    QWidget* pLast = this;
    for (QWidget* pWidget = nextInFocusChain(); pWidget != this; pWidget = pWidget->nextInFocusChain())
        if (!m_pButtons->isAncestorOf(pWidget) && (pWidget->focusPolicy() & Qt::TabFocus) != 0)
            pLast = pWidget;
    for (QAbstractButton* pButton : m_pButtons->buttons()) {
        setTabOrder(pLast, pButton);
        pLast = pButton;
    }
    QDialog::setVisible(bVisible);
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
