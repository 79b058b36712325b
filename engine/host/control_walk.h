#pragma once

#include "host/dsp_filter.h"

#include <vector>

namespace velmora {

// Every control of a filter, in the order of their positions; of a filter that is made of others, theirs too.
// They are valid until the controls are made anew. [main]
[[nodiscard]] inline std::vector<CDSPFilterControl*> controlsOf(CDSPFilter& filter)
{
    std::vector<CDSPFilterControl*> controls;
    UINT uId = filter.m_nFirstControlID;
    while (CDSPFilterControl* pControl = filter.getControlByIndex(uId++))
        controls.push_back(pControl);
    return controls;
}

} // namespace velmora
