#include "audio/sound_file.h"

#include "audio/wave_header.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sndfile.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

// No file of any length that a disk holds has more; at 44100 Hz it would play for 288 days.
constexpr sf_count_t MAX_FRAMES = sf_count_t{1} << 40;

std::string sentence(const char* pVerb, const std::filesystem::path& path, std::string_view sReason)
{
    constexpr std::string_view SYSTEM_PREFIX = "System error : ";
    if (sReason.starts_with(SYSTEM_PREFIX))
        sReason.remove_prefix(SYSTEM_PREFIX.size());
    while (!sReason.empty() && (sReason.back() == '.' || sReason.back() == '\n'))
        sReason.remove_suffix(1);
    return "The sound file \"" + path.string() + "\" could not be " + pVerb + ": " + std::string(sReason) +
           ".";
}

// Why info is not a sound that can be worked with, or nothing.
const char* absurdityOf(const SF_INFO& info)
{
    if (info.channels < 1 || info.channels > CSoundFile::MAX_CHANNELS)
        return "Its header names an impossible number of channels";
    if (info.samplerate <= 0)
        return "Its header names an impossible sample rate";
    if (info.frames < 0 || info.frames > MAX_FRAMES)
        return "Its header names an impossible length";
    return nullptr;
}

// What libsndfile says of the file that it could not open, but for its word on its own bookkeeping.
std::string openFailure()
{
    const std::string sReason = ::sf_strerror(nullptr);
    return sReason.starts_with("Internal error") ? "Its header makes no sense" : sReason;
}

} // namespace

// Reading is left to libsndfile. Writing goes through functions of our own, because libsndfile keeps to
// itself what goes wrong while it finishes a file.
struct CSoundFile::CHandle
{
    SNDFILE* m_pSoundFile = nullptr;
    int m_nDescriptor = -1; // of a file being written
    bool m_bWriteFailed = false;

    CHandle() = default;
    CHandle(const CHandle&) = delete;
    CHandle& operator=(const CHandle&) = delete;
    ~CHandle() { close(); }

    bool close()
    {
        if (m_pSoundFile && ::sf_close(m_pSoundFile) != 0)
            m_bWriteFailed = true;
        m_pSoundFile = nullptr;
        if (m_nDescriptor >= 0 && ::close(m_nDescriptor) != 0)
            m_bWriteFailed = true;
        m_nDescriptor = -1;
        return !m_bWriteFailed;
    }

    static CHandle& self(void* pUser) { return *static_cast<CHandle*>(pUser); }

    static sf_count_t length(void* pUser)
    {
        struct stat status = {};
        return ::fstat(self(pUser).m_nDescriptor, &status) == 0 ? status.st_size : -1;
    }

    static sf_count_t seek(sf_count_t nOffset, int nWhence, void* pUser)
    {
        return ::lseek(self(pUser).m_nDescriptor, nOffset, nWhence);
    }

    static sf_count_t tell(void* pUser) { return ::lseek(self(pUser).m_nDescriptor, 0, SEEK_CUR); }

    static sf_count_t read(void* pBytes, sf_count_t nCount, void* pUser)
    {
        return ::read(self(pUser).m_nDescriptor, pBytes, static_cast<std::size_t>(nCount));
    }

    static sf_count_t write(const void* pBytes, sf_count_t nCount, void* pUser)
    {
        CHandle& handle = self(pUser);
        const char* pNext = static_cast<const char*>(pBytes);
        sf_count_t nLeft = nCount;
        while (nLeft > 0) {
            const ssize_t nWritten = ::write(handle.m_nDescriptor, pNext, static_cast<std::size_t>(nLeft));
            if (nWritten < 0 && errno == EINTR)
                continue;
            if (nWritten <= 0) {
                handle.m_bWriteFailed = true;
                break;
            }
            pNext += nWritten;
            nLeft -= nWritten;
        }
        return nCount - nLeft;
    }
};

CSoundFile::CSoundFile() = default;
CSoundFile::~CSoundFile() = default;
CSoundFile::CSoundFile(CSoundFile&&) noexcept = default;
CSoundFile& CSoundFile::operator=(CSoundFile&&) noexcept = default;

