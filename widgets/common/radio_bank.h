#pragma once

#include "widgets/common/accessible_instrument.h"
#include "widgets/common/slot_control.h"

#include <QStringList>
#include <QWidget>
#include <array>

namespace velmora {

class CRadioBankButton;

// A labelled box of up to eight radio buttons, of which one is pressed. One tab stop; the arrow keys move
// inside. [main]
class CRadioBank : public CSlotControl<QWidget>, public IAccessibleInstrument
{
    Q_OBJECT

  public:
    static constexpr int BUTTONS = 8;

    explicit CRadioBank(QWidget* pParent = nullptr);

    // Above the buttons; also the name of the group.
    void setLabel(const QString& sLabel);
    [[nodiscard]] const QString& label() const { return m_sLabel; }

    // Texts of the buttons; those beyond them are hidden, texts beyond the eighth ignored.
    void setItems(const QStringList& items);
    [[nodiscard]] int count() const { return m_nCount; }
    [[nodiscard]] QString item(int nItem) const;

    // -1 if none is pressed; silent.
    void setSelected(int nItem);
    [[nodiscard]] int selected() const;

    // False while hands do not move it.
    [[nodiscard]] bool isUsable() const { return isMovable(); }

    // The box without the label, in logical pixels of this widget.
    [[nodiscard]] QRect boxRect() const;

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] QString accessibleFallbackName() const override;
    [[nodiscard]] QString accessibleValueText() const override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  signals:
    // By a hand only; also for a click on the button that is pressed already.
    void chosen(int nItem);

  protected:
    void lookChanged() override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

  private:
    void place();
    void arrangeTabStop();
    [[nodiscard]] int labelHeight() const;

    std::array<CRadioBankButton*, BUTTONS> m_buttons{};
    QString m_sLabel;
    int m_nCount = 0;
};

} // namespace velmora
