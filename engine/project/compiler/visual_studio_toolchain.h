#pragma once

#include "project/compiler/compiler_driver.h"
#include "project/dsp_project.h"

#include <filesystem>
#include <string>

namespace velmora {

// One of the Visual Studio compilers, 4000 and 4002 to 4009, driven in its window. Where there is none, its
// project files are written and mended all the same, and starting it shows the message of ide_launcher.h.
class CVisualStudioToolchain : public IToolchain
{
  public:
    CVisualStudioToolchain(IWindowSystem& system, IUserDialogs& dialogs, int nCompilerId,
                           CIdeSettings settings, std::filesystem::path plugInsFolder,
                           CRegistryReader registry = {});

    [[nodiscard]] int compilerId() const override { return m_driver.compilerId(); }
    [[nodiscard]] std::string unavailableReason() const override;
    [[nodiscard]] ECompilerState state(const CDSPProject& project) override;
    [[nodiscard]] bool makeAvailable(const CDSPProject& project) override;
    bool saveAll() override { return isInstalled() && m_driver.saveAll(); }
    [[nodiscard]] bool waitForWindow(const CDSPProject& project, double dSeconds) override;
    [[nodiscard]] bool rebuild(const CDSPProject& project) override;
    [[nodiscard]] CBuildReport waitForBuild(double dSeconds, IProgress* pProgress) override;
    [[nodiscard]] bool startDebug() override { return isInstalled() && m_driver.startDebug(); }
    [[nodiscard]] bool stopDebug() override { return isInstalled() && m_driver.stopDebug(); }
    void returnFocus() override { m_driver.returnFocus(); }
    [[nodiscard]] std::string lastError() const override;

  private:
    [[nodiscard]] bool isInstalled() const;

    IWindowSystem& m_system;
    CCompilerDriver m_driver;
    std::filesystem::path m_plugInsFolder;
    CRegistryReader m_registry;
    CDSPProject m_project; // names and paths of the one that is being built
    CBuildReport m_report;
    double m_dAsked = 0.0; // s, when the build was asked for
};

} // namespace velmora
