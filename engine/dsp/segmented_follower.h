#pragma once

#include <cstddef>

namespace velmora {

// The envelope steps of level detectors whose attack coefficient is 0, many at once; level_detector.h tells
// the mathematics. One or two detectors run side by side over interleaved channels.
struct CSegmentedSteps
{
    float m_fRelease;         // release coefficient, 0..1
    bool m_bSquare;           // of squares instead of sizes
    int m_nChannels;          // 1 or 2
    std::ptrdiff_t m_nStride; // samples from one frame to the next
};

// Each moves one envelope for each channel, 0..1, over whole segments of the frames and answers how many
// frames those were; the rest, fewer than 32, is left to the caller. A sample that is not a number counts
// as silence. They differ only in speed and rounding. [audio]
int followSegmentsPortable(const CSegmentedSteps& steps, const float* pSamples, int nFrames,
                           float* pEnvelopes);
int followSegmentsAVX2(const CSegmentedSteps& steps, const float* pSamples, int nFrames, float* pEnvelopes);

// Whether this processor can run the second.
[[nodiscard]] bool hasAVX2();

// The fastest that this processor can run.
int followSegments(const CSegmentedSteps& steps, const float* pSamples, int nFrames, float* pEnvelopes);

} // namespace velmora
