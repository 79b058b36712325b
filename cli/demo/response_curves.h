#pragma once

#include "cli/demo/demo_report.h"

namespace velmora {
class CDSPFilter;
}

namespace velmora::cli {

struct CResponseCurves
{
    CReportResponse m_frequency;
    CReportResponse m_phase;
    CReportResponse m_impulse; // as far as the filter needs to settle
    CReportResponse m_step;
    int m_nFrames = 0; // of the impulse that frequency and phase were worked out from
};

// Measures a filter at a rate in Hz, by an impulse and a step of 16384 frames. False without a filter.
// [main, no stream running]
[[nodiscard]] bool measureResponses(CDSPFilter* pFilter, double dSampleRate, CResponseCurves& curves);

} // namespace velmora::cli
