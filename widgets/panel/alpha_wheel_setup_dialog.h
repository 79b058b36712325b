#pragma once

#include "pluginconstants.h"

#include <QDialog>
#include <functional>

class QListWidget;
class QPushButton;
class QToolButton;

namespace velmora {

class CDSPProject;
class IUserDialogs;

// Alpha Wheel Setup: the items of the alpha wheel in the order of their indices. It collects wishes; what it
// is connected to fulfils them and then calls refresh(). [main]
class CAlphaWheelSetupDialog : public QDialog
{
    Q_OBJECT

  public:
    CAlphaWheelSetupDialog(CDSPProject& project, IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // Opens Slider Properties for an item, which for a new one does not exist yet (message 2080).
    void setEditItem(std::function<void(UINT uControlId, UINT uIndex)> edit) { m_edit = std::move(edit); }

    // Removes an item (message 2081).
    void setRemoveItem(std::function<void(UINT uControlId)> remove) { m_remove = std::move(remove); }

    // Exchanges an item with the neighbour ahead of it (bUp) or behind it, rewrites the source and saves
    // (message 2082); false leaves them as they are. Without it the project's records alone are changed.
    void setMoveItem(std::function<bool(UINT uControlId, bool bUp)> move) { m_move = std::move(move); }

    // The dialog was closed (message 2078).
    void setClosed(std::function<void()> closed) { m_closed = std::move(closed); }

    // Shows the project's items anew. The selection stays on the same row, or begins at the first.
    void refresh();

    void done(int nResult) override;

  protected:
    void keyPressEvent(QKeyEvent* pEvent) override;

  private:
    [[nodiscard]] QLayout* buildButtons();
    void newItem();
    void editItem();
    void removeItem();
    void moveItem(bool bUp);
    void updateButtons();
    [[nodiscard]] UINT idAt(int nRow) const;

    CDSPProject& m_project;
    IUserDialogs& m_dialogs;
    std::function<void(UINT, UINT)> m_edit;
    std::function<void(UINT)> m_remove;
    std::function<bool(UINT, bool)> m_move;
    std::function<void()> m_closed;
    QListWidget* m_pList;
    QPushButton* m_pEditButton = nullptr;
    QPushButton* m_pRemoveButton = nullptr;
    QToolButton* m_pUpButton = nullptr;
    QToolButton* m_pDownButton = nullptr;
};

} // namespace velmora
