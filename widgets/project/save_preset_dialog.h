#pragma once

#include "widgets/project/request_dialog.h"

#include <functional>
#include <string>

class QLineEdit;

namespace velmora {

class IUserDialogs;

// "Save Preset": asks for the name under which the controls' values are kept. [main]
class CSavePresetDialog : public CRequestDialog
{
    Q_OBJECT

  public:
    // Begins with the name of the preset that is selected on the panel, but not with the factory preset's.
    CSavePresetDialog(const QString& sSelectedPreset, IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // What OK calls; false leaves the dialog open.
    void setStore(std::function<bool(const std::string& sName)> store) { m_store = std::move(store); }

    // Without blanks at its ends.
    [[nodiscard]] std::string name() const;

  protected:
    bool check() override;
    bool store() override;

  private:
    IUserDialogs& m_dialogs;
    std::function<bool(const std::string&)> m_store;
    QLineEdit* m_pName;
};

} // namespace velmora
