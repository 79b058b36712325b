#include "host/control_law.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <tuple>

namespace velmora {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

enum ECurve
{
    linear,
    logarithmic,
    exponential,
    both
};

CControlLaw law(float fLo, float fHi, UINT uDataType, ECurve eCurve = linear, UINT uItemCount = 0)
{
    return {fLo,
            fHi,
            uDataType,
            eCurve == logarithmic || eCurve == both,
            eCurve == exponential || eCurve == both,
            uItemCount};
}

TEST(ControlLaw, FastFunctionsStayWithinTheirErrors)
{
    for (float x = 1e-6F; x < 1e6F; x *= 1.01F)
        EXPECT_NEAR(fastlog2(x), std::log2(x), 2e-4) << x;
    for (float p = -30.0F; p < 30.0F; p += 0.07F)
        EXPECT_NEAR(fastpow2(p) / std::exp2(p), 1.0, 1e-4) << p;
    EXPECT_EQ(fastpow2(-1000.0F), fastpow2(-126.0F));
    EXPECT_EQ(fastpow2(128.0F), std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(fastpow2(std::numeric_limits<float>::quiet_NaN())));
}

TEST(ControlLaw, PositionGivesCookedValue)
{
    const std::tuple<const char*, CControlLaw, double, double, double> cases[] = {
        {"linear", law(-60, 12, floatData), 0.25, -42.0, 0.0},
        {"linear, falling", law(10, 0, doubleData), 0.25, 7.5, 0.0},
        {"logarithmic", law(0, 100, floatData, logarithmic), 0.5, 74.0363, 1e-4},
        {"logarithmic, whole", law(0, 100, intData, logarithmic), 0.5, 74.0, 0.0},
        {"exponential", law(20, 20480, floatData, exponential), 0.5, 640.0, 0.2},
        {"exponential from 0", law(0, 5000, floatData, exponential), 0.375, 0.375, 0.0},
        {"exponential from 0, not rounded", law(0, 5000, intData, exponential), 0.375, 0.375, 0.0},
        {"both: logarithmic wins", law(0, 100, floatData, both), 0.5, 74.0363, 1e-4},
        {"half rounds to even, down", law(0, 10, intData), 0.25, 2.0, 0.0},
        {"half rounds to even, up", law(0, 10, intData), 0.35, 4.0, 0.0},
        {"negative half rounds to even", law(-10, 0, intData), 0.75, -2.0, 0.0},
        {"a list's end is its high limit", law(0, 7, UINTData, linear, 3), 1.0, 7.0, 0.0},
        {"a list's index leaves out the low limit", law(5, 7, UINTData, linear, 3), 0.5, 1.0, 0.0},
        {"a list overrules the curve", law(0, 100, UINTData, logarithmic, 4), 0.5, 2.0, 0.0},
        {"no list: not rounded", law(0, 5, UINTData), 0.25, 1.25, 0.0},
    };
    for (const auto& [pName, law, dNormalized, dExpected, dTolerance] : cases)
        EXPECT_NEAR(cookedFromNormalized(law, dNormalized), dExpected, dTolerance) << pName;
    EXPECT_NE(cookedFromNormalized(law(20, 20480, floatData, exponential), 0.5), 640.0);
    EXPECT_NE(std::fmod(cookedFromNormalized(law(20, 20480, intData, exponential), 0.3), 1.0), 0.0);
}

TEST(ControlLaw, EnumeratedListSharesTheTravel)
{
    const CControlLaw threeItems = law(0, 9, UINTData, linear, 3);
    for (int nPos = 0; nPos <= 256; ++nPos) {
        const double dExpected = nPos <= 85 ? 0.0 : nPos <= 170 ? 1.0 : nPos <= 255 ? 2.0 : 9.0;
        EXPECT_EQ(cookedFromNormalized(threeItems, nPos / 256.0), dExpected) << nPos;
    }
    // 5 * 0.1f is 0.5 as a 32-bit product, and more than 0.5 as an exact one.
    EXPECT_EQ(cookedFromNormalized(law(0, 9, UINTData, linear, 10), 0.5), 5.0);
}

TEST(ControlLaw, CookedValueGivesPosition)
{
    const std::tuple<const char*, CControlLaw, double, double, double> cases[] = {
        {"linear", law(-60, 12, floatData), -42.0, 0.25, 0.0},
        {"beyond the range", law(0, 10, floatData), 15.0, 1.5, 0.0},
        {"logarithmic", law(0, 100, floatData, logarithmic), 74.0363, 0.5, 1e-6},
        {"exponential", law(20, 20480, floatData, exponential), 640.0, 0.5, 1e-4},
        {"exponential from 0", law(0, 5000, floatData, exponential), 0.375, 0.375, 0.0},
        {"both, one after the other", law(0, 5000, floatData, both), 0.5, (std::sqrt(10.0) - 1) / 9, 1e-12},
        {"a list goes by its index", law(0, 4, UINTData, exponential, 5), 2.0, 0.5, 0.0},
    };
    for (const auto& [pName, law, dCooked, dExpected, dTolerance] : cases)
        EXPECT_NEAR(normalizedFromCooked(law, dCooked), dExpected, dTolerance) << pName;
    EXPECT_EQ(positionFromNormalized(0.9999), 255);
    EXPECT_EQ(positionFromNormalized(-0.9999), -255);
}

TEST(ControlLaw, EveryPositionComesBack)
{
    for (const ECurve eCurve : {linear, logarithmic, exponential})
        for (int nPos = 0; nPos <= 256; ++nPos) {
            const CControlLaw range = law(0.5F, 20000.0F, doubleData, eCurve);
            const double dBack =
                256.0 * normalizedFromCooked(range, cookedFromNormalized(range, nPos / 256.0));
            EXPECT_NEAR(dBack, nPos, 0.01) << eCurve;
        }
}

TEST(ControlLaw, NumbersOutOfRangeAreHeldToTheType)
{
    for (const double dValue : {NOT_A_NUMBER, 0.9, -0.9}) {
        EXPECT_EQ(truncatedToInt(dValue), 0);
        EXPECT_EQ(truncatedToUINT(dValue), 0U);
    }
    EXPECT_EQ(truncatedToInt(1e20), std::numeric_limits<int>::max());
    EXPECT_EQ(truncatedToInt(-INFINITE), std::numeric_limits<int>::min());
    EXPECT_EQ(truncatedToUINT(-3.0), 0U);
    EXPECT_EQ(truncatedToUINT(INFINITE), std::numeric_limits<UINT>::max());

    // Impossible ranges: whatever comes out, nothing traps under the sanitizers.
    for (const UINT uDataType : {0U, 1U, 2U, 3U, 4U, 77U})
        for (const ECurve eCurve : {linear, logarithmic, exponential, both})
            for (const float fHi : {0.0F, -5.0F, 3e38F, std::numeric_limits<float>::infinity()})
                for (const double x : {-1.0, 0.0, 1e300, NOT_A_NUMBER}) {
                    const CControlLaw odd = law(fHi == -5.0F ? 20.0F : fHi, fHi, uDataType, eCurve);
                    const double dCooked = cookedFromNormalized(odd, x);
                    (void)truncatedToUINT(dCooked);
                    (void)positionFromNormalized(normalizedFromCooked(odd, dCooked));
                    EXPECT_EQ(valueText(uDataType, dCooked).empty(), uDataType > 3);
                }
    EXPECT_EQ(positionFromNormalized(normalizedFromCooked(law(1, 1, floatData), 1.0)), 0); // 0 / 0
}

TEST(ControlLaw, ValueText)
{
    const std::tuple<UINT, double, const char*> cases[] = {
        {intData, -7.0, "-7"},
        {UINTData, 4294967295.0, "4294967295"},
        {doubleData, 0.12345, "0.123"},
        {floatData, 0.0, "0.00"},
        {floatData, 0.05, "0.0500"},
        {floatData, -0.0999, "-0.0999"},
        {floatData, 0.1, "0.10"},
        {floatData, 999.994, "999.99"},
        {floatData, 1234.56, "1234.6"},
        {floatData, -99.99, "-99.99"},
        {floatData, -123.45, "-123.5"},
        {floatData, 12345.6, "12346"},
        {floatData, 1e12, "1000000000000"},
        {4, 1.0, ""},
    };
    for (const auto& [uDataType, dCooked, pExpected] : cases)
        EXPECT_EQ(valueText(uDataType, dCooked), pExpected);
}

TEST(ControlLaw, TypedTextIsLimitedToTheRange)
{
    struct CCase
    {
        const char* m_pText;
        const char* m_pUnits;
        CControlLaw m_law;
        std::optional<double> m_dExpected;
    };
    const CControlLaw decibels = law(-60, 12, floatData);
    const CCase cases[] = {
        {"5 dB", "dB", decibels, 5.0},
        {" -3.5dB ", "dB", decibels, -3.5},
        {"dB 5", "dB", decibels, 5.0},
        {"5 %", "", decibels, 5.0},
        {"12.001", "dB", decibels, 12.0},
        {"-1e999", "dB", decibels, -60.0},
        {"1e30", "dB", decibels, 12.0},
        {"loud", "dB", decibels, std::nullopt},
        {"dB", "dB", decibels, std::nullopt},
        {"nan", "", decibels, std::nullopt},
        {"7", "", law(10, 0, floatData), 7.0},
        {"0.9", "", law(0, 0.1234567F, floatData), 0.123457}, // the limit as its text has it
        {"-1", "", law(0.0000001F, 1, floatData), 0.0},
    };
    for (const CCase& test : cases)
        EXPECT_EQ(cookedFromText(test.m_law, test.m_pText, test.m_pUnits), test.m_dExpected) << test.m_pText;
}

} // namespace
} // namespace velmora
