#include "widgets/panel/display_section.h"

#include "widgets/common/theme.h"
#include "widgets/panel/choice_bar.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <cmath>

namespace velmora {

namespace {

constexpr double METER_RANGE = 60.0; // dB that a level of 0.0 to 1.0 spans
constexpr int GAP = 6;
constexpr int COLUMNS = 10; // of the empty graph
constexpr int ROWS = 6;

QString noSignal()
{
    return QStringLiteral("no signal");
}

} // namespace

CDisplaySection::CDisplaySection(QWidget* pParent)
    : QWidget(pParent), m_pSelector(new CChoiceBar(QStringLiteral("Display"),
                                                   {QStringLiteral("Scope"), QStringLiteral("Log (f)"),
                                                    QStringLiteral("Lin (f)"), QStringLiteral("Joystick")},
                                                   this)),
      m_sLevel(noSignal())
{
    setAttribute(Qt::WA_OpaquePaintEvent); // the form behind stays as it is while the reading changes
    connect(m_pSelector, &CChoiceBar::chosen, this, &CDisplaySection::changed);
}

void CDisplaySection::setDisplay(int nDisplay)
{
    m_pSelector->setCurrent(nDisplay);
}

int CDisplaySection::display() const
{
    return m_pSelector->current();
}

void CDisplaySection::setProjectName(const QString& sName)
{
    m_sProject = sName;
    update();
}

void CDisplaySection::setSampleRate(double dRate)
{
    m_sRate = dRate > 0.0 ? QStringLiteral("%1 Hz").arg(dRate, 0, 'f', 0) : QString();
    update();
}

void CDisplaySection::setLevel(float fLevel)
{
    const int nDecibels = static_cast<int>(std::lround((static_cast<double>(fLevel) - 1.0) * METER_RANGE));
    const QString sLevel = fLevel > 0.0F ? QStringLiteral("%1 dB").arg(nDecibels) : noSignal();
    if (sLevel == m_sLevel)
        return;
    m_sLevel = sLevel;
    update(levelRect());
}

void CDisplaySection::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::FontChange)
        place();
    QWidget::changeEvent(pEvent);
}

void CDisplaySection::resizeEvent(QResizeEvent*)
{
    place();
}

void CDisplaySection::place()
{
    m_pSelector->setGeometry(0, 0, width(), fontMetrics().height() + 8);
}

QRect CDisplaySection::well() const
{
    return rect().adjusted(0, m_pSelector->height() + GAP, 0, 0);
}

QRect CDisplaySection::levelRect() const
{
    const int nWidth = fontMetrics().horizontalAdvance(noSignal()) + 8;
    const int nHeight = fontMetrics().height();
    const QRect inside = well().adjusted(GAP, GAP, -GAP, -GAP);
    return {inside.right() - nWidth, inside.bottom() - nHeight, nWidth, nHeight};
}

void CDisplaySection::paintEvent(QPaintEvent* pEvent)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.fillRect(pEvent->rect(), colours.m_panel);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(well()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(colours.m_line, 1.0));
    painter.setBrush(colours.m_display);
    painter.drawRoundedRect(frame, CTheme::RADIUS, CTheme::RADIUS);

    QColor grid = colours.m_displayQuiet;
    grid.setAlphaF(0.18F);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(grid, 0.0));
    const QRect inside = well().adjusted(1, 1, -1, -1);
    for (int i = 1; i < COLUMNS; i++) {
        const int nX = inside.left() + i * inside.width() / COLUMNS;
        painter.drawLine(nX, inside.top(), nX, inside.bottom());
    }
    for (int i = 1; i < ROWS; i++) {
        const int nY = inside.top() + i * inside.height() / ROWS;
        painter.drawLine(inside.left(), nY, inside.right(), nY);
    }

    const QRect text = inside.adjusted(GAP, GAP, -GAP, -GAP);
    const QFontMetrics metrics = fontMetrics();
    painter.setPen(colours.m_displayText);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignTop,
                     metrics.elidedText(m_sProject, Qt::ElideRight, text.width() * 2 / 3));
    painter.setPen(colours.m_displayQuiet);
    painter.drawText(text, Qt::AlignRight | Qt::AlignTop, m_sRate);
    painter.drawText(levelRect(), Qt::AlignRight | Qt::AlignVCenter, m_sLevel);
}

} // namespace velmora
