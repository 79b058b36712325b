#pragma once

#include "project/compiler/compiler_strip.h"
#include "project/compiler/toolchain.h"

#include <functional>
#include <string>
#include <string_view>

namespace velmora {

class CDSPProject;
class IUserDialogs;

// Port: the window that carries the status strip, or the console in its place. [main]
class IStatusStripWindow
{
  public:
    virtual ~IStatusStripWindow() = default;

    virtual void showStatus(std::string_view sLabel, std::string_view sState) = 0;
    virtual void setTimer(unsigned uMilliseconds) = 0; // tickState() again and again, until killed
    virtual void killTimer() = 0;
    virtual void takeFocus() = 0;
    virtual void setDebugButton(std::string_view sText) = 0;

    // Has the project's linker settings follow the compiler that was chosen.
    virtual void updateLinkerSettings(CDSPProject& project) = 0;
};

// The commands that the compiler's window is sent, and what the status strip shows of them and of a build. It
// has no timer of its own: its window runs one as told and calls tickState(). While a build is waited for,
// that timer rests, and whoever waits posts the events. [main]
class CStatusStrip
{
  public:
    CStatusStrip(IToolchain& toolchain, IUserDialogs& dialogs, IStatusStripWindow& window);

    // The commands; pProject is null when no project is open. False if refused or failed.
    bool startCompiler(CDSPProject* pProject);
    bool toggleDebug(CDSPProject* pProject);

    // Ends debugging, if it was begun here, as ahead of another project.
    void stopDebugging();

    // The user chose another compiler. True if the choice stands; the strip works with what choose answers
    // then, and the toolchain before may go.
    bool changeCompiler(CDSPProject* pProject, int nCompilerId, const std::function<IToolchain&()>& choose);

    // The toolchain was made anew, with other settings.
    void setToolchain(IToolchain& toolchain) { m_pToolchain = &toolchain; }

    // A project was opened: from now on its compiler's state is shown.
    void followProject(CDSPProject& project);

    // The project is closed; the compiler stays.
    void closeProject();

    void tickState();

    void post(EStripEvent eEvent);

    // The two texts of a command.
    void show(std::string_view sLabel, std::string_view sText);

    [[nodiscard]] const std::string& label() const { return m_strip.label(); }
    [[nodiscard]] const std::string& text() const { return m_strip.text(); }

  private:
    [[nodiscard]] bool hasProject(CDSPProject* pProject);

    IToolchain* m_pToolchain;
    IUserDialogs& m_dialogs;
    IStatusStripWindow& m_window;
    CDSPProject* m_pProject = nullptr;
    CCompilerStrip m_strip;
    bool m_bAlive = false;
    bool m_bHeld = false; // the timer runs out the hold of a result
    bool m_bDebugging = false;
};

} // namespace velmora
