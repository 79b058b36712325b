#include "project/compiler/code_blocks_boxes.h"

#include <algorithm>

namespace velmora {

namespace {

struct CBoxRow
{
    std::string_view m_sTitle;
    std::string_view m_sKeys;
    bool m_bDropsUnsavedText; // the answer lets the editor take over what is on disc
};

constexpr CBoxRow BOXES[] = {
    {"Compilers auto-detection", "<ENTER>", false}, // keeps the default compiler
    {"Rebuild project", "<ALT>y", false},           // yes
    {"Reload file?", "<ALT>a", true},               // all of them
    {"Reload Project?", "<ENTER>", true},           // yes
    {"File changed!", "<ALT>y", false},             // was removed: keep it in the editor
    {"Layout changed", "<ALT>n", false},            // do not save the layout
};

constexpr double BOX_SECONDS = 2.0;   // a box goes after its answer within this time
constexpr double READY_SECONDS = 0.1; // until a box that has just come takes keys
constexpr double LOOK_AGAIN_SECONDS = 0.02;
constexpr int MAX_BOXES = 50;

} // namespace

std::optional<CWindow> CCodeBlocksBoxes::box(bool& bUnsaved)
{
    std::optional<CWindow> found;
    const std::uint32_t uProcess = m_driver.compiler().m_uProcessId;
    for (const CWindow& window : m_driver.windowSystem().topLevelWindows()) {
        if (window.m_uProcessId != uProcess)
            continue;
        bUnsaved |= hasUnsavedMark(window.m_sTitle);
        if (window.m_bDialog)
            found = window;
    }
    return found;
}

bool CCodeBlocksBoxes::answerOne(bool& bFound)
{
    bool bUnsaved = false;
    const std::optional<CWindow> asked = box(bUnsaved);
    bFound = asked.has_value();
    if (!asked)
        return true;

    m_sError = "Code::Blocks asks \"" + asked->m_sTitle + "\". Answer it there and try again.";
    const auto* pRow = std::ranges::find(BOXES, std::string_view(asked->m_sTitle), &CBoxRow::m_sTitle);
    if (pRow == std::end(BOXES) || (pRow->m_bDropsUnsavedText && bUnsaved))
        return false;

    IWindowSystem& system = m_driver.windowSystem();
    const double dStart = system.seconds();
    if (!system.waitForAnswer(asked->m_hWindow, READY_SECONDS))
        system.sleep(READY_SECONDS);
    if (!m_driver.sendKeysTo(asked->m_hWindow, pRow->m_sKeys)) {
        // It may have gone by itself, or been answered by the user.
        const std::optional<CWindow> left = box(bUnsaved);
        return !left || left->m_hWindow != asked->m_hWindow;
    }
    while (system.seconds() - dStart < BOX_SECONDS) {
        const std::optional<CWindow> next = box(bUnsaved);
        if (!next || next->m_hWindow != asked->m_hWindow)
            return true;
        system.sleep(LOOK_AGAIN_SECONDS);
    }
    return true; // still there: the keys came too early, and it is asked for again
}

bool CCodeBlocksBoxes::answer(double dSettleSeconds)
{
    IWindowSystem& system = m_driver.windowSystem();
    double dSettledSince = system.seconds();
    for (int nAnswered = 0; nAnswered < MAX_BOXES;) {
        bool bFound = false;
        if (!answerOne(bFound))
            return false;
        if (bFound) {
            ++nAnswered;
            dSettledSince = system.seconds();
        } else if (system.seconds() - dSettledSince >= dSettleSeconds) {
            return true;
        } else {
            system.sleep(LOOK_AGAIN_SECONDS);
        }
    }
    return false;
}

} // namespace velmora
