// Lets the settings read arbitrary bytes as their file. A file that they take must come back the same from
// a second reading of what they wrote; one that they refuse must be left as it was.

#include "host/settings.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string>

namespace {

// In memory where there is such a place, since every round writes the file to the disk.
std::filesystem::path makeFolder()
{
    const std::filesystem::path memory = "/dev/shm";
    const bool bHasMemory = std::filesystem::is_directory(memory);
    std::string sName =
        (bHasMemory ? memory : std::filesystem::temp_directory_path()) / "velmora-fuzz-XXXXXX";
    if (!::mkdtemp(sName.data()))
        std::abort();
    return sName;
}

struct CFolder
{
    const std::filesystem::path m_path = makeFolder();
    ~CFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
};

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t uSize)
{
    static const CFolder s_folder;
    const auto path = s_folder.m_path / "socket.log";
    const std::string sBytes(reinterpret_cast<const char*>(pBytes), uSize);
    std::ofstream(path, std::ios::binary) << sBytes;

    velmora::CSettings settings;
    std::string sError;
    if (!settings.load(path, "user", sError)) {
        if (sError.empty() || readFile(path) != sBytes)
            std::abort();
        return 0;
    }
    const std::string sWritten = readFile(path);
    velmora::CSettings again;
    if (!again.load(path, "user", sError) || readFile(path) != sWritten)
        std::abort();
    return 0;
}
