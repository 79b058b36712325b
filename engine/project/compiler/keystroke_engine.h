#pragma once

#include "project/compiler/key_record.h"
#include "project/compiler/window_engine.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// Types a key string into the window that has the focus.
//
// The key language: plain text is typed letter by letter; keywords stand in angle brackets, such as
// "<CTRL+SHIFT>S" or "<REPEAT 3><TAB><END_REPEAT>" (key_table.h lists them all). A modifier belongs to the
// key behind it. Times are in milliseconds.
//
// What must be pressed together goes out as one: first all keys are put in a row, from the first modifier
// that goes down to the last one that comes up, and then sent at once. So no modifier is down while this
// program waits, or if it dies. [main]
class CKeystrokeEngine
{
  public:
    CKeystrokeEngine(IWindowSystem& system, std::string_view sKeys);

    // Releases Ctrl, Alt and Shift.
    ~CKeystrokeEngine();

    CKeystrokeEngine(const CKeystrokeEngine&) = delete;
    CKeystrokeEngine& operator=(const CKeystrokeEngine&) = delete;

    // What is wrong with the key string, or why the last send() failed; empty if nothing.
    [[nodiscard]] const std::string& error() const { return m_sError; }

    [[nodiscard]] const std::vector<CKeyRecord>& records() const { return m_records; }

    // The windows of which one must have the focus before each key.
    void setWindow(std::string_view sTitle, std::string_view sClass);
    void setWindow(CWindowHandle hWindow);
    void setCheckForeground(bool bCheck) { m_bCheckForeground = bCheck; }

    // When none of them has it: wait so many seconds, bring the window forward and go on.
    void setRetry(bool bRetry, unsigned uSeconds);

    // A pause between keys in ms; 0, which is the default, is none.
    void setKeyDelay(unsigned uMilliseconds) { m_uKeyDelay = uMilliseconds; }

    // Modifiers, as bits of key_table.h, that stay down when send() returns.
    void setLeaveDown(unsigned uModifiers) { m_uLeaveDown = uModifiers; }

    // Types it. False with the reason in error(); a string that is wrong types nothing at all.
    [[nodiscard]] bool send();

  private:
    [[nodiscard]] bool run(std::size_t uBegin, std::size_t uEnd);
    [[nodiscard]] bool sendRecord(const CKeyRecord& record);
    [[nodiscard]] bool flush();
    void liftModifiers();
    [[nodiscard]] bool pause(unsigned uMilliseconds);
    [[nodiscard]] bool mayType();
    void queue(std::uint8_t uVirtualKey, bool bRelease);

    IWindowSystem& m_system;
    std::vector<CKeyRecord> m_records;
    std::optional<CWindowEngine> m_windows;
    bool m_bCheckForeground = false;
    bool m_bRetry = false;
    unsigned m_uRetrySeconds = 1;
    unsigned m_uKeyDelay = 0; // ms
    unsigned m_uLeaveDown = 0;
    unsigned m_uLocked = 0; // the modifiers that should be down
    unsigned m_uDown = 0;   // those that are, once the queue is sent
    unsigned m_uSentDown = 0;
    std::vector<CKeyEvent> m_queue;
    bool m_bValid = false;
    bool m_bTyped = false;
    std::string m_sError;
};

} // namespace velmora
