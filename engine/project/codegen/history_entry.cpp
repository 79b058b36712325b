#include "project/codegen/history_entry.h"

#include "base/platform_file_read.h"
#include "base/text.h"

#include <charconv>
#include <cinttypes>
#include <fstream>

namespace velmora {

namespace {

// An entry's file: these lines, an empty one, then the text as it was.
//     velmora history 1
//     time <seconds since 1970>
//     file <path, escaped>
//     reason <escaped>
//     size <bytes of the text>
//     hash <hashOfText() of the text, hexadecimal>
constexpr std::string_view SIGNATURE = "velmora history 1";
constexpr std::size_t MAXIMUM_HEADER = 16384;
constexpr std::size_t MAXIMUM_REASON = 1024;
constexpr std::int64_t LAST_TIME = 253402300799; // the end of the year 9999

template <typename T>
std::optional<T> wholeNumber(std::string_view sText, int nBase = 10)
{
    T value{};
    const auto end = std::from_chars(sText.data(), sText.data() + sText.size(), value, nBase);
    if (end.ec != std::errc() || end.ptr != sText.data() + sText.size())
        return std::nullopt;
    return value;
}

// On one line, whatever bytes a file name holds.
std::string escaped(std::string_view sText)
{
    std::string sResult;
    for (const char c : sText) {
        if (c == '\\')
            sResult += "\\\\";
        else if (c == '\n')
            sResult += "\\n";
        else
            sResult += c;
    }
    return sResult;
}

std::string unescaped(std::string_view sText)
{
    std::string sResult;
    for (std::size_t i = 0; i < sText.size(); ++i) {
        const bool bEscape = sText[i] == '\\' && i + 1 < sText.size();
        if (!bEscape)
            sResult += sText[i];
        else
            sResult += sText[++i] == 'n' ? '\n' : sText[i];
    }
    return sResult;
}

// The value of the next line, which must begin with the key; the line is taken off.
std::optional<std::string_view> takeLine(std::string_view& sText, std::string_view sKey)
{
    const auto uEnd = sText.find('\n');
    if (uEnd == std::string_view::npos || !sText.starts_with(sKey))
        return std::nullopt;
    const std::string_view sValue = sText.substr(sKey.size(), uEnd - sKey.size());
    sText.remove_prefix(uEnd + 1);
    return sValue;
}

std::optional<CStoredHistoryEntry> parseHeader(std::string_view sBeginning, std::uint32_t uNumber)
{
    std::string_view sRest = sBeginning;
    const auto sSignature = takeLine(sRest, SIGNATURE);
    const auto sTime = takeLine(sRest, "time ");
    const auto sFile = takeLine(sRest, "file ");
    const auto sReason = takeLine(sRest, "reason ");
    const auto sSize = takeLine(sRest, "size ");
    const auto sHash = takeLine(sRest, "hash ");
    if (sSignature != "" || !sTime || !sFile || !sReason || !sSize || !sHash || !takeLine(sRest, ""))
        return std::nullopt;
    const auto nTime = wholeNumber<std::int64_t>(*sTime);
    const auto uSize = wholeNumber<std::uint64_t>(*sSize);
    const auto uHash = wholeNumber<std::uint64_t>(*sHash, 16);
    if (!nTime || *nTime < 0 || *nTime > LAST_TIME || !uSize || !uHash || sFile->empty())
        return std::nullopt;
    return CStoredHistoryEntry{{uNumber, std::chrono::sys_seconds(std::chrono::seconds(*nTime)),
                                unescaped(*sFile), unescaped(*sReason), *uSize},
                               *uHash,
                               sBeginning.size() - sRest.size()};
}

} // namespace

std::uint64_t hashOfText(std::string_view sText)
{
    std::uint64_t uHash = sText.size();
    for (std::size_t i = 0; i < sText.size(); i += 8) {
        std::uint64_t uWord = 0;
        for (std::size_t k = 0; k < 8 && i + k < sText.size(); ++k)
            uWord |= static_cast<std::uint64_t>(static_cast<unsigned char>(sText[i + k])) << (8 * k);
        uHash = (uHash ^ uWord) + 0x9E3779B97F4A7C15u;
        uHash = (uHash ^ (uHash >> 30)) * 0xBF58476D1CE4E5B9u;
        uHash = (uHash ^ (uHash >> 27)) * 0x94D049BB133111EBu;
        uHash ^= uHash >> 31;
    }
    return uHash;
}

std::string historyEntryHeader(const CHistoryEntry& entry, std::uint64_t uHash)
{
    std::string sHeader(SIGNATURE);
    sHeader.append("\ntime ").append(std::to_string(entry.m_time.time_since_epoch().count()));
    sHeader.append("\nfile ").append(escaped(entry.m_sFile));
    sHeader.append("\nreason ").append(escaped(entry.m_sReason.substr(0, MAXIMUM_REASON)));
    sHeader.append("\nsize ").append(std::to_string(entry.m_uSize));
    return sHeader.append("\nhash ").append(formatted("%016" PRIx64, uHash)).append("\n\n");
}

std::optional<CStoredHistoryEntry> readHistoryEntry(const std::filesystem::path& path, std::uint32_t uNumber)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt;
    std::string sBeginning(MAXIMUM_HEADER, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(sBeginning.data(), static_cast<std::streamsize>(sBeginning.size()));
    sBeginning.resize(static_cast<std::size_t>(file.gcount()));
    auto header = parseHeader(sBeginning, uNumber);
    const auto uFileSize = std::filesystem::file_size(path, error);
    if (!header || error || uFileSize - header->m_uTextStart != header->m_entry.m_uSize)
        return std::nullopt;
    return header;
}

std::optional<std::string> readHistoryText(const std::filesystem::path& path,
                                           const CStoredHistoryEntry& stored)
{
    std::string sContents;
    if (readFileUnlessLocked(path, sContents) != EFileRead::done || sContents.size() < stored.m_uTextStart)
        return std::nullopt;
    sContents.erase(0, stored.m_uTextStart);
    return hashOfText(sContents) == stored.m_uHash ? std::optional(std::move(sContents)) : std::nullopt;
}

} // namespace velmora
