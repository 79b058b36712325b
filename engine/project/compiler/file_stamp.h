#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// What the system notes about a file whenever it is written, replaced or renamed. Two different states of a
// file can share a stamp only when the second came within the same tick of the system's clock, at most some
// milliseconds: isSettledAt() tells when that is ruled out. [any]
class CFileStamp
{
  public:
    // None if there is no such regular file.
    [[nodiscard]] static std::optional<CFileStamp> of(const std::filesystem::path& file);

    // Reads what text() wrote.
    [[nodiscard]] static std::optional<CFileStamp> fromText(std::string_view sText);
    [[nodiscard]] std::string text() const;

    // Whether the file had rested for a while at that time, so that any write after it shows in the stamp.
    [[nodiscard]] bool isSettledAt(std::int64_t nNanoseconds) const;

    // The time of day as isSettledAt() takes it, in ns since 1970.
    [[nodiscard]] static std::int64_t now();

    bool operator==(const CFileStamp&) const = default;

  private:
    std::uint64_t m_uSize = 0;
    std::uint64_t m_uInode = 0;
    std::int64_t m_nModified = 0; // ns since 1970; anybody can set it
    std::int64_t m_nChanged = 0;  // ns since 1970; only the system sets it
};

// FNV-1a over 64 bits, which a change of one byte always changes. [any]
[[nodiscard]] std::uint64_t contentHash(std::string_view sContents);

// The file's whole contents; none if it cannot be read. [any]
[[nodiscard]] std::optional<std::string> contentsOfFile(const std::filesystem::path& file);

// Writes a file that a build makes: whole or not at all, but without waiting for the disc, because what a
// crash spoils is made again. False, with errno set, if it cannot be written. [any]
[[nodiscard]] bool replaceBuildFile(const std::filesystem::path& file, std::string_view sContents);

// 16 hexadecimal digits, and back.
[[nodiscard]] std::string hashText(std::uint64_t uHash);
[[nodiscard]] std::optional<std::uint64_t> hashFromText(std::string_view sText);

} // namespace velmora
