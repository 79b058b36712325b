#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velmora {

// The modifier keys as Windows numbers them.
inline constexpr std::uint8_t VK_OF_SHIFT = 16;
inline constexpr std::uint8_t VK_OF_CTRL = 17;
inline constexpr std::uint8_t VK_OF_ALT = 18;

// Modifiers as a set of bits.
inline constexpr unsigned MODIFIER_SHIFT = 1;
inline constexpr unsigned MODIFIER_CTRL = 2;
inline constexpr unsigned MODIFIER_ALT = 4;

struct CModifierKey
{
    unsigned m_uModifier;
    std::uint8_t m_uVirtualKey;
};

// In the order in which they go down; they come up the other way round.
[[nodiscard]] std::span<const CModifierKey> modifierKeys();

// What a keyword of the key language stands for.
enum class EKeyword
{
    key,       // m_uValue is the virtual key
    toggleOn,  // the same, pressed only when its light is off
    toggleOff, // the same, pressed only when its light is on
    modifier,  // m_uValue are the modifiers of the next key
    lock,      // m_uValue is the modifier that stays down from here on
    unlock,    //
    delay,     // takes milliseconds
    repeat,    // takes a count
    endRepeat
};

struct CKeywordRow
{
    std::string_view m_sName;
    EKeyword m_eKind;
    unsigned m_uValue;
};

// Every keyword of the key language.
[[nodiscard]] std::span<const CKeywordRow> keywordTable();

// Null if there is none of that name; the case counts.
[[nodiscard]] const CKeywordRow* findKeyword(std::string_view sName);

// The key that types a character, with or without Shift.
struct CCharacterKey
{
    std::uint8_t m_uVirtualKey = 0;
    bool m_bShift = false;
};

// By the keyboard of the United States; none outside printable ASCII, tab and line end.
[[nodiscard]] std::optional<CCharacterKey> keyOfCharacter(char cCharacter);

// The character that a printing key types without Shift there; 0 for other keys.
[[nodiscard]] char characterOfKey(std::uint8_t uVirtualKey);

// Whether the key is one that came with the second block of the keyboard.
[[nodiscard]] bool isExtendedKey(std::uint8_t uVirtualKey);

} // namespace velmora
