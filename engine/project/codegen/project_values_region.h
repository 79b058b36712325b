#pragma once

#include "plugin.h"
#include "project/preset.h"

#include <array>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

class CDSPProject;

// The presets that go into the code.
using CCompiledPresets = std::array<CPreset, MAX_PRESETS>;

// Reads 0.spf to 15.spf of the project's Presets folder; an absent one is an empty preset.
[[nodiscard]] CCompiledPresets readCompiledPresets(const std::filesystem::path& projectFolder);

// The second half of the region in initUI(): what belongs to the project and not to a control, and the names,
// joystick programs and additional values of the presets. [main]
void appendProjectValues(std::string& sBody, const CDSPProject& project, const CCompiledPresets& presets);

// Pieces of the long lines: "<array><index>] = ", and that with a value and "; " for each of a row of values.
// sArray ends with the opening bracket.
void appendElement(std::string& sBody, std::string_view sArray, std::size_t uIndex);
void appendWords(std::string& sBody, std::string_view sArray, std::span<const UINT> values);
void appendNumbers(std::string& sBody, std::string_view sArray, std::span<const float> values);

} // namespace velmora
