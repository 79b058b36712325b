#include "audio/audio_notices.h"
#include "audio/output_guard.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace velmora {
namespace {

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float LIMIT = COutputGuard::LIMIT;

TEST(OutputGuard, SilencesWhatIsNoNumberLimitsWhatIsTooLoudAndLeavesTheRestAlone)
{
    struct CRow
    {
        float m_fIn;
        bool m_bLimit;
        float m_fOut;
        float m_fNeighbour; // what is left of the other samples, 0.5 before
    };
    const CRow rows[] = {{0.25F, true, 0.25F, 0.5F},
                         {-LIMIT, true, -LIMIT, 0.5F},
                         {std::nextafter(LIMIT, 100.0F), true, LIMIT, 0.5F},
                         {-1e30F, true, -LIMIT, 0.5F},
                         {-1e30F, false, -1e30F, 0.5F},
                         {1e-40F, true, 1e-40F, 0.5F},
                         {NOT_A_NUMBER, true, 0.0F, 0.0F},
                         {-NOT_A_NUMBER, false, 0.0F, 0.0F},
                         {INFINITE, false, 0.0F, 0.0F},
                         {-INFINITE, true, 0.0F, 0.0F}};
    for (const CRow& row : rows)
        for (const std::size_t uSize : {1U, 5U, 128U, 133U})
            for (const std::size_t uAt : {std::size_t{0}, uSize / 2, uSize - 1}) {
                CAudioNotices notices;
                COutputGuard guard(notices);
                std::vector<float> out(uSize, 0.5F);
                out[uAt] = row.m_fIn;
                guard.apply(out, row.m_bLimit);
                EXPECT_EQ(out[uAt], row.m_fOut) << row.m_fIn;
                for (std::size_t i = 0; i < uSize; ++i)
                    EXPECT_EQ(out[i], i == uAt ? row.m_fOut : row.m_fNeighbour) << row.m_fIn << " at " << uAt;
                const auto notice = notices.take();
                EXPECT_EQ(notice.has_value(), row.m_fNeighbour == 0.0F || (row.m_fOut != row.m_fIn));
                if (notice && row.m_fNeighbour != 0.0F) {
                    EXPECT_EQ(notice->m_fFigure, std::abs(row.m_fIn));
                }
            }
    EXPECT_NEAR(20.0 * std::log10(LIMIT), 24.0, 1e-6);
}

TEST(OutputGuard, TellsOfEachFaultOnceUntilItIsRearmed)
{
    CAudioNotices notices;
    COutputGuard guard(notices);
    for (int nFilter = 0; nFilter < 2; ++nFilter) {
        for (int i = 0; i < 3; ++i) {
            float samples[] = {NOT_A_NUMBER, 20.0F};
            guard.apply(samples, true);
            float loud[] = {20.0F + static_cast<float>(i)};
            guard.apply(loud, true);
            const auto first = notices.take();
            const auto second = notices.take();
            ASSERT_EQ(first.has_value(), i == 0);
            ASSERT_EQ(second.has_value(), i == 0);
            if (i == 0) {
                EXPECT_EQ(first->m_eNotice, EAudioNotice::notFinite);
                EXPECT_EQ(second->m_eNotice, EAudioNotice::limited);
                EXPECT_EQ(second->m_fFigure, 20.0F);
            }
        }
        guard.rearm();
    }
}

} // namespace
} // namespace velmora
