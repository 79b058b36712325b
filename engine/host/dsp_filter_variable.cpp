#include "host/dsp_filter_variable.h"

#include "base/archive.h"

#include <span>

namespace velmora {

void CDSPFilterVariable::Serialize(CArchive& archive)
{
    if (archive.isStoring()) {
        archive.writeString(m_sName);
        archive.writeBytes(std::as_bytes(std::span(&m_cByte, 1)));
        archive.writeUInt32(m_uWord0);
        archive.writeUInt32(m_uWord1);
        return;
    }
    CDSPFilterVariable loaded(*this);
    loaded.m_sName = archive.readString();
    archive.readBytes(std::as_writable_bytes(std::span(&loaded.m_cByte, 1)));
    loaded.m_uWord0 = archive.readUInt32();
    loaded.m_uWord1 = archive.readUInt32();
    *this = std::move(loaded);
}

} // namespace velmora
