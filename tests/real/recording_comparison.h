#pragma once

#include <cstddef>
#include <gtest/gtest.h>
#include <span>

namespace velmora::test {

// Where the first frame of a recording that is not silence begins, in frames; its length if all is silence.
[[nodiscard]] std::size_t soundBegins(std::span<const float> recorded, std::size_t uChannels);

// Whether a recording holds silence, then exactly the expected samples, and then silence again, all
// interleaved with the same channels. A failure tells the first frame that differs; to have nothing to
// compare, or to expect silence in the first frame, is one too.
[[nodiscard]] ::testing::AssertionResult holdsExactly(std::span<const float> recorded,
                                                      std::span<const float> expected, std::size_t uChannels);

// The same for a recording that may have been cut off, or go on, behind the first uFrames expected frames.
[[nodiscard]] ::testing::AssertionResult beginsExactly(std::span<const float> recorded,
                                                       std::span<const float> expected, std::size_t uChannels,
                                                       std::size_t uFrames);

} // namespace velmora::test
