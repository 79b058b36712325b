#include "base/text.h"
#include "cli/demo/markup.h"
#include "cli/demo/plot_axis.h"
#include "cli/demo/source_excerpt.h"
#include "cli/demo/svg_plot.h"
#include "tests/cli/markup_check.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace velmora::cli {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr CPlotSize SIZE = {"medium", 580, 270};

std::string labelsOf(const CPlotAxis& axis, int nMaxLabels)
{
    std::string sLabels;
    for (const CPlotTick& tick : axisTicks(axis, nMaxLabels))
        if (!tick.m_sLabel.empty())
            sLabels += tick.m_sLabel + " ";
    return sLabels;
}

TEST(PlotAxis, TicksStandAtRoundNumbers)
{
    const struct
    {
        CPlotAxis m_axis;
        int m_nMaxLabels;
        const char* m_pLabels;
    } cases[] = {
        {{EPlotScale::linear, 0.0, 4.0, {}}, 9, "0.0 0.5 1.0 1.5 2.0 2.5 3.0 3.5 4.0 "},
        {{EPlotScale::linear, -0.1, 0.1, {}}, 5, "−0.10 −0.05 0.00 0.05 0.10 "},
        {{EPlotScale::decibel, -60.0, 24.0, {}}, 8, "−60 −48 −36 −24 −12 0 12 24 "},
        {{EPlotScale::decibel, -1.0, 0.0, {}}, 6, "−1.0 −0.8 −0.6 −0.4 −0.2 0.0 "},
        {{EPlotScale::degree, -180.0, 180.0, {}}, 6, "−180 −90 0 90 180 "},
        {{EPlotScale::logarithmic, 20.0, 20000.0, {}}, 12, "20 50 100 200 500 1k 2k 5k 10k 20k "},
        {{EPlotScale::logarithmic, 20.0, 20000.0, {}}, 6, "100 1k 10k "},
        // No axis at all.
        {{EPlotScale::linear, 1.0, 1.0, {}}, 6, ""},
        {{EPlotScale::linear, 2.0, 1.0, {}}, 6, ""},
        {{EPlotScale::linear, NOT_A_NUMBER, 1.0, {}}, 6, ""},
        {{EPlotScale::linear, 0.0, INFINITE, {}}, 6, ""},
        {{EPlotScale::logarithmic, 0.0, 100.0, {}}, 6, ""},
    };
    for (const auto& entry : cases)
        EXPECT_EQ(labelsOf(entry.m_axis, entry.m_nMaxLabels), entry.m_pLabels);
    EXPECT_EQ(axisTicks({EPlotScale::logarithmic, 20.0, 20000.0, {}}, 12).size(), 28u);
}

TEST(PlotAxis, AFittedAxisHoldsItsRangeAndHasFewLabels)
{
    for (const EPlotScale eScale : {EPlotScale::linear, EPlotScale::decibel, EPlotScale::degree})
        for (const double dLow : {-1e6, -97.3, -1.0, -1e-7, 0.0, 3e-5, 0.999, 1e5})
            for (const double dExtent : {0.0, 1e-6, 0.03, 1.0, 7.7, 96.0, 1e4, 1e9}) {
                const CPlotAxis axis = fittedAxis(eScale, "u", dLow, dLow + dExtent);
                const double dSlack = 1e-6 * (axis.m_dHigh - axis.m_dLow);
                EXPECT_LE(axis.m_dLow, dLow + dSlack);
                EXPECT_GE(axis.m_dHigh, dLow + dExtent - dSlack);
                for (const int nMaxLabels : {4, 7, 12}) {
                    const auto ticks = axisTicks(axis, nMaxLabels);
                    EXPECT_GE(ticks.size(), 2u) << dLow << " " << dExtent << " " << nMaxLabels;
                    EXPECT_LE(ticks.size(), static_cast<std::size_t>(nMaxLabels));
                }
            }
    const CPlotAxis odd = fittedAxis(EPlotScale::linear, {}, -INFINITE, NOT_A_NUMBER);
    EXPECT_LT(odd.m_dLow, odd.m_dHigh);
    EXPECT_DOUBLE_EQ(positionOnAxis({EPlotScale::logarithmic, 10.0, 1000.0, {}}, 100.0), 0.5);
    EXPECT_TRUE(std::isnan(positionOnAxis({EPlotScale::logarithmic, 10.0, 1000.0, {}}, -1.0)));
}

