#pragma once

#include "base/window_system.h"

#include <X11/Xlib.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// One connection to an X server, with its errors caught. Implementation of CX11WindowSystem. [main]
class CX11Connection
{
  public:
    explicit CX11Connection(const std::string& sDisplay);
    ~CX11Connection();

    CX11Connection(const CX11Connection&) = delete;
    CX11Connection& operator=(const CX11Connection&) = delete;

    // While this lives, errors of the server are kept here instead of ending the program, and a server that
    // goes away leaves a dead connection. The handlers of others, who use X in the same program, are called
    // for their own connections and put back at the end.
    class CErrorGuard
    {
      public:
        explicit CErrorGuard(CX11Connection& connection);
        ~CErrorGuard();
        CErrorGuard(const CErrorGuard&) = delete;
        CErrorGuard& operator=(const CErrorGuard&) = delete;

      private:
        CX11Connection& m_connection;
        XErrorHandler m_pOldErrorHandler;
        XIOErrorHandler m_pOldIOErrorHandler;
    };

    [[nodiscard]] bool isOpen() const { return m_pDisplay && !m_bDead; }
    [[nodiscard]] bool isDead() const { return m_bDead; }
    [[nodiscard]] Display* display() const { return m_pDisplay; }
    [[nodiscard]] Window root() const { return m_root; }

    // The following need a guard to be alive.
    [[nodiscard]] Atom atom(const char* pName);

    // The property's 32-bit items; empty if it is missing or of another type. At most 65536 are read.
    [[nodiscard]] std::vector<unsigned long> numbers(Window window, const char* pProperty, Atom type);
    [[nodiscard]] std::optional<unsigned long> number(Window window, const char* pProperty, Atom type);

    // The property's bytes, at most 64 KiB.
    [[nodiscard]] std::string text(Window window, const char* pProperty, Atom type);

    // A request to the window manager: a message about the window, sent to the root.
    void tellManager(Window window, const char* pMessage, std::initializer_list<long> data);

    // A message about a window, sent to one; nothing is sent twice or waited for.
    void send(Window receiver, Window window, const char* pMessage, long nEventMask,
              std::initializer_list<long> data);

  private:
    [[nodiscard]] std::string property(Window window, const char* pProperty, Atom type, int nFormat,
                                       unsigned long& uItems);

    Display* m_pDisplay = nullptr;
    Window m_root = 0;
    bool m_bDead = false;
};

} // namespace velmora
