#include "analyzer/graph_data_export.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

const std::vector<double> VALUES = {1.0, -0.5, 0.1};

TEST(GraphDataExportTest, EachFormatToTheLetter)
{
    EXPECT_EQ(graphDataText(VALUES, EGraphKind::impulseResponse, EGraphFormat::cArray),
              "// --- Velmora(TM) Analyzer Graph Data\n"
              "//     https://velmora.example\n"
              "//     Graph Type: \tImpulse Response (time) \n"
              "//     Units: \t\tAmplitude [-1..+1] \n"
              " \n"
              "// --- C/C++ style array:\n"
              " \n"
              "double dGraphArray[3] = {1.0000000000000000,-0.5000000000000000,0.1000000000000000};\n");
    EXPECT_EQ(graphDataText(VALUES, EGraphKind::frequency, EGraphFormat::matlab),
              "0 1.0000000000000000\n1 -0.5000000000000000\n2 0.1000000000000000\n");
    EXPECT_EQ(graphDataText(VALUES, EGraphKind::phaseResponse, EGraphFormat::csv),
              "bin,degrees\n0,1.0000000000000000\n1,-0.5000000000000000\n2,0.1000000000000000\n");
}

TEST(GraphDataExportTest, WhatIsNoFiniteNumberStaysReadable)
{
    const double dInfinity = std::numeric_limits<double>::infinity();
    const std::vector<double> values = {-dInfinity, dInfinity, std::nan("")};
    EXPECT_NE(graphDataText(values, EGraphKind::frequency, EGraphFormat::cArray)
                  .find("= {-HUGE_VAL,HUGE_VAL,NAN};"),
              std::string::npos);
    EXPECT_EQ(graphDataText(values, EGraphKind::frequency, EGraphFormat::matlab), "0 -Inf\n1 Inf\n2 NaN\n");
}

TEST(GraphDataExportTest, FormatsAreFoundByName)
{
    EXPECT_EQ(graphFormatByName("c"), EGraphFormat::cArray);
    EXPECT_EQ(graphFormatByName("matlab"), EGraphFormat::matlab);
    EXPECT_EQ(graphFormatByName("csv"), EGraphFormat::csv);
    EXPECT_EQ(graphFormatByName("png"), std::nullopt);
}

} // namespace
} // namespace velmora
