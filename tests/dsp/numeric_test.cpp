#include "dsp/numeric.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(Numeric, MappingsAndTheirInverses)
{
    EXPECT_FLOAT_EQ(mapLinear(-10.0f, 30.0f, 0.25f), 0.0f);
    EXPECT_FLOAT_EQ(mapLog(20.0f, 20000.0f, 1.0f / 3.0f), 200.0f);
    EXPECT_FLOAT_EQ(mapLog10(20.0f, 20000.0f, 2000.0f), 2.0f / 3.0f);
    EXPECT_FLOAT_EQ(mapPow10(0.0f, 2.0f, 1.0f), 1.0f / 1024.0f);
    for (const float fFraction : {0.0f, 0.1f, 0.5f, 1.0f}) {
        EXPECT_FLOAT_EQ(mapLinearInverse(-10.0f, 30.0f, mapLinear(-10.0f, 30.0f, fFraction)), fFraction);
        EXPECT_NEAR(mapLogInverse(20.0f, 20000.0f, mapLog(20.0f, 20000.0f, fFraction)), fFraction, 1e-6f);
    }
    EXPECT_FLOAT_EQ(linearInterp(1.0f, 3.0f, 10.0f, 20.0f, 1.5f), 12.5f);
    EXPECT_EQ(linearInterp(2.0f, 2.0f, 7.0f, 9.0f, 5.0f), 7.0f) << "equal abscissas";
    EXPECT_EQ(mapLog(0.0f, 20.0f, 0.3f), 0.3f) << "no ratio from 0";
    EXPECT_EQ(mapLogInverse(0.0f, 20.0f, 5.0f), 5.0f);
}

} // namespace
} // namespace velmora
