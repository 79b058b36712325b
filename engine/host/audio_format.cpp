#include "host/audio_format.h"

#include "host/dsp_filter.h"

namespace velmora {

void CAudioFormat::applyTo(CDSPFilter& filter) const
{
    filter.setBitDepth(m_nBitDepth);
    filter.m_nSampleRate = m_nSampleRate;
    filter.m_nChannels = m_nChannels;
}

} // namespace velmora
