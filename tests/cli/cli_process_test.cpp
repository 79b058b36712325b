#include "audio/sound_file.h"
#include "cli_program.h"
#include "support/full_disk.h"
#include "support/wave_bytes.h"

#include <csignal>

namespace velmora::test {

namespace {

constexpr int FRAMES = 20000;
constexpr unsigned RATE = 48000;

class CCliProcessTest : public CCliTest
{
  protected:
    CCliProcessTest()
    {
        for (int n = 0; n < 2 * FRAMES; ++n)
            m_samples.push_back(n % 2 == 0 ? 0.25 : -0.125);
        writeFile(m_folder / "in.wav", waveBytes({.m_uTag = 3, .m_uRate = RATE, .m_uBits = 32}, m_samples));
    }

    // Left and right of the last frame.
    std::vector<float> lastFrameOf(const std::string& sFile)
    {
        CSoundFile file;
        std::string sError;
        EXPECT_TRUE(file.openForReading(m_folder / sFile, sError)) << sError;
        std::vector<float> frame(static_cast<std::size_t>(file.info().m_nChannels));
        EXPECT_TRUE(file.seekFrames(file.info().m_nFrames - 1));
        file.readFloats(frame.data(), file.info().m_nChannels);
        return frame;
    }

    // As expectFailure(), and every file of the folder is as it was.
    void expectRefusal(const std::vector<std::string>& arguments, const std::vector<std::string>& texts,
                       int nStatus = 1)
    {
        const auto contents = [&] {
            std::vector<std::string> files;
            for (const std::string& sName : entriesOf(m_folder.path())) {
                const std::string sBytes =
                    std::filesystem::is_directory(m_folder / sName) ? "" : readFile(m_folder / sName);
                files.push_back(sName + ", " + std::to_string(sBytes.size()) + " bytes, hash " +
                                std::to_string(std::hash<std::string>()(sBytes)));
            }
            return files;
        };
        const auto before = contents();
        expectFailure(arguments, nStatus, texts);
        EXPECT_EQ(contents(), before);
    }

