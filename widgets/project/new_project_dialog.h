#pragma once

#include "project/codegen/new_project_request.h"
#include "project/codegen/project_environment.h"
#include "widgets/project/request_dialog.h"

#include <functional>

class QCheckBox;
class QLineEdit;
class QTabWidget;

namespace velmora {

class CFieldNote;
class CPathField;
class CRequestFields;
class IUserDialogs;

// "Edit Project Properties": what a project is made of, for a new one and for the open one, whose name and
// place stay. What OK would refuse stands below its field while it is typed. [main]
class CNewProjectDialog : public CRequestDialog
{
    Q_OBJECT

  public:
    // Creates or edits the project. False, after a message, keeps the dialog open.
    using Store = std::function<bool(CNewProjectRequest&)>;

    // bEdit: of a project that exists.
    CNewProjectDialog(CNewProjectRequest request, bool bEdit, CProjectEnvironment environment,
                      IUserDialogs& dialogs, QWidget* pParent = nullptr);

    void setStore(Store store) { m_store = std::move(store); }
    [[nodiscard]] const CNewProjectRequest& request() const { return m_request; }

  protected:
    bool check() override;
    bool store() override;

  private:
    [[nodiscard]] QLayout* buildNames();
    [[nodiscard]] QWidget* buildKind();
    [[nodiscard]] QWidget* buildModules();
    [[nodiscard]] QWidget* buildExport();
    [[nodiscard]] QWidget* buildSolution();
    void keepPresent(QCheckBox& box) const;
    void chooseSolution(const QString& sFile);
    [[nodiscard]] bool checkPlaces();
    void showNames();
    void showNotes();
    void showLatency(const QString& sError);
    [[nodiscard]] bool isParentMissing() const;
    [[nodiscard]] bool isNoSolution() const;
    void lead(QLineEdit* pField);

    CNewProjectRequest m_request;
    bool m_bEdit;
    CProjectEnvironment m_environment;
    IUserDialogs& m_dialogs;
    CRequestFields* m_pFields;
    Store m_store;
    QTabWidget* m_pTabs = nullptr;
    QLineEdit* m_pName = nullptr;
    QLineEdit* m_pHeader = nullptr;
    QLineEdit* m_pSource = nullptr;
    QLineEdit* m_pCompany = nullptr;
    QLineEdit* m_pLatency = nullptr;
    CPathField* m_pFolder = nullptr;
    CPathField* m_pSolution = nullptr;
    CFieldNote* m_pNameNote = nullptr;
    CFieldNote* m_pFolderNote = nullptr;
    CFieldNote* m_pCompanyNote = nullptr;
    CFieldNote* m_pLatencyNote = nullptr;
    CFieldNote* m_pSolutionNote = nullptr;
    QLineEdit* m_pEffectLine = nullptr;     // validates the Audio Unit on a Mac
    QLineEdit* m_pInstrumentLine = nullptr; // likewise
};

} // namespace velmora
