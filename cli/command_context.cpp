#include "cli/command_context.h"

#include "cli/help_text.h"

namespace velmora::cli {

int CCommandContext::fail(std::string_view sText)
{
    m_dialogs.showMessage(sText);
    return EXIT_FAILED;
}

int CCommandContext::usageError(std::string_view sText)
{
    m_dialogs.showMessage(sText);
    m_dialogs.showMessage(usageHint(m_line.command(), m_line.group()));
    return EXIT_USAGE;
}

} // namespace velmora::cli
