#pragma once

#include <filesystem>
#include <string>

namespace velmora {

enum class EFileRead
{
    done,
    missing,
    locked, // another program holds the file; it may be free again in a moment
    failed  // not readable, or above 1 GiB; waiting will not help
};

// Reads a whole file byte for byte, unless another program is writing it: the system calls the file busy, or
// somebody holds a write lock on it (of flock() or fcntl()). A file without permission to read it is no
// locked one. The text is empty unless the answer is done. [main]
[[nodiscard]] EFileRead readFileUnlessLocked(const std::filesystem::path& path, std::string& sText);

} // namespace velmora
