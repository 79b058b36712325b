#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace velmora::test {

// How a program is started.
struct CProgramStart
{
    // Variables set beside those of the test program.
    std::vector<std::pair<std::string, std::string>> m_environment;
    std::filesystem::path m_workingFolder;     // empty: the test's own
    std::string m_sStandardOutput;             // a file that takes standard output; empty: it is captured
    std::function<void(pid_t)> m_whileRunning; // called about every 10 ms with the process id
};

// What became of it.
struct CProgramEnd
{
    int m_nExitStatus = -1; // -1 if it did not exit by itself
    int m_nSignal = 0;      // what killed it; 0 if it exited
    std::string m_sOutput;  // standard output
    std::string m_sErrors;  // standard error
};

// Runs a program as a user would, with nothing on standard input, and waits for its end. Throws
// std::runtime_error if it cannot be started; one that runs longer than two minutes is killed.
[[nodiscard]] CProgramEnd runProgram(const std::filesystem::path& program,
                                     const std::vector<std::string>& arguments,
                                     const CProgramStart& start = {});

} // namespace velmora::test
