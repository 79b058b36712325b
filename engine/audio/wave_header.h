#pragma once

#include <filesystem>

namespace velmora {

// How many frames the header of an uncompressed RIFF wave file promises, whether they are there or not. 0 for
// other files, and where the length stands for "not known", as a writer to a pipe leaves it. [main]
[[nodiscard]] long long promisedWaveFrames(const std::filesystem::path& path);

} // namespace velmora
