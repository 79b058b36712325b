#include "audio/sidechain.h"

#include "audio/audio_engine.h"
#include "audio/transport_state.h"
#include "base/user_dialogs.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr int MAX_SIDECHAIN_CHANNELS = 2;
constexpr float SLIDER_BOTTOM_DB = -60.0F;
constexpr float SLIDER_SPAN_DB = 72.0F;

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
    if (m_onLoaded)
        m_onLoaded(path);
    return true;
}

bool CSidechain::chooseFromButton(const CTransportState& transport, IUserDialogs& dialogs)
{
    return choose(transport, dialogs, "WAVE Files (*.wav)|*.wav||", ".wav");
}

bool CSidechain::chooseFromMenu(const CTransportState& transport, IUserDialogs& dialogs)
{
    return choose(transport, dialogs, "Wave Files (*.wav)|*.wav|AIF Files (*.aif)|*.aif||", "");
}

bool CSidechain::choose(const CTransportState& transport, IUserDialogs& dialogs, std::string_view sFilter,
                        std::string_view sWanted)
{
    if (transport.state() != TRANSPORT_STOP)
        return refuse(dialogs, "You must stop audio streaming before loading the sidechain audio file.");
    const auto chosen = dialogs.chooseOpenFile(sFilter, m_path.parent_path());
    if (!chosen) {
        m_sReason = "No sidechain file was chosen.";
        return false;
    }
    if (chosen->string().find(sWanted) == std::string::npos)
        return refuse(dialogs, "Not a .WAV file.");
    return load(*chosen, dialogs);
}

bool CSidechain::refuse(IUserDialogs& dialogs, std::string_view sMessage)
{
    dialogs.showMessage(sMessage);
    m_sReason = sMessage;
    return false;
}

void CSidechain::setEnabled(bool bEnabled, CAudioEngine& engine)
{
    m_bEnabled.store(bEnabled, std::memory_order_relaxed);
    if (!bEnabled)
        engine.clearMeters();
}

float CSidechain::levelFromPosition(int nPosition)
{
    const auto fTravel = static_cast<float>(SLIDER_RANGE - std::clamp(nPosition, 0, SLIDER_RANGE));
    return fTravel / static_cast<float>(SLIDER_RANGE) * SLIDER_SPAN_DB + SLIDER_BOTTOM_DB;
}

int CSidechain::positionFromLevel(float fLevel_dB)
{
    const float fLimited = std::clamp(fLevel_dB, SLIDER_BOTTOM_DB, SLIDER_BOTTOM_DB + SLIDER_SPAN_DB);
    const float fTravel = (fLimited - SLIDER_BOTTOM_DB) / SLIDER_SPAN_DB;
    return SLIDER_RANGE - static_cast<int>(fTravel * static_cast<float>(SLIDER_RANGE));
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
