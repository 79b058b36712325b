#include "base/safe_file.h"

#include "base/platform_descriptor.h"
#include "base/text.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

// A name that nobody else will choose, within what file systems allow however long the target's is.
std::filesystem::path temporaryNameBeside(const std::filesystem::path& target)
{
    constexpr int LONGEST_STEM = 180;
    std::random_device random;
    return target.parent_path() / formatted(".%.*s.%08x%08x.part%s", LONGEST_STEM, target.stem().c_str(),
                                            random(), random(), target.extension().c_str());
}

// A link is followed, so that the file that it names is replaced and not the link.
std::filesystem::path resolveLink(std::filesystem::path target)
{
    std::error_code error;
    if (std::filesystem::is_symlink(target, error)) {
        auto resolved = std::filesystem::weakly_canonical(target, error);
        if (!error)
            return resolved;
    }
    return target;
}

// The unfinished files of the process, kept where a signal handler can read them. A slot is written
// before its flag is raised, and its flag is lowered when the file is finished.
struct CUnfinishedFile
{
    std::atomic<bool> m_bClaimed{false};
    std::atomic<bool> m_bListed{false};
    char m_path[4096];
};

constinit std::array<CUnfinishedFile, 16> g_unfinishedFiles{};

void listAsUnfinished(const std::filesystem::path& path)
{
    if (path.native().size() >= sizeof CUnfinishedFile::m_path)
        return;
    for (CUnfinishedFile& file : g_unfinishedFiles)
        if (!file.m_bClaimed.exchange(true)) {
            std::memcpy(file.m_path, path.c_str(), path.native().size() + 1);
            file.m_bListed = true;
            return;
        }
}

void listAsFinished(const std::filesystem::path& path)
{
    for (CUnfinishedFile& file : g_unfinishedFiles)
        if (file.m_bListed && path.native() == file.m_path) {
            file.m_bListed = false;
            file.m_bClaimed = false;
            return;
        }
}

bool flushToDisk(const std::filesystem::path& path)
{
    CDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return file.get() >= 0 && ::fsync(file.get()) == 0;
}

} // namespace

CSafeFile::CSafeFile(std::filesystem::path target)
    : m_target(resolveLink(std::move(target))), m_temporary(temporaryNameBeside(m_target))
{
    listAsUnfinished(m_temporary);
}

CSafeFile::~CSafeFile()
{
    std::error_code ignored;
    if (!m_bCommitted)
        std::filesystem::remove(m_temporary, ignored);
    listAsFinished(m_temporary);
}

bool CSafeFile::commit()
{
    struct stat old = {};
    if (::stat(m_target.c_str(), &old) == 0)
        ::chmod(m_temporary.c_str(), old.st_mode & 07777);
    if (!flushToDisk(m_temporary) || ::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        m_sError = std::strerror(errno);
        return false;
    }
    m_bCommitted = true;
    return true;
}

bool writeFileSafely(const std::filesystem::path& path, std::string_view sContents, std::string* sError)
{
    CSafeFile file(path);
    const auto fail = [&](const std::string& sReason) {
        if (sError)
            *sError = sReason;
        return false;
    };
    CDescriptor descriptor(::open(file.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (descriptor.get() < 0 || !descriptor.write(sContents.data(), sContents.size()) || !descriptor.close())
        return fail(std::strerror(errno));
    return file.commit() || fail(file.error());
}

void removeUnfinishedFiles() noexcept
{
    for (const CUnfinishedFile& file : g_unfinishedFiles)
        if (file.m_bListed)
            ::unlink(file.m_path);
}

} // namespace velmora
