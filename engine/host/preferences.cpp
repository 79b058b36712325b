#include "host/preferences.h"

#include "base/safe_file.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <optional>

namespace velmora {

namespace {

constexpr std::uintmax_t MAX_FILE_SIZE = 65536;

constexpr std::array TABLE = {
    CPreferenceRow{START_FROM_INITIAL_VALUES, false,
                   "After a rebuild the controls take their initial values instead of those they had."},
    CPreferenceRow{PROTECT_SPEAKERS, true,
                   "What is played on a device is limited to +24 dBFS; files and measurements are not."},
    CPreferenceRow{CROSS_FADE_SWAPS, true,
                   "A filter that is swapped while audio runs is faded out for 10 ms while the new one is "
                   "faded in."},
};

const CPreferenceRow* findRow(std::string_view sName)
{
    const auto found = std::ranges::find(TABLE, sName, &CPreferenceRow::m_sName);
    return found == TABLE.end() ? nullptr : &*found;
}

std::optional<bool> truthOf(std::string_view sText)
{
    if (equalsIgnoreCase(trimmed(sText), "true"))
        return true;
    if (equalsIgnoreCase(trimmed(sText), "false"))
        return false;
    return {};
}

} // namespace

std::span<const CPreferenceRow> preferenceTable()
{
    return TABLE;
}

bool CPreferences::load(const std::filesystem::path& file, std::string& sError)
{
    *this = {};
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        return true;
    const bool bReadable = std::filesystem::is_regular_file(file, error) &&
                           std::filesystem::file_size(file, error) <= MAX_FILE_SIZE;
    std::ifstream stream(file, std::ios::binary);
    if (!bReadable || error || !stream) {
        m_bUsable = false;
        sError = "The preferences " + file.string() +
                 " cannot be read. The defaults are used; move the file away or mend it.";
        return false;
    }
    const std::string sContents((std::istreambuf_iterator<char>(stream)), {});
    for (const std::string& sLine : split(sContents, '\n')) {
        const std::size_t uEquals = sLine.find('=');
        const std::string_view sName = trimmed(std::string_view(sLine).substr(0, uEquals));
        const auto value = uEquals == std::string::npos
                               ? std::nullopt
                               : truthOf(std::string_view(sLine).substr(uEquals + 1));
        if (findRow(sName) && value)
            m_values[std::string(sName)] = *value;
        else if (!trimmed(sLine).empty())
            m_sOtherLines += sLine + "\n";
    }
    return true;
}

bool CPreferences::save(const std::filesystem::path& file, std::string& sError) const
{
    if (!m_bUsable) {
        sError = "The preferences " + file.string() + " could not be read and are not replaced.";
        return false;
    }
    std::string sContents = m_sOtherLines;
    for (const CPreferenceRow& row : TABLE)
        sContents += std::string(row.m_sName) + " = " + (isOn(row.m_sName) ? "true\n" : "false\n");
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    std::string sReason;
    if (writeFileSafely(file, sContents, &sReason))
        return true;
    sError = "The preferences " + file.string() + " could not be written: " + sReason + ".";
    return false;
}

bool CPreferences::isOn(std::string_view sName) const
{
    const auto found = m_values.find(sName);
    if (found != m_values.end())
        return found->second;
    const CPreferenceRow* pRow = findRow(sName);
    return pRow && pRow->m_bDefault;
}

bool CPreferences::set(std::string_view sName, std::string_view sText, std::string& sError)
{
    const auto value = truthOf(sText);
    if (!findRow(sName))
        sError = "There is no preference \"" + std::string(sName) + "\".";
    else if (!value)
        sError = "The preference \"" + std::string(sName) + "\" is true or false, not \"" +
                 std::string(sText) + "\".";
    else
        m_values[std::string(sName)] = *value;
    return findRow(sName) && value;
}

} // namespace velmora
