#pragma once

#include <exception>
#include <filesystem>
#include <string>

namespace velmora {

// Thrown when a wave file of the program's own cannot be read or written. what() is a full sentence for
// the user.
class CFileException : public std::exception
{
  public:
    enum ECause
    {
        genericException = 1, // the system would not open, read or write the file
        badFormat = 6         // it is not a wave file of the kind that is read here
    };

    CFileException(ECause eCause, std::filesystem::path path, const std::string& sReason)
        : m_cause(eCause), m_path(std::move(path)),
          m_sMessage((m_path.empty() ? "The wave" : "The wave file \"" + m_path.string() + '"') + " " +
                     sReason + ".")
    {
    }

    [[nodiscard]] ECause cause() const { return m_cause; }

    // The file, or empty if the caller gave an open stream without a name.
    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    [[nodiscard]] const char* what() const noexcept override { return m_sMessage.c_str(); }

  private:
    ECause m_cause;
    std::filesystem::path m_path;
    std::string m_sMessage;
};

} // namespace velmora
