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
    float* __restrict pLeft = m_planes[0].data();
    float* __restrict pRight = m_planes[1].data();
    if (uChannels == 2) { // apart, because a known step and an index that cannot wrap are vectorised
        for (std::size_t i = 0; i < uFrames; ++i) {
            pLeft[i] = pIn[2 * i];
            pRight[i] = pIn[2 * i + 1];
        }
        return;
    }
    for (std::size_t i = 0; i < uFrames; ++i, pIn += uChannels) {
        pLeft[i] = pIn[0];
        pRight[i] = pIn[1];
    }
}

void CPlanePair::join(float* pOut, UINT uPlanes, UINT uChannels, UINT uFrames) const
{
    if (uChannels == 1) {
        std::copy_n(m_planes[0].data(), uFrames, pOut);
        return;
    }
    const float* pLeft = m_planes[0].data();
    const float* pRight = m_planes[uPlanes - 1].data();
    float* __restrict pJoined = pOut;
    for (std::size_t i = 0; i < uFrames; ++i) {
        pJoined[2 * i] = pLeft[i];
        pJoined[2 * i + 1] = pRight[i];
    }
}

float** CPlanePair::pointers()
{
    m_pointers = {m_planes[0].data(), m_planes[1].data()};
    return m_pointers.data();
}

} // namespace velmora
