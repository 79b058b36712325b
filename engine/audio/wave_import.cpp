#include "audio/wave_import.h"

#include "audio/little_endian.h"

#include <algorithm>
#include <array>
#include <bit>
#include <fstream>
#include <optional>
#include <string_view>
#include <utility>

namespace velmora {

namespace {

float from16(const std::uint8_t* pBytes)
{
    return static_cast<float>(static_cast<std::int16_t>(littleEndian<std::uint16_t>(pBytes))) / 32768.0f;
}

float fromTopOf32(std::uint32_t uValue)
{
    return static_cast<float>(static_cast<std::int32_t>(uValue)) / 2147483648.0f;
}

float from24(const std::uint8_t* pBytes)
{
    return fromTopOf32(std::uint32_t{pBytes[2]} << 24 | std::uint32_t{pBytes[1]} << 16 |
                       std::uint32_t{pBytes[0]} << 8);
}

float from32(const std::uint8_t* pBytes)
{
    return fromTopOf32(littleEndian<std::uint32_t>(pBytes));
}

float fromFloat(const std::uint8_t* pBytes)
{
    return std::bit_cast<float>(littleEndian<std::uint32_t>(pBytes));
}

float fromDouble(const std::uint8_t* pBytes)
{
    return static_cast<float>(std::bit_cast<double>(littleEndian<std::uint64_t>(pBytes)));
}

struct CConversion
{
    unsigned m_uFormatTag;
    unsigned m_uBits;
    float (*m_pConvert)(const std::uint8_t*);
};

constexpr CConversion CONVERSIONS[] = {
    {1, 16, from16}, {1, 24, from24}, {1, 32, from32}, {3, 32, fromFloat}, {3, 64, fromDouble},
};

// A stretch of the stream that reading cannot leave.
class CChunkStream
{
  public:
    explicit CChunkStream(std::istream& file) : m_file(file)
    {
        const auto start = file.tellg();
        file.seekg(0, std::ios::end);
        const auto end = file.tellg();
        file.seekg(start);
        if (file && end > start)
            m_uRemaining = static_cast<std::uint64_t>(end - start);
    }

    [[nodiscard]] std::uint64_t remaining() const { return m_uRemaining; }

    [[nodiscard]] bool read(std::span<std::uint8_t> bytes)
    {
        if (bytes.size() > m_uRemaining ||
            !m_file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())))
            return false;
        m_uRemaining -= bytes.size();
        return true;
    }

    [[nodiscard]] bool skip(std::uint64_t uCount)
    {
        if (uCount > m_uRemaining || !m_file.seekg(static_cast<std::streamoff>(uCount), std::ios::cur))
            return false;
        m_uRemaining -= uCount;
        return true;
    }

    // Skips the byte behind a chunk of odd size. No chunk's name begins with a zero byte.
    void skipPadding(std::uint64_t uChunkSize)
    {
        if (uChunkSize % 2 != 0 && m_uRemaining > 0 && m_file.peek() == 0)
            (void)skip(1);
    }

  private:
    std::istream& m_file;
    std::uint64_t m_uRemaining = 0;
};

struct CChunk
{
    std::array<std::uint8_t, 4> m_id;
    std::uint32_t m_uSize;

    [[nodiscard]] bool is(std::string_view sName) const
    {
        return std::equal(m_id.begin(), m_id.end(), sName.begin(), sName.end());
    }
};

std::optional<CChunk> nextChunk(CChunkStream& stream)
{
    std::array<std::uint8_t, 8> bytes;
    if (!stream.read(bytes))
        return std::nullopt;
    return CChunk{{bytes[0], bytes[1], bytes[2], bytes[3]}, littleEndian<std::uint32_t>(&bytes[4])};
}

// Goes on to the chunk of that name and answers its size; none if there is no further one.
std::optional<std::uint32_t> findChunk(CChunkStream& stream, std::string_view sName)
{
    while (const auto chunk = nextChunk(stream)) {
        if (chunk->is(sName))
            return chunk->m_uSize;
        if (!stream.skip(chunk->m_uSize))
            return std::nullopt;
        stream.skipPadding(chunk->m_uSize);
    }
    return std::nullopt;
}

struct CImportFormat
{
    const CConversion* m_pConversion;
    unsigned m_uChannels;
    unsigned m_uSampleRate;
};