    std::vector<std::string> processing(const std::vector<std::string>& more = {})
    {
        std::vector<std::string> words = {"process", "in.wav", "out.wav", "--plugin", unruly()};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    std::vector<double> m_samples;
};

TEST_F(CCliProcessTest, WritesTheProcessedFile)
{
    const CJsonValue result = runForJson(processing());
    EXPECT_EQ(result.members(), (std::vector<std::string>{"channels", "frames", "notFinite", "overs", "peak",
                                                          "rate", "seconds", "xRealtime"}));
    EXPECT_EQ(result["frames"].number(), FRAMES);
    EXPECT_EQ(result["channels"].number(), 2);
    EXPECT_EQ(result["rate"].number(), RATE);
    EXPECT_GT(result["seconds"].number(), 0.0);
    EXPECT_NEAR(result["xRealtime"].number() * result["seconds"].number(), double(FRAMES) / RATE, 1e-6);
    EXPECT_EQ(lastFrameOf("out.wav"), (std::vector<float>{0.125F, -0.0625F}));
    EXPECT_EQ(entriesOf(m_folder.path()), (std::vector<std::string>{"in.wav", "out.wav"}));
    EXPECT_FALSE(std::filesystem::exists(userFolder())); // nothing but the files is touched

    const CProgramEnd text = run(processing({"--force"}));
    EXPECT_NE(text.m_sOutput.find("20000 frames, 2 channels, 48000 Hz"), std::string::npos) << text.m_sOutput;
    EXPECT_NE(text.m_sErrors.find("Successfully processed wave file."), std::string::npos);
}

TEST_F(CCliProcessTest, OptionsReachTheEngine)
{
    writeFile(m_folder / "side.wav",
              waveBytes({.m_uTag = 3, .m_uRate = RATE, .m_uBits = 32}, std::vector<double>(2 * FRAMES, 0.5)));
    writeFile(m_folder / "short.wav",
              waveBytes({.m_uTag = 3, .m_uRate = RATE, .m_uBits = 32}, std::vector<double>(200, 0.5)));
    struct CCase
    {
        std::vector<std::string> m_options;
        float m_fLeft, m_fRight;
    };
    const std::vector<CCase> cases = {
        {{"--bypass"}, 0.25F, -0.125F},
        {{"--in-gain", "-20"}, 0.0125F, -0.00625F},
        {{"--in-gain", "20", "--out-gain=-20"}, 0.125F, -0.0625F},
        {{"--mode", "1"}, 0.03125F, 0.03125F},          // half the sum of both
        {{"--mode", "5"}, 0.375F, -0.1875F},            // the dry input added
        {{"--sidechain", "side.wav"}, 0.625F, 0.4375F}, // the plug-in adds it
        {{"--sidechain", "side.wav", "--listen"}, 0.5F, 0.5F},
        {{"--sidechain", "side.wav", "--sidechain-gain", "-20", "--listen"}, 0.05F, 0.05F},
        {{"--sidechain", "short.wav", "--listen", "--sidechain-loop"}, 0.5F, 0.5F},
    };
    for (const CCase& single : cases) {
        SCOPED_TRACE(::testing::PrintToString(single.m_options));
        auto options = single.m_options;
        options.emplace_back("--force");
        (void)runForJson(processing(options));
        const auto frame = lastFrameOf("out.wav");
        EXPECT_NEAR(frame[0], single.m_fLeft, 1e-6);
        EXPECT_NEAR(frame[1], single.m_fRight, 1e-6);
    }
}

TEST_F(CCliProcessTest, RefusesBadInputAndLeavesFilesAlone)
{
    writeFile(m_folder / "text.wav", "no audio at all");
    writeFile(m_folder / "empty.wav", "");
    writeFile(m_folder / "three.wav", waveBytes({.m_uChannels = 3}, std::vector<double>(300, 0.5)));
    writeFile(m_folder / "old.wav", "precious");
    std::filesystem::create_directory(m_folder / "dir.wav");
    const std::string sPlugIn = "--plugin=" + unruly();
    const std::string sIn = "in.wav";
    constexpr const char* READING = "Error opening wave file for reading.";
    constexpr const char* WRITING = "Error opening wave file for writing.";

    expectRefusal({"process", sIn, "out.wav", "--sidechain=nowhere.wav"}, {"You must load a filter first."});
    expectRefusal({"process", "nowhere.wav", "out.wav", sPlugIn}, {"nowhere.wav", "does not exist"});
    expectRefusal({"process", "text.wav", "out.wav", sPlugIn}, {READING, "text.wav"});
    expectRefusal({"process", "empty.wav", "out.wav", sPlugIn}, {READING});
    expectRefusal({"process", "dir.wav", "out.wav", sPlugIn}, {READING});
    expectRefusal({"process", "three.wav", "out.wav", sPlugIn}, {"3 channels"});
    expectRefusal({"process", sIn, "out.aiff", sPlugIn},
                  {"You may only export .wav files. Check file name."});
    expectRefusal({"process", sIn, sIn, sPlugIn, "--force"}, {READING});
    expectRefusal({"process", sIn, "nowhere/out.wav", sPlugIn}, {WRITING});
    expectRefusal({"process", sIn, "dir.wav", sPlugIn, "--force"}, {WRITING, "is a folder"});
    expectRefusal({"process", sIn, "old.wav", sPlugIn}, {"already exists. This operation will overwrite it.",
                                                         "Answered with No.", "left as it is"});
    expectRefusal({"process", sIn, "out.wav", sPlugIn, "--sidechain", "nowhere.wav"}, {"nowhere.wav"});
    expectRefusal({"process", sIn, "out.wav", sPlugIn, "--sidechain", "text.wav"},
                  {"Failed to open Sidechain WAV file", "Format not recognised"});
    expectRefusal({"process", sIn, "out.wav", sPlugIn, "--set", "99=1"}, {"no control 99"});

    EXPECT_EQ(run({"process", sIn, "old.wav", sPlugIn, "--answer=yes"}).m_nExitStatus, 0);
    EXPECT_EQ(lastFrameOf("old.wav"), (std::vector<float>{0.125F, -0.0625F}));
}

TEST_F(CCliProcessTest, ReportsAFullDisk)
{
    writeFile(m_folder / "out.wav", "precious");
    // The plug-in's own copy still fits on the disk.
    const auto uRoom = std::filesystem::file_size(unruly()) + 100000;
    writeFile(m_folder / "in.wav", waveBytes({}, std::vector<double>(uRoom, 0.25)));
    const CFullDisk disk(uRoom);
    expectRefusal(processing({"--force"}), {"Error writing wave file.", "disk"});
}

TEST_F(CCliProcessTest, SurvivesAnUnrulyPlugInWithAClearLine)
{
    writeFile(m_folder / "out.wav", "precious");
    const std::vector<std::array<std::string, 2>> moods = {
        {"7=1", "The plug-in Unruly crashed (signal SIGSEGV).\n"},
        {"7=2", "The plug-in Unruly crashed (signal SIGABRT).\n"},
        {"7=3", "The plug-in Unruly crashed (signal SIGSEGV).\n"},
        {"7=6", "The plug-in Unruly ended the program.\n"},
        {"7=7", "The plug-in Unruly threw an exception: too loud.\n"},
        {"7=8", "The plug-in Unruly crashed (signal SIGFPE).\n"},
        {"7=9", "The plug-in Unruly crashed (signal SIGSEGV).\n"},
        {"7=10", "The plug-in Unruly crashed (signal SIGILL).\n"}};
    for (const auto& [sMood, sLine] : moods)
        expectRefusal(processing({"--force", "--set", sMood}), {sLine});
}

TEST_F(CCliProcessTest, SignalsLeaveFilesAsTheyWere)
{
    ::signal(SIGHUP, SIG_DFL); // an ignored one would be inherited
    writeFile(m_folder / "out.wav", "precious");
    const auto words = processing({"--force", "--set", "7=4"}); // would take two seconds
    // The first one as soon as the unfinished file appears cancels the work...
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) {
        bool bSent = false;
        m_start.m_whileRunning = [&](pid_t nProcess) {
            if (!bSent && entriesOf(m_folder.path()).size() > 2)
                bSent = ::kill(nProcess, nSignal) == 0;
        };
        expectRefusal(words, {"Processing was cancelled"});
        EXPECT_TRUE(bSent);
    }
    // ...the second one, and the first of those that ask for no delay, do not wait for it.
    for (const int nSignal : {SIGINT, SIGQUIT, SIGXCPU}) {
        m_start.m_whileRunning = [&](pid_t nProcess) {
            if (entriesOf(m_folder.path()).size() > 2)
                ::kill(nProcess, nSignal);
        };
        EXPECT_EQ(run(words).m_nSignal, nSignal);
        EXPECT_EQ(entriesOf(m_folder.path()), (std::vector<std::string>{"in.wav", "out.wav"}));
    }
    // A measurement is one single call, which cannot be cancelled.
    int nPolls = 0;
    m_start.m_whileRunning = [&](pid_t nProcess) {
        if (++nPolls == 30)
            ::kill(nProcess, SIGINT);
    };
    EXPECT_EQ(run({"measure", "step", "--plugin", unruly(), "--set", "7=4", "--length", "100000"}).m_nSignal,
              SIGINT);
}

// Nobody reads the messages, which is no reason to stop; nobody takes the result, which is a failure.
TEST_F(CCliProcessTest, OutlivesClosedStreams)
{
    const auto runInShell = [&](const std::string& sRedirection, const std::string& sWords) {
        m_start.m_workingFolder = m_folder.path();
        const std::string sLine = "'" CLI_PROGRAM "' --json " + sWords + " " + sRedirection;
        return runProgram("/bin/sh", {"-c", sLine}, m_start);
    };
    const std::string sProcess = "process in.wav out.wav --force --plugin '" + unruly() + "'";
    (void)runInShell("2>&1 >result | true", sProcess);
    EXPECT_NO_THROW((void)CJsonValue::parse(readFile(m_folder / "result")));
    EXPECT_EQ(entriesOf(m_folder.path()), (std::vector<std::string>{"in.wav", "out.wav", "result"}));

    EXPECT_NO_THROW((void)CJsonValue::parse(runInShell("<&- 2>&-", sProcess + " --set 7=5").m_sOutput));
    EXPECT_EQ(runInShell(">&-", "settings show --user-folder user").m_nExitStatus, 1);
}

} // namespace

} // namespace velmora::test
