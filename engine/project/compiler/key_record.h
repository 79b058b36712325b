#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

enum class EKeyMovement
{
    press = 0,
    release = 1,
    pressAndRelease = 2
};

enum class EKeyAction
{
    normal = 0,
    shiftLock = 1,
    shiftUnlock = 2,
    ctrlLock = 3,
    ctrlUnlock = 4,
    altLock = 5,
    altUnlock = 6,
    delay = 7, // this and the next two move no key
    repeat = 8,
    endRepeat = 9
};

enum class EToggleWish
{
    none,
    on, // the key is pressed only when its light is off
    off
};

// One step of a key string.
struct CKeyRecord
{
    std::uint8_t m_uVirtualKey = 0;
    EKeyMovement m_eEvent = EKeyMovement::press;
    EKeyAction m_eAction = EKeyAction::normal;
    unsigned m_uCount = 0; // milliseconds of a delay, rounds of a repeat
    EToggleWish m_eToggle = EToggleWish::none;
    bool operator==(const CKeyRecord&) const = default;
};

// What a key string may ask for at most.
inline constexpr unsigned MAX_KEY_REPEATS = 1000;
inline constexpr unsigned MAX_KEY_STEPS = 10000;             // of all repeats together
inline constexpr unsigned MAX_KEY_WAIT_MILLISECONDS = 60000; // of all delays together
inline constexpr unsigned MAX_KEY_REPEAT_DEPTH = 8;

// Understands a key string. Empty when understood; else what is wrong and where, and records is empty.
[[nodiscard]] std::string parseKeys(std::string_view sKeys, std::vector<CKeyRecord>& records);

} // namespace velmora
