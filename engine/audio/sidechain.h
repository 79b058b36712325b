#pragma once

#include "audio/sound_file.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CAudioEngine;
class CTransportState;
class IUserDialogs;

// The second audio file, which feeds a plug-in's sidechain input while the main file plays.
//
// The switches and the gain are written on the main thread while the audio thread reads them; a change
// takes hold at the next buffer.
class CSidechain
{
  public:
    // Takes a file for the sidechain. A file that does not exist is refused in silence; one that cannot
    // be opened shows a message and leaves no file set. [main, transport stopped]
    bool load(const std::filesystem::path& path, IUserDialogs& dialogs);

    // Let the user choose a file, and load it: the window's "Open" button, which wants ".wav" in the path,
    // and the menu's "Load Sidechain Audio File", which takes AIF files as well. Refused with a message
    // unless the transport is stopped. False, with reason(), when the earlier file stays or none is set.
    // [main]
    bool chooseFromButton(const CTransportState& transport, IUserDialogs& dialogs);
    bool chooseFromMenu(const CTransportState& transport, IUserDialogs& dialogs);

    // Sees each file that load() has taken. [main]
    std::function<void(const std::filesystem::path&)> m_onLoaded;

    // The window's "Enable": turning it off also zeroes the engine's six meters. [main]
    void setEnabled(bool bEnabled, CAudioEngine& engine);

    // The level slider: position 0 is its top and +12 dB, SLIDER_RANGE its bottom and -60 dB. A level between
    // two positions becomes that of the lower level. [any]
    static constexpr int SLIDER_RANGE = 256;
    [[nodiscard]] static float levelFromPosition(int nPosition);
    [[nodiscard]] static int positionFromLevel(float fLevel_dB);

    // Opens the file that was set, from its beginning, and takes memory for blocks of up to nMaxFrames
    // frames. False if none is set, or if it is gone. [main, no stream running]
    bool openForStream(int nMaxFrames);
    void close();

    // Reads the next nFrames frames into the buffer. At the file's end it starts over when looping, as often
    // as a short file needs; else silence follows and isOpen() turns false until looping is switched on.
    // [audio]
    void readBlock(int nFrames);

    [[nodiscard]] bool isOpen() const { return m_bOpen; }

    // The block of the last readBlock(), interleaved; null when no file was opened for the stream. [audio]
    [[nodiscard]] float* buffer() { return m_buffer.empty() ? nullptr : m_buffer.data(); }
    [[nodiscard]] int channels() const { return m_buffer.empty() ? 0 : m_file.info().m_nChannels; }

    // Hz; 0 when no file was opened for the stream. [main]
    [[nodiscard]] int sampleRate() const { return m_buffer.empty() ? 0 : m_file.info().m_nSampleRate; }

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] std::string shortName() const { return m_path.filename().string(); }

    // Why the last load() or choice was refused, as one sentence; empty if it was not.
    [[nodiscard]] const std::string& reason() const { return m_sReason; }

    std::atomic<bool> m_bLoop{false};    // start over at the end
    std::atomic<bool> m_bListen{false};  // the sidechain replaces the input at the output
    std::atomic<bool> m_bEnabled{false}; // handed to the plug-in as bInputEnabled
    std::atomic<float> m_fGain_dB{0.0F}; // level, dB

  private:
    bool choose(const CTransportState& transport, IUserDialogs& dialogs, std::string_view sFilter,
                std::string_view sWanted);
    bool refuse(IUserDialogs& dialogs, std::string_view sMessage);

    std::filesystem::path m_path;
    CSoundFile m_file;
    std::vector<float> m_buffer;
    std::string m_sReason;
    std::atomic<bool> m_bOpen{false};
};

} // namespace velmora
