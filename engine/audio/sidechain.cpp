#include "audio/sidechain.h"

#include "base/user_dialogs.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr int MAX_SIDECHAIN_CHANNELS = 2;

} // namespace

bool CSidechain::load(const std::filesystem::path& path, IUserDialogs& dialogs)
{
    m_sReason.clear();
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        m_sReason = "The sidechain file " + path.string() + " does not exist.";
        return false;
    }
    close();
    CSoundFile file;
    bool bUsable = file.openForReading(path, m_sReason);
    if (bUsable && file.info().m_nChannels > MAX_SIDECHAIN_CHANNELS) {
        m_sReason = "The sidechain file " + path.string() + " has " +
                    std::to_string(file.info().m_nChannels) + " channels; it may have one or two.";
        bUsable = false;
    }
    if (!bUsable) {
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
    const bool bLoop = m_bLoop.load(std::memory_order_relaxed);
    if (m_buffer.empty() || !(m_bOpen || bLoop))
        return;
    const auto uWanted =
        std::min(static_cast<std::size_t>(nFrames) * static_cast<std::size_t>(m_file.info().m_nChannels),
                 m_buffer.size());
    auto uRead =
        static_cast<std::size_t>(m_file.readFloats(m_buffer.data(), static_cast<long long>(uWanted)));
    while (uRead < uWanted && bLoop) {
        m_file.seekFrames(0);
        const auto nMore =
            m_file.readFloats(m_buffer.data() + uRead, static_cast<long long>(uWanted - uRead));
        if (nMore <= 0)
            break;
        uRead += static_cast<std::size_t>(nMore);
    }
    std::fill(m_buffer.begin() + static_cast<std::ptrdiff_t>(uRead), m_buffer.end(), 0.0F);
    m_bOpen = uRead > 0;
}

} // namespace velmora
