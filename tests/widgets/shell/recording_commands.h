#pragma once

#include "widgets/common/qt_text.h"
#include "widgets/shell/preferences_edit.h"
#include "widgets/shell/workbench_commands.h"

#include <set>
#include <string>
#include <vector>

namespace velmora::test {

// Records what the main window asks for, by the names of the operations, and answers as told.
class CRecordingCommands : public IWorkbenchCommands
{
  public:
    void newProject() override { add("newProject"); }
    void openProject() override { add("openProject"); }
    bool openProjectFile(const std::filesystem::path& file) override
    {
        add("openProjectFile " + file.filename().string());
        return true;
    }
    void editProject() override { add("editProject"); }
    void saveProjectAs() override { add("saveProjectAs"); }
    void clearProject() override { add("clearProject"); }
    void importUIControls() override { add("importUIControls"); }
    void undo() override { add("undo"); }
    void redo() override { add("redo"); }
    QString undoText() const override { return m_sUndo; }
    QString redoText() const override { return m_sRedo; }
    void startCompiler() override { add("startCompiler"); }
    void rebuild() override { add("rebuild"); }
    void debug() override { add("debug"); }
    void loadPlugIn() override { add("loadPlugIn"); }
    void unloadPlugIn() override { add("unloadPlugIn"); }
    void resetPlugIn() override { add("resetPlugIn"); }
    void loadRemotePlugIn() override { add("loadRemotePlugIn"); }
    void reloadPlugIns() override { add("reloadPlugIns"); }
    void selectModule(int nIndex) override { add("selectModule " + std::to_string(nIndex)); }
    void selectPlugIn(int nIndex) override { add("selectPlugIn " + std::to_string(nIndex)); }
    void synchronizeCode() override { add("synchronizeCode"); }
    void userVariables() override { add("userVariables"); }
    void savePreset() override { add("savePreset"); }
    void deletePreset() override { add("deletePreset"); }
    void loadAudioFile() override { add("loadAudioFile"); }
    void loadAudioFile(const std::filesystem::path& file) override
    {
        add("loadAudioFile " + file.filename().string());
    }
    void processIntoWaveFile() override { add("processIntoWaveFile"); }
    void setupAudioDevices() override { add("setupAudioDevices"); }
    void showToolWindow(EToolWindow eWindow, bool bShow) override
    {
        if (bShow)
            m_shown.insert(eWindow);
        else
            m_shown.erase(eWindow);
    }
    bool isToolWindowShown(EToolWindow eWindow) const override { return m_shown.contains(eWindow); }
    void about() override { add("about"); }
    bool storePreferences(const CPreferencesEdit&) override { return true; }
    bool isBusy() const override { return m_bBusy; }
    bool isBuilding() const override { return m_bBuilding; }
    bool prepareToClose() override
    {
        add("prepareToClose");
        return m_bMayClose;
    }

    std::vector<std::string> m_log;
    std::set<EToolWindow> m_shown;
    QString m_sUndo;
    QString m_sRedo;
    bool m_bBusy = false;
    bool m_bBuilding = false;
    bool m_bMayClose = true;

  private:
    void add(std::string sCall) { m_log.push_back(std::move(sCall)); }
};

} // namespace velmora::test
