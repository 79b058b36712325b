#pragma once

#include "project/compiler/compiler_strip.h"
#include "project/compiler/toolchain.h"

#include <functional>
#include <string>
#include <string_view>

namespace velmora {

class CDSPProject;
class IUserDialogs;

// The two timers of the status strip.
enum class EStripTimer
{
    state = 0, // tickState()
    build = 5  // tickBuild()
};

// Port: the window that carries the status strip, or the console in its place. [main]
class IStatusStripWindow
{
  public:
    virtual ~IStatusStripWindow() = default;

    virtual void showStatus(std::string_view sLabel, std::string_view sState) = 0;
    virtual void setTimer(EStripTimer eTimer, unsigned uMilliseconds) = 0; // again and again, until killed
    virtual void killTimer(EStripTimer eTimer) = 0;
    virtual void takeFocus() = 0;
    virtual void setDebugButton(std::string_view sText) = 0;

    [[nodiscard]] virtual bool isPlugInLoaded() = 0;

    // Stops the audio, unloads the plug-in, frees the file streams and sets the button back to "Load".
    virtual void unloadPlugIn() = 0;

    // Loads what was built, if the preferences say so.
    virtual void loadBuiltPlugIn(const CBuildReport& report) = 0;

    // Writes the code regions; false after it has told why not.
    [[nodiscard]] virtual bool writeCode(CDSPProject& project) = 0;

    // Has the project's linker settings follow the compiler that was chosen.
    virtual void updateLinkerSettings(CDSPProject& project) = 0;
};

// The compiler's commands and what the status strip shows of them. It has no timer of its own: its window
// runs the two timers as told and calls tickState() and tickBuild(). [main]
class CStatusStrip
{
  public:
    CStatusStrip(IToolchain& toolchain, IUserDialogs& dialogs, IStatusStripWindow& window);

    // The commands; pProject is null when no project is open. False if refused or failed.
    bool startCompiler(CDSPProject* pProject);
    bool rebuild(CDSPProject* pProject);
    bool toggleDebug(CDSPProject* pProject);

    // The user chose another compiler. True if the choice stands; the strip works with what choose answers
    // then, and the toolchain before may go.
    bool changeCompiler(CDSPProject* pProject, int nCompilerId, const std::function<IToolchain&()>& choose);

    // A project was opened: from now on its compiler's state is shown.
    void followProject(CDSPProject& project);

    // The project is closed; the compiler stays.
    void closeProject();

    void tickState();
    void tickBuild();

    void post(EStripEvent eEvent);

    // The two texts of a command.
    void show(std::string_view sLabel, std::string_view sText);

    [[nodiscard]] const std::string& label() const { return m_strip.label(); }
    [[nodiscard]] const std::string& text() const { return m_strip.text(); }
    [[nodiscard]] const CBuildReport& lastBuild() const { return m_report; }

  private:
    [[nodiscard]] bool hasProject(CDSPProject* pProject);
    void killBuildTimer();

    IToolchain* m_pToolchain;
    IUserDialogs& m_dialogs;
    IStatusStripWindow& m_window;
    CDSPProject* m_pProject = nullptr;
    CCompilerStrip m_strip;
    bool m_bAlive = false;
    bool m_bBuildTimer = false;
    bool m_bHeld = false; // the state timer runs out the hold of a result
    bool m_bDebugging = false;
    CBuildReport m_report;
};

} // namespace velmora
