#include "host/dsp_filter.h"
#include "real/jack_server.h"
#include "real/signature_module.h"
#include "real/streaming_document.h"
#include "real/swap_listener.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

namespace velmora::test {
namespace {

constexpr int RATE = 48000; // Hz
constexpr int DRY = 6;      // the file's signature, which is heard without a filter
constexpr unsigned FADE_FRAMES = 480;

int s_nFirstModule = 0; // index of the first of ours in the document's list

// A document that plays a file over and over, with three plug-ins and two modules to choose from; module and
// plug-in i play signature MODULE_SIGNATURE + i and i.
constexpr int MODULE_SIGNATURE = 3;

class CSwapUnderStream : public ::testing::Test
{
  protected:
    void begin(bool bFade)
    {
        m_pServer = std::make_unique<CJackServer>(RATE, 64);
        m_pListener = std::make_unique<CSwapListener>(bFade ? FADE_FRAMES : 0);
        m_pDocument = std::make_unique<CStreamingDocument>(CStreamingDocument::COptions());
        CTonboxDoc& document = **m_pDocument;
        document.plugInLoader().setCrossFade(bFade);
        document.plugInLoader().scanPlugIns(SIGNATURE_FOLDER);
        ASSERT_EQ(document.plugInLoader().plugIns().size(), 3U);
        s_nFirstModule = document.modules().count(); // behind the built-in ones
        for (const int n : {0, 1})
            document.modules().add(
                std::make_unique<CSignatureModule>(CSwapWatch::signature(MODULE_SIGNATURE + n)));
        std::vector<float> file(std::size_t{2} * RATE);
        for (std::size_t i = 0; i < file.size(); i += 2)
            file[i] = CSwapWatch::signature(DRY);
        document.transport().setWaveFile(m_pDocument->waveFile("dry.wav", file, 2));
    }

    void play()
    {
        document().wave().requestLoop();
        document().transport().onPlay();
        ASSERT_EQ(document().transport().state(), TRANSPORT_PLAY) << document().transport().reason();
    }

    void TearDown() override
    {
        m_pDocument.reset();
        m_pListener.reset();
        m_pServer.reset();
    }

    [[nodiscard]] bool hears(int nSignature)
    {
        return m_pListener->waitUntil(
            [&](const CSwapListener::CHeard& heard) { return heard.m_swaps.m_nCurrent == nSignature; });
    }

    CTonboxDoc& document() { return **m_pDocument; }
    CPlugInLoader& loader() { return document().plugInLoader(); }

