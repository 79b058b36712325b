#pragma once

namespace velmora {

class CDSPFilter;

// What filters are told about the audio.
struct CAudioFormat
{
    int m_nChannels = 2;
    int m_nSampleRate = 44100; // Hz
    int m_nBitDepth = 16;

    // Tells the filter, and through its prepareForPlay() the plug-in. [main, no stream running]
    void applyTo(CDSPFilter& filter) const;
};

} // namespace velmora
