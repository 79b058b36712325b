#include "examples/example_plugin.h"
#include "support/allocation_guard.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace velmora::test {

class ExampleRealTime : public testing::TestWithParam<const char*>
{
  protected:
    void processBlock(bool bSidechain = true)
    {
        m_plugIn.processBlock(m_input, m_output, CExamplePlugIn::BLOCK, bSidechain ? m_sidechain : nullptr,
                              true);
    }

    void moveAll(bool bHigh)
    {
        for (const CUICtrl* pControl : m_controls)
            if (pControl->uControlType != FILTER_CONTROL_LED_METER)
                m_plugIn.set(pControl->uControlId,
                             bHigh ? pControl->fUserDisplayDataHiLimit : pControl->fUserDisplayDataLoLimit);
    }

    CExamplePlugIn m_plugIn{GetParam()};
    std::vector<CUICtrl*> m_controls = m_plugIn.controls();
    float m_input[2 * CExamplePlugIn::BLOCK] = {0.5f, -0.5f};
    float m_output[2 * CExamplePlugIn::BLOCK] = {};
    float m_sidechain[CExamplePlugIn::BLOCK] = {0.5f};
};

TEST_P(ExampleRealTime, allocatesNothingWhileProcessing)
{
    const CAllocationGuard proof;
    const auto pSecond = m_plugIn.createAnother();
    ASSERT_GT(proof.count(), m_controls.size()) << "the guard must see the object and its list's nodes";

    m_plugIn.prepare(48000);
    const CAllocationGuard guard;
    for (bool bHigh : {false, true}) {
        moveAll(bHigh);
        m_plugIn->midiNoteOn(0, 60, 100);
        m_plugIn->midiPitchBend(0, 8191, 1.0f);
        processBlock(bHigh);
        m_plugIn->midiNoteOff(0, 60, 0, false);
        processBlock(bHigh);
    }
    EXPECT_EQ(guard.count(), 0U);
}

// Meant for the thread sanitizer; elsewhere it shows that nothing breaks or hangs.
TEST_P(ExampleRealTime, controlsAndNotesMayChangeDuringProcessing)
{
    m_plugIn.prepare(48000);
    std::atomic<bool> bDone = false;
    {
        const std::jthread mainThread([this, &bDone] {
            for (int i = 0; i < 2000; ++i)
                moveAll(i % 2 == 0);
            bDone = true;
        });
        const std::jthread midiThread([this, &bDone] {
            for (UINT i = 0; !bDone; ++i) {
                m_plugIn->midiNoteOn(0, 40 + i % 40, 100);
                m_plugIn->midiNoteOff(0, 40 + i % 40, 0, false);
                m_plugIn->midiModWheel(0, i % 128);
                std::this_thread::yield();
            }
        });
        while (!bDone)
            processBlock();
    }
    processBlock();
    EXPECT_TRUE(allFinite(m_output));
}

INSTANTIATE_TEST_SUITE_P(All, ExampleRealTime, testing::ValuesIn(EXAMPLE_NAMES),
                         [](const auto& info) { return std::string(info.param); });

} // namespace velmora::test
