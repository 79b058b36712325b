#include "project/codegen/project_history.h"

#include "base/platform_file_read.h"
#include "base/safe_file.h"
#include "project/codegen/text_surgery.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace velmora {

namespace {

constexpr std::string_view SUFFIX = ".earlier";
constexpr std::uint32_t LAST_NUMBER = 999999999;
constexpr auto AGE_OF_LEFTOVERS = std::chrono::hours(1);

std::optional<std::uint32_t> numberOf(const std::filesystem::path& path)
{
    if (path.extension() != SUFFIX)
        return std::nullopt;
    const std::string sStem = path.stem().string();
    std::uint32_t uNumber = 0;
    const auto end = std::from_chars(sStem.data(), sStem.data() + sStem.size(), uNumber);
    const bool bWhole = end.ec == std::errc() && end.ptr == sStem.data() + sStem.size();
    return bWhole && uNumber > 0 && uNumber <= LAST_NUMBER ? std::optional(uNumber) : std::nullopt;
}

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator file(folder, error), end; !error && file != end;
         file.increment(error))
        files.push_back(file->path());
    return files;
}

// What a write that was cut short left: hidden, with the suffix of an entry, and old.
bool isLeftover(const std::filesystem::path& path)
{
    const std::string sName = path.filename().string();
    std::error_code error;
    const auto time = std::filesystem::last_write_time(path, error);
    return sName.starts_with('.') && sName.ends_with(".part" + std::string(SUFFIX)) && !error &&
           time < std::filesystem::file_time_type::clock::now() - AGE_OF_LEFTOVERS;
}

bool staysInside(const std::filesystem::path& path)
{
    return path.is_relative() && !path.empty() &&
           std::ranges::none_of(path, [](const auto& part) { return part == ".."; });
}

} // namespace

CProjectHistory::CProjectHistory(std::filesystem::path projectFolder)
    : m_projectFolder(std::move(projectFolder)), m_folder(m_projectFolder / ".velmora" / "history")
{
}

bool CProjectHistory::keep(const std::filesystem::path& file, std::string_view sReason)
{
    std::string sText;
    switch (readFileUnlessLocked(m_projectFolder / file, sText)) {
    case EFileRead::done:
        return keepText(file, sText, sReason);
    case EFileRead::missing:
        return true;
    default:
        return fail("it cannot be read");
    }
}

bool CProjectHistory::keepText(const std::filesystem::path& file, std::string_view sText,
                               std::string_view sReason)
{
    std::error_code error;
    std::filesystem::create_directories(m_folder, error);
    if (error)
        return fail(error.message());
    const std::uint32_t uNumber = freeNumber(entries());
    const std::vector<CHistoryEntry> list = entries();
    const CHistoryEntry entry{uNumber,
                              std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()),
                              storedName(file), std::string(sReason), sText.size()};
    const std::uint64_t uHash = hashOfText(sText);
    CSafeFile entryFile(entryPath(uNumber));
    std::ofstream stream(entryFile.path(), std::ios::binary);
    stream << historyEntryHeader(entry, uHash) << sText;
    stream.close();
    if (!stream)
        return fail("the disk is full, or the folder cannot be written to");
    if (!entryFile.commit())
        return fail(entryFile.error());
    removeSameText(list, entry.m_sFile, uHash, sText);
    removeSurplus();
    return true;
}

std::vector<CHistoryEntry> CProjectHistory::entries() const
{
    std::vector<CHistoryEntry> list;
    for (const auto& path : filesOf(m_folder))
        if (const auto uNumber = numberOf(path); uNumber && entryPath(*uNumber) == path)
            if (auto stored = readHistoryEntry(path, *uNumber))
                list.push_back(std::move(stored->m_entry));
    std::ranges::sort(list, {}, &CHistoryEntry::m_uNumber);
    return list;
}

std::optional<std::string> CProjectHistory::text(std::uint32_t uNumber) const
{
    const auto stored = readHistoryEntry(entryPath(uNumber), uNumber);
    return stored ? readHistoryText(entryPath(uNumber), *stored) : std::nullopt;
}

