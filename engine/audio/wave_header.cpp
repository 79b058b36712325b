#include "audio/wave_header.h"

#include "audio/little_endian.h"

#include <array>
#include <fstream>
#include <string_view>

namespace velmora {

namespace {

// Lengths from here on are what writers put down that do not know better.
constexpr std::uint32_t UNKNOWN_LENGTH = 0x7F000000;

constexpr std::array<std::uint16_t, 3> UNCOMPRESSED_TAGS = {0x0001, 0x0003, 0xFFFE};

bool isUncompressed(std::uint16_t uTag)
{
    for (const std::uint16_t uKnown : UNCOMPRESSED_TAGS)
        if (uTag == uKnown)
            return true;
    return false;
}

} // namespace

long long promisedWaveFrames(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::array<char, 16> bytes{};
    const auto read = [&](std::size_t uCount) {
        return static_cast<bool>(file.read(bytes.data(), static_cast<std::streamsize>(uCount)));
    };
    const auto* pBytes = reinterpret_cast<const std::uint8_t*>(bytes.data());
    if (!read(12) || std::string_view(bytes.data(), 4) != "RIFF" ||
        std::string_view(bytes.data() + 8, 4) != "WAVE")
        return 0;
    std::uint16_t uBlockAlign = 0;
    while (read(8)) {
        const std::string sId(bytes.data(), 4);
        const auto uSize = littleEndian<std::uint32_t>(pBytes + 4);
        if (sId == "data")
            return uBlockAlign > 0 && uSize < UNKNOWN_LENGTH ? uSize / uBlockAlign : 0;
        std::streamoff nLeft = static_cast<std::streamoff>(uSize) + uSize % 2;
        if (sId == "fmt " && uSize >= 16) {
            if (!read(16) || !isUncompressed(littleEndian<std::uint16_t>(pBytes)))
                return 0;
            uBlockAlign = littleEndian<std::uint16_t>(pBytes + 12);
            nLeft -= 16;
        }
        file.seekg(nLeft, std::ios::cur);
    }
    return 0;
}

} // namespace velmora
