#pragma once

#include "project/codegen/new_project_request.h"
#include "project/codegen/project_environment.h"

#include <QDialog>
#include <functional>

class QCheckBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QRadioButton;
class QVBoxLayout;

namespace velmora {

class CPathField;
class IUserDialogs;

// "Edit Project Properties": what a project is made of, for a new one and for the open one, whose name stays.
// It collects a request; the checks of OK are the store function's. [main]
class CNewProjectDialog : public QDialog
{
    Q_OBJECT

  public:
    // Creates or edits the project. False, after a message, keeps the dialog open; the request's names are
    // then shown as the check has left them.
    using Store = std::function<bool(CNewProjectRequest&)>;

    // bEdit: of a project that exists.
    CNewProjectDialog(CNewProjectRequest request, bool bEdit, CProjectEnvironment environment,
                      IUserDialogs& dialogs, QWidget* pParent = nullptr);

    void setStore(Store store) { m_store = std::move(store); }
    [[nodiscard]] const CNewProjectRequest& request() const { return m_request; }

    void accept() override;

  private:
    using flag = bool CNewProjectRequest::*;
    using checkFiles = bool (*)(const CProjectEnvironment& environment, IUserDialogs& dialogs);

    [[nodiscard]] QWidget* buildNames();
    [[nodiscard]] QWidget* buildSolution();
    [[nodiscard]] QWidget* buildKind();
    [[nodiscard]] QWidget* buildExport();
    [[nodiscard]] QWidget* buildModules();
    QCheckBox* addFlag(QVBoxLayout& layout, const QString& sText, flag pFlag, checkFiles pCheck = nullptr);
    QLineEdit* addText(QFormLayout& layout, const QString& sLabel, std::string CNewProjectRequest::*pText);
    void nameTyped(const QString& sName);
    void showNames();
    void showValidation();
    void chooseSolution(const QString& sFile);
    void addModule();
    void addStockObject();
    void removeChosen();
    void showChosen();

    CNewProjectRequest m_request;
    bool m_bEdit;
    CProjectEnvironment m_environment;
    IUserDialogs& m_dialogs;
    Store m_store;
    QLineEdit* m_pName = nullptr;
    QLabel* m_pNameError = nullptr;
    QLineEdit* m_pHeader = nullptr;
    QLineEdit* m_pSource = nullptr;
    CPathField* m_pFolder = nullptr;
    CPathField* m_pSolution = nullptr;
    QLineEdit* m_pEffectLine = nullptr; // validation of the Audio Unit
    QLineEdit* m_pInstrumentLine = nullptr;
    QListWidget* m_pModules = nullptr;
    QListWidget* m_pStock = nullptr;
    QListWidget* m_pChosen = nullptr;
    int m_nFixedModules = 0; // of a project that is edited: its own stay
    int m_nFixedStock = 0;
};

} // namespace velmora
