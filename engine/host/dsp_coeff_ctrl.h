#pragma once

#include "base/object.h"
#include "pluginconstants.h"

#include <vector>

namespace velmora {

// The coefficients of one section as the block diagram shows them.
class CDSPCoeffCtrl : public CObject
{
  public:
    std::vector<float> m_Numerator;
    std::vector<float> m_Denominator; // as long as the numerator
    UINT m_uType = 24;
    UINT m_uState = 201;
};

} // namespace velmora
