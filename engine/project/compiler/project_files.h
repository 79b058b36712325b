#pragma once

#include "project/compiler/build_record.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

// The files of a project as they were when a build began to look at them, so that an edit made while the
// compiler runs is never taken for what the compiler saw. [any but audio]
class CProjectFiles
{
  public:
    // Looks at the sources and headers that lie directly in the folder.
    explicit CProjectFiles(std::filesystem::path projectFolder);

    // Every *.cpp directly in the folder but hidden ones, sorted by name.
    [[nodiscard]] const std::vector<std::filesystem::path>& sources() const { return m_sources; }

    // The names of the headers in the folder, one to a line: a new one may hide one of another folder.
    [[nodiscard]] const std::string& headerNames() const { return m_sHeaderNames; }

    // Whether the file is still what the record says. Looks at a file of the project that it has not looked
    // at before.
    [[nodiscard]] bool isUnchanged(const CReadFile& file);

    // The record of a file that a compiler has read after the files were looked at.
    [[nodiscard]] CReadFile recordOf(const std::filesystem::path& file) const;

  private:
    [[nodiscard]] bool isInProject(const std::filesystem::path& file) const;
    // What a file was when it was looked at.
    struct CLook
    {
        std::optional<std::uint64_t> m_contentHash;
        std::optional<CFileStamp> m_stamp; // taken before it was read
    };
    const CLook& lookAt(const std::filesystem::path& file);

    std::filesystem::path m_folder;
    std::int64_t m_nStarted;
    std::vector<std::filesystem::path> m_sources;
    std::string m_sHeaderNames;
    std::map<std::filesystem::path, CLook> m_looks;
};

} // namespace velmora
