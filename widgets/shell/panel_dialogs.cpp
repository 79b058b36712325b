#include "widgets/shell/panel_dialogs.h"

#include "base/message_target.h"
#include "base/user_dialogs.h"
#include "document/project_commands.h"
#include "host/view_messages.h"
#include "panel/panel_model.h"
#include "project/control_slots.h"
#include "project/dsp_project.h"
#include "widgets/panel/alpha_wheel_setup_dialog.h"
#include "widgets/panel/assignable_button_dlg.h"
#include "widgets/panel/button_props_dialog.h"
#include "widgets/panel/combo_props_dialog.h"
#include "widgets/panel/led_meter_props_dlg.h"
#include "widgets/panel/slider_control_props.h"
#include "widgets/shell/compiler_control.h"

namespace velmora {

CPanelDialogs::CPanelDialogs(const CParts& parts) : m_parts(parts) {}

CPanelDialogs::~CPanelDialogs() = default;

bool CPanelDialogs::mayEdit()
{
    if (m_parts.m_model.isPlugInLoaded())
        return false;
    if (m_parts.m_compiler.isBuilding()) {
        m_parts.m_dialogs.note("Controls can be changed when the build has ended.");
        return false;
    }
    if (!m_parts.m_commands.project()) {
        m_parts.m_dialogs.showMessage("Open or Create a new Project first!");
        return false;
    }
    if (!m_parts.m_compiler.isCompilerThere()) {
        m_parts.m_dialogs.showMessage("Compiler is not alive/available yet.");
        return false;
    }
    return true;
}

bool CPanelDialogs::mayStore()
{
    if (m_parts.m_model.isPlugInLoaded())
        m_parts.m_dialogs.showMessage(
            "Unload the plug-in first. Controls can not be changed while it is loaded.");
    return !m_parts.m_model.isPlugInLoaded();
}

void CPanelDialogs::connectStore(CControlPropsDialog& dialog)
{
    dialog.setStore([this](const CControlEdit& edit, bool bNew) {
        const bool bDone = mayStore() && m_parts.m_commands.acceptControl(edit, bNew);
        emit edited();
        return bDone;
    });
    dialog.setRemove([this](UINT uId) {
        const bool bDone = mayStore() && m_parts.m_commands.removeControl(uId);
        emit edited();
        return bDone;
    });
}

template <typename TDialog>
void CPanelDialogs::runModal(UINT uSlot)
{
    TDialog dialog(*m_parts.m_commands.project(), m_parts.m_dialogs, uSlot, m_parts.m_pParent);
    connectStore(dialog);
    dialog.exec();
}

void CPanelDialogs::setUp(UINT uSlot)
{
    const CControlSlots* pSlots = findControlSlots(uSlot);
    if (!pSlots || !mayEdit())
        return;
    switch (pSlots->m_eForm) {
    case EControlForm::Slider:
        return showSlider(uSlot, std::nullopt);
    case EControlForm::RadioBank:
    case EControlForm::Switch:
        return runModal<CButtonPropsDialog>(uSlot);
    case EControlForm::LEDMeter:
        return runModal<CLEDMeterPropsDlg>(uSlot);
    case EControlForm::Combo:
        return runModal<CComboPropsDialog>(uSlot);
    }
}

// Its end is message 2067, as other windows may wait for it.
void CPanelDialogs::showSlider(UINT uId, std::optional<UINT> uIndex)
{
    if (!m_pSlider) {
        m_pSlider = std::make_unique<CSliderControlProps>(m_parts.m_dialogs, m_parts.m_pParent);
        connectStore(*m_pSlider);
        m_pSlider->setMenuGroupChange([this](const std::string& sFrom, const std::string& sTo) {
            const bool bDone = mayStore() && m_parts.m_commands.renameMenuGroup(sFrom, sTo);
            m_parts.m_messages.send(MESSAGE_MENU_GROUP, 0, 0);
            return bDone;
        });
        const auto finish = [this](bool bListAltered) {
            m_parts.m_messages.send(MESSAGE_SLIDER_PROPERTIES, m_pSlider->isAlphaWheelItem() ? 1 : 0,
                                    bListAltered ? 1 : 0);
        };
        connect(m_pSlider.get(), &CControlPropsDialog::controlStored, this,
                [finish](UINT, bool bListAltered) { finish(bListAltered); });
        connect(m_pSlider.get(), &CControlPropsDialog::controlRemoved, this, [finish] { finish(false); });
        connect(m_pSlider.get(), &QDialog::finished, this, [this] {
            if (m_pAlphaWheel && m_pSlider->isAlphaWheelItem())
                m_pAlphaWheel->activateWindow();
        });
    }
    m_pSlider->showControl(*m_parts.m_commands.project(), uId, uIndex);
}

void CPanelDialogs::editItem(UINT uId, int nIndex)
{
    if (mayStore() && mayEdit())
        showSlider(uId, nIndex < 0 ? std::nullopt : std::optional(static_cast<UINT>(nIndex)));
}

void CPanelDialogs::setUpAlphaWheel()
{
    if (!mayEdit())
        return;
    if (!m_pAlphaWheel) {
        m_pAlphaWheel =
            new CAlphaWheelSetupDialog(*m_parts.m_commands.project(), m_parts.m_dialogs, m_parts.m_pParent);
        m_pAlphaWheel->setAttribute(Qt::WA_DeleteOnClose);
        connectAlphaWheel();
    }
    m_pAlphaWheel->show();
    m_pAlphaWheel->raise();
    m_pAlphaWheel->activateWindow();
}

// What the dialog wishes goes out as the view's messages.
void CPanelDialogs::connectAlphaWheel()
{
    IMessageTarget& messages = m_parts.m_messages;
    m_pAlphaWheel->setEditItem([&messages](UINT uId, UINT uIndex) {
        messages.send(MESSAGE_EDIT_LCD_ITEM, uId, static_cast<std::ptrdiff_t>(uIndex));
    });
    m_pAlphaWheel->setRemoveItem([&messages](UINT uId) { messages.send(MESSAGE_REMOVE_LCD_ITEM, uId, 0); });
    m_pAlphaWheel->setMoveItem([this, &messages](UINT uId, bool bUp) {
        const bool bDone = mayStore() && m_parts.m_commands.moveAlphaWheelItem(uId, bUp);
        messages.send(MESSAGE_LCD_ORDER, 0, 0);
        return bDone;
    });
    m_pAlphaWheel->setClosed([&messages] { messages.send(MESSAGE_ALPHA_WHEEL_CLOSED, 0, 0); });
}

void CPanelDialogs::refreshAlphaWheel()
{
    if (m_pAlphaWheel)
        m_pAlphaWheel->refresh();
}

void CPanelDialogs::setUpAssignableButtons()
{
    if (!mayEdit())
        return;
    CAssignableButtonDlg dialog(assignableButtonsOf(*m_parts.m_commands.project()), m_parts.m_pParent);
    dialog.setStore([this](const CAssignableButtons& buttons) {
        const bool bDone = m_parts.m_commands.setAssignableButtons(buttons);
        emit edited();
        return bDone;
    });
    dialog.exec();
}

void CPanelDialogs::closeProject()
{
    if (m_pSlider)
        m_pSlider->closeProject();
    delete m_pAlphaWheel;
}

} // namespace velmora
