#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <filesystem>
#include <optional>

class QSettings;

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
    };

    explicit CProjectDialogs(const CParts& parts) : m_parts(parts) {}

    bool newProject();
    bool editProject();
    bool saveAs();
    bool userVariables();
    bool savePreset(const QString& sSelected);
    bool deletePreset(const QString& sSelected);

    // Files that the user chooses.
    [[nodiscard]] std::optional<std::filesystem::path> chooseProject();
    [[nodiscard]] std::optional<std::filesystem::path> chooseAudioFile();

    // What an earlier run left of the project is offered. False if the project is not to be opened now.
    [[nodiscard]] bool offerRecovery(const std::filesystem::path& project);

    // Writes the values of the preferences dialog back, but for the compiler. False, after a message, if they
    // could not be stored.
    bool storePreferences(const CPreferencesEdit& edit);

  private:
    CParts m_parts;
};

} // namespace velmora
