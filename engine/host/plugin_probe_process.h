#pragma once

#include "base/platform_descriptor.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace velmora {

// One run of the helper program: started in a process group of its own, with a pipe on PROBE_CHANNEL, its
// standard streams aimed at nothing, and no other descriptor of ours. [main]
class CPlugInProbeProcess
{
  public:
    using CTime = std::chrono::steady_clock::time_point;

    enum class ERead
    {
        line,
        ended,
        timedOut
    };

    // How the process ended: by exit(m_nCode), or by the signal m_nCode.
    struct CEnding
    {
        bool m_bSignal;
        int m_nCode;
    };

    CPlugInProbeProcess(const std::filesystem::path& helper, const std::vector<std::string>& arguments);

    // Kills the process and all of its group, and leaves neither zombie nor file behind.
    ~CPlugInProbeProcess();

    CPlugInProbeProcess(const CPlugInProbeProcess&) = delete;
    CPlugInProbeProcess& operator=(const CPlugInProbeProcess&) = delete;

    // Why it could not be started; empty if it runs.
    [[nodiscard]] const std::string& startError() const { return m_sStartError; }

    // Waits for the next line, without its line end. `ended` comes when the process is dead and its last
    // line was read, even if a child of it still holds the pipe.
    [[nodiscard]] ERead readLine(std::string& sLine, CTime deadline);

    // None while the process runs, or if the system does not tell.
    [[nodiscard]] std::optional<CEnding> ending() const;

  private:
    enum class EFill
    {
        some,
        nothing,
        closed
    };

    void start(const std::filesystem::path& helper, const std::vector<std::string>& arguments);
    bool takeLine(std::string& sLine);
    EFill fillBuffer();
    bool waitForEvent(CTime deadline) const;

    CDescriptor m_pipe;    // closed when nobody holds the other end any more
    CDescriptor m_process; // readable when the process is dead; -1 where the system has no such descriptor
    pid_t m_nProcess = -1;
    std::string m_sBuffer;
    std::string m_sStartError;
};

} // namespace velmora
