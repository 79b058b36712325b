#include "host/leading_number.h"

#include <gtest/gtest.h>
#include <limits>
#include <tuple>

namespace velmora {
namespace {

TEST(LeadingNumber, ReadsAsFarAsTheNumberGoes)
{
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    const std::tuple<const char*, std::optional<double>> cases[] = {
        {"5 dB", 5.0},         {" \t-0.25", -0.25},   {"+3", 3.0},
        {".5", 0.5},           {"-.5x", -0.5},        {"1e3Hz", 1000.0},
        {"1e", 1.0},           {"7,5", 7.0},          {"0x10", 0.0},
        {"1e999", INFINITE},   {"-1e999", -INFINITE}, {"1e-999", 0.0},
        {"", std::nullopt},    {"  ", std::nullopt},  {"dB 5", std::nullopt},
        {"nan", std::nullopt}, {"inf", std::nullopt}, {"+-5", std::nullopt},
        {"-", std::nullopt},   {".", std::nullopt},
    };
    for (const auto& [pText, dExpected] : cases)
        EXPECT_EQ(leadingNumber(pText), dExpected) << pText;
    EXPECT_EQ(leadingNumber("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(leadingNumber(std::string(400, '9')), INFINITE);
}

} // namespace
} // namespace velmora
