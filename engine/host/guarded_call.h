#pragma once

#include <exception>
#include <optional>
#include <string>

namespace velmora {

// Runs code of a plug-in library and holds back whatever it throws. None if it threw nothing, else what
// the exception says. [any but audio]
template <typename Call>
[[nodiscard]] std::optional<std::string> thrownBy(Call&& call)
{
    try {
        call();
        return std::nullopt;
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "not a std::exception";
    }
}

} // namespace velmora
