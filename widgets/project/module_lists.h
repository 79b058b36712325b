#pragma once

#include <QWidget>
#include <filesystem>
#include <vector>

class QListWidget;
class QPushButton;

namespace velmora {

class IUserDialogs;
struct CNewProjectRequest;
struct CProjectEnvironment;

// What can be taken into a project, and what has been: plug-ins of other projects and stock objects. The
// request, which must outlive the lists, holds what was chosen. [main]
class CModuleLists : public QWidget
{
    Q_OBJECT

  public:
    // bEdit: what the request holds now is in the project already and stays in it.
    CModuleLists(CNewProjectRequest& request, bool bEdit, const CProjectEnvironment& environment,
                 IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // Whether stock objects can be chosen.
    void enableStockObjects(bool bEnable);

  private:
    QPushButton* addColumn(QListWidget*& pList, const QString& sTitle, const QString& sButton);
    void fill(const CProjectEnvironment& environment, bool bEdit);
    void addModule();
    void addStockObject();
    void removeChosen();
    void showChosen();

    CNewProjectRequest& m_request;
    IUserDialogs& m_dialogs;
    const int m_nFixedModules;
    const int m_nFixedStock;
    std::vector<std::filesystem::path> m_files; // of the plug-ins, in the list's order
    QListWidget* m_pModules = nullptr;
    QListWidget* m_pStock = nullptr;
    QListWidget* m_pChosen = nullptr;
    QPushButton* m_pAddStock = nullptr;
    QPushButton* m_pRemove = nullptr;
};

} // namespace velmora
