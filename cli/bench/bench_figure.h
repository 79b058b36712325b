#pragma once

#include <functional>
#include <string>
#include <vector>

namespace velmora::cli {

// One line of the benchmark's result.
struct CBenchFigure
{
    std::string m_sName;
    double m_dValue = 0.0;
    std::string m_sUnit;
};

// Seconds of wall time that one call takes.
[[nodiscard]] double secondsOf(const std::function<void()>& work);

// Seconds of processor time that one call takes: what other programs do, and waiting for the disk, stay
// out of it.
[[nodiscard]] double processorSecondsOf(const std::function<void()>& work);

// The middle value; values must not be empty.
[[nodiscard]] double medianOf(std::vector<double> values);

// Median of the seconds of one call, over nRounds rounds of as many calls as fill about 20 ms; calls once
// more ahead of them.
[[nodiscard]] double medianSecondsOf(const std::function<void()>& work, int nRounds = 7);

} // namespace velmora::cli
