#pragma once

#include "dsp/modules/multi_filter.h"

namespace velmora {

// All-pass filters of the first and second order; in place of the Q there is a bandwidth in Hz. [main]
class CAllPassFilter : public CMultiFilter
{
  public:
    CAllPassFilter();
};

} // namespace velmora
