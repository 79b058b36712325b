#include "widgets/project/user_variable_dialog.h"

#include "base/user_dialogs.h"
#include "project/dsp_project.h"
#include "project/user_variables.h"
#include "widgets/common/field_note.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QVBoxLayout>

namespace velmora {

namespace {

constexpr int INDENT = 24; // of what belongs to a choice

QVBoxLayout* belowChoice(QRadioButton* pChoice)
{
    auto* pColumn = new QVBoxLayout;
    pColumn->setSpacing(CTheme::SPACING);
    pColumn->addWidget(pChoice);
    return pColumn;
}

} // namespace

CUserVariableDialog::CUserVariableDialog(CDSPProject& project, IUserDialogs& dialogs, QWidget* pParent)
    : CRequestDialog(tr("Add/Remove a User Variable (Preset-stored)"), pParent), m_project(project),
      m_dialogs(dialogs), m_pAddChoice(new QRadioButton(tr("&Add New User Variable:"))),
      m_pRemoveChoice(new QRadioButton(tr("&Remove this variable:"))), m_pName(new QLineEdit),
      m_pDataType(new QComboBox), m_pInitialValue(new QLineEdit(QStringLiteral("0"))),
      m_pNameNote(new CFieldNote(m_pName)), m_pValueNote(new CFieldNote(m_pInitialValue)),
      m_pList(new QListWidget)
{
    m_pName->setAccessibleName(tr("Variable Name"));
    m_pDataType->setAccessibleName(tr("DataType"));
    m_pInitialValue->setAccessibleName(tr("Initial Value"));
    m_pList->setAccessibleName(tr("User variables"));
    for (const std::string_view sType : USER_VARIABLE_DATA_TYPES)
        m_pDataType->addItem(qs(sType));
    content().addLayout(buildAdd());
    content().addSpacing(CTheme::SPACING);
    content().addLayout(buildRemove(), 1);
    setMinimumWidth(fontMetrics().averageCharWidth() * 64);
    fillList();

    connect(m_pAddChoice, &QRadioButton::toggled, this, &CUserVariableDialog::chooseSide);
    connect(m_pName, &QLineEdit::textEdited, this, &CUserVariableDialog::showErrors);
    connect(m_pInitialValue, &QLineEdit::textEdited, this, &CUserVariableDialog::showErrors);
    connect(m_pDataType, &QComboBox::activated, this, &CUserVariableDialog::showErrors);
    m_pAddChoice->setChecked(true);
    m_pName->setFocus();
}

QLayout* CUserVariableDialog::buildAdd()
{
    auto* pForm = new QFormLayout;
    pForm->setContentsMargins(INDENT, 0, 0, 0);
    pForm->setSpacing(CTheme::SPACING);
    pForm->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    pForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    pForm->addRow(tr("Variable &Name:"), m_pName);
    pForm->addRow(QString(), m_pNameNote);
    pForm->addRow(tr("&DataType:"), m_pDataType);
    pForm->addRow(tr("Initial &Value:"), m_pInitialValue);
    pForm->addRow(QString(), m_pValueNote);
    QVBoxLayout* pColumn = belowChoice(m_pAddChoice);
    pColumn->addLayout(pForm);
    return pColumn;
}

QLayout* CUserVariableDialog::buildRemove()
{
    m_pList->setMinimumHeight(m_pList->fontMetrics().lineSpacing() * 6);
    m_pList->setTextElideMode(Qt::ElideRight);
    m_pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* pIndented = new QVBoxLayout;
    pIndented->setContentsMargins(INDENT, 0, 0, 0);
    pIndented->addWidget(m_pList);
    QVBoxLayout* pColumn = belowChoice(m_pRemoveChoice);
    pColumn->addLayout(pIndented, 1);
    return pColumn;
}

void CUserVariableDialog::fillList()
{
    std::vector<std::string> names;
    m_project.GetUserVariableNames(names);
    for (const std::string& sName : names) {
        m_pList->addItem(qs(sName));
        m_pList->item(m_pList->count() - 1)->setToolTip(qs(sName));
    }
    if (names.empty())
        m_pList->addItem(tr("none yet declared"));
    else
        m_pList->setCurrentRow(0);
    m_pRemoveChoice->setEnabled(!names.empty());
    m_pList->setEnabled(false);
}

void CUserVariableDialog::chooseSide()
{
    const bool bAdd = m_pAddChoice->isChecked();
    for (QWidget* pField : {static_cast<QWidget*>(m_pName), static_cast<QWidget*>(m_pDataType),
                            static_cast<QWidget*>(m_pInitialValue)})
        pField->setEnabled(bAdd);
    m_pList->setEnabled(!bAdd);
    showErrors();
}

CUserVariableRequest CUserVariableDialog::request() const
{
    return {static_cast<UINT>(m_pDataType->currentIndex()), utf8(m_pName->text()),
            utf8(m_pInitialValue->text())};
}

// With a value that every datatype takes, only the name can be refused.
bool CUserVariableDialog::isNameRefused(const CUserVariableRequest& request) const
{
    CUserVariableRequest probe = request;
    probe.m_sInitialValue = "0";
    return !checkUserVariable(m_project, probe).empty();
}

// A name that nobody has begun to type is not called wrong yet.
void CUserVariableDialog::showErrors()
{
    const CUserVariableRequest now = request();
    const bool bJudged = m_pAddChoice->isChecked() && (!now.m_sName.empty() || m_pName->isModified());
    const QString sRefusal = bJudged ? qs(checkUserVariable(m_project, now)) : QString();
    const bool bName = isNameRefused(now);
    m_pNameNote->showError(bName ? sRefusal : QString());
    m_pValueNote->showError(bName ? QString() : sRefusal);
}

bool CUserVariableDialog::check()
{
    if (!m_pAddChoice->isChecked())
        return m_pList->currentItem() != nullptr;
    const std::string sRefusal = checkUserVariable(m_project, request());
    if (sRefusal.empty())
        return true;
    m_dialogs.showMessage(sRefusal);
    QLineEdit* pField = isNameRefused(request()) ? m_pName : m_pInitialValue;
    pField->setFocus();
    pField->selectAll();
    return false;
}

bool CUserVariableDialog::store()
{
    if (m_pAddChoice->isChecked())
        return !m_add || m_add(request());
    return !m_remove || m_remove(utf8(m_pList->currentItem()->text()));
}

} // namespace velmora
