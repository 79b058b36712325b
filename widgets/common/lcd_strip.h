#pragma once

#include "widgets/common/accessible_instrument.h"
#include "widgets/common/slot_control.h"

namespace velmora {

// A display of two lines and a counter, in the display's colours. A line that does not fit ends in dots.
// [main]
class CLCDStrip : public CSlotControl<QWidget>, public IAccessibleInstrument
{
    Q_OBJECT

  public:
    explicit CLCDStrip(QWidget* pParent = nullptr);

    void setLines(const QString& sFirst, const QString& sSecond);
    [[nodiscard]] const QString& firstLine() const { return m_sFirst; }
    [[nodiscard]] const QString& secondLine() const { return m_sSecond; }

    // The item from 1 and how many there are; 0 of them shows no counter.
    void setCounter(int nItem, int nItems);
    [[nodiscard]] QString counterText() const;

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] QString accessibleValueText() const override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

  private:
    [[nodiscard]] QFont lineFont() const;
    [[nodiscard]] QRectF lineRect(int nLine) const;
    [[nodiscard]] double counterWidth() const;

    QString m_sFirst;
    QString m_sSecond;
    int m_nItem = 0;
    int m_nItems = 0;
};

} // namespace velmora
