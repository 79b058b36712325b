#include "widgets/shell/splash_screen.h"

#include "widgets/common/theme.h"

#include <QEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QTimer>
#include <cmath>
#include <numbers>

namespace velmora {

namespace {

constexpr int WIDTH = 520;
constexpr int HEIGHT = 290;
constexpr QRect TEXTS(28, 168, WIDTH - 56, HEIGHT - 168 - 20);

// A tone that swells and fades, its halves in two colours.
void drawWave(QPainter& painter, const CThemeColours& colours)
{
    constexpr double MIDDLE = 92.0;
    for (const bool bEcho : {true, false}) {
        QPainterPath path;
        for (int nX = 0; nX <= WIDTH; nX += 2) {
            const double dAt = static_cast<double>(nX) / WIDTH;
            const double dSwell = std::sin(dAt * std::numbers::pi);
            const double dPhase = dAt * 14.0 * std::numbers::pi + (bEcho ? 0.9 : 0.0);
            const QPointF point(nX, MIDDLE - (bEcho ? 34.0 : 52.0) * dSwell * dSwell * std::sin(dPhase));
            nX == 0 ? path.moveTo(point) : path.lineTo(point);
        }
        painter.setPen(QPen(bEcho ? colours.m_line : colours.m_accent, bEcho ? 1.5 : 2.5));
        painter.drawPath(path);
    }
}

} // namespace

CSplashScreen::CSplashScreen(QWidget* pParent)
    : QWidget(pParent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    setWindowTitle(QStringLiteral("Velmora"));
    setAccessibleName(tr("Velmora is starting"));
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(WIDTH, HEIGHT);
}

void CSplashScreen::begin(int nLeastMs)
{
    m_nLeastMs = nLeastMs;
    m_bEnded = false;
    if (const QScreen* pScreen = QGuiApplication::primaryScreen())
        move(pScreen->availableGeometry().center() - rect().center());
    show();
    raise();
    activateWindow();
    m_shown.start();
    drawNow();
}

// Events of the user are left for finish(): the start must not be entered from here.
void CSplashScreen::drawNow()
{
    repaint();
    QGuiApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CSplashScreen::addLine(const QString& sLine)
{
    m_lines << sLine;
    setAccessibleDescription(m_lines.join(QLatin1Char('\n')));
    if (isVisible())
        drawNow();
}

void CSplashScreen::finish()
{
    const qint64 nLeft = m_shown.isValid() ? m_nLeastMs - m_shown.elapsed() : 0;
    if (!m_bEnded && nLeft > 0 && isVisible()) {
        QEventLoop loop;
        connect(this, &CSplashScreen::ended, &loop, &QEventLoop::quit);
        QTimer::singleShot(nLeft, &loop, &QEventLoop::quit);
        loop.exec();
    }
    endNow();
}

void CSplashScreen::endNow()
{
    const bool bFirst = !m_bEnded;
    m_bEnded = true;
    close();
    if (bFirst)
        emit ended();
}

void CSplashScreen::paintEvent(QPaintEvent*)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.fillRect(rect(), colours.m_panel);
    painter.setRenderHint(QPainter::Antialiasing);
    drawWave(painter, colours);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(colours.m_line);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));

    int nTop = TEXTS.top();
    for (int n = 0; n < m_lines.size(); ++n) {
        const QFont font = CTheme::font(n == 0 ? 1.8 : 1.0, n == 0);
        const QFontMetrics metrics(font);
        const QRect room(TEXTS.left(), nTop, TEXTS.width(), metrics.height());
        painter.setFont(font);
        painter.setPen(n == 0 ? colours.m_text : colours.m_quietText);
        painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(m_lines[n], Qt::ElideRight, room.width()));
        nTop += metrics.height() + CTheme::SPACING / 2;
    }
}

// It stands above all windows, but must not hide a box that waits for an answer.
bool CSplashScreen::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::WindowBlocked)
        hide();
    else if (pEvent->type() == QEvent::WindowUnblocked && !m_bEnded)
        show();
    return QWidget::event(pEvent);
}

void CSplashScreen::mousePressEvent(QMouseEvent*)
{
    endNow();
}

void CSplashScreen::keyPressEvent(QKeyEvent*)
{
    endNow();
}

} // namespace velmora
