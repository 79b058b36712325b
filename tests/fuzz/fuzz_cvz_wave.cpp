// Feeds arbitrary bytes to the wave loader, from a file and from an archive. Both must come to the same
// verdict, and what is loaded must survive being saved.

#include "audio/cvz_wave.h"
#include "audio/file_exception.h"
#include "base/archive.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <span>
#include <sstream>
#include <string>

namespace {

using velmora::cvzWave;

std::optional<cvzWave> loadFromFile(const std::string& sBytes)
{
    std::istringstream file(sBytes);
    std::optional<cvzWave> wave(std::in_place);
    try {
        wave->Load(file);
    } catch (const velmora::CFileException&) {
        wave.reset();
    }
    return wave;
}

std::optional<cvzWave> loadFromArchive(const std::string& sBytes)
{
    velmora::CArchive archive(std::as_bytes(std::span(sBytes)));
    std::optional<cvzWave> wave(std::in_place);
    try {
        wave->Serialize(archive);
    } catch (const velmora::CArchiveError&) {
        wave.reset();
    }
    return wave;
}

bool isSame(const cvzWave& left, const cvzWave& right)
{
    return left.format().m_uChannels == right.format().m_uChannels &&
           std::ranges::equal(std::span(left.GetBuffer(), left.GetBufferLength()),
                              std::span(right.GetBuffer(), right.GetBufferLength()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t uSize)
{
    const std::string sBytes(reinterpret_cast<const char*>(pBytes), uSize);
    const auto fromFile = loadFromFile(sBytes);
    const auto fromArchive = loadFromArchive(sBytes);
    if (fromFile.has_value() != fromArchive.has_value())
        std::abort();
    if (!fromFile)
        return 0;
    if (!isSame(*fromFile, *fromArchive) || fromFile->GetBufferLength() > uSize)
        std::abort();
    std::ostringstream saved;
    fromFile->Save(saved);
    const auto again = loadFromFile(saved.str());
    if (!again || !isSame(*fromFile, *again))
        std::abort();
    return 0;
}
