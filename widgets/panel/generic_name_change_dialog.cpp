#include "widgets/panel/generic_name_change_dialog.h"

#include "base/user_dialogs.h"
#include "widgets/common/theme.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

namespace velmora {

CGenericNameChangeDialog::CGenericNameChangeDialog(IUserDialogs& dialogs, const QString& sTitle,
                                                   const QString& sOldName, QWidget* pParent)
    : QDialog(pParent), m_dialogs(dialogs), m_pName(new QLineEdit(sOldName))
{
    setWindowTitle(sTitle);
    m_pName->setAccessibleName(tr("New name"));
    m_pName->selectAll();

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pOldName = new QLabel(sOldName);
    pOldName->setTextFormat(Qt::PlainText);
    auto* pForm = new QFormLayout(this);
    pForm->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pForm->setSpacing(CTheme::SPACING);
    pForm->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    pForm->addRow(tr("Name:"), pOldName);
    pForm->addRow(tr("&New name:"), m_pName);
    pForm->addRow(pButtons);
    setMinimumWidth(360);
}

QString CGenericNameChangeDialog::name() const
{
    return m_pName->text().trimmed();
}

void CGenericNameChangeDialog::accept()
{
    if (!name().isEmpty()) {
        QDialog::accept();
        return;
    }
    m_dialogs.showMessage("Empty String!");
    m_pName->setFocus();
    m_pName->selectAll();
}

} // namespace velmora
