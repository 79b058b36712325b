#pragma once

#include "pluginconstants.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>
#include <span>

namespace velmora {

// What has a place of its own on the prototype panel. Groups are the frames behind the others.
enum class EPanelPart
{
    ProjectBar,
    InputGroup,
    SliderGroup,
    OutputGroup,
    SwitchGroup,
    MeterGroup,
    DisplayGroup,
    WheelGroup,
    Sliders,
    Banks,
    Switches,
    FreeCombos,
    Meters,
    AssignableButtons,
    JoystickCombos,
    Display,
    AlphaWheel,
    Routing,
    InputGain,
    OutputGain,
    Invitation
};

// One line of the form's table: a single part, or a grid of equal ones. All lengths are in design units.
struct CPanelPlace
{
    EPanelPart m_ePart;
    UINT m_uFirstSlot; // control id of the first one; NO_PANEL_SLOT for parts without
    int m_nCount;
    int m_nColumns;
    QRect m_first; // of the first one
    QSize m_pitch; // from one to the next

    [[nodiscard]] bool isGroup() const
    {
        return m_ePart >= EPanelPart::InputGroup && m_ePart <= EPanelPart::WheelGroup;
    }
};

constexpr UINT NO_PANEL_SLOT = 0xFFFFFFFF;
constexpr QSize PANEL_DESIGN_SIZE{1600, 1000};
constexpr QSize PANEL_SMALLEST_SIZE{1080, 640}; // logical pixels

// The whole form.
[[nodiscard]] std::span<const CPanelPlace> panelPlaces();
[[nodiscard]] const CPanelPlace& panelPlace(EPanelPart ePart);

// Where a part lies on a form of that size, in logical pixels. Width and height scale on their own, so that
// the form is always filled.
[[nodiscard]] QRect panelRect(EPanelPart ePart, int nIndex, const QSize& form);

// What the right button points at: the alpha wheel first, then sliders, banks and switches, the assignable
// buttons as one, meters, combo boxes.
struct CPanelHit
{
    EPanelPart m_ePart;
    UINT m_uSlot; // NO_PANEL_SLOT for alpha wheel and assignable buttons

    [[nodiscard]] bool operator==(const CPanelHit&) const = default;
};
[[nodiscard]] std::optional<CPanelHit> panelHit(const QPoint& point, const QSize& form);

// The factor of the ordinary font on a form of that size; it never falls below what is legible.
[[nodiscard]] double panelFontFactor(const QSize& form);

} // namespace velmora
