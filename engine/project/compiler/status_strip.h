#pragma once

#include "project/compiler/toolchain.h"

#include <string>
#include <string_view>

namespace velmora {

class CDSPProject;
class IUserDialogs;
class IWindowSystem;

// The two timers of the status strip.
enum class EStripTimer
{
    state = 0, // tickState()
    build = 5  // tickBuild()
};

enum class EStripEvent
{
    starting,
    ready,
    running,
    debugging,
    notFound,
    dead,
    building,
    linking, // nothing sends it yet
    buildSucceeded,
    buildFailed
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
    CStatusStrip(IToolchain& toolchain, IWindowSystem& clock, IUserDialogs& dialogs,
                 IStatusStripWindow& window);

    // The commands; pProject is null when no project is open. False if refused or failed.
    bool startCompiler(CDSPProject* pProject);
    bool rebuild(CDSPProject* pProject);
    bool toggleDebug(CDSPProject* pProject);

    // The user chose another compiler. True if the choice stands; the strip works with newToolchain then.
    bool changeCompiler(CDSPProject* pProject, IToolchain& newToolchain);

    // The project is closed; the compiler stays.
    void closeProject();

    void tickState();
    void tickBuild();

    void post(EStripEvent eEvent);

    [[nodiscard]] const std::string& label() const { return m_sLabel; }
    [[nodiscard]] const std::string& text() const { return m_sText; }
    [[nodiscard]] const CBuildReport& lastBuild() const { return m_report; }

  private:
    void show(std::string_view sLabel, std::string_view sText);
    void animate(std::string_view sLabel, std::string_view sWord);
    [[nodiscard]] bool hasProject(CDSPProject* pProject);
    void killBuildTimer();
    void endBuild(std::string_view sText);

    IToolchain* m_pToolchain;
    IWindowSystem& m_clock;
    IUserDialogs& m_dialogs;
    IStatusStripWindow& m_window;
    CDSPProject* m_pProject = nullptr;
    std::string m_sLabel;
    std::string m_sText;
    bool m_bAlive = false;
    bool m_bBuildTimer = false;
    bool m_bDebugging = false;
    CBuildReport m_report;
};

} // namespace velmora
