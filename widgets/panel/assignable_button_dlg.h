#pragma once

#include "project/assignable_buttons.h"

#include <QDialog>
#include <array>
#include <functional>

class QCheckBox;
class QGridLayout;
class QLineEdit;

namespace velmora {

class CPanelButton;

// Assignable Button Setup: name and latching of the panel's three free buttons, with a preview of each.
// [main]
class CAssignableButtonDlg : public QDialog
{
    Q_OBJECT

  public:
    explicit CAssignableButtonDlg(const CAssignableButtons& buttons, QWidget* pParent = nullptr);

    // What OK calls; false leaves the dialog open.
    void setStore(std::function<bool(const CAssignableButtons&)> store) { m_store = std::move(store); }

    [[nodiscard]] CAssignableButtons buttons() const;

    void accept() override;
    void reject() override;

  private:
    struct CRow
    {
        QLineEdit* m_pName = nullptr;
        QCheckBox* m_pLatching = nullptr;
        CPanelButton* m_pPreview = nullptr;
    };

    void buildRow(std::size_t uButton, const CAssignableButton& button, QGridLayout& grid);
    static void showPreview(const CRow& row);

    std::function<bool(const CAssignableButtons&)> m_store;
    std::array<CRow, 3> m_rows;
    bool m_bStoring = false;
};

} // namespace velmora
