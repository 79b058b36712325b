#pragma once

#include "pluginconstants.h"

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>
#include <optional>

namespace velmora {

class CAlphaWheelSetupDialog;
class CCompilerControl;
class CControlPropsDialog;
class CPanelModel;
class CProjectCommands;
class CSliderControlProps;
class IMessageTarget;
class IUserDialogs;

// Opens the property dialog of a slot and has what it returns stored. With a plug-in loaded nothing opens.
// [main]
class CPanelDialogs : public QObject
{
    Q_OBJECT

  public:
    struct CParts
    {
        CProjectCommands& m_commands;
        CCompilerControl& m_compiler;
        CPanelModel& m_model;
        IUserDialogs& m_dialogs;
        IMessageTarget& m_messages; // of the view
        QWidget* m_pParent;
    };

    explicit CPanelDialogs(const CParts& parts);
    ~CPanelDialogs() override;

    // The dialog of a slot of the panel.
    void setUp(UINT uSlot);
    void setUpAlphaWheel();
    void setUpAssignableButtons();

    // Slider Properties for an item of the alpha wheel: an existing one, or a new one at the index given.
    void editItem(UINT uId, int nIndex);

    // The alpha wheel's items may have changed.
    void refreshAlphaWheel();

    // Whether a dialog that stood open may still change the project; says why not.
    [[nodiscard]] bool mayStore();

    // The project is about to go; modeless dialogs let go of it.
    void closeProject();

  signals:
    // The project was changed, its code written and saved.
    void edited();

  private:
    // Whether an edit may begin; says why not.
    [[nodiscard]] bool mayEdit();
    void showSlider(UINT uId, std::optional<UINT> uIndex);
    void connectStore(CControlPropsDialog& dialog);
    void connectAlphaWheel();
    template <typename TDialog>
    void runModal(UINT uSlot);

    CParts m_parts;
    std::unique_ptr<CSliderControlProps> m_pSlider; // made at its first use
    QPointer<CAlphaWheelSetupDialog> m_pAlphaWheel; // while it is open
};

} // namespace velmora
