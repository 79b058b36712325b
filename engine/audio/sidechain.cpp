#include "audio/sidechain.h"

#include "base/user_dialogs.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr int MAX_SIDECHAIN_CHANNELS = 2;

} // namespace

bool CSidechain::load(const std::filesystem::path& path, IUserDialogs& dialogs)
{
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        return false;
    close();
    CSoundFile file;
    std::string sReason;
    if (!file.openForReading(path, sReason) || file.info().m_nChannels > MAX_SIDECHAIN_CHANNELS) {
        dialogs.showMessage("Failed to open Sidechain WAV file - Possible invalid file: Velmora does not "
                            "support compressed WAV Files.");
        m_path.clear();
        return false;
    }
    m_path = path;
    return true;
}

bool CSidechain::openForStream(int nMaxFrames)
{
    close();
    std::string sReason;
    if (m_path.empty() || !m_file.openForReading(m_path, sReason))
        return false;
    m_buffer.assign(
        static_cast<std::size_t>(nMaxFrames) * static_cast<std::size_t>(m_file.info().m_nChannels), 0.0F);
    m_bOpen = true;
    return true;
}

void CSidechain::close()
{
    m_file.close();
    m_buffer.clear();
    m_bOpen = false;
}

void CSidechain::readBlock(int nFrames)
{
    if (!m_bOpen)
        return;
    const auto uWanted =
        std::min(static_cast<std::size_t>(nFrames) * static_cast<std::size_t>(m_file.info().m_nChannels),
                 m_buffer.size());
    auto uRead =
        static_cast<std::size_t>(m_file.readFloats(m_buffer.data(), static_cast<long long>(uWanted)));
    const bool bAtEnd = uRead == 0;
    while (uRead < uWanted && m_bLoop.load(std::memory_order_relaxed)) {
        m_file.seekFrames(0);
        const auto nMore =
            m_file.readFloats(m_buffer.data() + uRead, static_cast<long long>(uWanted - uRead));
        if (nMore <= 0)
            break;
        uRead += static_cast<std::size_t>(nMore);
    }
    std::fill(m_buffer.begin() + static_cast<std::ptrdiff_t>(uRead), m_buffer.end(), 0.0F);
    if (bAtEnd && uRead == 0)
        m_bOpen = false;
}

} // namespace velmora