    std::unique_ptr<CJackServer> m_pServer;
    std::unique_ptr<CSwapListener> m_pListener;
    std::unique_ptr<CStreamingDocument> m_pDocument;
};

struct CSwapStep
{
    const char* m_pName;
    void (*m_pDo)(CPlugInLoader& loader);
    int m_nHeard; // signature that then plays
};

void selectPlugIn(CPlugInLoader& loader, int nIndex)
{
    loader.setSelectedPlugIn(nIndex);
    loader.selectPlugIn();
}

void selectModule(CPlugInLoader& loader, int nIndex)
{
    loader.setSelectedModule(s_nFirstModule + nIndex);
    loader.selectModule();
}

void load(CPlugInLoader& loader, const char* pName)
{
    loader.loadPlugin(std::filesystem::path(SIGNATURE_FOLDER) / pName, true);
}

// From each kind of filter to each.
constexpr CSwapStep STEPS[] = {
    {"load into nothing", [](CPlugInLoader& l) { load(l, "SignatureFrames.so"); }, 0},
    {"load over a load", [](CPlugInLoader& l) { load(l, "SignaturePlanes.so"); }, 2},
    {"load the same again", [](CPlugInLoader& l) { load(l, "SignaturePlanes.so"); }, 2},
    {"select over a load", [](CPlugInLoader& l) { selectPlugIn(l, 1); }, 1},
    {"select over a select", [](CPlugInLoader& l) { selectPlugIn(l, 2); }, 2},
    {"select the same again", [](CPlugInLoader& l) { selectPlugIn(l, 2); }, 2},
    {"module over a select", [](CPlugInLoader& l) { selectModule(l, 0); }, MODULE_SIGNATURE},
    {"module over a module", [](CPlugInLoader& l) { selectModule(l, 1); }, MODULE_SIGNATURE + 1},
    {"load over a module", [](CPlugInLoader& l) { load(l, "SignatureInterleaved.so"); }, 1},
    {"module over a load", [](CPlugInLoader& l) { selectModule(l, 0); }, MODULE_SIGNATURE},
    {"select over a module", [](CPlugInLoader& l) { selectPlugIn(l, 0); }, 0},
    {"load over a select", [](CPlugInLoader& l) { load(l, "SignatureInterleaved.so"); }, 1},
    {"unload", [](CPlugInLoader& l) { l.unloadPlugin(true); }, DRY},
};

class CSwapWithOrWithoutFade : public CSwapUnderStream, public ::testing::WithParamInterface<bool>
{
};

TEST_P(CSwapWithOrWithoutFade, EachBufferIsOneFiltersOrTheFade)
{
    begin(GetParam());
    play();
    ASSERT_TRUE(hears(DRY));
    for (const CSwapStep& step : STEPS) {
        step.m_pDo(loader());
        EXPECT_TRUE(hears(step.m_nHeard)) << step.m_pName << ": " << loader().reason();
        EXPECT_EQ(document().transport().state(), TRANSPORT_PLAY) << step.m_pName;
    }
    const CSwapWatch::CCounts counts = m_pListener->heard().m_swaps;
    EXPECT_EQ(counts.m_uTorn, 0U) << "the first is buffer " << counts.m_uFirstTorn << " of "
                                  << counts.m_uBuffers;
    // Each step but the two that stay with the same signature is heard.
    EXPECT_GE(GetParam() ? counts.m_uFades : counts.m_uSteps, std::size(STEPS) - 2);
    EXPECT_EQ(GetParam() ? counts.m_uSteps : counts.m_uFades, 0U);
    EXPECT_TRUE(document().audioEngine().gate().isClosed() == false);
    EXPECT_TRUE(m_pDocument->dialogs().m_messages.empty()) << m_pDocument->dialogs().m_messages.front();
}

INSTANTIATE_TEST_SUITE_P(Swaps, CSwapWithOrWithoutFade, ::testing::Bool(),
                         [](const auto& information) { return information.param ? "Faded" : "InOneStep"; });

// The watch itself: what it must not let through.
TEST(SwapWatch, SeesWhatIsTorn)
{
    const auto constant = [](float f) { return std::vector<float>(64, f); };
    const float fA = CSwapWatch::signature(0);
    const float fB = CSwapWatch::signature(1);
    std::vector<float> halves = constant(fA);
    std::fill(halves.begin() + 32, halves.end(), fB);
    std::vector<float> hole = constant(fA);
    hole[7] = 0.0F;
    std::vector<float> fade;
    for (std::size_t i = 0; i < 128; ++i)
        fade.push_back(i < 100 ? fA + static_cast<float>(i) / 100.0F * (fB - fA) : fB);
    std::vector<float> fadeWithHole = fade;
    fadeWithHole[70] = fA;
    struct CCase
    {
        const char* m_pName;
        unsigned m_uFadeFrames;
        std::vector<std::vector<float>> m_buffers;
        std::uint64_t m_uTorn;
        std::uint64_t m_uSwaps; // fades or steps
    };
    const std::vector<CCase> cases{
        {"step", 0, {constant(fA), constant(fB), constant(0.0F), constant(fB)}, 0, 1},
        {"step within a buffer", 0, {constant(fA), halves, constant(fB)}, 1, 0},
        {"hole", 0, {constant(fA), hole, constant(fA)}, 1, 0},
        {"another value", 0, {constant(fA), constant(0.3F), constant(fA)}, 1, 0},
        {"step where a fade should be", 100, {constant(fA), constant(fB), constant(fB)}, 1, 0},
        {"fade", 100, {constant(fA), fade, constant(fB)}, 0, 1},
        {"fade with a hole", 100, {constant(fA), fadeWithHole, constant(fB)}, 1, 0},
        {"fade that is too long", 90, {constant(fA), fade, constant(fB)}, 1, 0},
    };
    for (const CCase& one : cases) {
        CSwapWatch watch(one.m_uFadeFrames);
        for (const std::vector<float>& samples : one.m_buffers)
            for (std::size_t i = 0; i < samples.size(); i += 64)
                watch.add(std::span(samples).subspan(i, 64));
        EXPECT_EQ(watch.counts().m_uTorn > 0, one.m_uTorn > 0) << one.m_pName;
        EXPECT_EQ(watch.counts().m_uFades + watch.counts().m_uSteps, one.m_uSwaps) << one.m_pName;
    }
}

TEST_F(CSwapUnderStream, WhenTheServerDiesTheUserIsToldAndCanGoOnWithAnother)
{
    begin(true);
    play();
    load(loader(), "SignatureFrames.so");
    ASSERT_TRUE(hears(0));
    m_pServer->kill();
    ASSERT_TRUE(m_pDocument->waitUntil([&] { return document().transport().state() == TRANSPORT_STOP; }));
    ASSERT_FALSE(m_pDocument->dialogs().m_messages.empty());
    const std::string& sMessage = m_pDocument->dialogs().m_messages.back();
    EXPECT_NE(sMessage.find("listener"), std::string::npos) << sMessage;

    // Without a server nothing starts, and nothing hangs.
    document().transport().onPlay();
    document().transport().onStop();
    selectModule(loader(), 0);

    m_pListener.reset();
    m_pServer.reset();
    m_pServer = std::make_unique<CJackServer>(RATE, 64);
    m_pListener = std::make_unique<CSwapListener>(FADE_FRAMES);
    CAudioDeviceChoice choice{"system", "listener", "None", RATE};
    EXPECT_EQ(document().audioDevices().rescan(choice), "");
    play();
    EXPECT_TRUE(hears(MODULE_SIGNATURE));
    selectPlugIn(loader(), 1);
    EXPECT_TRUE(hears(1));
    EXPECT_EQ(m_pListener->heard().m_swaps.m_uTorn, 0U);
}

} // namespace
} // namespace velmora::test
