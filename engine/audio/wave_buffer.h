#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace velmora {

// The bytes of a wave. A sample here is one block of all channels, so its size is the block align of the
// wave's format. Empty means that no bytes are held. [main]
class CWaveBuffer
{
  public:
    CWaveBuffer() = default;

    // An empty buffer for samples of this many bytes.
    explicit CWaveBuffer(std::uint32_t uSampleSize) : m_uSampleSize(uSampleSize) {}

    // Copies uNumSamples samples of uSampleSize bytes. An empty buffer takes on that count and size.
    // One that holds bytes keeps its own: it is zeroed as a whole, then the lesser of the two counts is
    // copied, and never more bytes than either side has.
    void CopyBuffer(const void* pBytes, std::uint32_t uNumSamples, std::uint32_t uSampleSize);

    // Frees the old bytes and takes over the new ones, which are uNumSamples * uSampleSize at least.
    void SetBuffer(std::unique_ptr<std::uint8_t[]> pBytes, std::uint32_t uNumSamples,
                   std::uint32_t uSampleSize);

    [[nodiscard]] bool isEmpty() const { return length() == 0; }
    [[nodiscard]] std::uint8_t* bytes() { return m_pBytes.get(); }
    [[nodiscard]] const std::uint8_t* bytes() const { return m_pBytes.get(); }
    [[nodiscard]] std::uint32_t sampleSize() const { return m_uSampleSize; } // bytes
    [[nodiscard]] std::uint32_t numSamples() const { return m_uNumSamples; }
    [[nodiscard]] std::size_t length() const { return std::size_t{m_uNumSamples} * m_uSampleSize; } // bytes

  private:
    std::uint32_t m_uSampleSize = 0;
    std::unique_ptr<std::uint8_t[]> m_pBytes;
    std::uint32_t m_uNumSamples = 0;
};

} // namespace velmora
