#pragma once

#include "document/control_values.h"
#include "document/edit_history.h"
#include "document/project_lock.h"
#include "document/toolchain_choice.h"
#include "project/assignable_buttons.h"
#include "project/codegen/project_environment.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
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

// What commands answer without a project, and those that need a built one.
inline constexpr const char* PROJECT_NEEDED = "Open or Create a new Project first!";
inline constexpr const char* BUILT_PROJECT_NEEDED = "Open an existing, compiled Project first!";

// What the status strip shows of a command.
using CStripTexts = std::function<void(std::string_view sLabel, std::string_view sText)>;

struct CRebuildOptions
{
    bool m_bLoad = true;                    // load the library when the build has succeeded
    bool m_bUnloadFirst = true;             // false: the old plug-in plays on until the new one is ready
    bool m_bStartFromInitialValues = false; // false: carry the controls' values over by variable name
    double m_dDeadlineSeconds = 600.0;      // for the build
    IProgress* m_pProgress = nullptr;       // asked about a hundred times a second; false stops the rebuild
    std::function<void()> m_onReady;        // the compiler is there, and the build begins
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
// wrong. An edit replaces the record, rewrites the source and saves the project; edits of the panel can be
// taken back. Where a command answers bool, false means that it failed or was refused and that a message said
// why. A long wait goes through base/patience.h; a command that is called from inside one is refused with a
// note. [main]
class CProjectCommands
{
  public:
    // baseClassFolder holds the contract, the skeletons and the stock objects. All must outlive this.
    CProjectCommands(CTonboxDoc& document, IUserDialogs& dialogs, std::filesystem::path baseClassFolder);
    ~CProjectCommands();

    CProjectCommands(const CProjectCommands&) = delete;
    CProjectCommands& operator=(const CProjectCommands&) = delete;

    // A rebuild is under way, or a wait of a command: commands are refused until it ends.
    [[nodiscard]] bool isBusy() const;

    // The open project; null for none.
    [[nodiscard]] CDSPProject* project() const;

    // The compiler that builds from now on; the settings' one unless another was chosen.
    [[nodiscard]] CToolchainChoice& compilers() { return m_compilers; }
    [[nodiscard]] IToolchain& toolchain() { return m_compilers.chosen(); }

    // The preferences have changed; the toolchain may be another object afterwards.
    void applySettings();

    // Whether compilers may be started and switched to without being asked for: line 6 of the settings.
    [[nodiscard]] bool mayControlCompiler() const;

    // Whether edits have the compiler's window save first, and start it if need be, as far as the preferences
    // allow it. Off in a program without a window of its own, whose edits work on what is on disc.
    void setEditsThroughCompiler(bool bOn) { m_bEditsThroughCompiler = bOn; }

    // Has the open project kept from other programs, as a program with a window does: one that is open there
    // cannot be opened here. Off by default.
    void setHoldsProject(bool bOn);

    // New Project: checks, creates the folder, and makes the project the open one.
    bool newProject(const CNewProjectRequest& request);

    // Edit Project: takes over what the dialog holds, which began with requestOfProject(), and adds what was
    // newly chosen to the folder. showStrip, if given, is told of the status strip's two texts.
    bool editProject(const CNewProjectRequest& request, const CStripTexts& showStrip = {});

    // Reads a project and makes it the open one. No file is changed.
    bool loadProject(const std::filesystem::path& file);

    // Open Project: reads it, then repairs and updates what has become stale around it. prepare is called
    // ahead of reading, when no other program can work on the project and the open one is saved: the moment
    // to offer an autosave that findRecovery() finds. Its false, which it has explained, ends the command.
    bool openProject(const std::filesystem::path& file, const std::function<bool()>& prepare = {});

    // Saves what was not saved yet, unloads the plug-in and leaves no project open. What cannot be saved
    // stays as an autosave. False only while the commands are busy.
    bool closeProject();

    // Saves the project as it is; the sources stay.
    bool save();

    // What OK of a slot's property dialog does: checks the record, asks where the checks ask, stores it,
    // and on a rename offers to change the sources. bNew says that the slot must be free, else taken.
    bool acceptControl(const CControlEdit& edit, bool bNew);
    bool removeControl(unsigned uControlId);

    // OK of the Assignable Button Setup.
    bool setAssignableButtons(const CAssignableButtons& buttons);

    // Swaps an item of the alpha wheel with its neighbour. False, without a message, for the first one upward
    // (bUp) and the last one downward.
    bool moveAlphaWheelItem(unsigned uControlId, bool bUp);

    // Gives all controls of a menu group another one; an empty sTo takes them out of it. False, without a
    // message, if no control is in the group.
    bool renameMenuGroup(std::string_view sFrom, std::string_view sTo);

    // An edit of the panel that has no command of its own, such as the track pad's choice: change alters the
    // project and answers false if there is nothing to be done; then nothing is written. sLabel reads behind
    // "Undo ".
    bool editPanel(const std::string& sLabel, const std::function<bool(CDSPProject&)>& change);

    // The panel's edits since the project was opened, and taking the last one back or making it again. Where
    // a variable was renamed in the sources, too, the same question is asked as for the rename. False,
    // without a message, if there is nothing to be taken back or made again.
    [[nodiscard]] const CEditHistory& edits() const { return m_edits; }
    bool undo();
    bool redo();

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

    // Import UI Controls: asks, has the other project chosen (none: nothing is done), and takes it over.
    using CProjectChooser = std::function<std::optional<std::filesystem::path>()>;
    bool importControls(const CProjectChooser& choose);

    // Synchronize Code. showStrip, if given, is told of the status strip's two texts. rebuildFirst, if given,
    // is what a Yes to the question of a missing library runs in place of rebuild().
    bool synchronizeCode(const CStripTexts& showStrip = {}, const std::function<bool()>& rebuildFirst = {});

    // Called when Synchronize Code puts the vector joystick back to its centre.
    std::function<void()> m_onJoystickReset;

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
    [[nodiscard]] bool begin();
    [[nodiscard]] bool lockProject(const std::filesystem::path& file, CProjectLock& lock);
    void leaveProject();
    void takeProject(std::unique_ptr<CDSPProject> pProject, CProjectLock lock);
    bool requireProject(const char* pMessage);
    bool requirePlugIn();
    bool writeRegions(ICompilerAccess* pEditor);
    bool saveOpenProject();
    bool renameVariable(const std::string& sFrom, const std::string& sTo);
    bool prepareBuild(CRebuildResult& result, const CRebuildOptions& options);
    static bool goesOn(CRebuildResult& result, const CRebuildOptions& options);
    bool waitForCompiler(CRebuildResult& result, const CRebuildOptions& options);
    void loadResult(CRebuildResult& result, const CRebuildOptions& options);
    bool loadLibrary(const std::filesystem::path& library, CControlValues values);
    void describeForEditors();
    bool finishEdit();
    bool replay(bool bUndo);
    void replaceDocument(const CPanelEdit& edit, bool bUndo);
    void takeOutPlugIn();
    void resetJoystick();

    CTonboxDoc& m_document;
    IUserDialogs& m_dialogs;
    std::filesystem::path m_baseClassFolder;
    CToolchainChoice m_compilers;
    bool m_bEditsThroughCompiler = false;
    bool m_bHoldsProject = false;
    bool m_bRebuilding = false;
    CProjectLock m_lock;
    CEditHistory m_edits;
    CControlValues m_keptValues; // of the plug-in that was unloaded
    std::vector<std::filesystem::path> m_changedFiles;
};

} // namespace velmora
