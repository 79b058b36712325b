// Lets the project read arbitrary bytes as its file. A project that loads must come back the same from what
// it stores; a file that is refused must leave the project as a fresh one is.

#include "base/archive.h"
#include "project/dsp_project.h"

#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

namespace {

std::string stored(velmora::CDSPProject& project)
{
    std::string sBytes;
    velmora::CArchive archive(sBytes);
    project.Serialize(archive);
    return sBytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t uSize)
{
    static const std::string s_sFresh = [] {
        velmora::CDSPProject fresh;
        return stored(fresh);
    }();
    velmora::CDSPProject project;
    velmora::CArchive archive(std::as_bytes(std::span(pBytes, uSize)));
    try {
        project.Serialize(archive);
    } catch (const velmora::CArchiveError&) {
        if (stored(project) != s_sFresh)
            std::abort();
        return 0;
    }
    const std::string sStored = stored(project);
    velmora::CDSPProject again;
    velmora::CArchive storedArchive(std::as_bytes(std::span(sStored)));
    again.Serialize(storedArchive);
    if (stored(again) != sStored)
        std::abort();
    return 0;
}
