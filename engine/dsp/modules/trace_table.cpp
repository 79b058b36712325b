#include "dsp/modules/trace_table.h"

namespace velmora {

bool CTraceTable::reset()
{
    m_nCount.store(0, std::memory_order_relaxed);
    m_table.destroy();
    return m_table.create(ROWS, COLUMNS, 0.0F);
}

void CTraceTable::add(const CRow& row)
{
    if (isFull())
        return;
    const int nIndex = m_nCount.load(std::memory_order_relaxed);
    if (nIndex == 0)
        m_table.set(0, SAMPLE_INDEX, -1.0F);
    m_table.set(nIndex + 1, SAMPLE_INDEX, static_cast<float>(nIndex));
    for (int nColumn = INPUT; nColumn < COLUMNS; ++nColumn)
        m_table.set(nIndex + 1, nColumn, row[static_cast<std::size_t>(nColumn)]);
    m_nCount.store(nIndex + 1, std::memory_order_release);
}

void CTraceTable::add(float fInput, float fOutput)
{
    CRow row{};
    row[INPUT] = fInput;
    row[OUTPUT] = fOutput;
    add(row);
}

} // namespace velmora
