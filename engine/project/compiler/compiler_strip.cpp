#include "project/compiler/compiler_strip.h"

namespace velmora {

namespace {

constexpr std::string_view ANIMATION = "-\\|/";
constexpr std::string_view COMPILER_LABEL = "compiler";
constexpr std::string_view REBUILD_LABEL = "Rebuild";
constexpr std::string_view PROJECT_LABEL = ""; // the project's name stands in its place

struct CStripRow
{
    EStripEvent m_eEvent;
    std::string_view m_sLabel;
    std::string_view m_sText;
    bool m_bAnimated = false;
    CStripEffects m_effects = {};
};

constexpr CStripEffects BUILD_ENDS = {.m_bRestartTimer = true};
constexpr CStripEffects TAKES_FOCUS = {.m_bTakeFocus = true};

constexpr CStripRow ROWS[] = {
    {EStripEvent::starting, COMPILER_LABEL, "Starting", true},
    {EStripEvent::ready, COMPILER_LABEL, "Ready", false, TAKES_FOCUS},
    {EStripEvent::running, COMPILER_LABEL, ""},
    {EStripEvent::debugging, COMPILER_LABEL, ""},
    {EStripEvent::notFound, COMPILER_LABEL, "not found"},
    {EStripEvent::dead, COMPILER_LABEL, "Dead"},
    {EStripEvent::building, PROJECT_LABEL, "Building", true},
    {EStripEvent::linking, PROJECT_LABEL, "Linking"},
    {EStripEvent::buildSucceeded, REBUILD_LABEL, "Succeeded!", false, BUILD_ENDS},
    {EStripEvent::buildFailed, REBUILD_LABEL, "Failed", false, BUILD_ENDS},
};

} // namespace

CStripEffects CCompilerStrip::post(EStripEvent eEvent, std::string_view sProject)
{
    for (const CStripRow& row : ROWS) {
        if (row.m_eEvent != eEvent)
            continue;
        CStripEffects effects = row.m_effects;
        // Once: the user who works in the compiler keeps the focus there.
        effects.m_bTakeFocus = effects.m_bTakeFocus && m_sText != row.m_sText;
        const std::string_view sLabel = row.m_sLabel.empty() ? sProject : row.m_sLabel;
        if (row.m_bAnimated)
            animate(sLabel, row.m_sText);
        else
            show(sLabel, row.m_sText);
        return effects;
    }
    return {};
}

void CCompilerStrip::show(std::string_view sLabel, std::string_view sText)
{
    m_sLabel = sLabel;
    m_sText = sText;
}

std::chrono::milliseconds CCompilerStrip::hold() const
{
    return m_sLabel == REBUILD_LABEL ? STRIP_RESULT_HOLD : std::chrono::milliseconds::zero();
}

void CCompilerStrip::animate(std::string_view sLabel, std::string_view sWord)
{
    const std::string sBegin = std::string(sWord) + ' ';
    std::size_t uStep = 0;
    if (m_sText.size() == sBegin.size() + 1 && m_sText.starts_with(sBegin))
        uStep = (ANIMATION.find(m_sText.back()) + 1) % ANIMATION.size();
    show(sLabel, sBegin + ANIMATION[uStep]);
}

} // namespace velmora
