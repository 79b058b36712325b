#pragma once

#include "widgets/common/slot_control.h"

#include <QLineEdit>

namespace velmora {

// The edit box of a slot's value. Enter and leaving it commit an edited text, Escape brings the last one
// back. [main]
class CValueBox : public CSlotControl<QLineEdit>
{
    Q_OBJECT

  public:
    explicit CValueBox(QWidget* pParent = nullptr);

    // Shown and kept as what Escape brings back. A text that is being edited stays until it is committed or
    // given up.
    void setValue(const QString& sText);

    // The last text that was set, whatever is being typed.
    [[nodiscard]] const QString& value() const { return m_sValue; }

    // Selects everything and takes the focus.
    void edit();

    // Ends an edit as Enter does; nothing without one.
    void commit();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  signals:
    // The text as typed, once for each edit. Until setValue() answers, the box shows it.
    void committed(const QString& sText);

  protected:
    void lookChanged() override;
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;

  private:
    QString m_sValue;
};

} // namespace velmora
