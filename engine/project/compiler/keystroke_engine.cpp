#include "project/compiler/keystroke_engine.h"

#include "base/text.h"
#include "project/compiler/key_table.h"

namespace velmora {

namespace {

constexpr double HELD_KEYS_SECONDS = 2.0;
constexpr double LOOK_AGAIN_SECONDS = 0.02;
constexpr std::size_t MAX_EVENTS_AT_ONCE = 200; // more would not leave as one

unsigned modifierOf(std::uint8_t uVirtualKey)
{
    for (const CModifierKey& modifier : modifierKeys())
        if (modifier.m_uVirtualKey == uVirtualKey)
            return modifier.m_uModifier;
    return 0;
}

bool isLock(EKeyAction eAction)
{
    return eAction == EKeyAction::shiftLock || eAction == EKeyAction::ctrlLock ||
           eAction == EKeyAction::altLock;
}

// The record behind the <END_REPEAT> that belongs to the <REPEAT> at uRepeat; the string is well formed.
std::size_t endOfRepeat(const std::vector<CKeyRecord>& records, std::size_t uRepeat)
{
    int nDepth = 0;
    std::size_t u = uRepeat;
    do {
        nDepth += records[u].m_eAction == EKeyAction::repeat;
        nDepth -= records[u].m_eAction == EKeyAction::endRepeat;
        ++u;
    } while (nDepth > 0);
    return u;
}

} // namespace

CKeystrokeEngine::CKeystrokeEngine(IWindowSystem& system, std::string_view sKeys) : m_system(system)
{
    m_sError = parseKeys(sKeys, m_records);
    m_bValid = m_sError.empty();
}

CKeystrokeEngine::~CKeystrokeEngine()
{
    if (!m_bTyped)
        return;
    m_queue.clear();
    for (const CModifierKey& modifier : modifierKeys())
        queue(modifier.m_uVirtualKey, true);
    static_cast<void>(m_system.sendKeys(m_queue));
}

void CKeystrokeEngine::setWindow(std::string_view sTitle, std::string_view sClass)
{
    m_windows.emplace(m_system, sTitle, sClass);
}

void CKeystrokeEngine::setWindow(CWindowHandle hWindow)
{
    m_windows.emplace(m_system, hWindow);
}

void CKeystrokeEngine::setRetry(bool bRetry, unsigned uSeconds)
{
    m_bRetry = bRetry;
    m_uRetrySeconds = uSeconds;
}

bool CKeystrokeEngine::send()
{
    if (!m_bValid)
        return false;
    m_sError.clear();
    m_uLocked = 0;
    bool bSent = run(0, m_records.size());
    if (bSent) {
        liftModifiers();
        bSent = flush();
    }
    if (!bSent) {
        m_queue.clear();
        m_uDown = m_uSentDown;
    }
    return bSent;
}

bool CKeystrokeEngine::run(std::size_t uBegin, std::size_t uEnd)
{
    for (std::size_t u = uBegin; u < uEnd; ++u) {
        const CKeyRecord& record = m_records[u];
        if (record.m_eAction != EKeyAction::repeat) {
            if (!sendRecord(record))
                return false;
            continue;
        }
        const std::size_t uBehind = endOfRepeat(m_records, u);
        for (unsigned uRound = 0; uRound < record.m_uCount; ++uRound)
            if (!run(u + 1, uBehind - 1))
                return false;
        u = uBehind - 1;
    }
    return true;
}

bool CKeystrokeEngine::sendRecord(const CKeyRecord& record)
{
    if (record.m_eAction == EKeyAction::delay)
        return pause(record.m_uCount);

    const unsigned uModifier = modifierOf(record.m_uVirtualKey);
    if (record.m_eAction != EKeyAction::normal) {
        m_uLocked = isLock(record.m_eAction) ? m_uLocked | uModifier : m_uLocked & ~uModifier;
        if (m_uDown & ~m_uLocked & ~m_uLeaveDown & uModifier)
            queue(record.m_uVirtualKey, true);
        return (m_uDown & ~m_uLeaveDown) != 0 || flush();
    }
    if (record.m_eEvent == EKeyMovement::press) {
        if (!(m_uDown & uModifier))
            queue(record.m_uVirtualKey, false);
        return true;
    }
    if (record.m_eEvent == EKeyMovement::release) {
        if (!((m_uLocked | m_uLeaveDown) & uModifier))
            queue(record.m_uVirtualKey, true);
    } else {
        const bool bWanted =
            record.m_eToggle == EToggleWish::none ||
            m_system.isToggled(record.m_uVirtualKey) != (record.m_eToggle == EToggleWish::on);
        if (!bWanted)
            return true;
        for (const CModifierKey& modifier : modifierKeys())
            if (m_uLocked & ~m_uDown & modifier.m_uModifier)
                queue(modifier.m_uVirtualKey, false);
        queue(record.m_uVirtualKey, false);
        queue(record.m_uVirtualKey, true);
    }
    const bool bKeyIsDone = (m_uDown & ~m_uLocked & ~m_uLeaveDown) == 0;
    if (bKeyIsDone && m_uKeyDelay > 0)
        return pause(m_uKeyDelay);
    if (bKeyIsDone && m_queue.size() >= MAX_EVENTS_AT_ONCE)
        liftModifiers();
    return (m_uDown & ~m_uLeaveDown) != 0 || flush();
}

bool CKeystrokeEngine::pause(unsigned uMilliseconds)
{
    liftModifiers();
    if (!flush())
        return false;
    m_system.sleep(uMilliseconds / 1000.0);
    return true;
}

void CKeystrokeEngine::liftModifiers()
{
    const std::span<const CModifierKey> modifiers = modifierKeys();
    for (std::size_t u = modifiers.size(); u-- > 0;)
        if (m_uDown & ~m_uLeaveDown & modifiers[u].m_uModifier)
            queue(modifiers[u].m_uVirtualKey, true);
}

void CKeystrokeEngine::queue(std::uint8_t uVirtualKey, bool bRelease)
{
    m_queue.push_back({uVirtualKey, m_system.scanCode(uVirtualKey), isExtendedKey(uVirtualKey), bRelease});
    const unsigned uModifier = modifierOf(uVirtualKey);
    m_uDown = bRelease ? m_uDown & ~uModifier : m_uDown | uModifier;
}

bool CKeystrokeEngine::flush()
{
    if (m_queue.empty())
        return true;
    if (!mayType())
        return false;
    m_sError = m_system.sendKeys(m_queue);
    m_queue.clear();
    if (!m_sError.empty())
        return false;
    m_bTyped = true;
    m_uSentDown = m_uDown;
    return true;
}

bool CKeystrokeEngine::mayType()
{
    // What this engine left down is no key that a person holds.
    const double dStart = m_system.seconds();
    while (m_uSentDown == 0 && m_system.areKeysHeld()) {
        if (m_system.seconds() - dStart >= HELD_KEYS_SECONDS) {
            m_sError = "Keys are held down on the keyboard; let go of them and try again.";
            return false;
        }
        m_system.sleep(LOOK_AGAIN_SECONDS);
    }
    if (!m_bCheckForeground || !m_windows)
        return true;
    m_windows->refresh();
    if (m_windows->isForeground())
        return true;
    if (m_bRetry) {
        m_system.sleep(m_uRetrySeconds);
        if (m_windows->setForeground())
            return true;
    }
    m_sError = "The window that the keys are for does not have the focus.";
    return false;
}

} // namespace velmora
