#include "base/text.h"
#include "cli/demo/demo_report.h"
#include "cli/demo/response_curves.h"
#include "cli/demo/sound_summary.h"
#include "host/dsp_filter.h"
#include "tests/cli/cli_program.h"
#include "tests/cli/markup_check.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace velmora::cli {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

CRecording sineRecording(double dBin, float fAmplitude)
{
    CRecording recording{{}, 2, 44100};
    for (int n = 0; n < 30000; ++n) {
        const double dPhase = 2.0 * std::numbers::pi * dBin * n / 8192;
        recording.m_samples.push_back(fAmplitude * static_cast<float>(std::sin(dPhase)));
        recording.m_samples.push_back(fAmplitude * static_cast<float>(std::cos(dPhase)));
    }
    return recording;
}

TEST(SoundSummary, ASineReadsItsOwnLevel)
{
    for (const double dBin : {4.0, 100.0, 2000.0}) {
        const CRecording recording = sineRecording(dBin, 0.5F);
        const auto spectrum = averageSpectrum(recording);
        const auto byLevel = [](const CPlotPoint& a, const CPlotPoint& b) { return a.m_dY < b.m_dY; };
        const auto highest = *std::ranges::max_element(spectrum, byLevel);
        EXPECT_NEAR(highest.m_dY, -6.02, 0.05) << dBin;
        EXPECT_NEAR(highest.m_dX / (dBin * 44100 / 8192), 1.0, 0.02) << dBin;
        EXPECT_NEAR(peakLevel(recording), -6.02, 0.01);
        EXPECT_NEAR(rmsLevel(recording), -9.03, 0.01);
    }
}

TEST(SoundSummary, ColumnsCoverEachSampleOnce)
{
    CRecording recording{std::vector<float>(2 * 1001, 0.0F), 2, 1000};
    recording.m_samples[0] = 1.0F;             // the first frame, left
    recording.m_samples[2 * 1000 + 1] = -1.0F; // the last frame, right
    const auto columns = waveformColumns(recording, 7);
    ASSERT_EQ(columns.size(), 7u);
    EXPECT_EQ(columns.front().m_dHigh, 1.0);
    EXPECT_EQ(columns.back().m_dLow, -1.0);
    EXPECT_LT(columns.back().m_dX, recording.seconds());
    EXPECT_EQ(waveformColumns(CRecording{{0.25F, -0.25F}, 1, 8000}, 100).size(), 2u);
    EXPECT_EQ(peakLevel(CRecording{{0.0F}, 1, 8000}), -std::numeric_limits<double>::infinity());
}

// One sample later and half as loud.
class CHalvingDelay : public CDSPFilter
{
  public:
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT) override
    {
        for (UINT u = 0; u < uSamples; ++u)
            pOut[u] = u < uChannels ? 0.0F : 0.5F * pIn[u - uChannels];
        return true;
    }
};

TEST(ResponseCurves, ShowADelayAsWhatItIs)
{
    CHalvingDelay filter;
    CResponseCurves curves;
    ASSERT_FALSE(measureResponses(nullptr, 48000.0, curves));
    ASSERT_TRUE(measureResponses(&filter, 48000.0, curves));
    ASSERT_EQ(curves.m_frequency.m_left.size(), static_cast<std::size_t>(curves.m_nFrames / 2));
    for (const CPlotPoint& point : curves.m_frequency.m_right)
        ASSERT_NEAR(point.m_dY, -6.02, 0.01);
    const CPlotPoint quarter = curves.m_phase.m_left[curves.m_phase.m_left.size() / 2];
    EXPECT_NEAR(quarter.m_dX, 12000.0, 3.0);
    EXPECT_NEAR(quarter.m_dY, -90.0, 0.1); // one sample of a period of four
    // Little is shown of what has settled at once, but never less than two milliseconds.
    EXPECT_EQ(curves.m_impulse.m_left.size(), 96u);
    EXPECT_NEAR(curves.m_impulse.m_left[1].m_dY, 0.5, 1e-4);
    EXPECT_NEAR(curves.m_step.m_left.back().m_dY, 0.5, 1e-4);
}

