// Feeds arbitrary bytes to the preset reader and checks that what it found can be asked for.

#include "project/preset.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t uSize)
{
    const velmora::CPreset preset(std::string_view(reinterpret_cast<const char*>(pBytes), uSize));
    // A line takes at least the two bytes of its colon and its end.
    if (preset.name().size() > uSize || preset.controlValues().size() > uSize / 2 ||
        preset.joystickValues().size() > 16 * 7)
        std::abort();
    for (const auto& value : preset.controlValues())
        if (!std::isfinite(value.m_dValue) || !std::isfinite(preset.controlValue(value.m_uId)))
            std::abort();
    for (std::uint32_t i = 0; i < 4; ++i)
        if (!std::isfinite(preset.additionalValue(i)) || !std::isfinite(preset.joystickValue(i, i)))
            std::abort();
    return 0;
}
