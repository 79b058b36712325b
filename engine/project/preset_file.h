#pragma once

#include "base/user_dialogs.h"
#include "plugin.h"
#include "project/preset.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

inline constexpr std::string_view PRESET_SUFFIX = ".spf";

// Preset files of a live plug-in. [main]

// The preset in a file; an empty one, whose values are all 0, if the file is absent or can not be read.
[[nodiscard]] CPreset readPreset(const std::filesystem::path& path);

// The file's text for the present values of the plug-in's controls and user variables, of its track pad and
// joystick, and for its additional values.
[[nodiscard]] std::string presetText(CPlugIn& plugIn, std::string_view sName);

// Writes the file, whole or not at all. A failure is shown.
[[nodiscard]] bool savePreset(CPlugIn& plugIn, const std::filesystem::path& path, std::string_view sName,
                              IUserDialogs& dialogs);

// The same with a text that was taken earlier.
[[nodiscard]] bool writePreset(const std::filesystem::path& path, std::string_view sText,
                               IUserDialogs& dialogs);

// Gives the plug-in the values of a file, as far as it goes: each known control its value, int and UINT
// rounded and held to what the type can take, with userInterfaceChange() behind each and once more with -1;
// then track pad and joystick. Additional values are not handed on: a plug-in has no operation that takes
// them. A failure is shown.
[[nodiscard]] bool loadPreset(CPlugIn& plugIn, const std::filesystem::path& path, IUserDialogs& dialogs);

// What loadPreset() does with the file's contents.
void applyPreset(const CPreset& preset, CPlugIn& plugIn);

} // namespace velmora