std::optional<CImportFormat> readFormat(CChunkStream& stream)
{
    std::array<std::uint8_t, 12> riff;
    if (!stream.read(riff) || !std::ranges::equal(std::span(riff).first(4), std::string_view("RIFF")) ||
        !std::ranges::equal(std::span(riff).last(4), std::string_view("WAVE")))
        return std::nullopt;
    const auto uSize = findChunk(stream, "fmt ");
    std::array<std::uint8_t, 16> bytes;
    if (!uSize || *uSize < bytes.size() || !stream.read(bytes) || !stream.skip(*uSize - bytes.size()))
        return std::nullopt;
    stream.skipPadding(*uSize);

    const auto uTag = littleEndian<std::uint16_t>(&bytes[0]);
    const auto uChannels = littleEndian<std::uint16_t>(&bytes[2]);
    const auto uBits = littleEndian<std::uint16_t>(&bytes[14]);
    const auto conversion = std::ranges::find_if(CONVERSIONS, [&](const CConversion& candidate) {
        return candidate.m_uFormatTag == uTag && candidate.m_uBits == uBits;
    });
    if (conversion == std::end(CONVERSIONS) || uChannels == 0)
        return std::nullopt;
    return CImportFormat{conversion, uChannels, littleEndian<std::uint32_t>(&bytes[4])};
}

// Takes memory for the samples only after the stream is known to have them.
std::optional<std::vector<float>> readSamples(CChunkStream& stream, const CImportFormat& format)
{
    const auto uDataSize = findChunk(stream, "data");
    if (!uDataSize || *uDataSize > stream.remaining())
        return std::nullopt;
    const std::size_t uBytesOfValue = format.m_pConversion->m_uBits / 8;
    const std::size_t uFrames = *uDataSize / uBytesOfValue / format.m_uChannels;
    std::vector<float> samples(uFrames * format.m_uChannels);

    constexpr std::size_t VALUES_AT_ONCE = 8192;
    std::vector<std::uint8_t> bytes(std::min(VALUES_AT_ONCE, samples.size()) * uBytesOfValue);
    for (std::size_t uDone = 0; uDone < samples.size();) {
        const std::size_t uNow = std::min(VALUES_AT_ONCE, samples.size() - uDone);
        if (!stream.read(std::span(bytes).first(uNow * uBytesOfValue)))
            return std::nullopt;
        for (std::size_t i = 0; i < uNow; ++i)
            samples[uDone + i] = format.m_pConversion->m_pConvert(&bytes[i * uBytesOfValue]);
        uDone += uNow;
    }
    if (!stream.skip(*uDataSize - samples.size() * uBytesOfValue))
        return std::nullopt;
    stream.skipPadding(*uDataSize);
    return samples;
}

// Zeros if the file has no loop; none if it promises one that it does not hold.
std::optional<CSampleLoop> readLoop(CChunkStream& stream)
{
    const auto uSize = findChunk(stream, "smpl");
    if (!uSize)
        return CSampleLoop();
    // Manufacturer, product, sample period, MIDI unity note, pitch fraction; SMPTE format and offset;
    // count of loops, size of the sampler's own data. Behind them the loops: id, type, start, end ...
    std::array<std::uint8_t, 36> header;
    std::array<std::uint8_t, 16> loop;
    if (*uSize > stream.remaining() || *uSize < header.size() || !stream.read(header))
        return std::nullopt;
    if (littleEndian<std::uint32_t>(&header[28]) == 0)
        return CSampleLoop();
    if (*uSize < header.size() + loop.size() || !stream.read(loop))
        return std::nullopt;
    return CSampleLoop{littleEndian<std::uint32_t>(&loop[8]), littleEndian<std::uint32_t>(&loop[12])};
}

} // namespace

bool CWaveImporter::read(const std::filesystem::path& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return false;
    std::ifstream file(path, std::ios::binary);
    return file && read(file);
}

bool CWaveImporter::read(std::istream& file)
{
    CChunkStream stream(file);
    const auto format = readFormat(stream);
    if (!format)
        return false;
    auto samples = readSamples(stream, *format);
    if (!samples)
        return false;
    const auto loop = readLoop(stream);
    if (!loop)
        return false;
    m_samples = std::move(*samples);
    m_uChannels = format->m_uChannels;
    m_uSampleRate = format->m_uSampleRate;
    m_uBits = format->m_pConversion->m_uBits;
    m_loop = *loop;
    return true;
}

} // namespace velmora
