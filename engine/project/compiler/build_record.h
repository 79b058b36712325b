#pragma once

#include "project/compiler/file_stamp.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

// A file that went into an object, as it was then. The project's own files are known by their content, those
// of the system by their stamp; one of which neither is sure counts as changed.
struct CReadFile
{
    std::filesystem::path m_file;
    std::optional<std::uint64_t> m_contentHash;
    std::optional<CFileStamp> m_stamp;
};

// One object file of a project.
struct CObjectRecord
{
    std::uint64_t m_uCommandHash = 0; // of the command, the compiler and what else is no file
    CFileStamp m_object;
    std::vector<CReadFile> m_files;
};

// What a project's build folder holds, so that the next build can tell what is still good.
struct CBuildRecord
{
    std::map<std::string, CObjectRecord> m_objects; // by the source's name
    std::uint64_t m_uLinkHash = 0;
    std::optional<CFileStamp> m_library;

    // An empty record if there is none, or one that is damaged: then everything is built anew.
    [[nodiscard]] static CBuildRecord load(const std::filesystem::path& file);

    // The text that load() reads.
    [[nodiscard]] std::string text() const;
};

// The files that a compiler read, out of the make rule that it wrote. [any]
[[nodiscard]] std::vector<std::filesystem::path> filesOfMakeRule(std::string_view sRule);

} // namespace velmora
