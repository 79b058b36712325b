#pragma once

#include "widgets/panel/control_row.h"

#include <QDialog>
#include <functional>
#include <map>
#include <string>
#include <vector>

class QPushButton;
class QVBoxLayout;

namespace velmora {

class CDSPProject;
class CEnumeratedListEditor;
class CPropertyGrid;
class IUserDialogs;

// What all property dialogs of the panel share: one copy of a control, edited in a table of two columns, the
// checks of OK, and removal. While the user edits, what OK would refuse already stands at its row.
//
// OK checks the control. A refusal is shown as a message, its row or the list is selected, and the dialog
// stays open; so it does when the store function answers false. [main]
class CControlPropsDialog : public QDialog
{
    Q_OBJECT

  public:
    // Stores the control; asks what is to be asked, and tells why when it answers false.
    using Store = std::function<bool(const CControlEdit& edit, bool bNew)>;
    using Remove = std::function<bool(UINT uControlId)>;

    // Begins with the project's control of that id, else with the defaults of a new one. Derived dialogs set
    // their rows at the end of their constructor.
    CControlPropsDialog(CDSPProject& project, IUserDialogs& dialogs, UINT uControlId,
                        QWidget* pParent = nullptr);
    ~CControlPropsDialog() override;

    void setStore(Store store) { m_store = std::move(store); }
    void setRemove(Remove remove) { m_remove = std::move(remove); }

    [[nodiscard]] const CControlEdit& edit() const { return m_edit; }

    // Whether the dialog was left by "Remove Ctrl".
    [[nodiscard]] bool isRemoval() const { return m_bRemoval; }

    // Whether the project has no control with this id yet.
    [[nodiscard]] bool isNew() const { return !existing(); }

    [[nodiscard]] CPropertyGrid& grid() { return *m_pGrid; }

    void accept() override;

  signals:
    // After the store or the remove function has answered true.
    void controlStored(UINT uControlId, bool bListAltered);
    void controlRemoved(UINT uControlId);

  protected:
    // For a window that is reused: without a control until begin().
    CControlPropsDialog(IUserDialogs& dialogs, QWidget* pParent);
    void begin(CDSPProject& project, UINT uControlId);
    void end(); // forgets the project

    // The table's rows. They show the edited control at once.
    void setRows(std::vector<CControlRow> rows);

    // Binds the editor to the control's enumerated list and places it among the extras.
    void setListEditor(CEnumeratedListEditor* pEditor);

    // Where a dialog's own widgets go, beside the table.
    [[nodiscard]] QVBoxLayout& extras() { return *m_pExtras; }

    // The edited control; refresh() after changing it shows it everywhere and checks it.
    [[nodiscard]] CControlEdit& editable() { return m_edit; }
    void refresh();

    // Called by refresh() and after each edit of a row or of the list: shows what the dialog has beside them.
    // nRow is the edited row, 0 for none.
    virtual void showExtras(int nRow) = 0;

    // Selects and focuses what a refusal points at.
    virtual void focusField(EControlField eField);

    [[nodiscard]] const CUICtrl* existing() const;
    [[nodiscard]] CDSPProject* project() const { return m_pProject; }
    [[nodiscard]] IUserDialogs& dialogs() const { return m_dialogs; }

  private:
    void buildFrame();
    void rowEdited(int nRow, const QString& sText);
    void rowTyping(int nRow, const QString& sText);
    void listEdited();
    void loadLists();
    void showEdit(int nRow);
    void showErrors(const CControlEdit& edit, const std::map<int, QString>& unreadable);
    [[nodiscard]] int rowOf(EControlField eField) const;
    [[nodiscard]] bool hasListBox() const;
    void removeControl();

    CDSPProject* m_pProject = nullptr;
    IUserDialogs& m_dialogs;
    CControlEdit m_edit;
    bool m_bRemoval = false;
    bool m_bStoring = false; // a store or remove function runs, which may wait
    Store m_store;
    Remove m_remove;
    std::vector<CControlRow> m_rows;
    std::map<int, QString> m_unreadable; // by row: why its text could not be taken
    CPropertyGrid* m_pGrid = nullptr;
    CEnumeratedListEditor* m_pListEditor = nullptr;
    QVBoxLayout* m_pExtras = nullptr;
    QPushButton* m_pRemoveButton = nullptr;
};

} // namespace velmora
