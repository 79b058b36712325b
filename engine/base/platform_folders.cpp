#include "base/platform_folders.h"

#include <cstdlib>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace velmora {

namespace {

std::string environment(const char* pName)
{
    const char* pValue = std::getenv(pName);
    return pValue ? pValue : "";
}

// HOME, else what the system's list of users says.
std::string homeFolder()
{
    std::string sHome = environment("HOME");
    if (sHome.empty()) {
        const passwd* pUser = ::getpwuid(::getuid());
        sHome = pUser && pUser->pw_dir ? pUser->pw_dir : "";
    }
    return sHome;
}

} // namespace

std::filesystem::path programFolder()
{
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::path() : executable.parent_path();
}

std::filesystem::path programDataFolder(const char* pFolderName)
{
    const auto program = programFolder();
    std::error_code error;
    for (const auto& candidate :
         {program / pFolderName, program.parent_path() / "share" / "velmora" / pFolderName}) {
        if (std::filesystem::is_directory(candidate, error))
            return candidate;
    }
    return {};
}

std::filesystem::path userFolder()
{
    const std::string sBase = environment("APPDATA");
    return sBase.empty() ? std::filesystem::path() : std::filesystem::path(sBase) / "Velmora";
}

void provideApplicationDataVariable()
{
    if (!environment("APPDATA").empty())
        return;
    std::string sBase = environment("XDG_DATA_HOME");
    if (!sBase.starts_with('/'))
        sBase.clear(); // a relative one is to be ignored
    if (sBase.empty() && !homeFolder().empty())
        sBase = homeFolder() + "/.local/share";
    if (!sBase.empty())
        ::setenv("APPDATA", sBase.c_str(), 1);
}

} // namespace velmora
