#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velmora {

// A copy of a library file, under its own name in a new folder that nobody else uses, so that the dynamic
// linker never takes it for another one. The folder is gone when this object is. [main]
class CPlugInLibraryCopy
{
  public:
    // Where copies are made, best first: in memory, the user's cache folder, the temporary folder.
    [[nodiscard]] static std::vector<std::filesystem::path> usualFolders();

    // Copies the file into the first of the folders that can be written, has room, and may hold code.
    // Null with the reason in sError if the file cannot be read, is no complete shared library, or finds
    // no place.
    [[nodiscard]] static std::unique_ptr<CPlugInLibraryCopy>
    make(const std::filesystem::path& file, std::span<const std::filesystem::path> folders,
         std::string& sError);

    // Removes the copies that a process which died in the middle left in the folders.
    static void removeLeftovers(int nProcess, std::span<const std::filesystem::path> folders);

    ~CPlugInLibraryCopy();
    CPlugInLibraryCopy(const CPlugInLibraryCopy&) = delete;
    CPlugInLibraryCopy& operator=(const CPlugInLibraryCopy&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

  private:
    explicit CPlugInLibraryCopy(std::filesystem::path path) : m_path(std::move(path)) {}

    std::filesystem::path m_path;
};

} // namespace velmora
