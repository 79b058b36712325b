#include "widgets/common/icons.h"

#include "widgets/common/theme.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace velmora {

namespace {

constexpr double GRID = 16.0; // every icon is drawn on a square of this size
constexpr double PEN = 1.5;   // width of its lines there

// What of an icon is filled and what is a line.
struct CDrawing
{
    QPainterPath m_filled;
    QPainterPath m_lines;
};

void polygon(QPainterPath& path, std::initializer_list<QPointF> points, bool bClosed)
{
    path.moveTo(*points.begin());
    for (auto it = points.begin() + 1; it != points.end(); ++it)
        path.lineTo(*it);
    if (bClosed)
        path.closeSubpath();
}

// An arc with an arrow head at its end; angles in degrees, counter-clockwise from the right.
void arcArrow(CDrawing& drawing, const QRectF& box, double dFrom, double dSweep)
{
    drawing.m_lines.arcMoveTo(box, dFrom);
    drawing.m_lines.arcTo(box, dFrom, dSweep);
    const QPointF tip = drawing.m_lines.currentPosition();
    const double dEnd = (dFrom + dSweep) * std::numbers::pi / 180.0;
    const double dTurn = dSweep > 0 ? 1.0 : -1.0;
    const QPointF along(-std::sin(dEnd) * dTurn, -std::cos(dEnd) * dTurn);
    const QPointF across(along.y(), -along.x());
    polygon(drawing.m_filled,
            {tip + along * 3.2, tip + across * 2.8 - along * 0.6, tip - across * 2.8 - along * 0.6}, true);
}

void drawPlay(CDrawing& drawing)
{
    polygon(drawing.m_filled, {{4, 2.5}, {13.5, 8}, {4, 13.5}}, true);
}

void drawPause(CDrawing& drawing)
{
    drawing.m_filled.addRect(4, 3, 3, 10);
    drawing.m_filled.addRect(9, 3, 3, 10);
}

void drawStop(CDrawing& drawing)
{
    drawing.m_filled.addRect(3.5, 3.5, 9, 9);
}

void drawLoop(CDrawing& drawing)
{
    arcArrow(drawing, {2.5, 3, 11, 10}, 160, -125);
    arcArrow(drawing, {2.5, 3, 11, 10}, 340, -125);
}

void drawBypass(CDrawing& drawing)
{
    drawing.m_lines.addRect(5, 7.5, 6, 5.5);
    polygon(drawing.m_lines, {{1, 10.25}, {2.5, 10.25}, {2.5, 4}, {13.5, 4}, {13.5, 10.25}, {15, 10.25}},
            false);
}

void drawOpenFile(CDrawing& drawing)
{
    polygon(drawing.m_lines, {{1.75, 13}, {1.75, 3.25}, {6, 3.25}, {7.5, 5.25}, {12.75, 5.25}, {12.75, 7.25}},
            false);
    polygon(drawing.m_lines, {{1.75, 13}, {4.25, 7.25}, {14.75, 7.25}, {12.25, 13}}, true);
}

void drawMicrophone(CDrawing& drawing)
{
    drawing.m_filled.addRoundedRect(5.75, 1.5, 4.5, 8, 2.25, 2.25);
    drawing.m_lines.arcMoveTo(QRectF(3.25, 3, 9.5, 9), 180);
    drawing.m_lines.arcTo(QRectF(3.25, 3, 9.5, 9), 180, 180);
    polygon(drawing.m_lines, {{8, 12}, {8, 14.5}}, false);
    polygon(drawing.m_lines, {{5, 14.5}, {11, 14.5}}, false);
}

void drawWave(CDrawing& drawing)
{
    constexpr std::array HALF_HEIGHTS{1.0, 3.0, 5.5, 2.5, 4.5, 1.5};
    for (std::size_t u = 0; u < HALF_HEIGHTS.size(); ++u) {
        const double dX = 1.75 + 2.5 * static_cast<double>(u);
        polygon(drawing.m_lines, {{dX, 8 - HALF_HEIGHTS[u]}, {dX, 8 + HALF_HEIGHTS[u]}}, false);
    }
}

void drawOscillator(CDrawing& drawing)
{
    drawing.m_lines.moveTo(1.5, 8);
    drawing.m_lines.cubicTo(3.5, -0.5, 6, -0.5, 8, 8);
    drawing.m_lines.cubicTo(10, 16.5, 12.5, 16.5, 14.5, 8);
}

void drawSynth(CDrawing& drawing)
{
    drawing.m_lines.addRect(1.75, 3, 12.5, 10);
    for (const double dX : {5.9, 10.1}) {
        polygon(drawing.m_lines, {{dX, 9}, {dX, 13}}, false);
        drawing.m_filled.addRect(dX - 1.25, 3, 2.5, 6);
    }
}

void drawRebuild(CDrawing& drawing)
{
    drawing.m_lines.addEllipse(QRectF(5.75, 5.75, 4.5, 4.5));
    for (int n = 0; n < 8; ++n) {
        const double dAngle = n * std::numbers::pi / 4.0;
        const QPointF direction(std::cos(dAngle), std::sin(dAngle));
        const QPointF middle(8, 8);
        polygon(drawing.m_lines, {middle + direction * 4.75, middle + direction * 6.5}, false);
    }
    drawing.m_lines.addEllipse(QRectF(3.25, 3.25, 9.5, 9.5));
}

void drawTray(CDrawing& drawing)
{
    polygon(drawing.m_lines, {{2, 10}, {2, 13.75}, {14, 13.75}, {14, 10}}, false);
}

void drawLoad(CDrawing& drawing)
{
    drawTray(drawing);
    polygon(drawing.m_lines, {{8, 1.5}, {8, 8}}, false);
    polygon(drawing.m_filled, {{4.5, 6.5}, {11.5, 6.5}, {8, 11}}, true);
}

void drawUnload(CDrawing& drawing)
{
    drawTray(drawing);
    polygon(drawing.m_lines, {{8, 5}, {8, 11}}, false);
    polygon(drawing.m_filled, {{4.5, 6}, {11.5, 6}, {8, 1.5}}, true);
}

void drawUndo(CDrawing& drawing)
{
    polygon(drawing.m_lines, {{4.5, 5.5}, {9.5, 5.5}}, false);
    drawing.m_lines.arcTo(QRectF(5.75, 5.5, 7.5, 7.5), 90, -180);
    drawing.m_lines.lineTo(5, 13);
    polygon(drawing.m_filled, {{1.5, 5.5}, {6, 2}, {6, 9}}, true);
}

void drawRedo(CDrawing& drawing)
{
    drawUndo(drawing);
    const QTransform mirror(-1, 0, 0, 1, GRID, 0);
    drawing.m_filled = mirror.map(drawing.m_filled);
    drawing.m_lines = mirror.map(drawing.m_lines);
}

void drawSettings(CDrawing& drawing)
{
    constexpr std::array<double, 3> ROWS{3.5, 8.0, 12.5};
    constexpr std::array<double, 3> KNOBS{10.5, 5.0, 9.0};
    for (std::size_t u = 0; u < ROWS.size(); ++u) {
        polygon(drawing.m_lines, {{1.5, ROWS[u]}, {KNOBS[u] - 2, ROWS[u]}}, false);
        polygon(drawing.m_lines, {{KNOBS[u] + 2, ROWS[u]}, {14.5, ROWS[u]}}, false);
        drawing.m_filled.addEllipse(QPointF(KNOBS[u], ROWS[u]), 1.9, 1.9);
    }
}

void drawInformation(CDrawing& drawing)
{
    drawing.m_lines.addEllipse(QRectF(1.25, 1.25, 13.5, 13.5));
    drawing.m_filled.addRect(7.2, 7, 1.6, 5);
    drawing.m_filled.addEllipse(QPointF(8, 4.8), 1.05, 1.05);
}

void drawQuestion(CDrawing& drawing)
{
    drawing.m_lines.addEllipse(QRectF(1.25, 1.25, 13.5, 13.5));
    drawing.m_lines.moveTo(5.7, 6.2);
    drawing.m_lines.cubicTo(5.7, 3.2, 10.3, 3.2, 10.3, 6.2);
    drawing.m_lines.cubicTo(10.3, 7.8, 8, 7.9, 8, 9.9);
    drawing.m_filled.addEllipse(QPointF(8, 11.8), 1.05, 1.05);
}

using CDrawFunction = void (*)(CDrawing&);

// In the order of EIcon.
constexpr std::array<CDrawFunction, static_cast<std::size_t>(EIcon::Count)> DRAW_FUNCTIONS{
    drawPlay,       drawPause, drawStop,       drawLoop,     drawBypass,      drawOpenFile,
    drawMicrophone, drawWave,  drawOscillator, drawSynth,    drawRebuild,     drawLoad,
    drawUnload,     drawUndo,  drawRedo,       drawSettings, drawInformation, drawQuestion};

class CThemeIconEngine : public QIconEngine
{
  public:
    explicit CThemeIconEngine(EIcon eIcon) : m_eIcon(eIcon) {}