CPlot plotOf(std::vector<CPlotPoint> points)
{
    return {"id",
            "Title",
            "Description",
            {EPlotScale::linear, 0.0, 10.0, "s"},
            {EPlotScale::linear, -1.0, 1.0, {}},
            {{"curve", EPlotRole::after, false, std::move(points), {}}},
            {}};
}

// The path of the plot's first curve.
std::string curvePath(const std::string& sSvg)
{
    return test::between(sSvg, "class=\"line after\" d=\"", "\"");
}

std::vector<double> numbersIn(const std::string& sPath)
{
    std::string sNumbers = sPath;
    std::ranges::replace_if(
        sNumbers, [](char c) { return std::string_view("MLHVZh ").find(c) != std::string_view::npos; }, ' ');
    std::vector<double> numbers;
    for (const std::string& sNumber : split(sNumbers, ' ')) {
        if (sNumber.empty())
            continue;
        const auto number = parseNumber(sNumber);
        EXPECT_TRUE(number.has_value()) << sNumber;
        numbers.push_back(number.value_or(NOT_A_NUMBER));
    }
    return numbers;
}

TEST(SvgPlot, WhatIsNotFiniteLeavesAGapAndNothingLeavesTheDrawing)
{
    const std::string sSvg = drawPlot(plotOf({{0.0, 0.0},
                                              {1.0, 0.5},
                                              {2.0, NOT_A_NUMBER},
                                              {3.0, 0.5},
                                              {4.0, 1e300},
                                              {5.0, -1e300},
                                              {6.0, -INFINITE},
                                              {7.0, 0.1},
                                              {INFINITE, 0.0},
                                              {NOT_A_NUMBER, 0.0},
                                              {8.0, 0.0},
                                              {1e300, 0.0}}),
                                      SIZE);
    EXPECT_EQ(test::markupFault(sSvg), "");
    const std::string sPath = curvePath(sSvg);
    EXPECT_EQ(test::occurrences(sPath, "M"), 4) << sPath;  // 0..1, 3..5, 7, 8
    EXPECT_EQ(test::occurrences(sPath, "h0"), 2) << sPath; // single points are still seen
    for (const double dNumber : numbersIn(sPath)) {
        EXPECT_TRUE(std::isfinite(dNumber));
        EXPECT_LE(std::abs(dNumber), 1000.0);
    }
}

TEST(SvgPlot, ManyPointsKeepTheirExtremes)
{
    std::vector<CPlotPoint> points;
    for (int n = 0; n < 200000; ++n)
        points.push_back({n * 10.0 / 200000, 0.0});
    points[123456].m_dY = 1.0;
    points[60000].m_dY = -1.0;
    const auto numbers = numbersIn(curvePath(drawPlot(plotOf(points), SIZE)));
    EXPECT_LT(numbers.size(), 6000u);
    EXPECT_GT(numbers.size(), 1000u);
    EXPECT_TRUE(std::ranges::find(numbers, 26.0) != numbers.end());  // top of the frame
    EXPECT_TRUE(std::ranges::find(numbers, 246.0) != numbers.end()); // and its bottom
}

