#pragma once

#include "widgets/project/request_dialog.h"

#include <functional>

class QCheckBox;
class QLineEdit;

namespace velmora {

class CDSPProject;
class CFieldNote;
class CPathField;
class IUserDialogs;
struct CProjectCopyRequest;

// "Save Project As": the name of the copy, the folder in which its own is made, and what is taken along.
// [main]
class CSaveAsDialog : public CRequestDialog
{
    Q_OBJECT

  public:
    // Begins beside the project's own folder.
    CSaveAsDialog(CDSPProject& project, IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // What OK calls; false leaves the dialog open.
    void setStore(std::function<bool(const CProjectCopyRequest&)> store) { m_store = std::move(store); }

    [[nodiscard]] CProjectCopyRequest request() const;

  protected:
    bool check() override;
    bool store() override;

  private:
    void showOutcome();

    CDSPProject& m_project;
    IUserDialogs& m_dialogs;
    std::function<bool(const CProjectCopyRequest&)> m_store;
    QLineEdit* m_pName;
    CPathField* m_pParentFolder;
    CFieldNote* m_pNote;
    QCheckBox* m_pEntireFolder;
    QCheckBox* m_pOmitLibraries;
};

} // namespace velmora
