#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace velmora {

// What a sound file says of itself.
struct CSoundFileInfo
{
    long long m_nFrames = 0; // one frame holds one sample of each channel
    int m_nChannels = 0;     // 1 to 1024
    int m_nSampleRate = 0;   // Hz
    int m_nFormat = 0;       // libsndfile's format word: container, sample format and byte order
};

// One sound file, WAV, AIFF and their kin, as float samples from -1.0 to +1.0 with the channels
// interleaved. Counts of items count over all channels. When a sample format cannot hold a value, writing
// clips it to the format's range.
class CSoundFile
{
  public:
    static constexpr int MAX_CHANNELS = 1024;

    CSoundFile();
    // Closes the file.
    ~CSoundFile();
    CSoundFile(CSoundFile&&) noexcept;
    CSoundFile& operator=(CSoundFile&&) noexcept;

    // Opens an existing file and fills info(). On failure returns false with a full sentence in sError, and
    // no file is open. A file that was open before is closed. [main]
    [[nodiscard]] bool openForReading(const std::filesystem::path& path, std::string& sError);

    // Creates the file anew with info's channels, rate and format; m_nFrames is not used. On failure
    // returns false with a full sentence in sError; what stood at the path is then as it was, or emptied
    // if the disk refused the first bytes. [main]
    [[nodiscard]] bool openForWriting(const std::filesystem::path& path, const CSoundFileInfo& info,
                                      std::string& sError);

    // Reads up to nItems floats; fewer at the end of the file or where it is damaged. Answers how many
    // were read. nItems is best a multiple of the channel count; what is left over is not read.
    // [audio, main]
    long long readFloats(float* pItems, long long nItems);

    // Writes nItems floats and answers how many were taken; fewer when the disk is full. nItems is a
    // multiple of the channel count; what is left over is not written. [main]
    long long writeFloats(const float* pItems, long long nItems);

    // Goes to the frame, counted from 0. False if there is no such frame. [audio, main]
    bool seekFrames(long long nFrame);

    [[nodiscard]] bool isOpen() const;

    // Whether a file of this format keeps samples beyond full scale; others clip them.
    [[nodiscard]] static bool holdsOvers(int nFormat);

    // Of the open file, or all zero. While writing, m_nFrames stays 0.
    [[nodiscard]] const CSoundFileInfo& info() const { return m_info; }

    // How many more frames than it holds the header of the WAV file that is being read promises; 0 for a
    // whole file, for one whose writer could not know its length, and for other containers. [main]
    [[nodiscard]] long long missingFrames() const { return m_nMissingFrames; }

    // Writes what is still in the pipe and closes. False if any of what was written is not on its way to
    // the disk, as when it is full; the file is then damaged. True for a file that is not open. [main]
    bool close();

  private:
    struct CHandle;
    std::unique_ptr<CHandle> m_pHandle;
    CSoundFileInfo m_info;
    long long m_nMissingFrames = 0;
};

} // namespace velmora
