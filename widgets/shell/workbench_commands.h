#pragma once

#include <QString>
#include <filesystem>

namespace velmora {

struct CPreferencesEdit;

// The windows that stay open beside the main window.
enum class EToolWindow
{
    Oscillator,
    Sidechain,
    BlockDiagram,
    Status
};

// Port: what the main window's commands ask of the hub of the window side. Each operation shows the dialogs
// that it needs and tells the user what went wrong. [main]
class IWorkbenchCommands
{
  public:
    virtual ~IWorkbenchCommands() = default;

    virtual void newProject() = 0;
    virtual void openProject() = 0; // asks for the file
    virtual bool openProjectFile(const std::filesystem::path& file) = 0;
    virtual void editProject() = 0;
    virtual void saveProjectAs() = 0;
    virtual void clearProject() = 0;
    virtual void importUIControls() = 0;

    virtual void undo() = 0;
    virtual void redo() = 0;

    // What the next undo and redo would do, as in "Add Slider 3: Cutoff"; empty when there is nothing.
    [[nodiscard]] virtual QString undoText() const = 0;
    [[nodiscard]] virtual QString redoText() const = 0;

    virtual void startCompiler() = 0;
    virtual void rebuild() = 0;
    virtual void debug() = 0;
    virtual void loadPlugIn() = 0; // the library that the open project's last build left
    virtual void unloadPlugIn() = 0;
    virtual void resetPlugIn() = 0; // prepareForPlay()
    virtual void loadRemotePlugIn() = 0;
    virtual void reloadPlugIns() = 0; // scans the folder anew
    virtual void selectModule(int nIndex) = 0;
    virtual void selectPlugIn(int nIndex) = 0;
    virtual void synchronizeCode() = 0;
    virtual void userVariables() = 0;
    virtual void savePreset() = 0;
    virtual void deletePreset() = 0;

    virtual void loadAudioFile() = 0; // asks for the file
    virtual void loadAudioFile(const std::filesystem::path& file) = 0;
    virtual void processIntoWaveFile() = 0;
    virtual void setupAudioDevices() = 0;

    virtual void showToolWindow(EToolWindow eWindow, bool bShow) = 0;
    [[nodiscard]] virtual bool isToolWindowShown(EToolWindow eWindow) const = 0;
    virtual void about() = 0;

    // What "Save" of the preferences dialog does: writes the values back, rewrites both files and changes the
    // compiler. False, after a message, keeps the dialog open.
    virtual bool storePreferences(const CPreferencesEdit& edit) = 0;

    // A build or another long command runs: what needs rest is disabled.
    [[nodiscard]] virtual bool isBusy() const = 0;

    // A build runs, which rebuild() would end.
    [[nodiscard]] virtual bool isBuilding() const = 0;

    // Ends a running build or other long command and keeps what must be kept, before the document is closed.
    // False keeps the window open.
    virtual bool prepareToClose() = 0;
};

} // namespace velmora
