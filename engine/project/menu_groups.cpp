#include "project/menu_groups.h"

#include "project/control_list.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <span>

namespace velmora {

namespace {

constexpr std::size_t WORDS = 16;
constexpr std::size_t BYTES_OF_WORD = 4;
static_assert(LONGEST_MENU_GROUP + 1 == WORDS * BYTES_OF_WORD);

template <typename Control>
auto wordsOf(Control& control)
{
    return std::span(control.uFluxCapControl).template last<WORDS>();
}

// At most so many bytes, and of UTF-8 no part of a character.
std::string_view cutAtCharacter(std::string_view sText, std::size_t uMost)
{
    if (sText.size() <= uMost)
        return sText;
    while (uMost > 0 && (static_cast<unsigned char>(sText[uMost]) & 0xC0) == 0x80)
        --uMost;
    return sText.substr(0, uMost);
}

} // namespace

std::string menuGroupOf(const CUICtrl& control)
{
    std::string sName;
    for (const UINT uWord : wordsOf(control))
        for (std::size_t uByte = 0; uByte < BYTES_OF_WORD; ++uByte) {
            const auto c = static_cast<unsigned char>(uWord >> (8 * uByte));
            if (c == 0)
                return sName;
            if (c < ' ' || c == 0x7F)
                return {};
            sName += static_cast<char>(c);
        }
    return {}; // a name has an end
}

void setMenuGroup(CUICtrl& control, std::string_view sName)
{
    const std::string_view sKept = cutAtCharacter(sName, LONGEST_MENU_GROUP);
    const auto words = wordsOf(control);
    std::ranges::fill(words, 0);
    for (std::size_t i = 0; i < sKept.size(); ++i)
        words[i / BYTES_OF_WORD] |= static_cast<UINT>(static_cast<unsigned char>(sKept[i]))
                                    << (8 * (i % BYTES_OF_WORD));
}

std::vector<std::string> menuGroups(const CDSPProject& project)
{
    std::vector<std::string> names;
    for (const CUICtrl* pControl : controlsOf(project.m_UIControlList)) {
        std::string sName = menuGroupOf(*pControl);
        if (!sName.empty() && std::ranges::find(names, sName) == names.end())
            names.push_back(std::move(sName));
    }
    return names;
}

std::size_t renameMenuGroup(CDSPProject& project, std::string_view sFrom, std::string_view sTo)
{
    std::size_t uCount = 0;
    for (CUICtrl* pControl : controlsOf(project.m_UIControlList))
        if (!sFrom.empty() && menuGroupOf(*pControl) == sFrom) {
            setMenuGroup(*pControl, sTo);
            ++uCount;
        }
    return uCount;
}

std::string checkNewMenuGroup(const std::vector<std::string>& known, std::string_view sName)
{
    if (sName.empty())
        return "Type a Menu Name in the New Menu box, then press <Add Menu>";
    if (std::ranges::find(known, sName) != known.end())
        return "Menu Name already exists - can not add a duplicate name.";
    return {};
}

} // namespace velmora
