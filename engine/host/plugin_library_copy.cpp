#include "host/plugin_library_copy.h"

#include "base/platform_descriptor.h"
#include "host/plugin_library_check.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace velmora {

namespace {

namespace fs = std::filesystem;

std::string folderPrefix(int nProcess)
{
    return "velmora-" + std::to_string(nProcess) + "-";
}

// A pipe or device would make open() wait or do something; a folder would open and then not read.
CDescriptor openForReading(const fs::path& file, std::string& sError)
{
    CDescriptor source(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    sError = source.get() < 0 ? std::strerror(errno) : std::string();
    return source;
}

bool mayHoldCode(const fs::path& folder)
{
    struct statvfs status = {};
    return ::statvfs(folder.c_str(), &status) != 0 || (status.f_flag & ST_NOEXEC) == 0;
}

bool copyContents(int nSource, const CDescriptor& target)
{
    std::array<char, 65536> buffer;
    for (off_t nOffset = 0;;) {
        const ssize_t nRead = ::pread(nSource, buffer.data(), buffer.size(), nOffset);
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead <= 0)
            return nRead == 0;
        if (!target.write(buffer.data(), static_cast<std::size_t>(nRead)))
            return false;
        nOffset += nRead;
    }
}

// A new empty folder that only this user can enter; empty with errno set if there can be none.
fs::path makeUniqueFolder(const fs::path& parent)
{
    std::error_code error;
    fs::create_directories(parent, error);
    std::string sPattern = (parent / (folderPrefix(::getpid()) + "XXXXXX")).string();
    return ::mkdtemp(sPattern.data()) ? fs::path(sPattern) : fs::path();
}

} // namespace

std::vector<fs::path> CPlugInLibraryCopy::usualFolders()
{
    std::vector<fs::path> folders{"/dev/shm"};
    const char* pCache = std::getenv("XDG_CACHE_HOME");
    const char* pHome = std::getenv("HOME");
    if (pCache && *pCache == '/')
        folders.push_back(fs::path(pCache) / "velmora");
    else if (pHome && *pHome == '/')
        folders.push_back(fs::path(pHome) / ".cache" / "velmora");
    std::error_code error;
    const auto temporary = fs::temp_directory_path(error);
    if (!error)
        folders.push_back(temporary);
    return folders;
}

std::unique_ptr<CPlugInLibraryCopy>
CPlugInLibraryCopy::make(const fs::path& file, std::span<const fs::path> folders, std::string& sError)
{
    const CDescriptor source = openForReading(file, sError);
    if (source.get() < 0)
        return nullptr;
    sError = faultOfLibraryFile(source.get());
    if (!sError.empty())
        return nullptr;

    sError = "there is no folder to copy it to";
    for (const auto& parent : folders) {
        const auto failed = [&](const char* pReason) {
            sError = "cannot be copied to " + parent.string() + ": " + pReason;
        };
        const fs::path folder = makeUniqueFolder(parent);
        if (folder.empty()) {
            failed(std::strerror(errno));
            continue;
        }
        std::unique_ptr<CPlugInLibraryCopy> pCopy(new CPlugInLibraryCopy(folder / file.filename()));
        if (!mayHoldCode(folder)) {
            failed("programs may not be run from there");
            continue;
        }
        const CDescriptor target(::open(pCopy->path().c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0700));
        if (target.get() < 0 || !copyContents(source.get(), target)) {
            failed(std::strerror(errno));
            continue;
        }
        // The copy is judged once more: the original may have been written to meanwhile.
        sError = faultOfLibraryFile(target.get());
        return sError.empty() ? std::move(pCopy) : nullptr;
    }
    return nullptr;
}

void CPlugInLibraryCopy::removeLeftovers(int nProcess, std::span<const fs::path> folders)
{
    const std::string sPrefix = folderPrefix(nProcess);
    for (const auto& folder : folders) {
        std::error_code error;
        std::vector<fs::path> leftovers;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            if (entry->path().filename().string().starts_with(sPrefix))
                leftovers.push_back(entry->path());
        }
        for (const auto& leftover : leftovers)
            fs::remove_all(leftover, error);
    }
}

CPlugInLibraryCopy::~CPlugInLibraryCopy()
{
    ::unlink(m_path.c_str());
    ::rmdir(m_path.parent_path().c_str());
}

} // namespace velmora
