#include "project/compiler/key_record.h"

#include "base/text.h"
#include "project/compiler/key_table.h"

#include <charconv>

namespace velmora {

namespace {

struct CLockRow
{
    unsigned m_uModifier;
    EKeyAction m_eLock;
    EKeyAction m_eUnlock;
};

constexpr CLockRow LOCKS[] = {
    {MODIFIER_SHIFT, EKeyAction::shiftLock, EKeyAction::shiftUnlock},
    {MODIFIER_CTRL, EKeyAction::ctrlLock, EKeyAction::ctrlUnlock},
    {MODIFIER_ALT, EKeyAction::altLock, EKeyAction::altUnlock},
};

// What a repeat that is still open has cost so far: of one round.
struct COpenRepeat
{
    unsigned m_uCount = 1;
    std::size_t m_uPosition = 0;
    unsigned long m_uSteps = 0;
    unsigned long m_uWait = 0; // ms
};

class CKeyParser
{
  public:
    CKeyParser(std::string_view sKeys, std::vector<CKeyRecord>& records) : m_sKeys(sKeys), m_records(records)
    {
    }

    std::string parse()
    {
        m_open.emplace_back();
        while (m_sError.empty() && m_uPosition < m_sKeys.size())
            if (m_sKeys[m_uPosition] == '<')
                keyword();
            else
                character(m_sKeys[m_uPosition++]);
        if (m_sError.empty() && m_uModifiers != 0)
            fail(m_uModifierPosition, "the modifier has no key behind it");
        if (m_sError.empty() && m_open.size() > 1)
            fail(m_open.back().m_uPosition, "<REPEAT> has no <END_REPEAT>");
        if (!m_sError.empty())
            m_records.clear();
        return m_sError;
    }

  private:
    void fail(std::size_t uPosition, const std::string& sWhat)
    {
        if (m_sError.empty())
            m_sError =
                formatted("Key string \"%s\", character %zu: ", std::string(m_sKeys.substr(0, 200)).c_str(),
                          uPosition + 1) +
                sWhat + ".";
    }

    // Counts what the string costs when it runs, repeats included.
    void add(const CKeyRecord& record, unsigned uWait = 0)
    {
        m_records.push_back(record);
        m_open.back().m_uSteps += 1;
        m_open.back().m_uWait += uWait;
        checkCost(m_open.back());
    }

    void checkCost(const COpenRepeat& repeat)
    {
        if (repeat.m_uSteps > MAX_KEY_STEPS)
            fail(m_uPosition, formatted("more than %u steps in all", MAX_KEY_STEPS));
        if (repeat.m_uWait > MAX_KEY_WAIT_MILLISECONDS)
            fail(m_uPosition, formatted("delays of more than %u ms in all", MAX_KEY_WAIT_MILLISECONDS));
    }

    void addKey(std::uint8_t uVirtualKey, unsigned uModifiers, EToggleWish eToggle = EToggleWish::none)
    {
        const std::span<const CModifierKey> modifiers = modifierKeys();
        for (std::size_t i = 0; i < modifiers.size(); ++i)
            if (uModifiers & modifiers[i].m_uModifier)
                add({modifiers[i].m_uVirtualKey, EKeyMovement::press});
        add({uVirtualKey, EKeyMovement::pressAndRelease, EKeyAction::normal, 0, eToggle});
        for (std::size_t i = modifiers.size(); i-- > 0;)
            if (uModifiers & modifiers[i].m_uModifier)
                add({modifiers[i].m_uVirtualKey, EKeyMovement::release});
        m_uModifiers = 0;
    }

    void character(char cCharacter)
    {
        const std::optional<CCharacterKey> key = keyOfCharacter(cCharacter);
        if (!key)
            fail(m_uPosition - 1, formatted("no key types the byte 0x%02X", cCharacter & 0xFF));
        else
            addKey(key->m_uVirtualKey, m_uModifiers | (key->m_bShift ? MODIFIER_SHIFT : 0));
    }

