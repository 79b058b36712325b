#include "base/platform_guid.h"

#include "base/text.h"

#include <random>
#include <unistd.h>

namespace velmora {

CGUID makeGUID()
{
    CGUID guid;
    if (::getentropy(guid.data(), guid.size()) != 0) {
        std::random_device random;
        for (std::uint8_t& uByte : guid)
            uByte = static_cast<std::uint8_t>(random());
    }
    guid[7] = static_cast<std::uint8_t>((guid[7] & 0x0F) | 0x40); // version: the third field's high nibble
    guid[8] = static_cast<std::uint8_t>((guid[8] & 0x3F) | 0x80); // variant
    return guid;
}

std::string guidString(const CGUID& guid)
{
    const auto& b = guid;
    return formatted("{%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X}", b[3], b[2],
                     b[1], b[0], b[5], b[4], b[7], b[6], b[8], b[9], b[10], b[11], b[12], b[13], b[14],
                     b[15]);
}

std::string makeGUIDString()
{
    return guidString(makeGUID());
}

std::array<std::uint32_t, 4> guidWords(const CGUID& guid)
{
    std::array<std::uint32_t, 4> words{};
    for (std::size_t i = 0; i < guid.size(); ++i)
        words[i / 4] |= static_cast<std::uint32_t>(guid[i]) << (i % 4 * 8);
    return words;
}

} // namespace velmora