CDemoReport filledReport(const std::string& sText)
{
    CDemoReport report;
    report.m_sPlugInName = report.m_sSummary = report.m_sSourceFile = report.m_sCommandLine = sText;
    report.m_highlights = report.m_facts = {{sText, sText}};
    report.m_controls = {{sText, sText, sText, sText, sText, {sText}, 0.5, true},
                         {sText, sText, sText, {}, {}, {}, NOT_A_NUMBER, false}};
    report.m_steps = {{sText, sText, 12.0}, {sText, sText, NOT_A_NUMBER}};
    report.m_sSource = "// " + sText;
    for (CReportSound* pSound : {&report.m_before, &report.m_after})
        *pSound = {sText,
                   2.0,
                   -3.0,
                   NOT_A_NUMBER,
                   {{0.5, -0.5, 0.5}, {1.0, NOT_A_NUMBER, 2.0}},
                   {{100.0, -20.0}, {200.0, NOT_A_NUMBER}, {300.0, -std::numeric_limits<double>::infinity()}},
                   "RIFF"};
    for (CReportResponse* pResponse :
         {&report.m_frequency, &report.m_phase, &report.m_impulse, &report.m_step})
        *pResponse = {{{0.0, NOT_A_NUMBER}, {30.0, 170.0}, {40.0, -170.0}}, {{0.0, 1.0}, {50.0, 1e300}}};
    return report;
}

TEST(DemoReport, IsWellFormedWhateverItHolds)
{
    const CDemoReport reports[] = {CDemoReport{}, filledReport("Plain"), filledReport(""),
                                   filledReport("</h1><script>alert(1)</script>&amp;\"'\x01\xff\n%s%n")};
    for (const CDemoReport& report : reports) {
        const std::string sHtml = makeReportHtml(report);
        EXPECT_EQ(test::markupFault(sHtml), "");
        EXPECT_EQ(sHtml.find("<script"), std::string::npos);
        for (const char* pNumber : {"nan ", "nan\"", "inf ", "inf\""})
            EXPECT_EQ(sHtml.find(pNumber), std::string::npos) << pNumber;
        // Nothing is fetched: no address but those of the two vocabularies.
        EXPECT_EQ(test::occurrences(sHtml, "http"), test::occurrences(sHtml, "xmlns=\"http"));
    }
}

TEST(DemoReport, ShowsWhatItWasGiven)
{
    CDemoReport report = filledReport("Plain");
    report.m_steps = {{"One", {}, 1.5}, {"Two", {}, 1500.0}};
    const std::string sHtml = makeReportHtml(report);
    EXPECT_NE(sHtml.find("<h1>Plain</h1>"), std::string::npos);
    EXPECT_EQ(test::occurrences(sHtml, "src=\"data:audio/wav;base64,UklGRg==\""), 2);
    EXPECT_NE(sHtml.find(">1.50 ms<"), std::string::npos);
    EXPECT_EQ(test::occurrences(sHtml, ">1.50 s<"), 2); // the step, and all together
    // Seven plots; the two channels differ and so both have a curve and a legend.
    for (const char* pId :
         {"waveform-before", "waveform-after", "spectrum", "frequency", "phase", "impulse", "step"})
        EXPECT_EQ(test::occurrences(sHtml, "id=\"" + std::string(pId) + "-medium-t\""), 1) << pId;
    EXPECT_GT(test::occurrences(sHtml, ">right</text>"), 0);
    // The phase that turns over is not drawn across the plot.
    const std::string sPhase = test::between(sHtml, "id=\"phase-medium-t\"", "</svg>");
    EXPECT_EQ(test::occurrences(test::between(sPhase, "class=\"line left\" d=\"", "\""), "M"), 2);

    report.m_frequency.m_right = report.m_frequency.m_left;
    EXPECT_EQ(test::between(makeReportHtml(report), "id=\"frequency-medium-t\"", "</svg>").find(">right<"),
              std::string::npos);
}

class CDemoCommandTest : public test::CCliTest
{
  protected:
    // What a tour leaves behind; its figures are those of the settings that it chose.
    void checkReport(const std::string& sHtml)
    {
        EXPECT_EQ(test::markupFault(sHtml), "");
        // The low-pass stands at 640 Hz with a Q of 6 at -3 dB: 20 log10(6) - 3 dB = 12.56 dB.
        const std::string sPeak = test::between(sHtml, "<dt>Resonance</dt><dd>+", " dB");
        EXPECT_NEAR(parseNumber(sPeak).value_or(0.0), 12.56, 0.3) << sPeak;
        for (const char* pPlot : {"spectrum", "frequency", "phase", "impulse", "step"}) {
            const std::string sPlot =
                test::between(sHtml, "id=\"" + std::string(pPlot) + "-medium-t\"", "</svg>");
            const std::string sClass = pPlot == std::string("spectrum") ? "line after" : "line left";
            const std::string sPath = test::between(sPlot, "class=\"" + sClass + "\" d=\"", "\"");
            EXPECT_GT(test::occurrences(sPath, "L"), 80) << pPlot;
        }
        EXPECT_GT(test::between(sHtml, "src=\"data:audio/wav;base64,", "\"").size(), 900000u);
        EXPECT_NE(sHtml.find("CResonance::processAudioFrame"), std::string::npos);
    }
};

