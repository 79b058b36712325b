#include "base/safe_file.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

class CDescriptor
{
  public:
    explicit CDescriptor(int nDescriptor) : m_nDescriptor(nDescriptor) {}
    ~CDescriptor() { close(); }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;

    [[nodiscard]] int get() const { return m_nDescriptor; }

    bool close()
    {
        const int nDescriptor = m_nDescriptor;
        m_nDescriptor = -1;
        return nDescriptor < 0 || ::close(nDescriptor) == 0;
    }

  private:
    int m_nDescriptor;
};

std::filesystem::path temporaryNameBeside(const std::filesystem::path& target)
{
    static std::atomic<unsigned> uCounter{0};
    const std::string sStem = "." + target.stem().string() + "." + std::to_string(::getpid()) + "." +
                              std::to_string(uCounter.fetch_add(1)) + ".part";
    return target.parent_path() / (sStem + target.extension().string());
}

// A link is followed, so that the file that it names is replaced and not the link.
std::filesystem::path resolveLink(std::filesystem::path target)
{
    std::error_code error;
    if (std::filesystem::is_symlink(target, error)) {
        const auto resolved = std::filesystem::weakly_canonical(target, error);
        if (!error)
            return resolved;
    }
    return target;
}

bool flushToDisk(const std::filesystem::path& path)
{
    CDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return file.get() >= 0 && ::fsync(file.get()) == 0;
}

bool writeAll(int nDescriptor, std::string_view sContents)
{
    while (!sContents.empty()) {
        const ssize_t nWritten = ::write(nDescriptor, sContents.data(), sContents.size());
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten <= 0)
            return false;
        sContents.remove_prefix(static_cast<std::size_t>(nWritten));
    }
    return true;
}

} // namespace

CSafeFile::CSafeFile(std::filesystem::path target)
    : m_target(resolveLink(std::move(target))), m_temporary(temporaryNameBeside(m_target))
{
}

CSafeFile::~CSafeFile()
{
    std::error_code ignored;
    if (!m_bCommitted)
        std::filesystem::remove(m_temporary, ignored);
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
    if (descriptor.get() < 0 || !writeAll(descriptor.get(), sContents) || !descriptor.close())
        return fail(std::strerror(errno));
    return file.commit() || fail(file.error());
}

} // namespace velmora
