#pragma once

#include "base/object.h"
#include "pluginconstants.h"

#include <string>

namespace velmora {

// A named variable that a built-in module keeps beside a control. [main]
class CDSPFilterVariable : public CObject
{
  public:
    // Stores or loads the name, the byte, and the first two words. On a truncated archive loading throws
    // CArchiveError and changes nothing.
    void Serialize(CArchive& archive) override;

    std::string m_sName;
    UINT m_uWord0 = 0;
    UINT m_uWord1 = 0;
    UINT m_uWord2 = 0;
    UINT m_uMax = 400;
    unsigned char m_cByte = 0;
};

} // namespace velmora
