#include "project/compiler/build_log.h"

#include "project/compiler/file_stamp.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

namespace velmora {

namespace {

constexpr std::chrono::milliseconds RETRY_AFTER{50};

std::string narrowText(const std::string& sBytes)
{
    const bool bBigEndian = sBytes.starts_with("\xFE\xFF");
    const bool bMarked = bBigEndian || sBytes.starts_with("\xFF\xFE");
    if (!bMarked && sBytes.find('\0') == std::string::npos)
        return sBytes; // some versions write it narrow
    std::string sResult;
    for (std::size_t uByte = bMarked ? 2 : 0; uByte + 1 < sBytes.size(); uByte += 2) {
        const auto uHigh = static_cast<unsigned char>(sBytes[uByte + (bBigEndian ? 0 : 1)]);
        const auto uLow = static_cast<unsigned char>(sBytes[uByte + (bBigEndian ? 1 : 0)]);
        sResult += uHigh == 0 && uLow < 0x80 ? static_cast<char>(uLow) : '?';
    }
    return sResult;
}

} // namespace

CBuildLog::CBuildLog(std::filesystem::path log, std::filesystem::path marker, std::string sProjectLine,
                     std::string sSuccessLine)
    : m_log(std::move(log)), m_marker(std::move(marker)), m_sProjectLine(std::move(sProjectLine)),
      m_sSuccessLine(std::move(sSuccessLine))
{
}

void CBuildLog::begin() const
{
    std::error_code ignored;
    std::filesystem::remove(m_log, ignored);
    static_cast<void>(replaceBuildFile(m_marker, "")); // the log alone still tells the result
}

bool CBuildLog::finish(std::string sText, const std::string& sError, std::string& sReason) const
{
    if (!sText.empty() && sText.back() != '\n')
        sText += '\n';
    std::error_code ignored;
    if (sError.empty())
        std::filesystem::remove(m_marker, ignored);
    sText += (sError.empty() ? m_sSuccessLine : m_sProjectLine + " : error : " + sError) + "\n";
    if (replaceBuildFile(m_log, sText))
        return true;
    sReason = std::strerror(errno);
    return false;
}

std::optional<std::string> readBuildLog(const std::filesystem::path& log, bool bUTF16)
{
    auto sContents = contentsOfFile(log);
    std::error_code error;
    if (!sContents && std::filesystem::exists(log, error)) {
        std::this_thread::sleep_for(RETRY_AFTER);
        sContents = contentsOfFile(log);
    }
    if (sContents && bUTF16)
        sContents = narrowText(*sContents);
    return sContents;
}

} // namespace velmora
