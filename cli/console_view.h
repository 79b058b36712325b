#pragma once

#include "base/message_target.h"

namespace velmora {
class IUserDialogs;
}

namespace velmora::cli {

// What plug-ins see of a shell: their status texts become notes with four blanks ahead; every other message
// is about windows and goes unheard.
class CConsoleView : public IMessageTarget
{
  public:
    explicit CConsoleView(IUserDialogs& dialogs) : m_dialogs(dialogs) {}

    void post(unsigned uMessage, std::size_t uParam, std::ptrdiff_t nParam) override;
    std::ptrdiff_t send(unsigned uMessage, std::size_t uParam, std::ptrdiff_t nParam) override;

  private:
    IUserDialogs& m_dialogs;
};

} // namespace velmora::cli
