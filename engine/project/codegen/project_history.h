#pragma once

#include "project/codegen/history_entry.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// The earlier texts of a project's sources, kept in the project's .velmora/history. Each is a file of its
// own, a few lines about it followed by the text, that appears whole or not at all: a crash at any moment
// leaves the others as they were. Files in that folder that are no entries are left alone. The same text of
// the same file is kept once, as the newest. The newest MAXIMUM_ENTRIES stay, and of those the newest that
// fit into MAXIMUM_BYTES together; the newest one stays in any case. [main]
class CProjectHistory
{
  public:
    static constexpr std::size_t MAXIMUM_ENTRIES = 100;
    static constexpr std::uint64_t MAXIMUM_BYTES = 64 * 1024 * 1024;

    // Nothing is created before the first keep.
    explicit CProjectHistory(std::filesystem::path projectFolder);

    // Keeps the file's present text, or the text given for it. A relative file is one in the project folder.
    // A missing file is nothing to keep, and fine. False, with the reason in error(), if it could not be
    // kept: then do not overwrite the file.
    [[nodiscard]] bool keep(const std::filesystem::path& file, std::string_view sReason);
    [[nodiscard]] bool keepText(const std::filesystem::path& file, std::string_view sText,
                                std::string_view sReason);

    // All entries, the oldest first.
    [[nodiscard]] std::vector<CHistoryEntry> entries() const;

    // The text of an entry; none if there is no such entry, or its file was damaged.
    [[nodiscard]] std::optional<std::string> text(std::uint32_t uNumber) const;

    // Puts an entry's text back into its file, after keeping what stands there. False, with the reason in
    // error(), if there is no such entry, its file lies outside the project folder, or one of the files could
    // not be written.
    [[nodiscard]] bool restore(std::uint32_t uNumber);

    [[nodiscard]] const std::string& error() const { return m_sError; }

    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder; }

  private:
    [[nodiscard]] std::filesystem::path entryPath(std::uint32_t uNumber) const;
    [[nodiscard]] std::string storedName(const std::filesystem::path& file) const;
    [[nodiscard]] std::uint32_t freeNumber(const std::vector<CHistoryEntry>& list) const;
    void removeSameText(const std::vector<CHistoryEntry>& list, const std::string& sFile, std::uint64_t uHash,
                        std::string_view sText) const;
    void removeSurplus() const;
    bool fail(std::string sReason);

    std::filesystem::path m_projectFolder;
    std::filesystem::path m_folder;
    std::string m_sError;
};

} // namespace velmora
