#pragma once

#include "widgets/panel/control_row.h"

#include <vector>

namespace velmora {

// The table of Button Properties and of Combo Properties. bFixedName: the control bears its slot's caption.
[[nodiscard]] std::vector<CControlRow> listControlRows(bool bFixedName);

} // namespace velmora
