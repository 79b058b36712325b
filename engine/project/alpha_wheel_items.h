#pragma once

#include "pluginconstants.h"

#include <vector>

namespace velmora {

// The controls that the alpha wheel steps through, ordered by their index in its list; of the same index the
// earlier control first. [main]
[[nodiscard]] std::vector<CUICtrl*> alphaWheelItems(const CUIControlList& list);

// Exchanges the indices of an item and its neighbour, the one ahead of it with bUp. False, and nothing
// changes, at the ends of the list and for an id that is no item's. Items that share an index are numbered
// anew from 0.
bool moveAlphaWheelItem(CUIControlList& list, UINT uControlId, bool bUp);

} // namespace velmora
