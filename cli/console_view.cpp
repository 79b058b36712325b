#include "cli/console_view.h"

#include "base/user_dialogs.h"
#include "pluginconstants.h"

#include <string>

namespace velmora::cli {

// A text that is posted may be gone by the time it is read, so only sent ones count.
void CConsoleView::post(unsigned, std::size_t, std::ptrdiff_t) {}

std::ptrdiff_t CConsoleView::send(unsigned uMessage, std::size_t, std::ptrdiff_t nParam)
{
    if (uMessage == PLUGIN_MESSAGE_STATUS_TEXT && nParam != 0)
        m_dialogs.note("    " + std::string(reinterpret_cast<const char*>(nParam)));
    return 0;
}

} // namespace velmora::cli
