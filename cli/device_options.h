#pragma once

#include "cli/command_context.h"

#include <optional>
#include <span>
#include <string>

namespace velmora {
class CAudioDevices;
class CTonboxDoc;
struct CAudioDeviceInfo;
} // namespace velmora

namespace velmora::cli {

// Brings the audio system up and chooses devices, buffer size and rate: those of the settings, but for what
// the command line says. Nothing of it is written into the settings file. bInput asks for an input device as
// well. False if a stream cannot be opened so; the user has been told.
[[nodiscard]] bool applyDeviceOptions(CCommandContext& context, CTonboxDoc& document, bool bInput);

// Why the chosen devices cannot run at dRate Hz, as full sentences; empty if they can, or if they tell
// nothing about their rates.
[[nodiscard]] std::string rateFault(const CAudioDevices& devices, bool bInput, double dRate);

// The name of the device of that direction that is called so, or else of the only one whose name begins so,
// letter case apart. None if there is none or there are several, for which sError says what to type.
[[nodiscard]] std::optional<std::string> deviceNamed(std::span<const CAudioDeviceInfo> devices,
                                                     std::string_view sName, bool bInput,
                                                     std::string& sError);

} // namespace velmora::cli
