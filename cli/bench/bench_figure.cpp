#include "cli/bench/bench_figure.h"

#include <algorithm>
#include <chrono>
#include <ctime>

namespace velmora::cli {

double secondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double processorSecondsOf(const std::function<void()>& work)
{
    const auto now = [] {
        timespec time{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    };
    const double dStart = now();
    work();
    return now() - dStart;
}

double medianOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

double medianSecondsOf(const std::function<void()>& work, int nRounds)
{
    constexpr double ROUND_SECONDS = 0.02;
    constexpr double MOST_CALLS = 1e6;
    const double dOnce = std::max(secondsOf(work), ROUND_SECONDS / MOST_CALLS);
    const int nCalls = std::max(1, static_cast<int>(ROUND_SECONDS / dOnce));
    std::vector<double> rounds;
    for (int nRound = 0; nRound < nRounds; ++nRound)
        rounds.push_back(secondsOf([&] {
                             for (int nCall = 0; nCall < nCalls; ++nCall)
                                 work();
                         }) /
                         nCalls);
    return medianOf(std::move(rounds));
}

} // namespace velmora::cli
