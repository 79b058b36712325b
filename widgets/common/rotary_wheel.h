#pragma once

#include "widgets/common/position_control.h"

namespace velmora {

enum class EWheelKind
{
    AlphaWheel, // endless, turned by detents
    ValueKnob   // 0 to 256 over three quarters of a turn
};

// The two knobs of the alpha wheel. The wheel is dragged around its middle, the knob up and down (256 steps
// in 200 pixels); both obey wheel and keys, Shift being fine. [main]
class CRotaryWheel : public CPositionControl
{
    Q_OBJECT

  public:
    static constexpr int DETENTS = 24; // of a full turn

    explicit CRotaryWheel(EWheelKind eKind, QWidget* pParent = nullptr);

    [[nodiscard]] EWheelKind kind() const { return m_eKind; }

    // The alpha wheel's place: the current item from 0 and how many there are. Home and End lead to the first
    // and the last. Silent.
    void setItem(int nItem, int nItems);
    [[nodiscard]] int item() const { return m_nItem; }

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] QString accessibleValueText() const override;
    [[nodiscard]] std::optional<CRange> accessibleRange() const override;
    void setAccessibleValue(double dValue) override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  signals:
    // The alpha wheel by a hand: detents, forward above 0.
    void turned(int nDetents);

  protected:
    void moveBy(double dSteps) override;
    void moveToEnd(bool bHighest) override;
    [[nodiscard]] double wheelSteps() const override;
    [[nodiscard]] double pageSteps() const override;
    [[nodiscard]] double fineness(Qt::KeyboardModifiers modifiers) const override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;

  private:
    [[nodiscard]] bool isEndless() const { return m_eKind == EWheelKind::AlphaWheel; }
    [[nodiscard]] QRectF disc() const;
    [[nodiscard]] QColor faceColour() const;
    [[nodiscard]] std::optional<double> detentsAt(const QPointF& point) const;
    void paintWheel(QPainter& painter, const QRectF& disc) const;
    void paintKnob(QPainter& painter, const QRectF& disc) const;

    EWheelKind m_eKind;
    int m_nItem = 0;
    int m_nItems = 0;
    double m_dTurned = 0.0;     // detents since the start, for the drawing
    double m_dPartDetent = 0.0; // gathered on the way to the next one
    QPointF m_mouse;
};

} // namespace velmora
