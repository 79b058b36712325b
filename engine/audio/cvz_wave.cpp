#include "audio/cvz_wave.h"

#include "audio/file_exception.h"
#include "audio/little_endian.h"
#include "base/archive.h"
#include "base/safe_file.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace velmora {

namespace {

constexpr const char* NOT_A_WAVE = "is not a RIFF wave file";
constexpr const char* ENDS_EARLY = "ends too early";

// Where a wave is read from, and how it says that this cannot be done.
class CWaveSource
{
  public:
    virtual ~CWaveSource() = default;

    [[nodiscard]] virtual std::uint64_t remaining() const = 0;
    [[noreturn]] virtual void fail(CFileException::ECause eCause, const char* pReason) const = 0;

    void read(std::span<std::uint8_t> bytes)
    {
        if (bytes.size() > remaining())
            fail(CFileException::badFormat, ENDS_EARLY);
        take(bytes);
    }

    template <std::unsigned_integral T>
    void read(T& uValue)
    {
        std::array<std::uint8_t, sizeof(T)> bytes;
        read(std::span<std::uint8_t>(bytes));
        uValue = littleEndian<T>(bytes.data());
    }

    void expect(std::string_view sText, const char* pElse)
    {
        std::array<std::uint8_t, 8> bytes = {};
        const auto part = std::span(bytes).first(sText.size());
        read(part);
        if (!std::ranges::equal(part, sText))
            fail(CFileException::badFormat, pElse);
    }

  protected:
    // Reads bytes that are known to remain.
    virtual void take(std::span<std::uint8_t> bytes) = 0;
};

class CFileSource : public CWaveSource
{
  public:
    CFileSource(std::istream& file, const std::filesystem::path& name) : m_file(file), m_name(name)
    {
        const auto start = file.tellg();
        file.seekg(0, std::ios::end);
        const auto end = file.tellg();
        file.seekg(start);
        if (!file || end < start)
            fail(CFileException::genericException, "could not be read");
        m_uRemaining = static_cast<std::uint64_t>(end - start);
    }

    std::uint64_t remaining() const override { return m_uRemaining; }

    [[noreturn]] void fail(CFileException::ECause eCause, const char* pReason) const override
    {
        throw CFileException(eCause, m_name, pReason);
    }

  private:
    void take(std::span<std::uint8_t> bytes) override
    {
        if (!m_file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())))
            fail(CFileException::genericException, "could not be read");
        m_uRemaining -= bytes.size();
    }

    std::istream& m_file;
    const std::filesystem::path& m_name;
    std::uint64_t m_uRemaining = 0;
};

class CArchiveSource : public CWaveSource
{
  public:
    explicit CArchiveSource(CArchive& archive) : m_archive(archive) {}

    std::uint64_t remaining() const override { return m_archive.remaining(); }

    [[noreturn]] void fail(CFileException::ECause, const char* pReason) const override
    {
        throw CArchiveError(std::string("A wave in the archive ") + pReason + ".");
    }

  private:
    void take(std::span<std::uint8_t> bytes) override { m_archive.readBytes(std::as_writable_bytes(bytes)); }

    CArchive& m_archive;
};

// Changes nothing unless all of it can be read.
void loadFrom(CWaveSource& source, CWaveFormat& target, CWaveBuffer& buffer)
{
    std::uint32_t uIgnored = 0;
    source.expect("RIFF", NOT_A_WAVE);
    source.read(uIgnored);
    source.expect("WAVEfmt ", NOT_A_WAVE);
    source.read(uIgnored);

    CWaveFormat format;
    source.read(format.m_uFormatTag);
    source.read(format.m_uChannels);
    source.read(format.m_uSamplesPerSecond);
    source.read(format.m_uAverageBytesPerSecond);
    source.read(format.m_uBlockAlign);
    source.read(format.m_uBitsPerSample);
    if (format.m_uBlockAlign == 0)
        source.fail(CFileException::badFormat, "has samples of no size");
    source.expect("data", "has other data between its format and its samples");

    std::uint32_t uDataSize = 0;
    source.read(uDataSize);
    if (uDataSize > source.remaining())
        source.fail(CFileException::badFormat, ENDS_EARLY);
    auto pBytes = std::make_unique_for_overwrite<std::uint8_t[]>(uDataSize);
    source.read(std::span(pBytes.get(), uDataSize));
    buffer.SetBuffer(std::move(pBytes), uDataSize / format.m_uBlockAlign, format.m_uBlockAlign);
    target = format;
}

