#pragma once

#include <QObject>
#include <filesystem>
#include <optional>

namespace velmora {

// Shape only, for those who write against it: the hub of the window side. The main window's commands call these
// slots; each shows the dialogs it needs and tells the user what went wrong.
class CDesignerView : public QObject
{
    Q_OBJECT

  public slots:
    void newProject();
    void openProject();                                            // asks for the file
    bool openProjectFile(const std::filesystem::path& file);       // also from the recent list and by dropping
    void editProject();
    void saveProjectAs();
    void clearProject();
    void importUIControls();
    void undo();
    void redo();

    void startCompiler();
    void rebuild();
    void debug();
    void loadPlugIn();       // the built library of the open project
    void unloadPlugIn();
    void resetPlugIn();      // prepareForPlay()
    void loadRemotePlugIn();
    void reloadPlugIns();    // scans the folder anew
    void selectModule(int nIndex);
    void selectPlugIn(int nIndex);
    void synchronizeCode();
    void userVariables();
    void savePreset();
    void deletePreset();

    void loadAudioFile();                                          // asks for the file
    void loadAudioFile(const std::filesystem::path& file);         // dropped
    void processIntoWaveFile();
    void showOscillator(bool bShow);
    void showSidechain(bool bShow);
    void showBlockDiagram(bool bShow);
    void setupAudioDevices();

  signals:
    void projectChanged();  // another project, or its saved state: title, commands
    void plugInChanged();   // loaded, unloaded, list changed: refill the list menus
    void transportChanged();
    void busyChanged(bool bBusy); // a build or another long command runs: commands that need rest are disabled
};

} // namespace velmora
