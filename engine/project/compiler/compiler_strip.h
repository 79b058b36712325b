#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace velmora {

enum class EStripEvent
{
    starting,
    ready,
    running,
    debugging,
    notFound,
    dead,
    building,
    linking, // nothing sends it yet
    buildSucceeded,
    buildFailed
};

// What is to be done along with an event, by the window that has the timer.
struct CStripEffects
{
    bool m_bRestartTimer = false; // at STRIP_INTERVAL
    bool m_bTakeFocus = false;    // the main window's; only when the state is new

    bool operator==(const CStripEffects&) const = default;
};

inline constexpr std::chrono::milliseconds STRIP_INTERVAL{1000}; // of the timer
inline constexpr std::chrono::milliseconds STRIP_RESULT_HOLD{1200};

// The two texts of the compiler's status strip: events in, texts out. It has no timer; post() with starting
// or building turns the animated sign by one step. [main]
class CCompilerStrip
{
  public:
    // sProject is the open project's name, which stands on the left during a build.
    CStripEffects post(EStripEvent eEvent, std::string_view sProject = {});

    // Two texts of a command, such as "Copying" and "Files...".
    void show(std::string_view sLabel, std::string_view sText);

    // How long the timer's tick has to wait before it asks for the compiler's state: STRIP_RESULT_HOLD while
    // the result of a rebuild stands there, so that it can be read; else 0.
    [[nodiscard]] std::chrono::milliseconds hold() const;

    [[nodiscard]] const std::string& label() const { return m_sLabel; } // left
    [[nodiscard]] const std::string& text() const { return m_sText; }   // right

  private:
    void animate(std::string_view sLabel, std::string_view sWord);

    std::string m_sLabel;
    std::string m_sText;
};

} // namespace velmora
