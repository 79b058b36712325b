#include "host/plane_pair.h"

#include <algorithm>

namespace velmora {

void CPlanePair::clear()
{
    for (CPlane& plane : m_planes)
        plane.fill(0.0F);
}

void CPlanePair::split(const float* pIn, UINT uChannels, UINT uFrames)
{
    if (uChannels == 1) {
        std::copy_n(pIn, uFrames, m_planes[0].data());
        return;
    }
    for (UINT i = 0; i < uFrames; ++i, pIn += uChannels) {
        m_planes[0][i] = pIn[0];
        m_planes[1][i] = pIn[1];
    }
}

void CPlanePair::join(float* pOut, UINT uPlanes, UINT uChannels, UINT uFrames) const
{
    if (uChannels == 1) {
        std::copy_n(m_planes[0].data(), uFrames, pOut);
        return;
    }
    const CPlane& right = m_planes[uPlanes - 1];
    for (UINT i = 0; i < uFrames; ++i) {
        pOut[2 * i] = m_planes[0][i];
        pOut[2 * i + 1] = right[i];
    }
}

float** CPlanePair::pointers()
{
    m_pointers = {m_planes[0].data(), m_planes[1].data()};
    return m_pointers.data();
}

} // namespace velmora
