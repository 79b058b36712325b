#include "widgets/panel/button_props_dialog.h"

#include "base/text.h"
#include "project/control_slots.h"
#include "project/enumerated_list.h"
#include "widgets/common/property_grid.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/radio_bank.h"
#include "widgets/common/theme.h"
#include "widgets/panel/enumerated_list_editor.h"
#include "widgets/panel/list_control_rows.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace velmora {

CButtonPropsDialog::CButtonPropsDialog(CDSPProject& project, IUserDialogs& dialogs, UINT uControlId,
                                       QWidget* pParent)
    : CControlPropsDialog(project, dialogs, uControlId, pParent)
{
    setWindowTitle(tr("Button Properties"));
    const CControlSlots* pSlots = findControlSlots(uControlId);
    if (pSlots && pSlots->m_eForm == EControlForm::Switch)
        buildSwitch();
    else
        buildBank();
    setRows(listControlRows(false));
    grid().select(3);
}

void CButtonPropsDialog::buildBank()
{
    auto* pList = new CEnumeratedListEditor(dialogs());
    pList->setMinimumWidth(fontMetrics().averageCharWidth() * 38);
    setListEditor(pList);
    m_pPreview = new CRadioBank;
    m_pPreview->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_pPreview->setAccessibleName(tr("Preview"));
    extras().addSpacing(CTheme::SPACING);
    extras().addWidget(new QLabel(tr("Preview")));
    extras().addWidget(m_pPreview);
}

void CButtonPropsDialog::buildSwitch()
{
    auto* pBox = new QGroupBox(tr("Default"));
    auto* pColumn = new QVBoxLayout(pBox);
    m_pDefault = new QButtonGroup(this);
    int nValue = 0;
    for (const QString& sText : {tr("Default O&FF"), tr("Default O&N")}) {
        auto* pButton = new QRadioButton(sText);
        m_pDefault->addButton(pButton, nValue++);
        pColumn->addWidget(pButton);
    }
    extras().addWidget(pBox);
    extras().addStretch();
    connect(m_pDefault, &QButtonGroup::idClicked, this,
            [this](int nDefault) { editable().m_record.fInitUserUINTValue = static_cast<float>(nDefault); });
}

void CButtonPropsDialog::showExtras(int /*nRow*/)
{
    if (m_pDefault) {
        m_pDefault->button(edit().m_record.fInitUserUINTValue > 0.0F ? 1 : 0)->setChecked(true);
        return;
    }
    QStringList items;
    for (const std::string& sItem : split(cleanedEnumeratedList(edit().m_sEnumeratedList), ','))
        items.append(qs(sItem));
    m_pPreview->setLabel(qs(edit().m_sName));
    m_pPreview->setItems(items);
    m_pPreview->setSelected(items.isEmpty() ? -1 : 0);
    for (auto* pButton : m_pPreview->findChildren<QRadioButton*>())
        pButton->setFocusPolicy(Qt::NoFocus);
}

} // namespace velmora
