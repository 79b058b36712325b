#include "widgets/common/led_meter.h"

#include "widgets/common/instrument_paint.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {

constexpr int SIDE = 2;        // pixels between LEDs and the meter's long edges
constexpr double UNLIT = 0.45; // how much of its colour an unlit LED of the multi-colour scale keeps
constexpr UINT SINGLE_SCHEMES = 6;

// The multi-colour scale joins schemes of one colour: green, yellow, red, each up to a share of the meter.
struct CZone
{
    int m_nPercent;
    UINT m_uScheme;
};
constexpr std::array<CZone, 3> ZONES = {{{60, 4}, {85, 3}, {100, 1}}};

QColor colourOf(std::uint32_t uColour)
{
    return QColor::fromRgb(static_cast<QRgb>(uColour));
}

// What whole pixels leave over: it goes to both ends alike.
int spare(const CLEDScale& scale, int nLength)
{
    const int nLast = scale.ledTop(scale.count() - 1, nLength, true) + scale.ledHeight(nLength);
    return nLength - nLast - scale.ledTop(0, nLength, true);
}

} // namespace

CLEDMeter::CLEDMeter(QWidget* pParent) : CSlotControl<QWidget>(pParent)
{
    installAccessibleInstruments();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
}

void CLEDMeter::setLEDs(int nLEDs, int nGap)
{
    m_nLEDs = std::max(1, nLEDs);
    m_nGap = std::max(0, nGap);
    m_nPeak = 0;
    update();
}

void CLEDMeter::setUpsideDown(bool bUpsideDown)
{
    m_bUpsideDown = bUpsideDown;
    update();
}

void CLEDMeter::setOrientation(Qt::Orientation eOrientation)
{
    m_eOrientation = eOrientation;
    const bool bUpright = isVertical();
    setSizePolicy(bUpright ? QSizePolicy::Preferred : QSizePolicy::Expanding,
                  bUpright ? QSizePolicy::Expanding : QSizePolicy::Preferred);
    update();
}

void CLEDMeter::setColourScheme(UINT uScheme)
{
    m_uScheme = uScheme;
    update();
}

void CLEDMeter::setPeakHold(int nTicks)
{
    m_nPeakHold = std::max(0, nTicks);
    m_nPeak = 0;
    update();
}

void CLEDMeter::setDecibels(double dLowest, double dHighest)
{
    m_bDecibels = true;
    m_dLowest = dLowest;
    m_dHighest = dHighest;
}

int CLEDMeter::litLEDs() const
{
    return CLEDScale(m_nLEDs, m_nGap).litCount(m_fLevel);
}

void CLEDMeter::setLevel(float fLevel)
{
    const float fNew = fLevel > 0.0F ? std::min(fLevel, 1.0F) : 0.0F;
    const CLEDScale::CRange changed = CLEDScale(m_nLEDs, m_nGap).changedLEDs(m_fLevel, fNew);
    const int nOldPeak = peakLED();
    m_fLevel = fNew;
    updateLEDs(changed.m_nFirst, changed.m_nEnd);
    agePeak();
    if (peakLED() == nOldPeak)
        return;
    for (const int nLED : {nOldPeak, peakLED()})
        updateLEDs(nLED, nLED + 1);
}

void CLEDMeter::agePeak()
{
    const int nLit = litLEDs();
    if (nLit >= m_nPeak) {
        m_nPeak = nLit;
        m_nPeakAge = 0;
    } else if (++m_nPeakAge > m_nPeakHold) {
        --m_nPeak;
    }
}

int CLEDMeter::peakLED() const
{
    return m_nPeakHold > 0 && m_nPeak > litLEDs() ? m_nPeak - 1 : -1;
}

