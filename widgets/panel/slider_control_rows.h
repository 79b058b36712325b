#pragma once

#include "widgets/panel/control_row.h"

#include <vector>

namespace velmora {

// The fourteen rows of Slider Properties. controllers are the entries of the row "MIDI Controller", one for
// each number from 0. [main]
[[nodiscard]] std::vector<CControlRow> sliderControlRows(const QStringList& controllers);

} // namespace velmora
