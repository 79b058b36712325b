#pragma once

#include <QString>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

class QSettings;
class QWidget;

namespace velmora {

class CProjectCommands;
class CTonboxDoc;
class IUserDialogs;
struct CPreferencesEdit;

// The commands of the project that ask in a dialog of their own first. Each answers whether something was
// done. [main]
class CProjectDialogs
{
  public:
    struct CParts
    {
        CTonboxDoc& m_document;
        CProjectCommands& m_commands;
        IUserDialogs& m_dialogs;
        QSettings& m_profile;
        QWidget* m_pParent;
        std::function<void(std::string_view sLabel, std::string_view sText)>
            m_showStrip; // the status strip's
    };

    explicit CProjectDialogs(const CParts& parts) : m_parts(parts) {}

    // beforeIt is called when the dialog's values are right, ahead of making the project.
    bool newProject(const std::function<void()>& beforeIt);
    bool editProject();
    bool saveAs();
    bool userVariables();

    // The name under which the preset was saved; empty if it was not.
    [[nodiscard]] QString savePreset(const QString& sSelected);
    bool deletePreset(const QString& sSelected);

    // Files that the user chooses.
    [[nodiscard]] std::optional<std::filesystem::path> chooseProject();
    [[nodiscard]] std::optional<std::filesystem::path> chooseAudioFile();

    // What an earlier run left of the project is offered. False if the project is not to be opened now.
    [[nodiscard]] bool offerRecovery(const std::filesystem::path& project);

    // Writes the values of the preferences dialog back. False, after a message, if they could not be stored.
    bool storePreferences(const CPreferencesEdit& edit);

  private:
    [[nodiscard]] bool hasPresets(); // says why not

    CParts m_parts;
};

} // namespace velmora
