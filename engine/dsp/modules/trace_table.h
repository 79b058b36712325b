#pragma once

#include "dsp/float_array.h"

#include <array>
#include <atomic>

namespace velmora {

// The terms of a filter's first 64 samples after a reset, to look its arithmetic over. Row n + 1 holds sample
// n; row 0 holds -1.0 in its first column once there is one. The audio thread writes a row and then counts
// it; a counted row stays as it is until the reset, so others may read it.
class CTraceTable
{
  public:
    static constexpr int ROWS = 65;
    static constexpr int COLUMNS = 13;

    // Sample index, x, a0 x, a1 x[n-1], a2 x[n-2], b1 g[n-1], b2 g[n-2], their sum, the sum times c0, wet
    // path, dry path, both, output.
    enum EColumn
    {
        SAMPLE_INDEX = 0,
        INPUT = 1,
        OUTPUT = 12
    };
    using CRow = std::array<float, COLUMNS>; // add() sets the index

    // Makes the table anew, filled with 0. False if memory does not suffice; then there is none, and
    // add() does nothing. [main, not in use]
    bool reset();

    [[nodiscard]] bool isFull() const
    {
        return m_nCount.load(std::memory_order_relaxed) >= m_table.rows() - 1;
    }                                      // [audio]
    void add(const CRow& row);             // [audio]
    void add(float fInput, float fOutput); // of a filter without such terms // [audio]

    // Rows below count() + 1 may be read. [any]
    [[nodiscard]] int count() const { return m_nCount.load(std::memory_order_acquire); }
    [[nodiscard]] const CFloatArray& table() const { return m_table; }

  private:
    CFloatArray m_table;
    std::atomic<int> m_nCount{0};
};

} // namespace velmora
