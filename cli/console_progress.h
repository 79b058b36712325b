#pragma once

#include "base/progress.h"

#include <chrono>
#include <string_view>

namespace velmora::cli {

// Draws a bar on standard error when that is a terminal, and asks the work to stop after an interrupt.
class CConsoleProgress : public IProgress
{
  public:
    // bQuiet draws nothing.
    explicit CConsoleProgress(bool bQuiet);
    // Takes the bar away.
    ~CConsoleProgress();
    CConsoleProgress(const CConsoleProgress&) = delete;
    CConsoleProgress& operator=(const CConsoleProgress&) = delete;

    bool report(double fDone) override;

  private:
    bool m_bDraws;
    std::chrono::steady_clock::time_point m_nextDrawing;
};

// Writes one line in a bar's place, to say what is going on, when standard error is a terminal.
void showActivity(std::string_view sText);

// Takes a bar on the terminal's line away; nothing if there is none. [any]
void removeProgressBar();

} // namespace velmora::cli
