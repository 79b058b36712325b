#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// One earlier text of a source file.
struct CHistoryEntry
{
    std::uint32_t m_uNumber = 0;     // higher is newer; never used twice while the entry stands
    std::chrono::sys_seconds m_time; // when it was replaced, UTC
    std::string m_sFile;             // path within the project folder; absolute if it lies outside
    std::string m_sReason;           // what replaced it, one line
    std::uint64_t m_uSize = 0;       // bytes of the text
};

// An entry with what its file says beside it.
struct CStoredHistoryEntry
{
    CHistoryEntry m_entry;
    std::uint64_t m_uHash;      // hashOfText() of the text
    std::uint64_t m_uTextStart; // where in the file the text begins
};

// What stands ahead of the text in an entry's file. Reasons are cut after 1024 bytes.
[[nodiscard]] std::string historyEntryHeader(const CHistoryEntry& entry, std::uint64_t uHash);

// Reads an entry's file but for the text. None if it is no such file or is cut short.
[[nodiscard]] std::optional<CStoredHistoryEntry> readHistoryEntry(const std::filesystem::path& path,
                                                                  std::uint32_t uNumber);

// Reads the text. None if it is damaged.
[[nodiscard]] std::optional<std::string> readHistoryText(const std::filesystem::path& path,
                                                         const CStoredHistoryEntry& stored);

// Tells texts apart and finds damage: eight bytes at a time, each step mixing all bits. Source of the mixing:
// S. Vigna, SplitMix64.
[[nodiscard]] std::uint64_t hashOfText(std::string_view sText);

} // namespace velmora
