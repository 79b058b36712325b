#pragma once

#include "pluginconstants.h"

#include <string_view>

namespace velmora {

// Port: what the panel's model tells the window that shows it. Each operation does nothing unless a window
// overrides it. [main]
class IPanelView
{
  public:
    virtual ~IPanelView() = default;

    // The state of a slot, or of an item of the alpha wheel, has changed.
    virtual void slotChanged(UINT /*uSlot*/) {}

    // Project or filter are others now, or a control came or went: everything is to be laid out anew.
    virtual void panelChanged() {}

    // After any change of a value: block diagram, analyzer and custom GUI follow, in this order.
    virtual void commonRefresh() {}

    // The look of an assignable button has changed: 50, 51 or 52.
    virtual void buttonChanged(UINT /*uButton*/) {}

    // CPanelModel::deliverChanges() is to be called soon, from the event loop, as often as it answers true.
    virtual void changesPending() {}

    // The plug-in threw an exception while it was told of a change.
    virtual void plugInFailed(std::string_view /*sText*/) {}
};

} // namespace velmora
