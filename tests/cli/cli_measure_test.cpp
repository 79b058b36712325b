#include "base/text.h"
#include "cli_program.h"

#include <cmath>

namespace velmora::test {

namespace {

class CCliMeasureTest : public CCliTest
{
  protected:
    std::vector<std::string> measuring(const std::string& sKind, const std::vector<std::string>& more = {})
    {
        std::vector<std::string> words = {"measure", sKind, "--plugin", unruly()};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }
};

// The plug-in halves every sample; the stimulus is 32767 of 32768.
constexpr double HALF = 0.5 * 32767.0 / 32768.0;

TEST_F(CCliMeasureTest, PrintsResponsesInTime)
{
    const CJsonValue impulse = runForJson(measuring("impulse"));
    EXPECT_EQ(impulse.members(), (std::vector<std::string>{"frames", "left", "rate", "right"}));
    EXPECT_EQ(impulse["rate"].number(), 44100);
    EXPECT_EQ(impulse["frames"].number(), 1024);
    for (const char* pChannel : {"left", "right"}) {
        ASSERT_EQ(impulse[pChannel].elements().size(), 1024U);
        EXPECT_NEAR(impulse[pChannel][0].number(), HALF, 1e-7);
        EXPECT_EQ(impulse[pChannel][1].number(), 0.0);
    }
    const CJsonValue step = runForJson(measuring("step", {"--length", "100", "--rate=96000", "--normalize"}));
    EXPECT_EQ(step["rate"].number(), 96000);
    ASSERT_EQ(step["left"].elements().size(), 100U);
    EXPECT_EQ(step["left"][0].number(), 0.0);
    EXPECT_EQ(step["left"][99].number(), 1.0);
}

TEST_F(CCliMeasureTest, PrintsSpectra)
{
    const CJsonValue frequency = runForJson(measuring("frequency", {"--length=64"}));
    ASSERT_EQ(frequency["left"].elements().size(), 32U);
    for (const CJsonValue& bin : frequency["right"].elements())
        EXPECT_NEAR(bin.number(), 20.0 * std::log10(HALF), 1e-5);
    EXPECT_NEAR(frequency["leftPeak"]["maxdB"].number(), 20.0 * std::log10(HALF), 1e-5);
    EXPECT_NEAR(frequency["rightPeak"]["dcdB"].number(), 20.0 * std::log10(HALF), 1e-5);
    EXPECT_TRUE(frequency["leftPeak"].m_members.contains("maxHz"));

    const CJsonValue phase = runForJson(measuring("phase", {"--length=64"}));
    ASSERT_EQ(phase["left"].elements().size(), 32U);
    EXPECT_NEAR(phase["left"][5].number(), 0.0, 1e-5);
}

TEST_F(CCliMeasureTest, SummarisesForPeople)
{
    for (const char* pKind : {"impulse", "step", "frequency", "phase"}) {
        const CProgramEnd end =
            run({"measure", pKind, "--plugin", example("ResonantFilter"), "--length", "4096"});
        EXPECT_EQ(end.m_nExitStatus, 0) << end.m_sErrors;
        const auto lines = split(end.m_sOutput, '\n');
        EXPECT_EQ(lines[0], std::string(pKind) + " response, 4096 frames at 44100 Hz");
        EXPECT_GT(lines.size(), 10U);
        EXPECT_LT(lines.size(), 45U);
    }
}

TEST_F(CCliMeasureTest, SavesGraphDataInEachFormat)
{
    const std::vector<std::array<std::string, 2>> files = {
        {"h.c", "// --- Velmora(TM) Analyzer Graph Data\n"},
        {"h.txt", "0 0.49998"},
        {"h.m", "0 0.49998"},
        {"h.csv", "sample,amplitude\n0,0.49998"}};
    for (const auto& [sFile, sBeginning] : files) {
        writeFile(m_folder / sFile, "an old file");
        const CProgramEnd end = run(measuring("impulse", {"-o", sFile}));
        EXPECT_EQ(end.m_nExitStatus, 0) << end.m_sErrors;
        EXPECT_EQ(end.m_sOutput, "");
        EXPECT_NE(end.m_sErrors.find("Graph Data saved to: " + (m_folder / sFile).string()),
                  std::string::npos);
        EXPECT_TRUE(readFile(m_folder / sFile).starts_with(sBeginning)) << readFile(m_folder / sFile);
    }
    EXPECT_EQ(runForJson(measuring("phase", {"-o", "p", "--format", "csv"}))["frames"].number(), 1024);
    EXPECT_TRUE(readFile(m_folder / "p").starts_with("bin,degrees\n"));
}

TEST_F(CCliMeasureTest, RefusesWhatItCannotMeasure)
{
    expectFailure({"measure", "step"}, 1, {"You must load a filter first"});
    expectFailure({"measure", "step", "--plugin", example("PolySynth")}, 1, {"PolySynth", "without input"});
    expectFailure(measuring("frequency", {"--length", "1000"}), 2, {"power of two", "Usage:"});
    expectFailure(measuring("phase", {"--length", "1"}), 2, {"power of two"});
    expectFailure(measuring("frequency", {"--normalize"}), 2, {"--normalize"});
    expectFailure(measuring("step", {"--length", "0"}), 2, {"--length"});
    expectFailure(measuring("step", {"-o", "h.xyz"}), 2, {"h.xyz", "--format"});
    expectFailure(measuring("step", {"--format", "csv"}), 2, {"needs the option -o"});
    expectFailure(measuring("step", {"-o", "nowhere/h.csv"}), 1, {"nowhere/h.csv", "cannot be written"});
    expectFailure(measuring("step", {"--set", "7=1"}), 1, {"The plug-in Unruly crashed (signal SIGSEGV)."});
    EXPECT_TRUE(entriesOf(m_folder.path()).empty());
}

TEST_F(CCliMeasureTest, ListsDevicesAndBenchmarks)
{
    const CJsonValue devices = runForJson({"devices"});
    EXPECT_EQ(devices.members(), (std::vector<std::string>{"audio", "midiIn", "midiOut"}));
    EXPECT_EQ(run({"devices"}).m_nExitStatus, 0);

    const CJsonValue bench = runForJson({"bench"});
    ASSERT_GE(bench["figures"].elements().size(), 12U);
    for (const CJsonValue& figure : bench["figures"].elements()) {
        EXPECT_TRUE(std::isfinite(figure["value"].number())) << figure["name"].text();
        EXPECT_FALSE(figure["unit"].text().empty());
    }
}

} // namespace

} // namespace velmora::test
