#include "project/codegen/project_text.h"

#include "base/user_dialogs.h"
#include "project/codegen/code_markers.h"
#include "project/codegen/text_surgery.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr std::uintmax_t LARGEST_PROJECT_FILE = 64 * 1024 * 1024;
constexpr int READ_RETRIES = 5;

} // namespace

std::string fitted(std::string_view sFixed, std::string_view sText)
{
    std::string sResult(sFixed);
    if (prevailingLineEnd(sText, {}) == "\r\n")
        replaceAll(sResult, "\n", "\r\n");
    return sResult;
}

std::optional<CTextRange> findBetween(std::string_view sText, std::string_view sOpen, std::string_view sClose,
                                      CTextRange within)
{
    const auto uEnd = std::min(within.m_uEnd, sText.size());
    const auto uOpen = sText.substr(0, uEnd).find(sOpen, within.m_uBegin);
    if (uOpen == sText.npos)
        return std::nullopt;
    const auto uClose = sText.substr(0, uEnd).find(sClose, uOpen + sOpen.size());
    if (uClose == sText.npos)
        return std::nullopt;
    return CTextRange{uOpen + sOpen.size(), uClose};
}

std::vector<std::string> quotedValues(std::string_view sText, std::string_view sOpen)
{
    std::vector<std::string> values;
    CTextRange rest{0, sText.npos};
    while (const auto value = findBetween(sText, sOpen, "\"", rest)) {
        values.emplace_back(sText.substr(value->m_uBegin, value->m_uEnd - value->m_uBegin));
        rest.m_uBegin = value->m_uEnd;
    }
    return values;
}

bool isPlainFileName(std::string_view sName)
{
    return !sName.empty() && sName != "." && sName != ".." && std::ranges::none_of(sName, [](char c) {
        return c == '/' || c == '\\' || c == ':' || static_cast<unsigned char>(c) < ' ';
    });
}

std::string withPlatformSeparators(std::string sPath)
{
    if (std::filesystem::path::preferred_separator != '\\')
        std::ranges::replace(sPath, '\\', '/');
    return sPath;
}

void addChanged(std::vector<std::filesystem::path>& changed, const std::filesystem::path& file)
{
    if (std::ranges::find(changed, file) == changed.end())
        changed.push_back(file);
}

std::optional<std::string> readProjectFile(const std::filesystem::path& path)
{
    std::error_code error;
    const auto uSize = std::filesystem::file_size(path, error);
    std::string sText;
    if (error || uSize > LARGEST_PROJECT_FILE || !readFileToString(path, sText, true, READ_RETRIES, true))
        return std::nullopt;
    return sText;
}

CEditedFile::CEditedFile(std::filesystem::path path, IUserDialogs& dialogs)
    : m_path(std::move(path)), m_dialogs(dialogs), m_bPresent(fileExists(m_path)),
      m_sOriginal(readProjectFile(m_path).value_or("")), m_sText(m_sOriginal)
{
}

bool CEditedFile::check() const
{
    return checkFileString(m_sText, m_path.string(), m_dialogs);
}

std::optional<std::size_t> CEditedFile::critical(std::string_view sMarker, std::size_t uFrom) const
{
    const auto uFound = m_sText.find(sMarker, uFrom);
    if (!checkCriticalString(foundAt(uFound), sMarker, m_path.string(), m_dialogs))
        return std::nullopt;
    return uFound;
}

bool CEditedFile::save(std::vector<std::filesystem::path>& changed) const
{
    return !isChanged() || writeChangedFile(m_path, m_sText, m_dialogs, changed);
}

bool writeChangedFile(const std::filesystem::path& path, std::string_view sText, IUserDialogs& dialogs,
                      std::vector<std::filesystem::path>& changed)
{
    if (readProjectFile(path) == sText)
        return true;
    if (!writeStringToFile(path, sText)) {
        dialogs.showMessage("Could not write the file: " + path.string() +
                            "\n\nCheck permissions and disc space.");
        return false;
    }
    addChanged(changed, path);
    return true;
}

} // namespace velmora
