#include "project/compiler/key_table.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr unsigned CTRL_ALT = MODIFIER_CTRL | MODIFIER_ALT;
constexpr unsigned CTRL_SHIFT = MODIFIER_CTRL | MODIFIER_SHIFT;
constexpr unsigned ALT_SHIFT = MODIFIER_ALT | MODIFIER_SHIFT;

using enum EKeyword;

constexpr CModifierKey MODIFIER_KEYS[] = {
    {MODIFIER_CTRL, VK_OF_CTRL},
    {MODIFIER_ALT, VK_OF_ALT},
    {MODIFIER_SHIFT, VK_OF_SHIFT},
};

constexpr CKeywordRow KEYWORDS[] = {
    {"ENTER", key, 0x0D},
    {"BACK", key, 0x08},
    {"TAB", key, 0x09},
    {"ESC", key, 0x1B},
    {"PAUSE", key, 0x13},
    {"CAPSLOCK", key, 0x14},
    {"PAGEUP", key, 0x21},
    {"PAGEDOWN", key, 0x22},
    {"END", key, 0x23},
    {"HOME", key, 0x24},
    {"LEFT", key, 0x25},
    {"UP", key, 0x26},
    {"RIGHT", key, 0x27},
    {"DOWN", key, 0x28},
    {"PRINTSCRN", key, 0x2C},
    {"INSERT", key, 0x2D},
    {"DELETE", key, 0x2E},
    {"LWIN", key, 0x5B},
    {"RWIN", key, 0x5C},
    {"APPS", key, 0x5D},
    {"NUMPAD0", key, 0x60},
    {"NUMPAD1", key, 0x61},
    {"NUMPAD2", key, 0x62},
    {"NUMPAD3", key, 0x63},
    {"NUMPAD4", key, 0x64},
    {"NUMPAD5", key, 0x65},
    {"NUMPAD6", key, 0x66},
    {"NUMPAD7", key, 0x67},
    {"NUMPAD8", key, 0x68},
    {"NUMPAD9", key, 0x69},
    {"F1", key, 0x70},
    {"F2", key, 0x71},
    {"F3", key, 0x72},
    {"F4", key, 0x73},
    {"F5", key, 0x74},
    {"F6", key, 0x75},
    {"F7", key, 0x76},
    {"F8", key, 0x77},
    {"F9", key, 0x78},
    {"F10", key, 0x79},
    {"F11", key, 0x7A},
    {"F12", key, 0x7B},
    {"NUMLOCK", key, 0x90},
    {"SCROLLLOCK", key, 0x91},
    {"CAPSLOCK_ON", toggleOn, 0x14},
    {"CAPSLOCK_OFF", toggleOff, 0x14},
    {"NUMLOCK_ON", toggleOn, 0x90},
    {"NUMLOCK_OFF", toggleOff, 0x90},
    {"SCROLLLOCK_ON", toggleOn, 0x91},
    {"SCROLLLOCK_OFF", toggleOff, 0x91},
    {"SHIFT", modifier, MODIFIER_SHIFT},
    {"CTRL", modifier, MODIFIER_CTRL},
    {"ALT", modifier, MODIFIER_ALT},
    {"CTRL+ALT", modifier, CTRL_ALT},
    {"CTRL+SHIFT", modifier, CTRL_SHIFT},
    {"CTRL+ALT+SHIFT", modifier, CTRL_ALT | MODIFIER_SHIFT},
    {"ALT+SHIFT", modifier, ALT_SHIFT},
    {"SHIFT_LOCK", lock, MODIFIER_SHIFT},
    {"SHIFT_UNLOCK", unlock, MODIFIER_SHIFT},
    {"CTRL_LOCK", lock, MODIFIER_CTRL},
    {"CTRL_UNLOCK", unlock, MODIFIER_CTRL},
    {"ALT_LOCK", lock, MODIFIER_ALT},
    {"ALT_UNLOCK", unlock, MODIFIER_ALT},
    {"DELAY", delay, 0},
    {"REPEAT", repeat, 0},
    {"END_REPEAT", endRepeat, 0},
};

// The printing keys beside letters and digits: virtual key, and what it types without and with Shift.
struct CPrintingKey
{
    std::uint8_t m_uVirtualKey;
    char m_cPlain;
    char m_cShifted;
};

constexpr CPrintingKey PRINTING_KEYS[] = {
    {0x30, '0', ')'},  {0x31, '1', '!'},  {0x32, '2', '@'}, {0x33, '3', '#'}, {0x34, '4', '$'},
    {0x35, '5', '%'},  {0x36, '6', '^'},  {0x37, '7', '&'}, {0x38, '8', '*'}, {0x39, '9', '('},
    {0x20, ' ', '\0'}, {0xBA, ';', ':'},  {0xBB, '=', '+'}, {0xBC, ',', '<'}, {0xBD, '-', '_'},
    {0xBE, '.', '>'},  {0xBF, '/', '?'},  {0xC0, '`', '~'}, {0xDB, '[', '{'}, {0xDC, '\\', '|'},
    {0xDD, ']', '}'},  {0xDE, '\'', '"'},
};

constexpr std::uint8_t EXTENDED_KEYS[] = {0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28,
                                          0x2C, 0x2D, 0x2E, 0x5B, 0x5C, 0x5D, 0x90};

} // namespace

std::span<const CModifierKey> modifierKeys()
{
    return MODIFIER_KEYS;
}

std::span<const CKeywordRow> keywordTable()
{
    return KEYWORDS;
}

const CKeywordRow* findKeyword(std::string_view sName)
{
    const auto* pRow = std::ranges::find(KEYWORDS, sName, &CKeywordRow::m_sName);
    return pRow == std::end(KEYWORDS) ? nullptr : pRow;
}

std::optional<CCharacterKey> keyOfCharacter(char cCharacter)
{
    if (cCharacter >= 'a' && cCharacter <= 'z')
        return CCharacterKey{static_cast<std::uint8_t>(cCharacter - 'a' + 'A'), false};
    if (cCharacter >= 'A' && cCharacter <= 'Z')
        return CCharacterKey{static_cast<std::uint8_t>(cCharacter), true};
    if (cCharacter == '\t' || cCharacter == '\n')
        return CCharacterKey{static_cast<std::uint8_t>(cCharacter == '\t' ? 0x09 : 0x0D), false};
    for (const CPrintingKey& printing : PRINTING_KEYS)
        if (cCharacter != '\0' && (cCharacter == printing.m_cPlain || cCharacter == printing.m_cShifted))
            return CCharacterKey{printing.m_uVirtualKey, cCharacter == printing.m_cShifted};
    return {};
}

char characterOfKey(std::uint8_t uVirtualKey)
{
    if (uVirtualKey >= 'A' && uVirtualKey <= 'Z')
        return static_cast<char>(uVirtualKey - 'A' + 'a');
    const auto* pKey = std::ranges::find(PRINTING_KEYS, uVirtualKey, &CPrintingKey::m_uVirtualKey);
    return pKey == std::end(PRINTING_KEYS) ? '\0' : pKey->m_cPlain;
}

bool isExtendedKey(std::uint8_t uVirtualKey)
{
    return std::ranges::find(EXTENDED_KEYS, uVirtualKey) != std::end(EXTENDED_KEYS);
}

} // namespace velmora
