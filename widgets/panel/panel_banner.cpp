#include "widgets/panel/panel_banner.h"

#include "widgets/common/theme.h"

#include <QPainter>

namespace velmora {

CPanelBanner::CPanelBanner(QWidget* pParent) : QWidget(pParent)
{
    refresh();
}

void CPanelBanner::setProjectName(const QString& sName)
{
    m_sProject = sName;
    refresh();
}

void CPanelBanner::setLoaded(bool bLoaded, const QString& sName)
{
    m_bLoaded = bLoaded;
    m_sPlugIn = sName;
    refresh();
}

QString CPanelBanner::headline() const
{
    if (m_bLoaded && !m_sPlugIn.isEmpty())
        return m_sPlugIn;
    return m_sProject.isEmpty() ? QStringLiteral("No project") : m_sProject;
}

QString CPanelBanner::subline() const
{
    if (!m_bLoaded)
        return m_sProject.isEmpty() ? QString() : QStringLiteral("no plug-in loaded");
    if (m_sProject.isEmpty() || m_sProject == headline())
        return QStringLiteral("plug-in loaded");
    return QStringLiteral("plug-in loaded, project ") + m_sProject;
}

void CPanelBanner::refresh()
{
    setAccessibleName(subline().isEmpty() ? headline() : headline() + QStringLiteral(", ") + subline());
    update();
}

void CPanelBanner::paintEvent(QPaintEvent*)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(m_bLoaded ? QPen(Qt::NoPen) : QPen(colours.m_line, 1.0));
    painter.setBrush(m_bLoaded ? colours.m_live : colours.m_panel);
    painter.drawRoundedRect(frame, CTheme::RADIUS, CTheme::RADIUS);

    QFont large = font();
    large.setBold(true);
    large.setPointSizeF(large.pointSizeF() * 1.4);
    const QRect text = rect().adjusted(CTheme::MARGIN, 2, -CTheme::MARGIN, -2);
    const bool bTwoLines = !subline().isEmpty();
    const int nFirst = QFontMetrics(large).height();
    const int nSecond = fontMetrics().height();
    const int nTop = text.top() + (text.height() - nFirst - (bTwoLines ? nSecond : 0)) / 2;
    const auto draw = [&](const QFont& font, const QColor& colour, const QRect& place, const QString& sText) {
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(place, Qt::AlignCenter,
                         QFontMetrics(font).elidedText(sText, Qt::ElideRight, place.width()));
    };
    const bool bQuiet = !m_bLoaded && m_sProject.isEmpty();
    const QColor strong = m_bLoaded ? colours.m_liveText : bQuiet ? colours.m_quietText : colours.m_text;
    draw(large, strong, {text.left(), nTop, text.width(), nFirst}, headline());
    if (bTwoLines)
        draw(font(), m_bLoaded ? colours.m_liveText : colours.m_quietText,
             {text.left(), nTop + nFirst, text.width(), nSecond}, subline());
}

} // namespace velmora
