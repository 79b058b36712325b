#include "widgets/panel/panel_layout.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {

using enum EPanelPart;

// clang-format off
constexpr std::array<CPanelPlace, 21> PLACES = {{
    // part              first slot     count cols  first one               pitch
    {ProjectBar,         NO_PANEL_SLOT,  1,  1, {  12,   8, 1576,  58}, {  0,   0}},
    {InputGroup,         NO_PANEL_SLOT,  1,  1, {  12,  74,  150, 562}, {  0,   0}},
    {SliderGroup,        NO_PANEL_SLOT,  1,  1, { 170,  74, 1260, 562}, {  0,   0}},
    {OutputGroup,        NO_PANEL_SLOT,  1,  1, {1438,  74,  150, 562}, {  0,   0}},
    {SwitchGroup,        NO_PANEL_SLOT,  1,  1, {  12, 644,  560, 348}, {  0,   0}},
    {MeterGroup,         NO_PANEL_SLOT,  1,  1, { 580, 644,  366, 348}, {  0,   0}},
    {DisplayGroup,       NO_PANEL_SLOT,  1,  1, { 954, 644,  348, 348}, {  0,   0}},
    {WheelGroup,         NO_PANEL_SLOT,  1,  1, {1310, 644,  278, 348}, {  0,   0}},
    {Sliders,            0,             40, 10, { 176,  80,  123, 133}, {125, 139}},
    {Banks,              41,             4,  4, {  18, 650,  134, 222}, {138,   0}},
    {Switches,           45,             4,  4, {  18, 878,  134,  42}, {138,   0}},
    {FreeCombos,         70,             4,  4, {  18, 926,  134,  60}, {138,   0}},
    {Meters,             50,            10, 10, { 586, 650,   33, 270}, { 36,   0}},
    {AssignableButtons,  NO_PANEL_SLOT,  3,  3, { 586, 934,  114,  46}, {120,   0}},
    {JoystickCombos,     60,             4,  2, { 960, 926,  166,  29}, {170,  31}},
    {Display,            NO_PANEL_SLOT,  1,  1, { 960, 650,  336, 270}, {  0,   0}},
    {AlphaWheel,         NO_PANEL_SLOT,  1,  1, {1316, 650,  266, 222}, {  0,   0}},
    {Routing,            NO_PANEL_SLOT,  1,  1, {1316, 878,  266, 108}, {  0,   0}},
    {InputGain,          NO_PANEL_SLOT,  1,  1, {  18,  80,  138, 550}, {  0,   0}},
    {OutputGain,         NO_PANEL_SLOT,  1,  1, {1444,  80,  138, 550}, {  0,   0}},
    {Invitation,         NO_PANEL_SLOT,  1,  1, { 550, 235,  500, 240}, {  0,   0}},
}};
// clang-format on

constexpr std::array HIT_ORDER = {AlphaWheel,        Sliders, Banks,      Switches,
                                  AssignableButtons, Meters,  FreeCombos, JoystickCombos};

constexpr double FONT_AT_DESIGN_SIZE = 1.15;
constexpr double SMALLEST_FONT = 0.86;
constexpr double LARGEST_FONT = 2.6;

} // namespace

std::span<const CPanelPlace> panelPlaces()
{
    return PLACES;
}

const CPanelPlace& panelPlace(EPanelPart ePart)
{
    return *std::ranges::find(PLACES, ePart, &CPanelPlace::m_ePart);
}

QRect panelRect(EPanelPart ePart, int nIndex, const QSize& form)
{
    const CPanelPlace& place = panelPlace(ePart);
    const QRect design = place.m_first.translated(place.m_pitch.width() * (nIndex % place.m_nColumns),
                                                  place.m_pitch.height() * (nIndex / place.m_nColumns));
    const double dX = static_cast<double>(form.width()) / PANEL_DESIGN_SIZE.width();
    const double dY = static_cast<double>(form.height()) / PANEL_DESIGN_SIZE.height();
    const auto scaled = [](int nLength, double dScale) {
        return static_cast<int>(std::lround(nLength * dScale));
    };
    // Each edge is scaled by itself: parts that touch on paper touch on the screen.
    const QPoint topLeft(scaled(design.x(), dX), scaled(design.y(), dY));
    const QPoint end(scaled(design.x() + design.width(), dX), scaled(design.y() + design.height(), dY));
    return {topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y())};
}

std::optional<CPanelHit> panelHit(const QPoint& point, const QSize& form)
{
    for (const EPanelPart ePart : HIT_ORDER) {
        const CPanelPlace& place = panelPlace(ePart);
        QRect all;
        for (int i = 0; i < place.m_nCount; i++) {
            const QRect one = panelRect(ePart, i, form);
            if (place.m_uFirstSlot != NO_PANEL_SLOT && one.contains(point))
                return CPanelHit{ePart, place.m_uFirstSlot + static_cast<UINT>(i)};
            all |= one;
        }
        if (place.m_uFirstSlot == NO_PANEL_SLOT && all.contains(point))
            return CPanelHit{ePart, NO_PANEL_SLOT};
    }
    return std::nullopt;
}

double panelFontFactor(const QSize& form)
{
    const double dScale = std::min(static_cast<double>(form.width()) / PANEL_DESIGN_SIZE.width(),
                                   static_cast<double>(form.height()) / PANEL_DESIGN_SIZE.height());
    return std::clamp(dScale * FONT_AT_DESIGN_SIZE, SMALLEST_FONT, LARGEST_FONT);
}

} // namespace velmora