bool CSoundFile::openForReading(const std::filesystem::path& path, std::string& sError)
{
    (void)close();
    const auto fail = [&](std::string_view sReason) {
        sError = sentence("opened", path, sReason);
        return false;
    };
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return fail(error ? error.message() : std::strerror(ENOENT));
    if (!std::filesystem::is_regular_file(status))
        return fail("It is not a file");

    SF_INFO info = {};
    auto pHandle = std::make_unique<CHandle>();
    pHandle->m_pSoundFile = ::sf_open(path.c_str(), SFM_READ, &info);
    if (!pHandle->m_pSoundFile)
        return fail(openFailure());
    if (const char* pAbsurdity = absurdityOf(info))
        return fail(pAbsurdity);
    m_pHandle = std::move(pHandle);
    m_info = {info.frames, info.channels, info.samplerate, info.format};
    m_nMissingFrames = std::max(promisedWaveFrames(path) - info.frames, 0LL);
    return true;
}

bool CSoundFile::openForWriting(const std::filesystem::path& path, const CSoundFileInfo& wanted,
                                std::string& sError)
{
    (void)close();
    const auto fail = [&](std::string_view sReason) {
        sError = sentence("created", path, sReason);
        return false;
    };
    SF_INFO info = {};
    info.channels = wanted.m_nChannels;
    info.samplerate = wanted.m_nSampleRate;
    info.format = wanted.m_nFormat;
    if (info.samplerate <= 0)
        return fail("The sample rate must be above 0");
    if (!::sf_format_check(&info))
        return fail("This kind of file cannot hold " + std::to_string(info.channels) +
                    " channels of this sample format");

    std::error_code error;
    const bool bWasThere = std::filesystem::exists(path, error);
    auto pHandle = std::make_unique<CHandle>();
    pHandle->m_nDescriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (pHandle->m_nDescriptor < 0)
        return fail(std::strerror(errno));
    SF_VIRTUAL_IO io = {&CHandle::length, &CHandle::seek, &CHandle::read, &CHandle::write, &CHandle::tell};
    pHandle->m_pSoundFile = ::sf_open_virtual(&io, SFM_WRITE, &info, pHandle.get());
    if (!pHandle->m_pSoundFile || pHandle->m_bWriteFailed) {
        const std::string sReason =
            pHandle->m_bWriteFailed ? "The disk did not take its header" : ::sf_strerror(nullptr);
        pHandle.reset();
        if (!bWasThere)
            std::filesystem::remove(path, error);
        return fail(sReason);
    }
    // Besides keeping overs from wrapping, this makes a 16-bit or 24-bit sample come back as it was read.
    ::sf_command(pHandle->m_pSoundFile, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    // The chunk of peaks holds the time of day; without it the same samples give the same file.
    ::sf_command(pHandle->m_pSoundFile, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    m_pHandle = std::move(pHandle);
    m_info = {0, info.channels, info.samplerate, info.format};
    return true;
}

long long CSoundFile::readFloats(float* pItems, long long nItems)
{
    if (!m_pHandle || nItems <= 0)
        return 0;
    // Counted in frames, because a file may end within one.
    return ::sf_readf_float(m_pHandle->m_pSoundFile, pItems, nItems / m_info.m_nChannels) *
           m_info.m_nChannels;
}

long long CSoundFile::writeFloats(const float* pItems, long long nItems)
{
    if (!m_pHandle || nItems <= 0)
        return 0;
    return ::sf_write_float(m_pHandle->m_pSoundFile, pItems, nItems - nItems % m_info.m_nChannels);
}

bool CSoundFile::seekFrames(long long nFrame)
{
    return m_pHandle && nFrame >= 0 && ::sf_seek(m_pHandle->m_pSoundFile, nFrame, SEEK_SET) == nFrame;
}

bool CSoundFile::holdsOvers(int nFormat)
{
    const int nSampleFormat = nFormat & SF_FORMAT_SUBMASK;
    return nSampleFormat == SF_FORMAT_FLOAT || nSampleFormat == SF_FORMAT_DOUBLE;
}

bool CSoundFile::isOpen() const
{
    return m_pHandle != nullptr;
}

bool CSoundFile::close()
{
    const bool bWhole = !m_pHandle || m_pHandle->close();
    m_pHandle.reset();
    m_info = {};
    m_nMissingFrames = 0;
    return bWhole;
}

} // namespace velmora