    void keyword()
    {
        const std::size_t uStart = m_uPosition;
        const std::size_t uEnd = m_sKeys.find('>', uStart);
        if (uEnd == std::string_view::npos)
            return fail(uStart, "\"<\" has no \">\"");
        m_uPosition = uEnd + 1;
        const std::string_view sInside = m_sKeys.substr(uStart + 1, uEnd - uStart - 1);
        const std::size_t uBlank = sInside.find(' ');
        const std::string sName(sInside.substr(0, uBlank));
        const CKeywordRow* pRow = findKeyword(sName);
        if (!pRow)
            return fail(uStart, formatted("there is no keyword \"%.40s\"", sName.c_str()));

        const bool bTakesNumber = pRow->m_eKind == EKeyword::delay || pRow->m_eKind == EKeyword::repeat;
        if (!bTakesNumber && uBlank != std::string_view::npos)
            return fail(uStart, formatted("<%s> takes no number", sName.c_str()));
        const bool bKey = pRow->m_eKind == EKeyword::key || pRow->m_eKind == EKeyword::modifier;
        if (m_uModifiers != 0 && !bKey)
            return fail(m_uModifierPosition, "the modifier has no key behind it");
        unsigned uNumber = 0;
        if (bTakesNumber &&
            !number(uBlank == std::string_view::npos ? "" : sInside.substr(uBlank + 1), uNumber))
            return fail(uStart, formatted("<%s> needs a whole number behind a blank, as in <%s 3>",
                                          sName.c_str(), sName.c_str()));
        apply(*pRow, uNumber, uStart);
    }

    void apply(const CKeywordRow& row, unsigned uNumber, std::size_t uStart)
    {
        const auto uKey = static_cast<std::uint8_t>(row.m_uValue);
        switch (row.m_eKind) {
        case EKeyword::key:
            return addKey(uKey, m_uModifiers);
        case EKeyword::toggleOn:
            return addKey(uKey, 0, EToggleWish::on);
        case EKeyword::toggleOff:
            return addKey(uKey, 0, EToggleWish::off);
        case EKeyword::modifier:
            m_uModifiers |= row.m_uValue;
            m_uModifierPosition = uStart;
            return;
        case EKeyword::lock:
        case EKeyword::unlock:
            return addLock(row);
        case EKeyword::delay:
            return add({0, EKeyMovement::press, EKeyAction::delay, uNumber}, uNumber);
        case EKeyword::repeat:
            return beginRepeat(uNumber, uStart);
        case EKeyword::endRepeat:
            return endRepeat(uStart);
        }
    }

    void addLock(const CKeywordRow& row)
    {
        const bool bLock = row.m_eKind == EKeyword::lock;
        for (const CModifierKey& modifier : modifierKeys())
            for (const CLockRow& lock : LOCKS)
                if (modifier.m_uModifier == row.m_uValue && lock.m_uModifier == row.m_uValue)
                    add({modifier.m_uVirtualKey, bLock ? EKeyMovement::press : EKeyMovement::release,
                         bLock ? lock.m_eLock : lock.m_eUnlock});
    }

    void beginRepeat(unsigned uCount, std::size_t uStart)
    {
        if (uCount > MAX_KEY_REPEATS)
            return fail(uStart,
                        formatted("%u repeats are too many; the most is %u", uCount, MAX_KEY_REPEATS));
        if (m_open.size() > MAX_KEY_REPEAT_DEPTH)
            return fail(uStart,
                        formatted("repeats stand in one another more than %u deep", MAX_KEY_REPEAT_DEPTH));
        add({0, EKeyMovement::press, EKeyAction::repeat, uCount});
        m_open.push_back({uCount, uStart, 0, 0});
    }

    void endRepeat(std::size_t uStart)
    {
        if (m_open.size() == 1)
            return fail(uStart, "<END_REPEAT> has no <REPEAT>");
        const COpenRepeat repeat = m_open.back();
        m_open.pop_back();
        m_open.back().m_uSteps += repeat.m_uSteps * repeat.m_uCount;
        m_open.back().m_uWait += repeat.m_uWait * repeat.m_uCount;
        add({0, EKeyMovement::press, EKeyAction::endRepeat});
    }

    static bool number(std::string_view sText, unsigned& uNumber)
    {
        const char* pEnd = sText.data() + sText.size();
        const auto [pRead, eError] = std::from_chars(sText.data(), pEnd, uNumber);
        return eError == std::errc() && pRead == pEnd;
    }

    std::string_view m_sKeys;
    std::vector<CKeyRecord>& m_records;
    std::size_t m_uPosition = 0;
    unsigned m_uModifiers = 0;
    std::size_t m_uModifierPosition = 0;
    std::vector<COpenRepeat> m_open;
    std::string m_sError;
};

} // namespace

std::string parseKeys(std::string_view sKeys, std::vector<CKeyRecord>& records)
{
    records.clear();
    return CKeyParser(sKeys, records).parse();
}

} // namespace velmora
