#include "widgets/panel/panel_label.h"

#include "widgets/common/theme.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>

namespace velmora {

namespace {

constexpr double SMALLER = 0.86;

} // namespace

CPanelLabel::CPanelLabel(QWidget* pParent) : QWidget(pParent)
{
    setFocusPolicy(Qt::NoFocus);
}

void CPanelLabel::setText(const QString& sText)
{
    if (sText == m_sText)
        return;
    m_sText = sText;
    setAccessibleName(sText);
    breakLines();
    updateGeometry();
    update();
}

void CPanelLabel::setLook(ELook eLook)
{
    if (eLook == m_eLook)
        return;
    m_eLook = eLook;
    breakLines();
    update();
}

void CPanelLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

void CPanelLabel::setMaxLines(int nLines)
{
    m_nMaxLines = nLines;
    breakLines();
    update();
}

void CPanelLabel::setVertical(bool bVertical)
{
    m_bVertical = bVertical;
    breakLines();
    update();
}

void CPanelLabel::setFontFactor(double dFactor)
{
    m_dFactor = dFactor;
    breakLines();
    update();
}

QSize CPanelLabel::sizeHint() const
{
    const QFontMetrics metrics(drawnFont());
    return {metrics.horizontalAdvance(m_sText) + 2, metrics.height()};
}

void CPanelLabel::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::FontChange)
        breakLines();
    QWidget::changeEvent(pEvent);
}

// What the text has to itself, as it is read.
QSize CPanelLabel::lineSpace() const
{
    return m_bVertical ? size().transposed() : size();
}

void CPanelLabel::resizeEvent(QResizeEvent*)
{
    breakLines();
}

// A text that does not fit is tried once more in smaller print.
void CPanelLabel::breakLines()
{
    for (const double dShrink : {1.0, SMALLER}) {
        m_dShrink = dShrink;
        breakLinesIn(drawnFont());
        if (!m_bCut)
            break;
    }
    setToolTip(m_bCut ? m_sText : QString());
}

// Whole words go to a line as long as they fit; the last line that there is room for is cut.
void CPanelLabel::breakLinesIn(const QFont& drawn)
{
    const QFontMetrics metrics(drawn);
    const QSize space = lineSpace();
    const int nFitting = std::clamp(space.height() / std::max(1, metrics.height()), 1, m_nMaxLines);
    m_lines.clear();
    m_bCut = false;
    QTextLayout layout(m_sText, drawn);
    layout.beginLayout();
    while (m_lines.size() < nFitting) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(std::max(1, space.width()));
        const bool bLast = m_lines.size() + 1 == nFitting;
        const QString sRest = m_sText.mid(line.textStart());
        const QString sLine = (bLast ? sRest : sRest.left(line.textLength())).trimmed();
        const QString sShown = metrics.elidedText(sLine, Qt::ElideRight, space.width());
        m_bCut = m_bCut || sShown != sLine;
        m_lines << sShown;
    }
    layout.endLayout();
}

QFont CPanelLabel::drawnFont() const
{
    QFont result = font();
    result.setPointSizeF(result.pointSizeF() * m_dFactor * m_dShrink);
    result.setBold(m_eLook == ELook::Strong);
    return result;
}

QColor CPanelLabel::colour() const
{
    const CThemeColours& colours = CTheme::instance().colours();
    switch (m_eLook) {
    case ELook::Quiet:
        return colours.m_quietText;
    case ELook::Display:
        return colours.m_displayText;
    default:
        return colours.m_text;
    }
}

void CPanelLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setFont(drawnFont());
    painter.setPen(colour());
    const QSize space = lineSpace();
    if (m_bVertical) {
        painter.translate(0, height());
        painter.rotate(-90.0);
    }
    const int nLine = painter.fontMetrics().height();
    const int nHeight = nLine * static_cast<int>(m_lines.size());
    int nTop = 0;
    if (m_alignment & Qt::AlignBottom)
        nTop = space.height() - nHeight;
    else if (m_alignment & Qt::AlignVCenter)
        nTop = (space.height() - nHeight) / 2;
    for (const QString& sLine : m_lines) {
        painter.drawText(QRect(0, nTop, space.width(), nLine),
                         static_cast<int>(m_alignment & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter, sLine);
        nTop += nLine;
    }
}

} // namespace velmora