    void paint(QPainter* pPainter, const QRect& rect, QIcon::Mode eMode, QIcon::State eState) override
    {
        const CThemeColours& colours = CTheme::instance().colours();
        const bool bSign = m_eIcon == EIcon::Information || m_eIcon == EIcon::Question;
        QColor colour = eState == QIcon::On || bSign ? colours.m_accent : colours.m_text;
        if (eMode == QIcon::Disabled)
            colour = QGuiApplication::palette().color(QPalette::Disabled, QPalette::ButtonText);
        else if (eMode == QIcon::Selected)
            colour = colours.m_accentText;

        CDrawing drawing;
        DRAW_FUNCTIONS[static_cast<std::size_t>(m_eIcon)](drawing);
        const double dScale = std::min(rect.width(), rect.height()) / GRID;
        pPainter->save();
        pPainter->setRenderHint(QPainter::Antialiasing);
        pPainter->translate(rect.x() + (rect.width() - GRID * dScale) / 2.0,
                            rect.y() + (rect.height() - GRID * dScale) / 2.0);
        pPainter->scale(dScale, dScale);
        pPainter->fillPath(drawing.m_filled, colour);
        pPainter->setPen(QPen(colour, PEN, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
        pPainter->drawPath(drawing.m_lines);
        pPainter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode eMode, QIcon::State eState) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), eMode, eState);
        return picture;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new CThemeIconEngine(m_eIcon); }

  private:
    EIcon m_eIcon;
};

} // namespace

QIcon themeIcon(EIcon eIcon)
{
    return QIcon(new CThemeIconEngine(eIcon));
}

} // namespace velmora
