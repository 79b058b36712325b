#pragma once

#include "document/control_values.h"
#include "document/toolchain_choice.h"
#include "project/codegen/project_environment.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPProject;
class CTonboxDoc;
class IProgress;
class IUserDialogs;
struct CControlEdit;
struct CNewProjectRequest;
struct CProjectCopyRequest;
struct CUserVariableRequest;

struct CRebuildOptions
{
    bool m_bLoad = true;                    // load the library when the build has succeeded
    bool m_bUnloadFirst = true;             // false: the old plug-in plays on until the new one is ready
    bool m_bStartFromInitialValues = false; // false: carry the controls' values over by variable name
    double m_dDeadlineSeconds = 600.0;      // for the build
    IProgress* m_pProgress = nullptr;
};

struct CRebuildResult
{
    CBuildReport m_build;
    bool m_bLoaded = false;
    std::string m_sBuildId;    // of the code that runs now, in hex; empty if nothing was loaded
    CControlChanges m_changes; // what became of the controls' values
    double m_dWriteSeconds = 0.0;
    double m_dLoadSeconds = 0.0; // probe, open, create, swap
};

// The commands of the open project: each does its steps in their fixed order and tells the user what went
// wrong. An edit replaces the record, rewrites the source and saves the project. Where a command answers
// bool, false means that it failed or was refused and that a message said why. [main]
class CProjectCommands
{
  public:
    // baseClassFolder holds the contract, the skeletons and the stock objects. All must outlive this.
    CProjectCommands(CTonboxDoc& document, IUserDialogs& dialogs, std::filesystem::path baseClassFolder);
    ~CProjectCommands();

    CProjectCommands(const CProjectCommands&) = delete;
    CProjectCommands& operator=(const CProjectCommands&) = delete;

    // The open project; null for none.
    [[nodiscard]] CDSPProject* project() const;

    // The compiler that builds from now on; the settings' one unless another was chosen.
    [[nodiscard]] CToolchainChoice& compilers() { return m_compilers; }
    [[nodiscard]] IToolchain& toolchain() { return m_compilers.chosen(); }

    // Whether edits have the compiler's window save first, and start it if need be. Off in a program without
    // a window of its own, whose edits work on what is on disc.
    void setEditsThroughCompiler(bool bOn) { m_bEditsThroughCompiler = bOn; }

    // New Project: checks, creates the folder, and makes the project the open one.
    bool newProject(const CNewProjectRequest& request);

    // Edit Project: takes over what the dialog holds, which began with requestOfProject(), and adds what was
    // newly chosen to the folder.
    bool editProject(const CNewProjectRequest& request);

    // Reads a project and makes it the open one. No file is changed.
    bool loadProject(const std::filesystem::path& file);

    // Open Project: reads it, then repairs and updates what has become stale around it.
    bool openProject(const std::filesystem::path& file);

    // What OK of a slot's property dialog does: checks the record, asks where the checks ask, stores it,
    // and on a rename offers to change the sources. bNew says that the slot must be free, else taken.
    bool acceptControl(const CControlEdit& edit, bool bNew);
    bool removeControl(unsigned uControlId);

    bool addUserVariable(const CUserVariableRequest& request);
    bool removeUserVariable(std::string_view sName);

    // Writes the code regions and saves the project.
    bool writeCode();

    // Rebuild. The report tells how it ended; messages went to the user only for what kept the build from
    // being asked for.
    CRebuildResult rebuild(const CRebuildOptions& options);

    // Loads the library that the last build left behind. False after a message.
    bool loadBuiltPlugIn();

    // Stops the audio and takes the loaded plug-in out; its values are kept for the next rebuild.
    void unloadPlugIn();

    bool saveAs(const CProjectCopyRequest& request);
    bool clearProject();
    bool importControls(const std::filesystem::path& otherProject);
    bool synchronizeCode();

    // Presets of the open project, on the loaded plug-in.
    bool savePreset(const std::string& sName);
    bool loadPreset(const std::string& sName);
    bool deletePreset(const std::string& sName);

    // Files that the last command wrote, without those that were as they should be.
    [[nodiscard]] const std::vector<std::filesystem::path>& changedFiles() const { return m_changedFiles; }

    // Where the program's files lie, for the chosen compiler.
    [[nodiscard]] CProjectEnvironment environment() const;

    // Where built libraries go, and the file of the open project's library.
    [[nodiscard]] std::filesystem::path plugInsFolder() const;
    [[nodiscard]] std::filesystem::path builtLibrary() const;

  private:
    [[nodiscard]] ICompilerAccess* editorAccess();
    bool requireProject(const char* pMessage);
    bool requirePlugIn();
    bool writeRegions(ICompilerAccess* pEditor);
    bool saveOpenProject();
    bool renameVariable(const std::string& sFrom, const std::string& sTo);
    bool prepareBuild(CRebuildResult& result, const CRebuildOptions& options);
    bool waitForCompiler(CRebuildResult& result, const CRebuildOptions& options);
    void loadResult(CRebuildResult& result, const CRebuildOptions& options);
    bool loadLibrary(const std::filesystem::path& library, CControlValues values);
    void describeForEditors();

    CTonboxDoc& m_document;
    IUserDialogs& m_dialogs;
    std::filesystem::path m_baseClassFolder;
    CToolchainChoice m_compilers;
    bool m_bEditsThroughCompiler = false;
    CControlValues m_keptValues; // of the plug-in that was unloaded
    std::vector<std::filesystem::path> m_changedFiles;
};

} // namespace velmora
