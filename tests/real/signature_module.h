#pragma once

#include "host/dsp_filter.h"

namespace velmora::test {

// A built-in module that plays a constant on every channel, whatever comes in.
class CSignatureModule : public CDSPFilter
{
  public:
    explicit CSignatureModule(float fSignature) : m_fSignature(fSignature)
    {
        m_sName = "Signature " + std::to_string(fSignature);
    }

    bool processInterleaved(float*, float* pOut, UINT, UINT uSamples, UINT) override
    {
        for (UINT i = 0; i < uSamples; ++i)
            pOut[i] = m_fSignature;
        return true;
    }

  private:
    float m_fSignature;
};

} // namespace velmora::test
