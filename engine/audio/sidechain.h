#pragma once

#include "audio/sound_file.h"

#include <atomic>
#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

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

    // Why the last load() was refused, as one sentence; empty if it was not.
    [[nodiscard]] const std::string& reason() const { return m_sReason; }

    std::atomic<bool> m_bLoop{false};    // start over at the end
    std::atomic<bool> m_bListen{false};  // the sidechain replaces the input at the output
    std::atomic<bool> m_bEnabled{false}; // handed to the plug-in as bInputEnabled
    std::atomic<float> m_fGain_dB{0.0F}; // level, dB

  private:
    std::filesystem::path m_path;
    CSoundFile m_file;
    std::vector<float> m_buffer;
    std::string m_sReason;
    std::atomic<bool> m_bOpen{false};
};

} // namespace velmora
