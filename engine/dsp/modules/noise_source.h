#pragma once

#include <array>
#include <cstdint>

namespace velmora {

// White noise from a random generator of its own, so that the same seed gives the same noise on every
// machine, whatever else draws random numbers. The generator is linear congruential,
//     s = 6364136223846793005 s + 1442695040888963407 mod 2^64
// (D. E. Knuth's MMIX, The Art of Computer Programming 2, 3.3.4), of which the 15 highest bits are used.
// [audio]; seed(): [main, not in use]
class CNoiseSource
{
  public:
    // What a reset draws ahead of the noise.
    struct CSeedObject
    {
        static constexpr int SIZE = 128;

        int m_nMask = 31;
        int m_nKey = 0;
        std::array<int, 5> m_values{}; // each below a fifth of the size
    };

    void seed(unsigned uSeed)
    {
        m_uState = uSeed;
        (void)random();
        for (int& nValue : m_seedObject.m_values)
            nValue = random() % (CSeedObject::SIZE / 5);
    }

    // 0 to 32767.
    [[nodiscard]] int random()
    {
        m_uState = m_uState * 6364136223846793005U + 1442695040888963407U;
        return static_cast<int>(m_uState >> 49);
    }

    // (random - 16383) / 16384: -0.99994 to +1.0.
    [[nodiscard]] float next() { return (static_cast<float>(random()) - 16383.0F) / 16384.0F; }

    [[nodiscard]] const CSeedObject& seedObject() const { return m_seedObject; }

  private:
    std::uint64_t m_uState = 1;
    CSeedObject m_seedObject;
};

} // namespace velmora
