#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace velmora::test {

// Judges what is played while filters are swapped that each play a constant of their own, its signature. A
// buffer is whole if it holds one signature from its first sample to its last. From one signature to the next
// there is either a step between two buffers, or, where swaps fade, a fade that begins with a buffer and
// whose sample k of L is old + k / L (new - old). A buffer of silence, as where a file starts over, counts
// for itself. All else is torn.
class CSwapWatch
{
  public:
    static constexpr int SIGNATURES = 7;

    // Signature nNumber, 0 to SIGNATURES - 1, as the plug-ins and modules play it.
    [[nodiscard]] static constexpr float signature(int nNumber)
    {
        return 0.125F * static_cast<float>(nNumber + 1);
    }

    // uFadeFrames: how long a fade takes; 0 where swaps are steps.
    explicit CSwapWatch(unsigned uFadeFrames) : m_uFadeFrames(uFadeFrames) {}

    // The next buffer of one channel. [audio]
    void add(std::span<const float> buffer);

    struct CCounts
    {
        std::uint64_t m_uBuffers = 0;
        std::uint64_t m_uWhole = 0;
        std::uint64_t m_uFading = 0; // wholly or in part
        std::uint64_t m_uSilent = 0;
        std::uint64_t m_uTorn = 0;
        std::uint64_t m_uFirstTorn = 0; // counted from 0
        std::uint64_t m_uFades = 0;     // that came to their end
        std::uint64_t m_uSteps = 0;     // swaps without a fade
        std::uint64_t m_uBegan = 0;     // the buffer in which the last swap was first heard
        int m_nCurrent = -1;            // signature that plays alone; -1: none yet, or a fade is under way
    };
    [[nodiscard]] const CCounts& counts() const { return m_counts; }

  private:
    void advanceFade(std::span<const float> buffer);
    void tear(std::span<const float> buffer);

    unsigned m_uFadeFrames;
    CCounts m_counts;
    int m_nLast = -1;                               // that played alone last
    unsigned m_uPosition = 0;                       // within a fade, frames
    std::array<bool, SIGNATURES> m_candidates = {}; // that the fade may lead to
};

} // namespace velmora::test
