#include "cli/console_progress.h"

#include "base/text.h"
#include "cli/signal_guard.h"

#include <atomic>
#include <string>
#include <unistd.h>

namespace velmora::cli {

namespace {

constexpr int BAR_LENGTH = 40;
constexpr std::chrono::milliseconds DRAWING_INTERVAL{50};

std::atomic<bool> g_bBarShown{false};

void writeText(const std::string& sText)
{
    [[maybe_unused]] const auto nWritten = ::write(STDERR_FILENO, sText.data(), sText.size());
}

} // namespace

void removeProgressBar()
{
    if (g_bBarShown.exchange(false))
        writeText("\r\033[K");
}

void showActivity(std::string_view sText)
{
    if (::isatty(STDERR_FILENO) != 1)
        return;
    g_bBarShown = true;
    writeText("\r" + std::string(sText) + "\033[K");
}

CConsoleProgress::CConsoleProgress(bool bQuiet)
    : m_bDraws(!bQuiet && ::isatty(STDERR_FILENO) == 1), m_nextDrawing(std::chrono::steady_clock::now())
{
}

CConsoleProgress::~CConsoleProgress()
{
    setCancellable(false);
    removeProgressBar();
}

bool CConsoleProgress::report(double fDone)
{
    const auto now = std::chrono::steady_clock::now();
    if (m_bDraws && now >= m_nextDrawing) {
        m_nextDrawing = now + DRAWING_INTERVAL;
        const int nFilled = static_cast<int>(fDone * BAR_LENGTH);
        writeText(formatted("\r[%s%s] %3d %%", std::string(static_cast<std::size_t>(nFilled), '#').c_str(),
                            std::string(static_cast<std::size_t>(BAR_LENGTH - nFilled), '.').c_str(),
                            static_cast<int>(fDone * 100.0)));
        g_bBarShown = true;
    }
    setCancellable(fDone < 1.0);
    return !wasInterrupted();
}

} // namespace velmora::cli
