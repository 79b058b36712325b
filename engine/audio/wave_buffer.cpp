#include "audio/wave_buffer.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace velmora {

void CWaveBuffer::CopyBuffer(const void* pBytes, std::uint32_t uNumSamples, std::uint32_t uSampleSize)
{
    if (isEmpty()) {
        m_pBytes = std::make_unique<std::uint8_t[]>(std::size_t{uNumSamples} * uSampleSize);
        m_uNumSamples = uNumSamples;
        m_uSampleSize = uSampleSize;
    } else {
        std::fill_n(m_pBytes.get(), length(), std::uint8_t{0});
    }
    const std::size_t uOffered = std::size_t{uNumSamples} * uSampleSize;
    const std::size_t uWanted = std::size_t{std::min(uNumSamples, m_uNumSamples)} * m_uSampleSize;
    if (const std::size_t uCopied = std::min(uOffered, uWanted))
        std::memcpy(m_pBytes.get(), pBytes, uCopied);
}

void CWaveBuffer::SetBuffer(std::unique_ptr<std::uint8_t[]> pBytes, std::uint32_t uNumSamples,
                            std::uint32_t uSampleSize)
{
    m_pBytes = std::move(pBytes);
    m_uNumSamples = m_pBytes ? uNumSamples : 0;
    m_uSampleSize = uSampleSize;
}

} // namespace velmora
