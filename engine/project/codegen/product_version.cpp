#include "project/codegen/product_version.h"

namespace velmora {

std::string productVersion()
{
    return VELMORA_VERSION;
}

unsigned versionNumber(std::string_view sProductVersion)
{
    unsigned uNumber = 0;
    for (const char c : sProductVersion)
        if (c >= '0' && c <= '9')
            uNumber = uNumber * 10 + static_cast<unsigned>(c - '0');
    return uNumber;
}

unsigned runningVersionNumber()
{
    return versionNumber(productVersion());
}

} // namespace velmora
