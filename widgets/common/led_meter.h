#pragma once

#include "panel/led_scale.h"
#include "widgets/common/accessible_instrument.h"
#include "widgets/common/slot_control.h"

namespace velmora {

// A meter of LEDs. A new level repaints the LEDs between the old and the new one and nothing else; what lies
// behind the meter is never repainted. Inactive, it shows the outlines of dark LEDs. [main]
class CLEDMeter : public CSlotControl<QWidget>, public IAccessibleInstrument
{
    Q_OBJECT

  public:
    explicit CLEDMeter(QWidget* pParent = nullptr);

    // At least 1 LED; the gap in pixels.
    void setLEDs(int nLEDs, int nGap = CLEDScale::GAP);

    // Fills from the top; a horizontal meter then from the right.
    void setUpsideDown(bool bUpsideDown);
    void setOrientation(Qt::Orientation eOrientation);

    // CUICtrl::uMeterColorScheme: 1 to 6 have one colour, every other number the multi-colour scale.
    void setColourScheme(UINT uScheme);

    // The highest LED stays lit for that many calls of setLevel() and then sinks by one LED a call; 0 for
    // none.
    void setPeakHold(int nTicks);

    // Makes assistive programs read levels in dB, 0.0 standing for the lowest and 1.0 for the highest,
    // instead of per cent.
    void setDecibels(double dLowest, double dHighest);

    // 0.0 to 1.0, others are limited.
    void setLevel(float fLevel);
    [[nodiscard]] float level() const { return m_fLevel; }
    [[nodiscard]] int litLEDs() const;

    // Logical pixels painted so far.
    [[nodiscard]] qint64 paintedArea() const { return m_nPaintedArea; }

    // Of one LED, counted from the end that the meter fills from, in logical pixels.
    [[nodiscard]] QRectF ledRect(int nLED) const;

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] QString accessibleValueText() const override;
    [[nodiscard]] std::optional<CRange> accessibleRange() const override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* pEvent) override;

  private:
    [[nodiscard]] bool isVertical() const { return m_eOrientation == Qt::Vertical; }
    [[nodiscard]] QColor ledColour(int nLED, int nLit) const;
    [[nodiscard]] int peakLED() const; // -1 for none
    void agePeak();
    void updateLEDs(int nFirst, int nEnd);

    int m_nLEDs = CLEDScale::LEDS;
    int m_nGap = CLEDScale::GAP;
    UINT m_uScheme = 0;
    bool m_bUpsideDown = false;
    Qt::Orientation m_eOrientation = Qt::Vertical;
    float m_fLevel = 0.0F;
    int m_nPeakHold = 0;
    int m_nPeak = 0; // lit LEDs at the peak
    int m_nPeakAge = 0;
    bool m_bDecibels = false;
    double m_dLowest = 0.0;
    double m_dHighest = 100.0;
    qint64 m_nPaintedArea = 0;
};

} // namespace velmora
