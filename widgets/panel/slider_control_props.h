#pragma once

#include "widgets/panel/control_props_dialog.h"
#include "widgets/panel/menu_group_box.h"

#include <array>
#include <optional>

class QButtonGroup;
class QComboBox;
class QGroupBox;
class QLabel;

namespace velmora {

class CSliderPreview;

// Slider Properties: the dialog of the slider slots and of the alpha wheel's items. One modeless window that
// lives as long as the panel and is opened for one control after the other. [main]
class CSliderControlProps : public CControlPropsDialog
{
    Q_OBJECT

  public:
    explicit CSliderControlProps(IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // Opens the window for the control of that id, or for a new one. uIndex is the place of a new item of
    // the alpha wheel; without it the item goes behind all others.
    void showControl(CDSPProject& project, UINT uControlId, std::optional<UINT> uIndex = std::nullopt);

    // The project is about to go: hides the window and forgets it.
    void closeProject();

    // Names of the MIDI controllers from number 0; a controller without one is shown by its number,
    // and a name that stands twice with it.
    void setMIDIControllerNames(const QStringList& names);

    // Renames a menu group in all controls of the project, or takes them out of it for an empty name.
    void setMenuGroupChange(CMenuGroupBox::Change change) { m_changeMenuGroup = std::move(change); }

    // Whether the control is an item of the alpha wheel.
    [[nodiscard]] bool isAlphaWheelItem() const;

  protected:
    void showExtras(int nRow) override;

  private:
    [[nodiscard]] QWidget* buildLaw();
    [[nodiscard]] QWidget* buildMIDI();
    [[nodiscard]] QLayout* buildCopy();
    void fillCopyList();
    void copyFrom(int nEntry);
    void takeLaw(int nLaw);
    void takePreview(int nThumb);
    bool changeMenuGroup(const std::string& sFrom, const std::string& sTo);
    void showMIDI();

    QStringList m_controllers;
    CMenuGroupBox::Change m_changeMenuGroup;
    QComboBox* m_pCopy = nullptr;
    QButtonGroup* m_pLaws = nullptr;
    QGroupBox* m_pLawBox = nullptr;
    CSliderPreview* m_pPreview = nullptr;
    std::array<QLabel*, 3> m_captions = {}; // channel, command, controller
    CEnumeratedListEditor* m_pList = nullptr;
    CMenuGroupBox* m_pMenus = nullptr;
};

} // namespace velmora