// LEDs have whole device pixels, so that all are alike at every scale.
QRectF CLEDMeter::ledRect(int nLED) const
{
    const double dScale = devicePixelRatioF();
    const int nLength = static_cast<int>(std::lround((isVertical() ? height() : width()) * dScale));
    const CLEDScale scale(m_nLEDs, static_cast<int>(std::lround(m_nGap * dScale)));
    double dStart = 0.0;
    double dLength = scale.ledHeight(nLength);
    if (dLength >= 1.0) {
        dStart = scale.ledTop(nLED, nLength, m_bUpsideDown) + spare(scale, nLength) / 2;
    } else { // too short for gaps
        dLength = static_cast<double>(nLength) / m_nLEDs;
        dStart = (m_bUpsideDown ? nLED : m_nLEDs - 1 - nLED) * dLength;
    }
    dStart /= dScale;
    dLength /= dScale;
    if (isVertical())
        return {SIDE, dStart, width() - 2.0 * SIDE, dLength};
    return {width() - dStart - dLength, SIDE, dLength, height() - 2.0 * SIDE};
}

void CLEDMeter::updateLEDs(int nFirst, int nEnd)
{
    if (nFirst >= 0 && nFirst < nEnd && nEnd <= m_nLEDs)
        update((ledRect(nFirst) | ledRect(nEnd - 1)).toAlignedRect());
}

QColor CLEDMeter::ledColour(int nLED, int nLit) const
{
    const CThemeColours& colours = CTheme::instance().colours();
    if (look() == ESlotRole::Empty)
        return mixed(colours.m_panel, colours.m_emptySlot, UNLIT);
    const bool bLit = nLED < nLit || nLED == peakLED();
    if (m_uScheme >= 1 && m_uScheme <= SINGLE_SCHEMES) {
        const CLEDColours led = ledColours(m_uScheme, nLED, m_nLEDs);
        return colourOf(bLit ? led.m_uOn : led.m_uOff);
    }
    const auto* zone = std::ranges::find_if(
        ZONES, [&](const CZone& candidate) { return 100 * (nLED + 1) <= candidate.m_nPercent * m_nLEDs; });
    const CLEDColours led = ledColours(zone->m_uScheme, nLED, m_nLEDs);
    return bLit ? colourOf(led.m_uOn) : mixed(colours.m_display, colourOf(led.m_uOff), UNLIT);
}

void CLEDMeter::paintEvent(QPaintEvent* pEvent)
{
    QPainter painter(this);
    const CThemeColours& colours = CTheme::instance().colours();
    const bool bEmpty = look() == ESlotRole::Empty;
    painter.fillRect(pEvent->rect(), bEmpty ? colours.m_panel : colours.m_display);
    const int nLit = litLEDs();
    for (int nLED = 0; nLED < m_nLEDs; ++nLED) {
        const QRectF led = ledRect(nLED);
        if (pEvent->region().intersects(led.toAlignedRect()))
            painter.fillRect(led, ledColour(nLED, nLit));
    }
    for (const QRect& part : pEvent->region())
        m_nPaintedArea += static_cast<qint64>(part.width()) * part.height();
}

QAccessible::Role CLEDMeter::accessibleRole() const
{
    return QAccessible::Indicator;
}

std::optional<IAccessibleInstrument::CRange> CLEDMeter::accessibleRange() const
{
    const double dValue = m_dLowest + static_cast<double>(m_fLevel) * (m_dHighest - m_dLowest);
    return CRange{m_dLowest, m_dHighest, 0.0, dValue};
}

QString CLEDMeter::accessibleValueText() const
{
    const double dValue = accessibleRange()->m_dValue;
    return m_bDecibels ? QStringLiteral("%1 dB").arg(dValue, 0, 'f', 1)
                       : QStringLiteral("%1 %").arg(std::lround(dValue));
}

QSize CLEDMeter::sizeHint() const
{
    return isVertical() ? QSize(14, 140) : QSize(140, 14);
}

QSize CLEDMeter::minimumSizeHint() const
{
    constexpr int SHORTEST_LED = 2;
    const int nLength = m_nLEDs * (SHORTEST_LED + m_nGap) + 2 * m_nGap;
    return isVertical() ? QSize(8, nLength) : QSize(nLength, 8);
}

} // namespace velmora
