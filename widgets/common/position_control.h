#pragma once

#include "widgets/common/accessible_instrument.h"
#include "widgets/common/slot_control.h"

namespace velmora {

// What track bar and value knob have in common: a position from 0 to 256 (the high end) that wheel and keys
// move. Wheel: 4 steps a notch; arrows 1; Page Up and Page Down 16; End the highest, Home the lowest. With
// Shift a notch of the wheel counts an eighth. Double-click, Delete and Backspace ask for a reset. The right
// button is left to the parent. [main]
class CPositionControl : public CSlotControl<QWidget>, public IAccessibleInstrument
{
    Q_OBJECT

  public:
    static constexpr int LOWEST = 0;
    static constexpr int HIGHEST = 256;
    static constexpr double FINE = 1.0 / 8.0; // with Shift

    explicit CPositionControl(QWidget* pParent = nullptr);

    [[nodiscard]] int position() const { return m_nPosition; }

    // Limited to the range; silent.
    void setPosition(int nPosition);

    // Where a reset leads; marked on the control. None if negative.
    void setInitialPosition(int nPosition);
    [[nodiscard]] int initialPosition() const { return m_nInitialPosition; }

    // True while a mouse button holds it.
    [[nodiscard]] bool isHeld() const { return m_bHeld; }

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] QString accessibleValueText() const override; // valueText(), else per cent of the range
    [[nodiscard]] std::optional<CRange> accessibleRange() const override;
    void setAccessibleValue(double dValue) override;

  signals:
    // By a hand only.
    void moved(int nPosition);
    void resetRequested();

  protected:
    // A hand's move by that many steps; fractions add up to whole steps.
    virtual void moveBy(double dSteps);
    virtual void moveToEnd(bool bHighest);
    [[nodiscard]] virtual double wheelSteps() const { return 4.0; }
    [[nodiscard]] virtual double pageSteps() const { return 16.0; }
    [[nodiscard]] virtual double fineness(Qt::KeyboardModifiers modifiers) const;

    // The role tells whose value it is: with another role a hand that holds the control loses it.
    void lookChanged() override;

    // While it is held, drags add up beyond the ends: what went too far must come back first.
    void setHeld(bool bHeld);
    void dragBy(double dSteps);
    void moveTo(double dPosition);

    void wheelEvent(QWheelEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

  private:
    int m_nPosition = 0;
    int m_nInitialPosition = -1;
    double m_dExact = 0.0; // with the fraction that fine moves have gathered
    double m_dDragged = 0.0;
    bool m_bHeld = false;
};

} // namespace velmora
