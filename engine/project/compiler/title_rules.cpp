#include "project/compiler/title_rules.h"

#include "project/compiler/compiler_table.h"

#include <string>

namespace velmora {

namespace {

bool contains(std::string_view sText, std::string_view sPart)
{
    return sText.find(sPart) != std::string_view::npos;
}

constexpr std::string_view START_PAGE = "Start Page - Microsoft Visual Studio Express 2012";

struct CTitleRule
{
    int m_nCompilerId; // 0 is every other one
    std::string_view m_sMustHold;
    std::string_view m_sMustNotHold; // empty: nothing
};

constexpr CTitleRule TITLE_RULES[] = {
    {4000, "Visual C++", "Output"},       {4002, "Visual C++", "Output"},
    {CODE_BLOCKS_ID, "Code::Blocks", ""}, {4005, "Microsoft Visual Studio", START_PAGE}, // no solution in it
    {0, "Microsoft Visual Studio", ""},
};

constexpr std::string_view CODE_BLOCKS_CLASS = "codeblocks";

} // namespace

bool isCompilerTitle(int nCompilerId, std::string_view sTitle)
{
    if (!contains(sTitle, " "))
        return false;
    for (const CTitleRule& rule : TITLE_RULES)
        if (rule.m_nCompilerId == nCompilerId || rule.m_nCompilerId == 0)
            return contains(sTitle, rule.m_sMustHold) &&
                   (rule.m_sMustNotHold.empty() || !contains(sTitle, rule.m_sMustNotHold));
    return false;
}

ERunMode runModeOf(std::string_view sTitle)
{
    return contains(sTitle, "(Debugging)") ? ERunMode::debugging
           : contains(sTitle, "(Running)") ? ERunMode::running
                                           : ERunMode::none;
}

bool isRebuildTitle(std::string_view sTitle)
{
    return contains(sTitle, "Rebuild") && !contains(sTitle, "Output");
}

bool isStartPageTitle(std::string_view sTitle)
{
    return sTitle == START_PAGE;
}

bool isCodeBlocksWindow(const CWindow& window, std::string_view sProject, std::uint32_t uProcessId)
{
    const bool bMain = !window.m_bDialog && !window.m_bTransient && window.m_sClass == CODE_BLOCKS_CLASS;
    const bool bProcess = uProcessId == 0 || window.m_uProcessId == uProcessId;
    return bMain && bProcess && isCompilerTitle(CODE_BLOCKS_ID, window.m_sTitle) &&
           contains(window.m_sTitle, " [" + std::string(sProject) + "] - Code::Blocks");
}

bool hasUnsavedMark(std::string_view sTitle)
{
    return sTitle.starts_with('*');
}

std::optional<CWindow> findCompilerWindow(std::span<const CWindow> windows, int nCompilerId,
                                          std::string_view sProject, std::uint32_t uProcessId)
{
    const bool bCodeBlocks = nCompilerId == CODE_BLOCKS_ID;
    std::optional<CWindow> found;
    for (const CWindow& window : windows)
        if (bCodeBlocks ? isCodeBlocksWindow(window, sProject, uProcessId)
                        : isCompilerTitle(nCompilerId, window.m_sTitle))
            found = window;
    return found;
}

} // namespace velmora
