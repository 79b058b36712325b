#pragma once

#include "widgets/project/request_dialog.h"

#include <functional>
#include <string>

class QComboBox;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace velmora {

class CDSPProject;
class CFieldNote;
class IUserDialogs;
struct CUserVariableRequest;

// "Add/Remove a User Variable (Preset-stored)". OK adds the variable that was described or removes the one
// that was chosen. [main]
class CUserVariableDialog : public CRequestDialog
{
    Q_OBJECT

  public:
    CUserVariableDialog(CDSPProject& project, IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // What OK calls; a function that answers false leaves the dialog open.
    void setAdd(std::function<bool(const CUserVariableRequest&)> add) { m_add = std::move(add); }
    void setRemove(std::function<bool(const std::string& sName)> remove) { m_remove = std::move(remove); }

  protected:
    bool check() override;
    bool store() override;

  private:
    [[nodiscard]] QLayout* buildAdd();
    [[nodiscard]] QLayout* buildRemove();
    [[nodiscard]] CUserVariableRequest request() const;
    [[nodiscard]] bool isNameRefused(const CUserVariableRequest& request) const;
    void fillList();
    void chooseSide();
    void showErrors();

    CDSPProject& m_project;
    IUserDialogs& m_dialogs;
    std::function<bool(const CUserVariableRequest&)> m_add;
    std::function<bool(const std::string&)> m_remove;
    QRadioButton* m_pAddChoice;
    QRadioButton* m_pRemoveChoice;
    QLineEdit* m_pName;
    QComboBox* m_pDataType;
    QLineEdit* m_pInitialValue;
    CFieldNote* m_pNameNote;
    CFieldNote* m_pValueNote;
    QListWidget* m_pList;
};

} // namespace velmora
