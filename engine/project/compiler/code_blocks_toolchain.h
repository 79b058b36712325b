#pragma once

#include "project/compiler/code_blocks_boxes.h"
#include "project/compiler/compiler_driver.h"
#include "project/dsp_project.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

// Code::Blocks, driven in its window. The project's velmora-build.sh, which the IDE runs for each build,
// keeps the log that the result is read from.
class CCodeBlocksToolchain : public IToolchain
{
  public:
    // plugInsFolder is where the projects' makefiles put the libraries.
    CCodeBlocksToolchain(IWindowSystem& system, IUserDialogs& dialogs, CIdeSettings settings,
                         std::filesystem::path plugInsFolder);

    [[nodiscard]] int compilerId() const override;
    [[nodiscard]] std::string unavailableReason() const override;
    [[nodiscard]] ECompilerState state(const CDSPProject& project) override;
    [[nodiscard]] bool makeAvailable(const CDSPProject& project) override;
    bool saveAll() override;
    [[nodiscard]] bool rebuild(const CDSPProject& project) override;
    [[nodiscard]] CBuildReport waitForBuild(double dSeconds, IProgress* pProgress) override;
    [[nodiscard]] bool startDebug() override;
    [[nodiscard]] bool stopDebug() override;
    void leave() override;
    void returnFocus() override;

    [[nodiscard]] bool waitForWindow(const CDSPProject& project, double dSeconds) override;

    // Brings the IDE's window in front and answers what it asks then.
    [[nodiscard]] bool bringForward();

    // Saves everything and closes the IDE; false if it lives on.
    [[nodiscard]] bool close();

    // Where returnFocus() goes; without it, to the window that had the focus before the IDE's.
    void setMainWindow(CWindowHandle hWindow) { m_driver.setMainWindow(hWindow); }

    // Why the last operation that returned false did so, and what to do.
    [[nodiscard]] std::string lastError() const override { return m_sLastError; }

  private:
    void follow(const CDSPProject& project);
    [[nodiscard]] bool awaitWindow(double dSeconds);
    [[nodiscard]] bool awaitBegin();
    [[nodiscard]] bool logHolds(std::string_view sLine) const;
    [[nodiscard]] bool hasBuildEnded();
    [[nodiscard]] CBuildReport finishedReport();
    void takeFocusBack();
    bool fail(std::string sError);

    IWindowSystem& m_system;
    CIdeSettings m_settings;
    CCompilerDriver m_driver;
    CCodeBlocksBoxes m_boxes;
    std::filesystem::path m_plugInsFolder;
    CDSPProject m_project; // names and paths of the one that is being built
    CBuildReport m_report;
    double m_dAsked = 0.0;       // s, when the build was asked for
    double m_dEnded = 0.0;       // s, when its last line was seen; 0 before
    double m_dQuietSince = 0.0;  // s, since when the IDE runs no program; 0 while it does
    bool m_bUserIsInIde = false; // its window had the focus before the build ended
    std::string m_sLastError;
};

} // namespace velmora