TEST_F(CDemoCommandTest, MakesLibrarySoundAndReportTwice)
{
    const auto target = m_folder / "velmora-demo";
    std::filesystem::create_directories(target);
    test::writeFile(target / "mine.txt", "mine");

    EXPECT_EQ(runForJson({"demo"})["report"].text(), (target / "report.html").string());
    const auto entries = test::entriesOf(target);
    const auto projectEntries = test::entriesOf(target / "Resonance");
    EXPECT_EQ(entries, (std::vector<std::string>{"Resonance", "mine.txt", "processed.wav", "report.html",
                                                 "workbench"}));
    EXPECT_TRUE(std::filesystem::exists(target / "workbench/PlugIns/Resonance.so"));
    EXPECT_FALSE(std::filesystem::exists(userFolder())) << "the tour has a user folder of its own";

    const auto source = target / "Resonance" / "Resonance.cpp";
    const std::string sChanged = test::readFile(source) + "// mine\n";
    test::writeFile(source, sChanged);
    const test::CProgramEnd again = run({"demo", "velmora-demo"});
    EXPECT_EQ(again.m_nExitStatus, 0) << again.m_sErrors;
    EXPECT_EQ(again.m_sOutput, (target / "report.html").string() + "\n");
    for (const char* pStep :
         {"that of the last tour", "all there", "your Resonance.h and Resonance.cpp, kept", "Build", "load",
          "Set the controls", "Process", "Compare", "Measure", "Write"})
        EXPECT_NE(again.m_sErrors.find(pStep), std::string::npos) << pStep;
    EXPECT_EQ(test::entriesOf(target), entries);
    EXPECT_EQ(test::entriesOf(target / "Resonance"), projectEntries);
    EXPECT_EQ(test::readFile(source), sChanged);
    EXPECT_EQ(test::readFile(target / "mine.txt"), "mine");

    checkReport(test::readFile(target / "report.html"));
    std::string sError;
    const auto processed = readRecording(target / "processed.wav", sError);
    ASSERT_TRUE(processed) << sError;
    EXPECT_NEAR(processed->seconds(), 4.0, 0.01);
    EXPECT_GT(peakLevel(*processed), -40.0);
    EXPECT_LT(peakLevel(*processed), 0.0); // the settings leave room: nothing is clipped
}

TEST_F(CDemoCommandTest, FailuresSayWhatToDo)
{
    test::writeFile(m_folder / "file", "not a folder");
    expectFailure({"demo", "file"}, 1, {"velmora-cli demo DIR"});
    EXPECT_EQ(test::readFile(m_folder / "file"), "not a folder");

    for (const char* pForeign : {"report.html", "processed.wav"}) {
        const auto folder = m_folder / (std::string("foreign ") + pForeign);
        std::filesystem::create_directory(folder);
        test::writeFile(folder / pForeign, "<html>");
        expectFailure({"demo", folder.string()}, 1, {pForeign, "overwrite it", "velmora-cli demo DIR"});
        EXPECT_EQ(test::entriesOf(folder), std::vector<std::string>{pForeign});
        EXPECT_EQ(test::readFile(folder / pForeign), "<html>");
    }

    test::CProgramStart noCompiler;
    noCompiler.m_workingFolder = m_folder.path();
    noCompiler.m_environment = {{"PATH", "/nowhere"}};
    const test::CProgramEnd end = test::runProgram(CLI_PROGRAM, {"demo", "new"}, noCompiler);
    EXPECT_EQ(end.m_nExitStatus, 1);
    EXPECT_EQ(end.m_sOutput, "");
    EXPECT_NE(end.m_sErrors.find("apt install g++"), std::string::npos) << end.m_sErrors;
    EXPECT_FALSE(std::filesystem::exists(m_folder / "new" / "report.html"));
}

} // namespace
} // namespace velmora::cli