TEST(SvgPlot, BandsMarkersAndOddTextsAreWellFormed)
{
    CPlot plot = plotOf({});
    plot.m_sTitle = "a < b & \"c\" \x01\xff";
    plot.m_curves[0].m_sName = "<name>";
    plot.m_curves[0].m_bands = {
        {0.0, -0.5, 0.5}, {1.0, 0.0, 0.0}, {2.0, NOT_A_NUMBER, 1.0}, {3.0, -1.0, INFINITE}, {4.0, -1.0, 1.0}};
    plot.m_markers = {
        {{5.0, 0.5}, "<&>"}, {{9.9, NOT_A_NUMBER}, "unseen"}, {{9.9, 0.0}, "a long text at the right edge"}};
    const std::string sSvg = drawPlot(plot, SIZE);
    EXPECT_EQ(test::markupFault(sSvg), "");
    EXPECT_NE(sSvg.find("a &lt; b &amp; &quot;c&quot; \u00ff"), std::string::npos);
    EXPECT_EQ(test::occurrences(sSvg, "<circle"), 2);
    const std::string sBand = test::between(sSvg, "class=\"band after\" d=\"", "\"");
    EXPECT_EQ(test::occurrences(sBand, "M"), 2);
    EXPECT_EQ(test::occurrences(sBand, "Z"), 2);
    for (const double dNumber : numbersIn(sBand))
        EXPECT_TRUE(std::isfinite(dNumber));
    // An axis without extent draws no curve and does no harm.
    plot.m_xAxis.m_dHigh = plot.m_xAxis.m_dLow;
    EXPECT_EQ(test::markupFault(drawPlot(plot, SIZE)), "");
    EXPECT_EQ(drawPlot(plot, SIZE).find("nan"), std::string::npos);
}

TEST(Markup, Base64FollowsItsStandard)
{
    for (const auto& [pBytes, pText] :
         {std::pair("", ""), {"f", "Zg=="}, {"fo", "Zm8="}, {"foobar", "Zm9vYmFy"}})
        EXPECT_EQ(base64(pBytes), pText);
    EXPECT_EQ(base64(std::string_view("\0\xff\xfe", 3)), "AP/+");
}

TEST(Markup, TextIsEscapedAndForbiddenCharactersAreLeftOut)
{
    EXPECT_EQ(escapedText("<a href=\"x\">&'</a>"), "&lt;a href=&quot;x&quot;&gt;&amp;'&lt;/a&gt;");
    EXPECT_EQ(escapedText(std::string_view("a\0\x01\x1b"
                                           "b\tc\n\uFFFEd\uFFFF\u20ac\xe4",
                                           19)),
              "ab\tc\nd\u20ac\u00e4");
}

TEST(Markup, HighlightingChangesNoLetter)
{
    const std::string sSource =
        "int f(char c) /* a < b */\n{\n    return c == '\"' && g(\"}\\\"\", 0x1Fu, 1.5f, a&b); "
        "// \u00b5 & more\n}\n\"open";
    std::string sPlain = highlightedSource(sSource);
    EXPECT_NE(sPlain.find("<span class=\"k\">return</span>"), std::string::npos);
    EXPECT_NE(sPlain.find("<span class=\"s\">&quot;}\\&quot;&quot;</span>"), std::string::npos);
    EXPECT_NE(sPlain.find("<span class=\"n\">0x1Fu</span>"), std::string::npos);
    EXPECT_EQ(test::markupFault("<pre>" + sPlain + "</pre>"), "");
    for (std::size_t u = sPlain.find('<'); u != std::string::npos; u = sPlain.find('<'))
        sPlain.erase(u, sPlain.find('>', u) - u + 1);
    EXPECT_EQ(sPlain, escapedText(sSource));
}

TEST(SourceExcerpt, FindsAnOperationUpToItsClosingBrace)
{
    const std::string sBody = "bool CX::processAudioFrame(float* p)\n{\n    if (p) { f(\"}\", '}'); } // }\n "
                              "   /* } */ return true;\n}\n";
    EXPECT_EQ(operationIn("#include <x>\n\n" + sBody + "\nvoid g() {}\n", "processAudioFrame"), sBody);
    EXPECT_EQ(processingOperationIn("int a;\n" + sBody), sBody);
    EXPECT_EQ(operationIn("bool CX::processAudioFrame(float* p)\n{ if (p) {", "processAudioFrame"), "");
    EXPECT_EQ(operationIn("bool CX::processAudioFrame(float* p);\n", "processAudioFrame"), "");
    EXPECT_EQ(processingOperationIn(""), "");
}

} // namespace
} // namespace velmora::cli
