#include "widgets/project/save_preset_dialog.h"

#include "base/user_dialogs.h"
#include "project/preset_folder.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace velmora {

CSavePresetDialog::CSavePresetDialog(const QString& sSelectedPreset, IUserDialogs& dialogs, QWidget* pParent)
    : CRequestDialog(tr("Save Preset"), pParent), m_dialogs(dialogs), m_pName(new QLineEdit)
{
    if (sSelectedPreset != qs(FACTORY_PRESET_NAME))
        m_pName->setText(sSelectedPreset);
    m_pName->selectAll();
    m_pName->setAccessibleName(tr("Preset name"));
    auto* pLabel = new QLabel(tr("&Save Current Control Settings as:"));
    pLabel->setBuddy(m_pName);
    content().addWidget(pLabel);
    content().addWidget(m_pName);
    content().addStretch();
    setMinimumWidth(fontMetrics().averageCharWidth() * 52);
    m_pName->setFocus();
}

std::string CSavePresetDialog::name() const
{
    return utf8(m_pName->text().trimmed());
}

bool CSavePresetDialog::check()
{
    if (!name().empty())
        return true;
    m_dialogs.showMessage("Preset name can not be empty!");
    m_pName->setFocus();
    m_pName->selectAll();
    return false;
}

bool CSavePresetDialog::store()
{
    return !m_store || m_store(name());
}

} // namespace velmora
