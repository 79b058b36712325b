#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

// A file that is written beside its target and takes the target's place only when it is complete: a
// crash, a full disk or an abandoned write leaves the old file whole. [main]
class CSafeFile
{
  public:
    // Chooses an unused name beside target. Nothing is created yet.
    explicit CSafeFile(std::filesystem::path target);

    // Removes the unfinished file unless commit() succeeded.
    ~CSafeFile();

    CSafeFile(const CSafeFile&) = delete;
    CSafeFile& operator=(const CSafeFile&) = delete;

    // Where to write. The name keeps the target's extension.
    [[nodiscard]] const std::filesystem::path& path() const { return m_temporary; }

    // Flushes what was written to the disk and renames it to the target, keeping the permissions of a
    // file that stood there. On failure returns false with the reason in error().
    [[nodiscard]] bool commit();

    [[nodiscard]] const std::string& error() const { return m_sError; }

  private:
    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    std::string m_sError;
    bool m_bCommitted = false;
};

// Writes a whole file safely. On failure returns false with the reason in sError, if given; the old
// file stands as it was. [main]
[[nodiscard]] bool writeFileSafely(const std::filesystem::path& path, std::string_view sContents,
                                   std::string* sError = nullptr);

// Removes what every CSafeFile of the process has not committed yet. For a program that is about to die
// of a fault: safe in a signal handler, and of no use to a program that goes on.
void removeUnfinishedFiles() noexcept;

} // namespace velmora
