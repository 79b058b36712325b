#pragma once

#include <QDialog>

class QDialogButtonBox;
class QVBoxLayout;

namespace velmora {

// What the dialogs of the project share: a modal window with OK and Cancel that collects a request. OK checks
// it and hands it on; the dialog closes only when it was fulfilled. [main]
class CRequestDialog : public QDialog
{
    Q_OBJECT

  public:
    // Neither does anything while a request is being fulfilled, which may take a while.
    void accept() final;
    void reject() final;
    void setVisible(bool bVisible) override;

  protected:
    CRequestDialog(const QString& sTitle, QWidget* pParent);

    // What stands above the buttons.
    [[nodiscard]] QVBoxLayout& content() { return *m_pContent; }

    // Whether the request can be handed on; else it was told why not, and the field to mend has the focus.
    [[nodiscard]] virtual bool check() = 0;

    // Hands the request on. False leaves the dialog open.
    [[nodiscard]] virtual bool store() = 0;

  private:
    QVBoxLayout* m_pContent;
    QDialogButtonBox* m_pButtons;
    bool m_bStoring = false;
};

} // namespace velmora
