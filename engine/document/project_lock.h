#pragma once

#include "base/platform_file_lock.h"

#include <filesystem>
#include <memory>
#include <string>

namespace velmora {

// The lock file of a project folder, .velmora/lock, which keeps programs from working on one project at the
// same time. A command waits for it and holds it to its end; a program with a window holds it for as long as
// the project is open, and writes into it that it does, so that no command waits for a person. [main]
class CProjectLock
{
  public:
    // Keeps the project from others for a program with a window. False if another program has it; reason()
    // says so. True, and nothing is held, for a file that is not there.
    [[nodiscard]] bool take(const std::filesystem::path& projectFile);

    void letGo() { *this = {}; }

    [[nodiscard]] bool isHeld() const { return m_pLock != nullptr; }

    // The project of that file is the one that is held.
    [[nodiscard]] bool holds(const std::filesystem::path& projectFile) const;

    [[nodiscard]] const std::string& reason() const { return m_sReason; }

    [[nodiscard]] static std::filesystem::path lockFile(const std::filesystem::path& projectFile);

    // Why a command should not wait for the project: a window has it open. Empty if none has.
    [[nodiscard]] static std::string heldByWindow(const std::filesystem::path& projectFile);

  private:
    std::filesystem::path m_folder;
    std::unique_ptr<CFileLock> m_pLock;
    std::string m_sReason;
};

} // namespace velmora
