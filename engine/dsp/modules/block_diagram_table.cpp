#include "dsp/modules/block_diagram_table.h"

#include "dsp/modules/relaxed_word.h"
#include "dsp/numeric.h"

namespace velmora {

namespace {

constexpr int DECIMALS = 6;

std::string valueOf(const CModuleCoefficient& coefficient)
{
    return floatToText(relaxedLoad(*coefficient.m_pValue), DECIMALS);
}

} // namespace

void CBlockDiagramTable::setCoefficients(std::vector<CModuleCoefficient> coefficients)
{
    m_coefficients = std::move(coefficients);
}

void CBlockDiagramTable::open()
{
    m_rows.clear();
    for (const CModuleCoefficient& coefficient : m_coefficients)
        m_rows.push_back({coefficient.m_sLabel, valueOf(coefficient)});
}

void CBlockDiagramTable::refresh()
{
    if (m_rows.empty()) {
        open();
        return;
    }
    if (m_rows.size() != m_coefficients.size())
        return;
    for (std::size_t u = 0; u < m_rows.size(); ++u)
        m_rows[u].m_sValue = valueOf(m_coefficients[u]);
}

} // namespace velmora
