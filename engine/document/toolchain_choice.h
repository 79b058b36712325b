#pragma once

#include "project/compiler/ide_launcher.h"
#include "project/compiler/toolchain.h"

#include <filesystem>
#include <memory>

namespace velmora {

class IUserDialogs;
class IWindowSystem;

// The compiler that was chosen, made when it is first asked for. [main]
class CToolchainChoice
{
  public:
    // plugInsFolder takes the libraries, cacheFolder keeps what projects share.
    CToolchainChoice(IUserDialogs& dialogs, std::filesystem::path plugInsFolder,
                     std::filesystem::path cacheFolder, CIdeSettings ideSettings, int nCompilerId);
    ~CToolchainChoice();

    CToolchainChoice(const CToolchainChoice&) = delete;
    CToolchainChoice& operator=(const CToolchainChoice&) = delete;

    // False, and nothing changes, for an id that is not in compiler_table.h. Ends a build of the compiler
    // before.
    [[nodiscard]] bool choose(int nCompilerId);

    // What the preferences say of the compilers' windows. Ends a build of the compiler that was made with
    // others.
    void setIdeSettings(CIdeSettings ideSettings);

    [[nodiscard]] int chosenId() const { return m_nCompilerId; }
    [[nodiscard]] IToolchain& chosen();

    // The windows of other programs, and the clock.
    [[nodiscard]] IWindowSystem& windowSystem();

  private:
    [[nodiscard]] std::unique_ptr<IToolchain> makeToolchain();

    IUserDialogs& m_dialogs;
    std::filesystem::path m_plugInsFolder;
    std::filesystem::path m_cacheFolder;
    CIdeSettings m_ideSettings;
    int m_nCompilerId;
    std::unique_ptr<IWindowSystem> m_pWindowSystem; // outlives the toolchain
    std::unique_ptr<IToolchain> m_pToolchain;
};

} // namespace velmora
