#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class IUserDialogs;

// What all surgery on project files shares. Fixed strings have plain line ends and are fitted to the text's
// own, so that carriage returns and byte order marks survive. [main]

// From the first character to one behind the last.
struct CTextRange
{
    std::size_t m_uBegin;
    std::size_t m_uEnd;
};

// The fixed string with the line ends that most lines of the text have.
[[nodiscard]] std::string fitted(std::string_view sFixed, std::string_view sText);

// What stands between the first sOpen and the next sClose within the range; none if either is missing.
[[nodiscard]] std::optional<CTextRange> findBetween(std::string_view sText, std::string_view sOpen,
                                                    std::string_view sClose,
                                                    CTextRange within = {0, std::string_view::npos});

// Every value behind sOpen up to the next quote.
[[nodiscard]] std::vector<std::string> quotedValues(std::string_view sText, std::string_view sOpen);

// A name without any folder, and not one of the folder's own.
[[nodiscard]] bool isPlainFileName(std::string_view sName);

// A path out of a file that was written on any platform, with this one's separators.
[[nodiscard]] std::string withPlatformSeparators(std::string sPath);

// Adds the file unless it is listed already.
void addChanged(std::vector<std::filesystem::path>& changed, const std::filesystem::path& file);

// The file's text, waiting for a locked one; none if it is missing, cannot be read, or is larger than any
// project file (64 MiB).
[[nodiscard]] std::optional<std::string> readProjectFile(const std::filesystem::path& path);

// A file that is changed as text: read once, written once and only if the text is another then.
class CEditedFile
{
  public:
    CEditedFile(std::filesystem::path path, IUserDialogs& dialogs);

    // The file is there. One that is not has nothing to be changed in it.
    [[nodiscard]] bool isPresent() const { return m_bPresent; }

    // The text could be read and is not empty; shows why not.
    [[nodiscard]] bool check() const;

    // A marker that the next step needs: where it stands from uFrom on; shows that it is missing.
    [[nodiscard]] std::optional<std::size_t> critical(std::string_view sMarker, std::size_t uFrom = 0) const;

    [[nodiscard]] std::string& text() { return m_sText; }
    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] bool isChanged() const { return m_sText != m_sOriginal; }

    // Writes a changed text and appends the file. A failure is shown.
    bool save(std::vector<std::filesystem::path>& changed) const;

  private:
    std::filesystem::path m_path;
    IUserDialogs& m_dialogs;
    bool m_bPresent = false;
    std::string m_sOriginal;
    std::string m_sText;
};

// Writes a text where it is another one than the file's, and appends the file. A failure is shown.
bool writeChangedFile(const std::filesystem::path& path, std::string_view sText, IUserDialogs& dialogs,
                      std::vector<std::filesystem::path>& changed);

} // namespace velmora
