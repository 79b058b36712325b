#pragma once

#include "audio/sound_file.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

// The wave file that a stream plays: two handles to it, whether it starts over at its end, and the buffer
// that one callback reads.
class CWaveStream
{
  public:
    // Opens the file twice, into the main and the second handle; both stand at its beginning. On failure
    // returns false with a full sentence in sError, and no file is open. [main, no stream running]
    [[nodiscard]] bool open(const std::filesystem::path& file, std::string& sError);

    [[nodiscard]] bool hasFile() const { return m_main.isOpen(); }
    [[nodiscard]] const CSoundFileInfo& info() const { return m_main.info(); }

    // The second handle, for whoever wants to look at the file while it plays; no callback touches it. [main]
    [[nodiscard]] CSoundFile& second() { return m_second; }

    // Takes memory for reads of up to nFrames frames and sets the open flag. [main, no stream running]
    void prepare(int nFrames);

    // Closes the files, gives the memory back and clears the open flag; nothing happens if that is done.
    // [main, no stream running]
    void close();

    // One buffer of the file.
    struct CRead
    {
        float* m_pSamples; // interleaved
        int m_nItems;      // read ahead of the file's end, over all channels
        bool m_bWrapped;   // the file was short of what was asked for and stands at its beginning again
        bool m_bEnd;       // nothing is left to play
    };

    // Reads the next nFrames frames, at most as many as memory was taken for. Where the file ends within them
    // and the loop flag is set, the file starts over: the rest is read behind the end, but is no part of
    // m_nItems. [audio]
    CRead read(int nFrames);

    // The open flag: set while there is something left to play; finish() is the callback's word that there is
    // not. [any]
    [[nodiscard]] bool isOpen() const { return m_bOpen.load(std::memory_order_acquire); }
    void finish() { m_bOpen.store(false, std::memory_order_release); } // [audio]

    // What the next start will do at the file's end, and what the stream that runs does. The request becomes
    // the flag when a file starts. [main]
    void requestLoop() { m_bLoopRequested = true; }
    void takeLoopRequest();
    void clearLoop() { m_bLoop.store(false, std::memory_order_relaxed); }
    [[nodiscard]] bool isLooping() const { return m_bLoop.load(std::memory_order_relaxed); } // [any]

    // Frames that the stream has played since it was opened, over all rounds of a loop. [any]
    [[nodiscard]] std::uint64_t framesPlayed() const { return m_uFrames.load(std::memory_order_relaxed); }

  private:
    CSoundFile m_main;
    CSoundFile m_second;
    std::vector<float> m_buffer;
    bool m_bLoopRequested = false;
    std::atomic<bool> m_bLoop{false};
    std::atomic<bool> m_bOpen{false};
    std::atomic<std::uint64_t> m_uFrames{0};
};

} // namespace velmora
