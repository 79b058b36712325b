#pragma once

#include "project/compiler/compiler_operations.h"
#include "project/compiler/compiler_state.h"
#include "project/compiler/ide_launcher.h"
#include "project/compiler/toolchain.h"

#include <string>
#include <string_view>

namespace velmora {

class CDSPProject;
class IUserDialogs;

// Operates a compiler that has a window, from outside and by its keys, like a person would. What the keys
// brought about is read from disc by the toolchain. [main]
class CCompilerDriver
{
  public:
    CCompilerDriver(IWindowSystem& system, IUserDialogs& dialogs, int nCompilerId, CIdeSettings settings,
                    CRegistryReader registry = {});

    // Where returnFocus() goes; without it, to the window that had the focus before the compiler's.
    void setMainWindow(CWindowHandle hWindow) { m_hMainWindow = hWindow; }

    // The project whose window is meant from here on. The compiler of another one is forgotten.
    void setProject(const CDSPProject& project);
    [[nodiscard]] const std::string& project() const { return m_sProject; } // its name
    [[nodiscard]] bool isProject(const CDSPProject& project) const;

    // Finds the compiler's window and asks what it is at.
    [[nodiscard]] ECompilerState getCompilerState(const CDSPProject& project);
    [[nodiscard]] ECompilerState getCompilerState(); // of the same project as before

    // Starts the compiler on the project's file; shows the message if that fails.
    [[nodiscard]] bool startCompiler(const CDSPProject& project);

    // Each types the keys of its operation into the window. False if there is no window, or it does not
    // take the keys; lastError() says more.
    [[nodiscard]] bool saveAll();
    [[nodiscard]] bool rebuild();
    [[nodiscard]] bool startDebug();
    [[nodiscard]] bool stopDebug();

    // Closes the start page of 2012 Express.
    [[nodiscard]] bool closeCompiler();

    // Finds the compiler's window, then types. bMinimize: it is minimised before; bRestore: it is shown
    // again afterwards.
    [[nodiscard]] bool sendCompilerKeys(std::string_view sKeys, bool bMinimize, bool bRestore);

    // The same into one window, which may be a box.
    [[nodiscard]] bool sendKeysTo(CWindowHandle hWindow, std::string_view sKeys);

    // Brings the compiler's window forward and remembers the one that was there.
    [[nodiscard]] bool bringForward();
    void returnFocus();

    // Looks for the window; false if there is none.
    [[nodiscard]] bool findWindow();

    [[nodiscard]] CCompilerState& compiler() { return m_state; }
    [[nodiscard]] IWindowSystem& windowSystem() { return m_system; }
    [[nodiscard]] int compilerId() const { return m_nCompilerId; }
    [[nodiscard]] const std::string& lastError() const { return m_sLastError; }

  private:
    [[nodiscard]] bool operate(ECompilerOperation eOperation);
    void rememberForeground();

    IWindowSystem& m_system;
    IUserDialogs& m_dialogs;
    int m_nCompilerId;
    CIdeSettings m_settings;
    CRegistryReader m_registry;
    CCompilerState m_state;
    std::string m_sProject;       // the name of the project that was asked for last
    std::string m_sProjectFolder; // of the same
    CWindowHandle m_hMainWindow = 0;
    CWindowHandle m_hWindowBefore = 0;
    std::string m_sLastError;
};
} // namespace velmora
