#include "host/settings.h"

#include "base/safe_file.h"
#include "base/text.h"

#include <algorithm>
#include <fstream>
#include <optional>

namespace velmora {

namespace {

constexpr std::size_t MAX_FILE = 1024 * 1024; // bytes

// Up to a little more than a settings file can have; empty if the file cannot be opened.
// Its first bytes, up to a little more than the largest settings file; none if a read fails. A file that
// cannot be opened is empty.
std::optional<std::string> beginningOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string sContents;
    std::array<char, 16384> block;
    while (stream && sContents.size() <= MAX_FILE) {
        stream.read(block.data(), block.size());
        sContents.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (stream.bad())
        return std::nullopt;
    return sContents;
}

// Takes the next line off the front, without its line end and carriage returns ahead of that.
std::string_view takeLine(std::string_view& sRest)
{
    const auto uEnd = std::min(sRest.find('\n'), sRest.size());
    std::string_view sLine = sRest.substr(0, uEnd);
    sRest.remove_prefix(std::min(uEnd + 1, sRest.size()));
    while (sLine.ends_with('\r'))
        sLine.remove_suffix(1);
    return sLine;
}

// Why these contents cannot be those of a settings file; empty if they can.
std::string whyNotSettings(std::string_view sContents)
{
    if (sContents.size() > MAX_FILE)
        return "it is larger than 1 MiB";
    for (int nLine = 1; !sContents.empty(); ++nLine)
        if (takeLine(sContents).size() > MAX_SETTING_LINE)
            return formatted("its line %d is longer than %zu bytes", nLine, MAX_SETTING_LINE);
    return {};
}

bool isGone(const std::string& sFile)
{
    std::error_code ignored;
    return std::filesystem::status(sFile, ignored).type() == std::filesystem::file_type::not_found;
}

bool isLine(int nLine)
{
    return nLine >= 1 && nLine <= static_cast<int>(SETTING_COUNT);
}

} // namespace

CSettings::CSettings(const std::filesystem::path& userFolder)
{
    setDefaults(userFolder);
}

bool CSettings::load(const std::filesystem::path& file, const std::filesystem::path& userFolder,
                     std::string& sError)
{
    setDefaults(userFolder);
    m_refusedFile.clear();
    std::error_code ignored;
    const auto status = std::filesystem::status(file, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        return refuse(file, "it is not a regular file", sError);
    const auto contents = beginningOf(file);
    const std::string sReason = contents ? whyNotSettings(*contents) : "it cannot be read to its end";
    if (!sReason.empty())
        return refuse(file, sReason, sError);
    readLines(*contents);
    if (!defaultWAVFile().empty() && isGone(defaultWAVFile()))
        at("m_sDefaultWAVFile") = std::string();
    return save(file, sError);
}

bool CSettings::save(const std::filesystem::path& file, std::string& sError) const
{
    if (!m_refusedFile.empty() && file == m_refusedFile) {
        sError = "The settings were not saved: " + file.string() +
                 " is no settings file of this program. Move it away first.";
        return false;
    }
    std::string sContents;
    for (const CSettingRow& row : settingsTable())
        sContents += text(row.m_nLine) + "\n";
    std::error_code error;
    if (file.has_parent_path())
        std::filesystem::create_directories(file.parent_path(), error);
    std::string sReason = error.message();
    if (!error && writeFileSafely(file, sContents, &sReason))
        return true;
    sError = "The settings file " + file.string() + " could not be written: " + sReason +
             ". What was there is untouched; see that the folder can be written and the disk has room.";
    return false;
}

std::string CSettings::text(int nLine) const
{
    return isLine(nLine) ? settingText(m_values[static_cast<std::size_t>(nLine) - 1]) : std::string();
}

bool CSettings::set(int nLine, std::string_view sText, std::string& sError)
{
    if (!isLine(nLine)) {
        sError =
            formatted("There is no line %d: the settings file has lines 1 to %zu.", nLine, SETTING_COUNT);
        return false;
    }
    const CSettingRow& row = settingsTable()[static_cast<std::size_t>(nLine) - 1];
    const bool bOtherVersion = nLine == 1 && trimmed(sText) != text(1);
    const std::string sTaken = bOtherVersion ? "only " + text(1) + ", the version of the file's format"
                                             : whatSettingTakes(row.m_eType, sText);
    if (!sTaken.empty()) {
        const std::string sShown(sText.substr(0, 80));
        sError = formatted("Line %d (%s) takes %s, not \"%s\".", nLine, std::string(row.m_sName).c_str(),
                           sTaken.c_str(), sShown.c_str());
        return false;
    }
    m_values[static_cast<std::size_t>(nLine) - 1] = parsedSetting(row.m_eType, sText);
    return true;
}

CSettingValue& CSettings::at(std::string_view sName)
{
    return m_values.at(static_cast<std::size_t>(settingLine(sName)) - 1);
}

void CSettings::setName(std::string_view sSetting, std::string_view sName)
{
    std::string sKept(sName.substr(0, MAX_SETTING_LINE));
    std::erase_if(sKept, [](char c) { return c == '\r' || c == '\n'; });
    at(sSetting) = std::move(sKept);
}

void CSettings::setDefaults(const std::filesystem::path& userFolder)
{
    m_uFormatVersionRead = SETTINGS_FORMAT_VERSION;
    for (const CSettingRow& row : settingsTable())
        m_values[static_cast<std::size_t>(row.m_nLine) - 1] =
            parsedSetting(row.m_eType, settingDefault(row, userFolder));
}

bool CSettings::refuse(const std::filesystem::path& file, const std::string& sReason, std::string& sError)
{
    m_refusedFile = file;
    sError = "The settings file " + file.string() + " cannot be used: " + sReason +
             ". It is left as it is and the settings have their defaults; move it away to begin a new one.";
    return false;
}

void CSettings::readLines(std::string_view sContents)
{
    for (const CSettingRow& row : settingsTable()) {
        if (sContents.empty())
            return;
        const std::string_view sLine = takeLine(sContents);
        if (row.m_nLine == 1)
            m_uFormatVersionRead = std::get<unsigned>(parsedSetting(row.m_eType, sLine));
        else
            m_values[static_cast<std::size_t>(row.m_nLine) - 1] = parsedSetting(row.m_eType, sLine);
    }
}

} // namespace velmora
