#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace velmora {

// The log of a build and the marker beside it, as the build watch reads them: the marker stands while the
// build runs and after it has failed, the log appears whole when the build is over.
class CBuildLog
{
  public:
    // sProjectLine is "<Name>.cmake"; sSuccessLine ends the log of a success.
    CBuildLog(std::filesystem::path log, std::filesystem::path marker, std::string sProjectLine,
              std::string sSuccessLine);

    // Removes the log of the build before and sets the marker. [main]
    void begin() const;

    // Writes the log: the text, then the success line, or sError, when it is not empty, as an error of the
    // project. False with the reason in sReason if it cannot be written. [any but audio]
    [[nodiscard]] bool finish(std::string sText, const std::string& sError, std::string& sReason) const;

    [[nodiscard]] const std::filesystem::path& path() const { return m_log; }

  private:
    std::filesystem::path m_log;
    std::filesystem::path m_marker;
    std::string m_sProjectLine;
    std::string m_sSuccessLine;
};

// The text of a log; none if it is not there or, after one more try, cannot be read. A UTF-16 text becomes a
// narrow one, in which "?" stands for what is not ASCII. [main]
[[nodiscard]] std::optional<std::string> readBuildLog(const std::filesystem::path& log, bool bUTF16);

} // namespace velmora
