#include "real/recording_comparison.h"

#include <algorithm>

namespace velmora::test {

namespace {

bool isSound(float fSample)
{
    return fSample != 0.0F;
}

} // namespace

std::size_t soundBegins(std::span<const float> recorded, std::size_t uChannels)
{
    const auto first = std::ranges::find_if(recorded, isSound);
    return static_cast<std::size_t>(first - recorded.begin()) / uChannels;
}

::testing::AssertionResult beginsExactly(std::span<const float> recorded, std::span<const float> expected,
                                         std::size_t uChannels, std::size_t uFrames)
{
    const std::size_t uSamples = uFrames * uChannels;
    if (uSamples == 0 || expected.size() < uSamples)
        return ::testing::AssertionFailure() << "there is nothing to compare";
    if (std::ranges::none_of(expected.first(uChannels), isSound))
        return ::testing::AssertionFailure() << "the first frame that is expected is silence";
    const std::size_t uBegin = soundBegins(recorded, uChannels);
    recorded = recorded.subspan(uBegin * uChannels);
    if (recorded.size() < uSamples)
        return ::testing::AssertionFailure()
               << "only " << recorded.size() / uChannels << " of " << uFrames << " frames were played";
    const auto [played, wanted] = std::ranges::mismatch(recorded.first(uSamples), expected.first(uSamples));
    if (wanted == expected.first(uSamples).end())
        return ::testing::AssertionSuccess();
    const auto uAt = static_cast<std::size_t>(wanted - expected.begin());
    // Where it stands in what is expected tells how much was lost, or came twice.
    const auto elsewhere = std::ranges::search(
        expected, std::span<const float>(&*played, std::min<std::size_t>(4, uSamples - uAt)));
    const auto uFound = static_cast<std::size_t>(elsewhere.begin() - expected.begin());
    return ::testing::AssertionFailure()
           << "frame " << uAt / uChannels << " of " << uFrames << ", channel " << uAt % uChannels << ": "
           << *played << " was played, " << *wanted << " is expected; "
           << (elsewhere.empty() ? "what was played stands nowhere in it"
                                 : "what was played stands at frame " + std::to_string(uFound / uChannels));
}

::testing::AssertionResult holdsExactly(std::span<const float> recorded, std::span<const float> expected,
                                        std::size_t uChannels)
{
    const std::size_t uFrames = expected.size() / uChannels;
    if (const auto result = beginsExactly(recorded, expected, uChannels, uFrames); !result)
        return result;
    const std::size_t uBehind = soundBegins(recorded, uChannels) + uFrames;
    const std::span<const float> rest = recorded.subspan(uBehind * uChannels);
    if (std::ranges::any_of(rest, isSound))
        return ::testing::AssertionFailure() << "sound goes on behind the " << uFrames
                                             << " expected frames, at +" << soundBegins(rest, uChannels);
    return ::testing::AssertionSuccess();
}

} // namespace velmora::test
