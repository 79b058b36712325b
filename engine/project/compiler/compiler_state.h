#pragma once

#include "project/compiler/title_rules.h"

#include <cstdint>
#include <memory>
#include <string>

namespace velmora {

// What is known of the compiler's process and window. [main]
class CCompilerState
{
  public:
    static constexpr std::uint32_t NO_PROCESS = 0xFFFFFFFF;

    CCompilerState();
    ~CCompilerState();
    CCompilerState(CCompilerState&&) noexcept;
    CCompilerState& operator=(CCompilerState&&) noexcept;

    // Watches this process from now on; false if there is none of that number.
    bool watch(std::uint32_t uProcessId);

    // Whether the watched process lives. One that has ended and was started by us is released.
    [[nodiscard]] bool isProcessAlive();

    // Whether the process has started programs that still run, such as a compiler.
    [[nodiscard]] bool hasChildren() const;

    // Asks the process to end.
    void requestEnd();

    bool m_bAlive = false;
    std::uint32_t m_uProcessId = NO_PROCESS;
    std::uint32_t m_uThreadId = NO_PROCESS; // of the window's thread; here the process's first one
    CWindowHandle m_hWindow = 0;
    std::string m_sTitle;
    ERunMode m_eMode = ERunMode::none;

  private:
    struct CProcessHandle;
    std::unique_ptr<CProcessHandle> m_pProcess;
};

} // namespace velmora
