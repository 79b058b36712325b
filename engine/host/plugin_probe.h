#pragma once

#include <chrono>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace velmora {

// What became of a library in the probe.
enum class EProbeStatus
{
    good,
    wrongVersion,   // reports a contract version other than ours; its object was never made
    noVersion,      // has no getAPIVersion()
    noCreateObject, // has no createObject()
    loadFailed,     // is no library, or cannot be linked
    notExamined,    // the helper program is missing or does not work
    crashed,        // crashed, called exit(), threw an exception
    timedOut,       // did not answer in time
    nullObject,     // createObject() returned null
    badObject,      // the object has no name, or its control list has no end
};

struct CProbeResult
{
    std::filesystem::path m_file;
    EProbeStatus m_eStatus = EProbeStatus::loadFailed;
    std::string m_sPlugInName; // empty unless an object was made
    int m_nVersion = -1;       // -1: not known
    std::string m_sReason;     // for a person; empty when the library is good
};

// Tries out plug-in libraries in a process of their own, so that one which crashes, hangs or exits takes
// nobody along.
//
// How it works: the helper program velmora-probe is started on many libraries at once. It loads each, asks
// its version, makes an object, reads its name and controls, deletes it and unloads the library, and
// tells each step over a pipe. When it dies or a library takes too long, the last library it named is the
// culprit, and a new helper goes on with the rest. A library that brought down a helper which had
// examined others before gets a second chance at the head of a new one, because one of the others may
// have left the damage behind.
class CPlugInProbe
{
  public:
    static constexpr std::chrono::milliseconds DEFAULT_DEADLINE{2000};

    // deadline is what each library may take, at least 1 ms. helper is the program to start; empty stands
    // for velmora-probe in the program folder or, installed, in the neighbouring libexec/velmora.
    explicit CPlugInProbe(std::chrono::milliseconds deadline = DEFAULT_DEADLINE,
                          std::filesystem::path helper = {});

    // One result for each file, in the same order. Nothing of what a library does escapes: no exception,
    // no output, no open descriptor, no child process but one that left the helper's process group. [main]
    [[nodiscard]] std::vector<CProbeResult> probe(std::span<const std::filesystem::path> files) const;

  private:
    std::chrono::milliseconds m_deadline;
    std::filesystem::path m_helper;
};

} // namespace velmora
