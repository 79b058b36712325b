#include "cli/command_context.h"

#include "cli/console_progress.h"
#include "cli/help_text.h"

#include <cerrno>
#include <cstring>

namespace velmora::cli {

int CCommandContext::fail(std::string_view sText)
{
    m_dialogs.showMessage(sText);
    return EXIT_FAILED;
}

void CCommandContext::showReason(std::string_view sReason)
{
    if (m_dialogs.lastMessage().find(sReason) == std::string::npos)
        m_dialogs.showMessage(sReason);
}

bool CCommandContext::print(std::string_view sText)
{
    removeProgressBar();
    if (sText.empty() || (m_write && m_write(sText)))
        return true;
    m_dialogs.showMessage(std::string("The result cannot be written: ") + std::strerror(errno) + ".");
    return false;
}

void CCommandContext::announce(std::string_view sText)
{
    if (!m_line.has("--quiet"))
        showActivity(sText);
}

int CCommandContext::usageError(std::string_view sText)
{
    m_dialogs.showMessage(sText);
    m_dialogs.showMessage(usageHint(m_line.command(), m_line.group()));
    return EXIT_USAGE;
}

} // namespace velmora::cli
