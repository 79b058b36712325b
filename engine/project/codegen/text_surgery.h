#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

class IUserDialogs;

// The helpers of everything that changes source and project files as text. [main]

// How long a locked file is waited for between two tries (base/patience.h).
inline constexpr std::chrono::milliseconds FILE_RETRY_DELAY{2500};

// Reads a whole file byte for byte, carriage returns and a missing final line end included. A missing file is
// made, empty, unless bDontCreate is set, and the answer is true with an empty text. A file that another
// program has locked is, with bWait, tried again up to nRetries times; false if it stays locked, if the user
// gives up, or if it cannot be read at all, the latter at once.
[[nodiscard]] bool readFileToString(const std::filesystem::path& path, std::string& sText, bool bWait,
                                    int nRetries, bool bDontCreate);

// Puts the text in the file's place, whole or not at all. False if that cannot be done.
[[nodiscard]] bool writeStringToFile(const std::filesystem::path& path, std::string_view sText);

[[nodiscard]] bool fileExists(const std::filesystem::path& path);

// Replaces every occurrence, case-sensitive, in one pass from the start: what was put in is not searched
// again. Answers how many there were.
std::size_t replaceAll(std::string& sText, std::string_view sFrom, std::string_view sTo);

// What find() tells where there is nothing to be found. checkCriticalString() takes a position so that
// std::string::npos becomes it, too.
[[nodiscard]] constexpr std::ptrdiff_t foundAt(std::size_t uPosition)
{
    return uPosition == std::string_view::npos ? -1 : static_cast<std::ptrdiff_t>(uPosition);
}

// After a search: shows a message and answers false if the position is negative. sFile may be empty.
[[nodiscard]] bool checkCriticalString(std::ptrdiff_t nPosition, std::string_view sMarker,
                                       std::string_view sFile, IUserDialogs& dialogs);

// After a read: shows a message and answers false if the text is empty.
[[nodiscard]] bool checkFileString(std::string_view sText, std::string_view sFile, IUserDialogs& dialogs);

} // namespace velmora