// The 44 bytes before the samples. name is told if RIFF's 32-bit sizes cannot hold the data's.
std::string headerOf(const CWaveFormat& format, std::size_t uDataSize, const std::filesystem::path& name)
{
    constexpr std::uint32_t HEADER_BEHIND_LENGTH = 36;
    constexpr std::uint32_t FORMAT_CHUNK_SIZE = 16;
    if (uDataSize > std::numeric_limits<std::uint32_t>::max() - HEADER_BEHIND_LENGTH)
        throw CFileException(CFileException::genericException, name, "would be longer than 4 gigabytes");

    const auto uSize = static_cast<std::uint32_t>(uDataSize);
    std::string sBytes = "RIFF";
    appendLittleEndian(sBytes, uSize + HEADER_BEHIND_LENGTH);
    sBytes += "WAVEfmt ";
    appendLittleEndian(sBytes, FORMAT_CHUNK_SIZE);
    appendLittleEndian(sBytes, format.m_uFormatTag);
    appendLittleEndian(sBytes, format.m_uChannels);
    appendLittleEndian(sBytes, format.m_uSamplesPerSecond);
    appendLittleEndian(sBytes, format.m_uAverageBytesPerSecond);
    appendLittleEndian(sBytes, format.m_uBlockAlign);
    appendLittleEndian(sBytes, format.m_uBitsPerSample);
    sBytes += "data";
    appendLittleEndian(sBytes, uSize);
    return sBytes;
}

} // namespace

void cvzWave::BuildFormat(std::uint16_t nChannels, std::uint32_t nFrequency, std::uint16_t nBits)
{
    const std::uint32_t uBitsOfBlock = std::uint32_t{nChannels} * nBits;
    m_format = CWaveFormat();
    m_format.m_uChannels = nChannels;
    m_format.m_uSamplesPerSecond = nFrequency;
    m_format.m_uAverageBytesPerSecond =
        static_cast<std::uint32_t>(std::uint64_t{uBitsOfBlock} * nFrequency / 8);
    m_format.m_uBlockAlign = static_cast<std::uint16_t>(uBitsOfBlock / 8);
    m_format.m_uBitsPerSample = nBits;
    m_Buffer = CWaveBuffer(m_format.m_uBlockAlign);
}

void cvzWave::Load(const std::filesystem::path& path)
{
    std::error_code error;
    std::ifstream file;
    if (std::filesystem::is_regular_file(path, error))
        file.open(path, std::ios::binary);
    if (!file.is_open())
        throw CFileException(CFileException::genericException, path, "could not be opened");
    Load(file, path);
}

void cvzWave::Load(std::istream& file, const std::filesystem::path& name)
{
    CFileSource source(file, name);
    loadFrom(source, m_format, m_Buffer);
}

void cvzWave::Save(const std::filesystem::path& path) const
{
    CSafeFile safe(path);
    std::ofstream file(safe.path(), std::ios::binary | std::ios::trunc);
    Save(file, path);
    file.close();
    if (!file || !safe.commit())
        throw CFileException(CFileException::genericException, path, "could not be written");
}

void cvzWave::Save(std::ostream& file, const std::filesystem::path& name) const
{
    const std::string sHeader = headerOf(m_format, GetBufferLength(), name);
    file.write(sHeader.data(), static_cast<std::streamsize>(sHeader.size()));
    if (GetBufferLength() > 0)
        file.write(reinterpret_cast<const char*>(GetBuffer()),
                   static_cast<std::streamsize>(GetBufferLength()));
    if (!file)
        throw CFileException(CFileException::genericException, name, "could not be written");
}

void cvzWave::Serialize(CArchive& archive)
{
    if (archive.isStoring()) {
        const std::string sHeader = headerOf(m_format, GetBufferLength(), {});
        archive.writeBytes(std::as_bytes(std::span(sHeader)));
        archive.writeBytes(std::as_bytes(std::span(GetBuffer(), GetBufferLength())));
    } else {
        CArchiveSource source(archive);
        loadFrom(source, m_format, m_Buffer);
    }
}

std::size_t cvzWave::GetBufferLength() const
{
    return std::size_t{m_Buffer.numSamples()} * m_format.m_uBlockAlign;
}

void cvzWave::SetBuffer(std::uint8_t* pBytes, std::uint32_t uNumSamples, bool bCopy)
{
    if (!bCopy)
        m_Buffer.SetBuffer(std::unique_ptr<std::uint8_t[]>(pBytes), uNumSamples, m_format.m_uBlockAlign);
    else if (pBytes)
        m_Buffer.CopyBuffer(pBytes, uNumSamples, m_format.m_uBlockAlign);
}

} // namespace velmora
