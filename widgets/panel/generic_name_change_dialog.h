#pragma once

#include <QDialog>

class QLineEdit;

namespace velmora {

class IUserDialogs;

// Asks for a new name in place of an old one. OK with an empty name tells so and stays open. [main]
class CGenericNameChangeDialog : public QDialog
{
    Q_OBJECT

  public:
    CGenericNameChangeDialog(IUserDialogs& dialogs, const QString& sTitle, const QString& sOldName,
                             QWidget* pParent = nullptr);

    // Without blanks at its ends.
    [[nodiscard]] QString name() const;

    void accept() override;

  private:
    IUserDialogs& m_dialogs;
    QLineEdit* m_pName;
};

} // namespace velmora
