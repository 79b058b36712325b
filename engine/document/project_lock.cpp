#include "document/project_lock.h"

#include <fstream>
#include <string_view>

namespace velmora {

namespace {

constexpr std::string_view HELD_BY_WINDOW = "open in a window\n";

std::filesystem::path folderOf(const std::filesystem::path& projectFile)
{
    std::error_code error;
    return std::filesystem::absolute(projectFile, error).parent_path();
}

std::string openElsewhere(const std::filesystem::path& projectFile)
{
    return "The project " + projectFile.string() +
           " is open in a window of Velmora. Close it there, and try again.";
}

// Not readFileUnlessLocked(): the file is locked.
bool isHeldByWindow(const std::filesystem::path& lockFile)
{
    std::ifstream stream(lockFile, std::ios::binary);
    std::string sText(HELD_BY_WINDOW.size(), '\0');
    stream.read(sText.data(), static_cast<std::streamsize>(sText.size()));
    return stream && sText == HELD_BY_WINDOW;
}

} // namespace

std::filesystem::path CProjectLock::lockFile(const std::filesystem::path& projectFile)
{
    return folderOf(projectFile) / ".velmora" / "lock";
}

bool CProjectLock::take(const std::filesystem::path& projectFile)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(projectFile, error))
        return true; // which whoever reads it tells
    auto pLock = std::make_unique<CFileLock>(lockFile(projectFile));
    if (!pLock->tryToTake()) {
        m_sReason = heldByWindow(projectFile);
        if (m_sReason.empty())
            m_sReason = "A command is at work on the project " + projectFile.string() +
                        ". Wait for its end, and try again.";
        return false;
    }
    pLock->setText(HELD_BY_WINDOW);
    m_pLock = std::move(pLock);
    m_folder = folderOf(projectFile);
    return true;
}

bool CProjectLock::holds(const std::filesystem::path& projectFile) const
{
    std::error_code error;
    return isHeld() && std::filesystem::equivalent(m_folder, folderOf(projectFile), error);
}

std::string CProjectLock::heldByWindow(const std::filesystem::path& projectFile)
{
    return isHeldByWindow(lockFile(projectFile)) ? openElsewhere(projectFile) : std::string();
}

} // namespace velmora
