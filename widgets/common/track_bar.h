#pragma once

#include "widgets/common/position_control.h"

#include <QTimer>

namespace velmora {

// The slider of a slot. Its thumb follows the mouse, finely with Shift; a click beside the thumb moves it a
// page toward the mouse, and on while the button is held. [main]
class CTrackBar : public CPositionControl
{
    Q_OBJECT

  public:
    explicit CTrackBar(QWidget* pParent = nullptr);

    // Vertical unless told otherwise: 256 at the top, or at the right.
    void setOrientation(Qt::Orientation eOrientation);
    [[nodiscard]] Qt::Orientation orientation() const { return m_eOrientation; }

    // A fader's scale counts from the top: there Home leads to 256 and End to 0.
    void setCountsFromTop(bool bCountsFromTop) { m_bCountsFromTop = bCountsFromTop; }

    // Beside the track, on unless told otherwise.
    void setQuarterMarks(bool bMarks) { m_bQuarterMarks = bMarks; }

    // In logical pixels of this widget.
    [[nodiscard]] QRect thumbRect() const;

    // Where the middle of the thumb stands for a position.
    [[nodiscard]] double pixelOf(double dPosition) const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void moveToEnd(bool bHighest) override;
    void lookChanged() override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;

  private:
    [[nodiscard]] bool isVertical() const { return m_eOrientation == Qt::Vertical; }
    [[nodiscard]] double along(const QPointF& point) const;
    [[nodiscard]] double travel() const;
    [[nodiscard]] int thumbLength() const;
    void pageTowardMouse();
    [[nodiscard]] QRectF span(double dFrom, double dTo, double dLeft, double dRight) const;
    void paintTrack(QPainter& painter) const;
    void paintMarks(QPainter& painter) const;
    void paintThumb(QPainter& painter) const;

    Qt::Orientation m_eOrientation = Qt::Vertical;
    bool m_bCountsFromTop = false;
    bool m_bQuarterMarks = true;
    bool m_bPagingUp = false;
    double m_dMouse = 0.0; // the last place along the track
    QTimer m_repeat;
};

} // namespace velmora
