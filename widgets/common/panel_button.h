#pragma once

#include "widgets/common/slot_control.h"

#include <QPushButton>

namespace velmora {

enum class EButtonKind
{
    Push,
    Latching, // keeps its pressed look until the next click
    TwoState  // a switch with a lamp
};

// A button or switch of the panel. A click by hand emits clicked(bool), once; setChecked() is silent towards
// it. [main]
class CPanelButton : public CSlotControl<QPushButton>
{
    Q_OBJECT

  public:
    explicit CPanelButton(QWidget* pParent = nullptr, EButtonKind eKind = EButtonKind::Push);

    void setKind(EButtonKind eKind);
    [[nodiscard]] EButtonKind kind() const { return m_eKind; }

    // A small second line, for instance what the state of a switch means.
    void setStateText(const QString& sText);
    [[nodiscard]] const QString& stateText() const { return m_sStateText; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    [[nodiscard]] bool hitButton(const QPoint& point) const override;

  private:
    void paintCaption(QPainter& painter, const QRectF& place, const QColor& colour) const;

    EButtonKind m_eKind = EButtonKind::Push;
    QString m_sStateText;
};

} // namespace velmora
