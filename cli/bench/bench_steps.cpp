#include "cli/bench/bench_steps.h"

#include <algorithm>

namespace velmora::cli {

void CBenchSteps::next()
{
    m_nDone = std::min(m_nDone + 1, m_nSteps);
    if (!report(1.0))
        throw CBenchInterrupted();
}

bool CBenchSteps::report(double)
{
    return m_total.report(static_cast<double>(m_nDone) / m_nSteps);
}

} // namespace velmora::cli
