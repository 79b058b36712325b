#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

// Kinds of analyzer graph that can be exported, by the analyzer's own numbers.
enum class EGraphKind
{
    oscilloscope = 3,
    impulseResponse = 7,
    stepResponse = 8,
    phaseResponse = 9,
    frequency = 10
};

enum class EGraphFormat
{
    cArray,
    matlab,
    csv
};

// "c", "matlab" or "csv", else none.
[[nodiscard]] std::optional<EGraphFormat> graphFormatByName(std::string_view sName);

// A graph's values as text: a C array with a commented header, lines of index and value for MATLAB's
// fscanf(), or comma-separated index and value under a heading. Sixteen decimals; what is no finite number
// stands as <math.h> names it in the C array, else as Inf, -Inf or NaN.
[[nodiscard]] std::string graphDataText(std::span<const double> values, EGraphKind eKind,
                                        EGraphFormat eFormat);

} // namespace velmora
