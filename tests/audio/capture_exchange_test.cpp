#include "audio/capture_exchange.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace velmora {
namespace {

// uCount samples that count on from nFirst in 1/32768.
std::vector<float> counting(int nFirst, std::size_t uCount)
{
    std::vector<float> samples(uCount);
    for (std::size_t i = 0; i < uCount; ++i)
        samples[i] = static_cast<float>(nFirst + static_cast<int>(i)) / 32768.0F;
    return samples;
}

TEST(CaptureExchange, HandsOverEach4096SamplesIfTheBuffersDivideThem)
{
    constexpr std::size_t TOTAL = 1U << 20U;
    for (const std::size_t uBuffer : {64U, 4096U, 2U, 100U, 8192U, 4000U}) {
        const auto pCapture = std::make_unique<CCaptureExchange>();
        CCaptureExchange& capture = *pCapture;
        const auto in = counting(-1000, uBuffer);
        const auto out = counting(0, uBuffer);
        std::size_t uReady = 0;
        for (std::size_t i = 0; i + uBuffer <= TOTAL; i += uBuffer) {
            const bool bReady = capture.add(in.data(), out.data(), uBuffer, 2, false, false);
            uReady += bReady;
            const CCaptureFrame* pFrame = capture.latest();
            ASSERT_EQ(pFrame != nullptr, bReady);
            if (bReady) {
                EXPECT_EQ(pFrame->m_left[4095], static_cast<float>(uBuffer) - 1001.0F);
                EXPECT_EQ(pFrame->m_right[4095], static_cast<float>(uBuffer) - 1.0F);
            }
        }
        EXPECT_EQ(uReady, 4096 % uBuffer == 0 ? TOTAL / 4096 : 0) << "buffers of " << uBuffer;
        capture.rewind();
        std::vector<float> whole(4096, 2.0F);
        EXPECT_TRUE(capture.add(whole.data(), whole.data(), 4096, 1, true, false)) << "begun anew";
        const CCaptureFrame* pFrame = capture.latest();
        EXPECT_EQ(pFrame->m_left[0], 32768.0F) << "clipped";
        EXPECT_TRUE(pFrame->m_bBypass);
        EXPECT_EQ(pFrame->m_nChannels, 1);
    }
}

} // namespace
} // namespace velmora
