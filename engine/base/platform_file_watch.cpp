#include "base/platform_file_watch.h"

#include "base/platform_descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstring>
#include <fstream>
#include <poll.h>
#include <sys/inotify.h>

namespace velmora {

namespace {

using CClock = std::chrono::steady_clock;

// What an editor's save is made of lies closer together than this.
constexpr int SETTLING_MILLISECONDS = 30;

// A file that is only being written says nothing until it is closed.
constexpr std::uint32_t EVENTS =
    IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

// A file's clock may be too coarse to tell two writes apart: a file that was written this short a time ago
// is always read again.
constexpr std::chrono::seconds TIME_IS_TRUSTED_AFTER{2};

// FNV-1a, 64 bits. Source: G. Fowler, L. C. Noll, K.-P. Vo, "The FNV Non-Cryptographic Hash Algorithm".
std::uint64_t hashOf(const std::filesystem::path& file)
{
    std::uint64_t uHash = 0xCBF29CE484222325U;
    std::ifstream stream(file, std::ios::binary);
    std::array<char, 16384> buffer{};
    while (stream.read(buffer.data(), buffer.size()), stream.gcount() > 0)
        for (std::streamsize n = 0; n < stream.gcount(); ++n)
            uHash =
                (uHash ^ static_cast<unsigned char>(buffer[static_cast<std::size_t>(n)])) * 0x100000001B3U;
    return uHash;
}

} // namespace

CFileWatch::CFileWatch(std::filesystem::path folder, CFilter filter)
    : m_folder(std::move(folder)), m_filter(std::move(filter)),
      m_pQueue(std::make_unique<CDescriptor>(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)))
{
    if (m_pQueue->get() < 0 || ::inotify_add_watch(m_pQueue->get(), m_folder.c_str(), EVENTS) < 0)
        m_sError = "The folder " + m_folder.string() + " cannot be watched: " + std::strerror(errno) + ".";
    takeAsKnown();
}

CFileWatch::~CFileWatch() = default;

void CFileWatch::takeAsKnown()
{
    m_known = fingerprints();
}

std::vector<std::string> CFileWatch::waitForChanges(double dSeconds)
{
    const auto end =
        CClock::now() + std::chrono::duration_cast<CClock::duration>(std::chrono::duration<double>(dSeconds));
    while (m_sError.empty()) {
        const double dLeft = std::chrono::duration<double, std::milli>(end - CClock::now()).count();
        if (!m_bMayHaveChanged && !waitForEvents(std::max(0, static_cast<int>(std::ceil(dLeft)))))
            return {};
        while (waitForEvents(SETTLING_MILLISECONDS)) {
        }
        m_bMayHaveChanged = false;
        CFingerprints now = fingerprints();
        std::vector<std::string> changed;
        for (const auto& [sName, fingerprint] : now) {
            const auto known = m_known.find(sName);
            if (known == m_known.end() || known->second.m_uHash != fingerprint.m_uHash)
                changed.push_back(sName);
        }
        for (const auto& [sName, fingerprint] : m_known)
            if (!now.contains(sName))
                changed.push_back(sName);
        m_known = std::move(now);
        if (!changed.empty()) {
            std::ranges::sort(changed);
            return changed;
        }
    }
    return {};
}

CFileWatch::CFingerprints CFileWatch::fingerprints() const
{
    CFingerprints found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(m_folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string sName = entry->path().filename().string();
        std::error_code unreadable;
        if (!m_filter(sName) || !entry->is_regular_file(unreadable))
            continue;
        CFingerprint fingerprint{entry->file_size(unreadable), entry->last_write_time(unreadable), 0};
        const auto known = m_known.find(sName);
        const bool bUntouched =
            known != m_known.end() && known->second.m_uSize == fingerprint.m_uSize &&
            known->second.m_time == fingerprint.m_time &&
            std::filesystem::file_time_type::clock::now() - fingerprint.m_time > TIME_IS_TRUSTED_AFTER;
        fingerprint.m_uHash = bUntouched ? known->second.m_uHash : hashOf(entry->path());
        found.emplace(sName, fingerprint);
    }
    return found;
}

bool CFileWatch::waitForEvents(int nMilliseconds)
{
    pollfd queue{m_pQueue->get(), POLLIN, 0};
    if (::poll(&queue, 1, nMilliseconds) <= 0)
        return false;
    readEvents();
    return true;
}

void CFileWatch::readEvents()
{
    alignas(inotify_event) std::array<char, 4096> buffer{};
    ssize_t nBytes = 0;
    while ((nBytes = ::read(m_pQueue->get(), buffer.data(), buffer.size())) > 0) {
        m_bMayHaveChanged = true;
        for (std::size_t uAt = 0; uAt < static_cast<std::size_t>(nBytes);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + uAt, sizeof event);
            if ((event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED | IN_UNMOUNT)) != 0)
                m_sError = "The folder " + m_folder.string() + " is gone.";
            uAt += sizeof event + event.len;
        }
    }
}

} // namespace velmora
