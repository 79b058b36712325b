#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

// Audio files put together byte by byte, so that tests can also make the ones no program would write.
namespace velmora::test {

// The lowest nBytes bytes of the value, the lowest first; reversed, the highest first.
inline std::string littleEndianBytes(std::uint64_t uValue, int nBytes)
{
    std::string sBytes;
    for (; nBytes > 0; --nBytes, uValue >>= 8)
        sBytes.push_back(static_cast<char>(uValue & 0xFF));
    return sBytes;
}

inline std::string bigEndianBytes(std::uint64_t uValue, int nBytes)
{
    std::string sBytes = littleEndianBytes(uValue, nBytes);
    std::ranges::reverse(sBytes);
    return sBytes;
}

// What the "fmt " chunk says. The defaults are CD quality.
struct CWaveBytesFormat
{
    unsigned m_uTag = 1; // 1 integer, 3 float
    unsigned m_uChannels = 2;
    unsigned m_uRate = 44100; // Hz
    unsigned m_uBits = 16;    // 8 is unsigned, as WAV has it
};

// Samples of -1.0 to +1.0 as the bytes of a data chunk.
inline std::string sampleBytes(const CWaveBytesFormat& format, const std::vector<double>& samples)
{
    std::string sBytes;
    for (const double dSample : samples) {
        if (format.m_uTag == 3 && format.m_uBits == 32) {
            sBytes += littleEndianBytes(std::bit_cast<std::uint32_t>(static_cast<float>(dSample)), 4);
        } else if (format.m_uTag == 3) {
            sBytes += littleEndianBytes(std::bit_cast<std::uint64_t>(dSample), 8);
        } else {
            const double dFullScale = std::ldexp(1.0, static_cast<int>(format.m_uBits) - 1);
            const double dCode = std::clamp(std::round(dSample * dFullScale), -dFullScale, dFullScale - 1.0);
            const auto nCode = static_cast<std::int64_t>(dCode) + (format.m_uBits == 8 ? 128 : 0);
            sBytes +=
                littleEndianBytes(static_cast<std::uint64_t>(nCode), static_cast<int>(format.m_uBits / 8));
        }
    }
    return sBytes;
}

// A chunk with its size, and a byte of padding behind a body of odd size.
inline std::string riffChunk(const std::string& sId, const std::string& sBody)
{
    return sId + littleEndianBytes(sBody.size(), 4) + sBody + std::string(sBody.size() % 2, '\0');
}

inline std::string formatChunk(const CWaveBytesFormat& format, const std::string& sExtra = {})
{
    const unsigned uBlockAlign = format.m_uChannels * format.m_uBits / 8;
    return riffChunk("fmt ", littleEndianBytes(format.m_uTag, 2) + littleEndianBytes(format.m_uChannels, 2) +
                                 littleEndianBytes(format.m_uRate, 4) +
                                 littleEndianBytes(std::uint64_t{format.m_uRate} * uBlockAlign, 4) +
                                 littleEndianBytes(uBlockAlign, 2) + littleEndianBytes(format.m_uBits, 2) +
                                 sExtra);
}

// A "smpl" chunk with uLoops loops, the first from uStart to uEnd.
inline std::string samplerChunk(unsigned uLoops, unsigned uStart = 0, unsigned uEnd = 0)
{
    std::string sBody(28, '\1');
    sBody += littleEndianBytes(uLoops, 4) + littleEndianBytes(0, 4);
    for (unsigned uLoop = 0; uLoop < uLoops; ++uLoop)
        sBody += littleEndianBytes(uLoop, 4) + littleEndianBytes(0, 4) +
                 littleEndianBytes(uStart + uLoop, 4) + littleEndianBytes(uEnd + uLoop, 4) +
                 littleEndianBytes(0, 8);
    return riffChunk("smpl", sBody);
}

inline std::string riffWave(const std::string& sChunks)
{
    return "RIFF" + littleEndianBytes(sChunks.size() + 4, 4) + "WAVE" + sChunks;
}

// A plain WAV file: format and data, nothing else.
inline std::string waveBytes(const CWaveBytesFormat& format, const std::vector<double>& samples)
{
    return riffWave(formatChunk(format) + riffChunk("data", sampleBytes(format, samples)));
}

// A plain AIFF file of 8, 16, 24 or 32 bits. uRate in Hz, below 65536.
inline std::string aiffBytes(unsigned uChannels, unsigned uRate, unsigned uBits,
                             const std::vector<double>& samples)
{
    const auto chunk = [](const std::string& sId, const std::string& sBody) {
        return sId + bigEndianBytes(sBody.size(), 4) + sBody + std::string(sBody.size() % 2, '\0');
    };
    // The rate is an 80-bit float: exponent with a bias of 16383, then the mantissa with its leading one.
    const int nExponent = std::bit_width(uRate) - 1;
    const std::string sRate = bigEndianBytes(static_cast<std::uint64_t>(16383 + nExponent), 2) +
                              bigEndianBytes(std::uint64_t{uRate} << (63 - nExponent), 8);
    std::string sSamples;
    for (const double dSample : samples) {
        const double dFullScale = std::ldexp(1.0, static_cast<int>(uBits) - 1);
        const double dCode = std::clamp(std::round(dSample * dFullScale), -dFullScale, dFullScale - 1.0);
        sSamples += bigEndianBytes(static_cast<std::uint64_t>(static_cast<std::int64_t>(dCode)),
                                   static_cast<int>(uBits / 8));
    }
    const std::string sCommon = bigEndianBytes(uChannels, 2) + bigEndianBytes(samples.size() / uChannels, 4) +
                                bigEndianBytes(uBits, 2) + sRate;
    const std::string sChunks = chunk("COMM", sCommon) + chunk("SSND", bigEndianBytes(0, 8) + sSamples);
    return "FORM" + bigEndianBytes(sChunks.size() + 4, 4) + "AIFF" + sChunks;
}

} // namespace velmora::test
