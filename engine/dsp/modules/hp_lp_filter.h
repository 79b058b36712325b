#pragma once

#include "dsp/modules/multi_filter.h"

namespace velmora {

// High-pass and low-pass filters of the first and second order. [main]
class CHP_LPFilter : public CMultiFilter
{
  public:
    CHP_LPFilter();
};

} // namespace velmora
