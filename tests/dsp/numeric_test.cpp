#include "dsp/numeric.h"

#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

TEST(Numeric, Decibels)
{
    EXPECT_FLOAT_EQ(dB2Lin(0.0f), 1.0f);
    EXPECT_FLOAT_EQ(dB2Lin(20.0f), 10.0f);
    EXPECT_FLOAT_EQ(dB2Lin(-60.0f), 0.001f);
    EXPECT_FLOAT_EQ(lin2dB(0.5f), -6.0205999f);
    EXPECT_EQ(lin2dB(0.0f), -std::numeric_limits<float>::infinity());
}

TEST(Numeric, LinearInterpolation)
{
    EXPECT_FLOAT_EQ(linearInterp(1.0f, 3.0f, 10.0f, 20.0f, 1.5f), 12.5f);
    EXPECT_FLOAT_EQ(linearInterp(0.0f, 1.0f, 1.0f, 0.0f, 2.0f), -1.0f) << "beyond the points";
    EXPECT_EQ(linearInterp(2.0f, 2.0f, 7.0f, 9.0f, 5.0f), 7.0f) << "equal abscissas";
}

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
    EXPECT_EQ(mapLog(0.0f, 20.0f, 0.3f), 0.3f) << "no ratio from 0";
    EXPECT_EQ(mapLogInverse(0.0f, 20.0f, 5.0f), 5.0f);
}

TEST(Numeric, Texts)
{
    EXPECT_EQ(floatToText(-1.25f, 1), "-1.2");
    EXPECT_EQ(floatToText(0.0625f, 3), "0.062");
    EXPECT_EQ(floatToText(3.0f, 0), "3");
    EXPECT_EQ(intToText(std::numeric_limits<int>::min()), "-2147483648");
}

} // namespace
} // namespace velmora
