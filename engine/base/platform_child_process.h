#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

// How a child process ended.
enum class EChildEnd
{
    exited,     // by itself; m_nStatus is its exit status
    signalled,  // by a signal; m_nStatus is the signal's number
    timedOut,   // stopped by us: the deadline passed
    cancelled,  // stopped by us: asked to
    notStarted, // m_sError says why
};

struct CChildResult
{
    EChildEnd m_eEnd = EChildEnd::notStarted;
    int m_nStatus = -1;
    std::string m_sOutput;     // standard output and standard error in the order they came
    bool m_bOutputCut = false; // there was more output than is kept
    std::string m_sError;
    double m_dSeconds = 0.0;

    [[nodiscard]] bool succeeded() const { return m_eEnd == EChildEnd::exited && m_nStatus == 0; }
};

// Runs one program to its end, without a shell, and keeps what it writes.
//
// The child leads a process group of its own, so that stopping it also stops what it started: first
// with a request to end, so that it can remove its temporary files, half a second later by force. Its
// standard input is empty. At most 4 MiB of output are kept. [any but audio]
class CChildProcess
{
  public:
    // arguments[0] is the program: a path, or a name to be found on PATH.
    explicit CChildProcess(std::vector<std::string> arguments) : m_arguments(std::move(arguments)) {}

    // The child's environment is ours with this variable changed or added.
    void setVariable(std::string sName, std::string sValue);

    // dSeconds after its start the child is stopped; 0.0 means never, which is the default.
    void setDeadline(double dSeconds) { m_dDeadlineSeconds = dSeconds; }

    // Asked about twenty times a second while the child runs; false stops the child.
    void setGoOn(std::function<bool()> goOn) { m_goOn = std::move(goOn); }

    [[nodiscard]] CChildResult run() const;

    // The program of that name in the folders of PATH; empty if there is none. Only absolute folders
    // are searched, so that a file lying in the current folder is never taken by chance.
    [[nodiscard]] static std::filesystem::path findProgram(std::string_view sName);

  private:
    std::vector<std::string> m_arguments;
    std::vector<std::pair<std::string, std::string>> m_variables;
    std::function<bool()> m_goOn;
    double m_dDeadlineSeconds = 0.0;
};

} // namespace velmora