bool CProjectHistory::restore(std::uint32_t uNumber)
{
    const auto stored = readHistoryEntry(entryPath(uNumber), uNumber);
    const auto sText = text(uNumber);
    if (!stored)
        return fail("there is no entry " + std::to_string(uNumber));
    if (!sText)
        return fail("entry " + std::to_string(uNumber) + " is damaged");
    const std::filesystem::path file = stored->m_entry.m_sFile;
    if (!staysInside(file))
        return fail(file.string() + " lies outside the project's folder; copy the text there yourself");
    std::string sPresent;
    const std::filesystem::path path = m_projectFolder / file;
    const EFileRead eRead = readFileUnlessLocked(path, sPresent);
    if (eRead != EFileRead::done && eRead != EFileRead::missing)
        return fail(path.string() + " cannot be read");
    if (eRead == EFileRead::done && sPresent == *sText)
        return true;
    if (eRead == EFileRead::done && !keepText(file, sPresent, "restore of " + std::to_string(uNumber)))
        return false;
    std::error_code ignored; // the write tells
    std::filesystem::create_directories(path.parent_path(), ignored);
    return writeFileSafely(path, *sText, &m_sError);
}

std::filesystem::path CProjectHistory::entryPath(std::uint32_t uNumber) const
{
    return m_folder / (std::to_string(uNumber) + std::string(SUFFIX));
}

// Relative to the project folder if the file lies in it.
std::string CProjectHistory::storedName(const std::filesystem::path& file) const
{
    const auto path = (m_projectFolder / file).lexically_normal();
    const auto relative = path.lexically_relative(m_projectFolder.lexically_normal());
    return staysInside(relative) ? relative.string() : path.string();
}

// The number behind the newest entry that no file has. Where a number is so high that there is none behind
// it, all entries are numbered anew, in their order.
std::uint32_t CProjectHistory::freeNumber(const std::vector<CHistoryEntry>& list) const
{
    std::uint32_t uNumber = list.empty() ? 1 : list.back().m_uNumber + 1;
    if (uNumber > LAST_NUMBER) {
        uNumber = 1;
        std::error_code ignored;
        for (const CHistoryEntry& entry : list) {
            while (uNumber < entry.m_uNumber && fileExists(entryPath(uNumber)))
                ++uNumber;
            if (uNumber < entry.m_uNumber)
                std::filesystem::rename(entryPath(entry.m_uNumber), entryPath(uNumber), ignored);
        }
    }
    while (fileExists(entryPath(uNumber)))
        ++uNumber;
    return uNumber;
}

void CProjectHistory::removeSameText(const std::vector<CHistoryEntry>& list, const std::string& sFile,
                                     std::uint64_t uHash, std::string_view sText) const
{
    std::error_code ignored;
    for (const CHistoryEntry& entry : list) {
        if (entry.m_sFile != sFile || entry.m_uSize != sText.size())
            continue;
        const auto stored = readHistoryEntry(entryPath(entry.m_uNumber), entry.m_uNumber);
        if (stored && stored->m_uHash == uHash && text(entry.m_uNumber) == sText)
            std::filesystem::remove(entryPath(entry.m_uNumber), ignored);
    }
}

void CProjectHistory::removeSurplus() const
{
    std::error_code ignored;
    for (const auto& path : filesOf(m_folder))
        if (isLeftover(path))
            std::filesystem::remove(path, ignored);
    std::vector<CHistoryEntry> list = entries();
    std::ranges::reverse(list);
    std::uint64_t uBytes = 0;
    for (std::size_t i = 0; i < list.size(); ++i) {
        uBytes += list[i].m_uSize;
        if (i > 0 && (i >= MAXIMUM_ENTRIES || uBytes > MAXIMUM_BYTES))
            std::filesystem::remove(entryPath(list[i].m_uNumber), ignored);
    }
}

bool CProjectHistory::fail(std::string sReason)
{
    m_sError = std::move(sReason);
    return false;
}

} // namespace velmora
