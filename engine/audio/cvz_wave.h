#pragma once

#include "audio/wave_buffer.h"
#include "base/object.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>

namespace velmora {

// The format record of a RIFF wave, in the order of its "fmt " chunk.
struct CWaveFormat
{
    std::uint16_t m_uFormatTag = 1; // 1 is integer PCM
    std::uint16_t m_uChannels = 0;
    std::uint32_t m_uSamplesPerSecond = 0; // Hz
    std::uint32_t m_uAverageBytesPerSecond = 0;
    std::uint16_t m_uBlockAlign = 0; // bytes of one sample of all channels
    std::uint16_t m_uBitsPerSample = 0;
    std::uint16_t m_uExtraSize = 0; // neither read nor written
};

// A small RIFF wave of the program's own: impulse responses and measurements. It reads what it writes:
// a "fmt " chunk of 16 bytes and right behind it the "data" chunk; a file with anything in between is
// refused as badly formed. All operations: [main].
//
// Reading throws CFileException and then leaves the object as it was. The data size in a file is
// believed only as far as the file has bytes; a block align of 0 is bad format, and so is a file that
// ends early. A tail of the data shorter than one sample is dropped.
class cvzWave : public CObject
{
  public:
    // An empty PCM wave: channels in one sample, rate in Hz, bits of one channel's value. The average
    // is channels * rate * bits / 8 and the block align channels * bits / 8, both in whole bytes.
    void BuildFormat(std::uint16_t nChannels, std::uint32_t nFrequency, std::uint16_t nBits);

    void Load(const std::filesystem::path& path);
    // From an open file at its current place; name is told in an exception.
    void Load(std::istream& file, const std::filesystem::path& name = {});

    // Writes the file anew; one that stood there stays whole until the new one is complete. Throws
    // CFileException if the disk refuses, or if the wave is too long for the 32-bit sizes of RIFF.
    void Save(const std::filesystem::path& path) const;
    // Into an open file at its current place.
    void Save(std::ostream& file, const std::filesystem::path& name = {}) const;

    // The same bytes through an archive; loading throws CArchiveError in place of CFileException.
    void Serialize(CArchive& archive) override;

    [[nodiscard]] const CWaveFormat& format() const { return m_format; }
    [[nodiscard]] std::uint8_t* GetBuffer() { return m_Buffer.bytes(); }
    [[nodiscard]] const std::uint8_t* GetBuffer() const { return m_Buffer.bytes(); }
    [[nodiscard]] std::uint32_t GetNumSamples() const { return m_Buffer.numSamples(); }
    [[nodiscard]] std::size_t GetBufferLength() const; // bytes: samples * block align

    // Gives the wave uNumSamples samples of the format's block align each. With bCopy the bytes are
    // copied (see CWaveBuffer::CopyBuffer); without, the wave takes ownership of them, which must then
    // come from new std::uint8_t[].
    void SetBuffer(std::uint8_t* pBytes, std::uint32_t uNumSamples, bool bCopy);

  private:
    CWaveBuffer m_Buffer;
    CWaveFormat m_format;
};

} // namespace velmora
