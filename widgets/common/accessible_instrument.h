#pragma once

#include <QAccessible>
#include <QAccessibleWidget>
#include <optional>

namespace velmora {

// What a drawn control says of itself to assistive programs. A widget that has it is found by
// installAccessibleInstruments(); name and description are those of the widget.
class IAccessibleInstrument
{
  public:
    // In the control's own steps, for instance positions.
    struct CRange
    {
        double m_dLowest = 0.0;
        double m_dHighest = 0.0;
        double m_dStep = 1.0;
        double m_dValue = 0.0;
    };

    virtual ~IAccessibleInstrument() = default;

    [[nodiscard]] virtual QAccessible::Role accessibleRole() const = 0;

    // Spoken while the widget itself has no accessible name.
    [[nodiscard]] virtual QString accessibleFallbackName() const { return {}; }

    // The value in words, with its unit.
    [[nodiscard]] virtual QString accessibleValueText() const = 0;

    // None for a control without a range.
    [[nodiscard]] virtual std::optional<CRange> accessibleRange() const { return std::nullopt; }

    // As if a hand had moved it. Limited to the range; without effect where hands have none.
    virtual void setAccessibleValue(double /*dValue*/) {}

    // True for one that opens a list; showAccessibleMenu() does so.
    [[nodiscard]] virtual bool hasAccessibleMenu() const { return false; }
    virtual void showAccessibleMenu() {}
};

// Makes Qt ask IAccessibleInstrument; more than once does no harm. The drawn controls call it themselves.
void installAccessibleInstruments();

} // namespace velmora
