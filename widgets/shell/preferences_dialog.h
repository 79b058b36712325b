#pragma once

#include "widgets/shell/preference_fields.h"
#include "widgets/shell/preferences_edit.h"

#include <QDialog>
#include <functional>
#include <map>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QTabWidget;

namespace velmora {

class CPathField;
class IUserDialogs;

// "Setup Velmora Preferences". Holds no state but what is shown: it begins with the values given and hands
// over on "Save". [main]
class CPreferencesDialog : public QDialog
{
    Q_OBJECT

  public:
    CPreferencesDialog(const CPreferencesEdit& values, IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // What "Save" calls with all values; false keeps the dialog open.
    void setStore(std::function<bool(const CPreferencesEdit&)> store) { m_store = std::move(store); }

    // The values as they are shown.
    [[nodiscard]] CPreferencesEdit edit() const;

    void accept() override; // "Save"

  private:
    QFormLayout* addPage(const QString& sName);
    void addCompilerChoice(QFormLayout& form, int nCompilerId);
    void addField(QFormLayout& form, const CPreferenceField& field, const std::string& sValue);
    void addPath(QFormLayout& form, const CPreferenceField& field, const QString& sValue);
    void addChoice(QFormLayout& form, const CPreferenceField& field, bool bSecond);
    void addScheme(QFormLayout& form, EColourScheme eScheme);
    void addSwitches(QFormLayout& form, const std::map<std::string, bool>& switches);
    void checkBrowsed(const QString& sFile);
    bool isWaveFileRight();

    IUserDialogs& m_dialogs;
    std::function<bool(const CPreferencesEdit&)> m_store;
    QTabWidget* m_pPages;
    std::map<int, QLineEdit*> m_texts;         // by line of the settings file
    std::map<int, QAbstractButton*> m_buttons; // likewise; down means true
    std::map<std::string, QCheckBox*> m_switches;
    QComboBox* m_pCompilers = nullptr;
    QCheckBox* m_pCodeBlocks = nullptr;
    QComboBox* m_pScheme = nullptr;
    CPathField* m_pWaveFile = nullptr;
    QAbstractButton* m_pLastChoice = nullptr; // the custom folder of the one added last
    QString m_sWaveFile;                      // before "Browse"
};

} // namespace velmora
