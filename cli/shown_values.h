#pragma once

#include "audio/offline_processing.h"

#include <span>
#include <string>

class CPlugIn;

namespace velmora {
class CDSPFilterControl;
}

namespace velmora::cli {

// The items of a list; none for a control of any other kind.
[[nodiscard]] std::span<const std::string> itemsOf(const CDSPFilterControl& control);

// The item of a list that its value stands for; empty if there is none.
[[nodiscard]] std::string chosenItem(const CDSPFilterControl& control);

// The plug-in's name for the variable behind a control; empty if it gave none.
[[nodiscard]] std::string variableNameOf(CPlugIn& plugIn, const CDSPFilterControl& control);

// How long the processed audio plays, in seconds, and how many times faster it was processed.
[[nodiscard]] double secondsOfAudio(const COfflineProcessing::CResult& result);
[[nodiscard]] double timesRealTime(const COfflineProcessing::CResult& result);

} // namespace velmora::cli
