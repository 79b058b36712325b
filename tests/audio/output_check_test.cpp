#include "audio/output_check.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace velmora {
namespace {

TEST(OutputCheckTest, TellsPeakOversAndWhatIsNoNumber)
{
    COutputCheck check;
    check.add(std::vector<float>{0.0F, -0.5F, 1e-40F});
    EXPECT_EQ(check.peak(), 0.5F);
    check.add(std::vector<float>{-1.0F, 1.0F});
    EXPECT_EQ(check.overs(), 0);
    const float fInfinity = std::numeric_limits<float>::infinity();
    check.add(std::vector<float>{-1.5F, std::nanf(""), fInfinity, -fInfinity, 1.25F, 0.1F});
    check.add(std::vector<float>{0.25F});
    EXPECT_EQ(check.peak(), 1.5F);
    EXPECT_EQ(check.overs(), 2);
    EXPECT_EQ(check.notFinite(), 3);
}

} // namespace
} // namespace velmora
