#pragma once

#include "base/window_system.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velmora {

// What the title of a compiler's window tells about it.
enum class ERunMode
{
    none = 0,
    running = 1,  // "(Running)"
    debugging = 2 // "(Debugging)"
};

// Whether the title is that of the compiler's window with a project in it.
[[nodiscard]] bool isCompilerTitle(int nCompilerId, std::string_view sTitle);

[[nodiscard]] ERunMode runModeOf(std::string_view sTitle);

// Whether the title is that of a compiler at a rebuild.
[[nodiscard]] bool isRebuildTitle(std::string_view sTitle);

// 2012 Express without a solution.
[[nodiscard]] bool isStartPageTitle(std::string_view sTitle);

// Whether the window is the main window of Code::Blocks with this project, whatever its editor shows:
// " [Name] - Code::Blocks ...", "File.cpp [Name] - Code::Blocks ...", "*File.cpp [Name] - ...". Class, boxes
// and, unless uProcessId is 0, the process are looked at as well.
[[nodiscard]] bool isCodeBlocksWindow(const CWindow& window, std::string_view sProject,
                                      std::uint32_t uProcessId);

// Whether the editor in front of a Code::Blocks window has text that is not saved.
[[nodiscard]] bool hasUnsavedMark(std::string_view sTitle);

// The compiler's window among all: the last one that fits. Titles decide, and for Code::Blocks
// isCodeBlocksWindow().
[[nodiscard]] std::optional<CWindow> findCompilerWindow(std::span<const CWindow> windows, int nCompilerId,
                                                        std::string_view sProject,
                                                        std::uint32_t uProcessId = 0);

} // namespace velmora
