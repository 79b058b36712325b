// Feeds arbitrary bytes to the import reader and checks what it says of those it takes.

#include "audio/wave_import.h"

#include <cstdlib>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t uSize)
{
    std::istringstream file(std::string(reinterpret_cast<const char*>(pBytes), uSize));
    velmora::CWaveImporter importer;
    if (importer.read(file)) {
        const bool bWholeFrames = importer.frames() * importer.channels() == importer.samples().size();
        const bool bInsideFile = importer.samples().size() * (importer.bitsPerSample() / 8) <= uSize;
        if (!bWholeFrames || !bInsideFile)
            std::abort();
    }
    return 0;
}
