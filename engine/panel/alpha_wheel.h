#pragma once

#include "pluginconstants.h"

#include <optional>
#include <string>
#include <vector>

namespace velmora {

class CPanelModel;

// The alpha wheel with its LCD: chooses one of the many items that have no slot of their own, shows it in two
// lines, and moves it by the value knob. [main]
class CAlphaWheel
{
  public:
    // The model outlives the wheel.
    explicit CAlphaWheel(CPanelModel& model);

    // Project, filter or items are others now. The position stays as far as there are items.
    void refresh();

    [[nodiscard]] int position() const { return m_nPosition; }
    [[nodiscard]] int count() const { return static_cast<int>(m_slots.size()); }

    // The item's slot; none without items.
    [[nodiscard]] std::optional<UINT> slot() const;

    // Moves by so many items, held to the first and the last. False if the item stays the same.
    bool turn(int nDetents);

    [[nodiscard]] std::string nameLine() const;
    [[nodiscard]] std::string valueLine() const;   // value and units, underscores of an item as blanks
    [[nodiscard]] std::string counterText() const; // "3/12"; empty without items

    // The value knob: moves the current item to a position of 0 to 256, and where it stands.
    bool moveValue(int nPos);
    [[nodiscard]] int valuePosition() const;

  private:
    CPanelModel& m_model;
    std::vector<UINT> m_slots;
    int m_nPosition = 0;
};

} // namespace velmora
