#include "base/archive.h"
#include "host/dsp_filter_variable.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(DSPFilterVariable, ComesBackFromAnArchive)
{
    CDSPFilterVariable variable;
    variable.m_sName = "fc";
    variable.m_cByte = 200;
    variable.m_uWord0 = 1;
    variable.m_uWord1 = 0xFFFFFFFE;
    std::string sStore;
    CArchive storing(sStore);
    variable.Serialize(storing);
    EXPECT_EQ(sStore, std::string("\x02"
                                  "fc\xC8\x01\0\0\0\xFE\xFF\xFF\xFF",
                                  12));

    const auto bytes = std::as_bytes(std::span(sStore));
    CDSPFilterVariable loaded;
    for (std::size_t uLength = 0; uLength < bytes.size(); ++uLength) {
        CArchive truncated(bytes.first(uLength));
        EXPECT_THROW(loaded.Serialize(truncated), CArchiveError);
        EXPECT_EQ(loaded.m_sName, "");
    }
    CArchive loading(bytes);
    loaded.Serialize(loading);
    std::string sAgain;
    CArchive storingAgain(sAgain);
    loaded.Serialize(storingAgain);
    EXPECT_EQ(sAgain, sStore);
    EXPECT_EQ(loaded.m_uMax, 400U);
}

} // namespace
} // namespace velmora
