#include "base/platform_file_read.h"

#include "base/platform_descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace velmora {

namespace {

constexpr off_t LARGEST_FILE = off_t{1} << 30;

// What the system's answer to a failed open means. A share on a network tells a file that a program on
// another machine holds as busy.
EFileRead readOfError(int nError)
{
    switch (nError) {
    case ENOENT:
    case ENOTDIR:
        return EFileRead::missing;
    case EBUSY:
    case EAGAIN:
    case ETXTBSY:
        return EFileRead::locked;
    default:
        return EFileRead::failed;
    }
}

bool isWriteLocked(int nDescriptor)
{
    struct flock lock = {};
    lock.l_type = F_RDLCK;
    lock.l_whence = SEEK_SET;
    if (::fcntl(nDescriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type == F_WRLCK)
        return true;
    return ::flock(nDescriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

// Reads to the end, whatever size the file has or gets meanwhile.
bool readAll(int nDescriptor, std::size_t uExpected, std::string& sText)
{
    std::size_t uRead = 0;
    for (;;) {
        sText.resize(std::max(uExpected + 1, uRead + uRead / 2 + 1));
        const ssize_t nRead = ::read(nDescriptor, sText.data() + uRead, sText.size() - uRead);
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead < 0)
            return false;
        uRead += static_cast<std::size_t>(nRead);
        if (nRead == 0) {
            sText.resize(uRead);
            return true;
        }
    }
}

} // namespace

EFileRead readFileUnlessLocked(const std::filesystem::path& path, std::string& sText)
{
    sText.clear();
    const CDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.get() < 0)
        return readOfError(errno);
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > LARGEST_FILE)
        return EFileRead::failed;
    if (isWriteLocked(file.get()))
        return EFileRead::locked;
    if (readAll(file.get(), static_cast<std::size_t>(status.st_size), sText))
        return EFileRead::done;
    sText.clear();
    return EFileRead::failed;
}

} // namespace velmora
