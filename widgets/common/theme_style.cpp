#include "widgets/common/theme_style.h"

#include "widgets/common/icons.h"
#include "widgets/common/theme.h"

#include <QGroupBox>
#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

const CThemeColours& colours()
{
    return CTheme::instance().colours();
}

bool has(const QStyleOption& option, QStyle::StateFlag eFlag)
{
    return option.state.testFlag(eFlag);
}

// A surface with an edge of nEdge whole pixels of the device.
void drawSurface(QPainter& painter, const QRectF& place, double dRadius, const QBrush& fill,
                 const QColor& edge, int nEdge = 1)
{
    const double dRatio = painter.device()->devicePixelRatioF();
    const double dPen = nEdge * std::max(1.0, std::floor(dRatio)) / dRatio;
    const QRectF inner = place.adjusted(dPen / 2, dPen / 2, -dPen / 2, -dPen / 2);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(edge, dPen));
    painter.setBrush(fill);
    painter.drawRoundedRect(inner, dRadius, dRadius);
    painter.restore();
}

QColor buttonFill(const QStyleOption& option)
{
    const bool bDark = CTheme::instance().isDark();
    if (!has(option, QStyle::State_Enabled))
        return colours().m_panel;
    if (has(option, QStyle::State_Sunken) || has(option, QStyle::State_On))
        return colours().m_raised.darker(bDark ? 130 : 110);
    if (has(option, QStyle::State_MouseOver))
        return bDark ? colours().m_raised.lighter(115) : colours().m_panel;
    return colours().m_raised;
}

QColor edgeOf(const QStyleOption& option)
{
    if (!has(option, QStyle::State_Enabled))
        return colours().m_emptySlot;
    return has(option, QStyle::State_HasFocus) ? colours().m_accent : colours().m_line;
}

void drawButton(const QStyleOption& option, QPainter& painter)
{
    const auto* pButton = qstyleoption_cast<const QStyleOptionButton*>(&option);
    const bool bDefault = pButton && pButton->features.testFlag(QStyleOptionButton::DefaultButton);
    const bool bFocus = has(option, QStyle::State_HasFocus) && has(option, QStyle::State_Enabled);
    const QColor edge = bDefault && has(option, QStyle::State_Enabled) ? colours().m_accent : edgeOf(option);
    drawSurface(painter, option.rect, CTheme::RADIUS, buttonFill(option), edge, bFocus ? 2 : 1);
}

void drawField(const QStyleOption& option, QPainter& painter, bool bFill)
{
    const QBrush fill = bFill ? QBrush(option.palette.color(QPalette::Base)) : QBrush(Qt::NoBrush);
    drawSurface(painter, option.rect, CTheme::RADIUS, fill, edgeOf(option));
}

// The box of a check box or the circle of a radio button; true if something is to be drawn into it.
bool drawIndicator(const QStyleOption& option, QPainter& painter, double dRadius)
{
    const bool bOn = has(option, QStyle::State_On) || has(option, QStyle::State_NoChange);
    const bool bEnabled = has(option, QStyle::State_Enabled);
    const QColor fill = bOn && bEnabled ? colours().m_accent : option.palette.color(QPalette::Base);
    const bool bStrong = bEnabled && (bOn || has(option, QStyle::State_MouseOver));
    drawSurface(painter, option.rect, dRadius, fill, bStrong ? colours().m_accent : edgeOf(option));
    return bOn;
}

QColor markColour(const QStyleOption& option)
{
    return has(option, QStyle::State_Enabled) ? colours().m_accentText
                                              : option.palette.color(QPalette::Disabled, QPalette::Text);
}

void drawCheckBox(const QStyleOption& option, QPainter& painter)
{
    if (!drawIndicator(option, painter, 2.5))
        return;
    const QRectF box = option.rect;
    const auto at = [&box](double dX, double dY) {
        return QPointF(box.left() + dX * box.width(), box.top() + dY * box.height());
    };
    QPainterPath mark(has(option, QStyle::State_On) ? at(0.24, 0.52) : at(0.25, 0.5));
    if (has(option, QStyle::State_On))
        mark.lineTo(at(0.43, 0.71));
    mark.lineTo(has(option, QStyle::State_On) ? at(0.78, 0.30) : at(0.75, 0.5));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(markColour(option), box.width() / 7.0));
    painter.drawPath(mark);
    painter.restore();
}

void drawRadioButton(const QStyleOption& option, QPainter& painter)
{
    const double dSize = std::min(option.rect.width(), option.rect.height());
    if (!drawIndicator(option, painter, dSize / 2.0))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(markColour(option));
    painter.drawEllipse(QRectF(option.rect).center(), dSize * 0.2, dSize * 0.2);
    painter.restore();
}

// The room above the frame of a group, as Fusion lays groups out.
int titleHeight(const QStyleOption& option, const QWidget* pWidget)
{
    constexpr int GAP = 3;
    const auto* pGroup = qobject_cast<const QGroupBox*>(pWidget);
    if (pGroup && !pGroup->isCheckable() && pGroup->title().isEmpty())
        return GAP;
    return std::max(pWidget ? pWidget->style()->pixelMetric(QStyle::PM_IndicatorHeight) : 0,
                    option.fontMetrics.height()) +
           GAP;
}

void drawHeaderSection(const QStyleOption& option, QPainter& painter)
{
    painter.fillRect(option.rect, colours().m_raised);
    painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                     colours().m_line);
    painter.fillRect(QRect(option.rect.right(), option.rect.top(), 1, option.rect.height()),
                     colours().m_line);
}

void drawComboBox(const QStyleOptionComboBox& option, QPainter& painter, const QRect& arrow)
{
    const QBrush fill = option.editable ? QBrush(option.palette.color(QPalette::Base)) : buttonFill(option);
    drawSurface(painter, option.rect, option.frame ? CTheme::RADIUS : 0.0, fill, edgeOf(option),
                has(option, QStyle::State_HasFocus) && !option.editable ? 2 : 1);
    const QPointF middle = QRectF(arrow).center();
    QPainterPath path(middle + QPointF(-4.0, -2.0));
    path.lineTo(middle + QPointF(0.0, 2.0));
    path.lineTo(middle + QPointF(4.0, -2.0));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(option.palette.color(QPalette::ButtonText), 1.5));
    painter.drawPath(path);
    painter.restore();
}

} // namespace

CThemeStyle::CThemeStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void CThemeStyle::drawPrimitive(PrimitiveElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                                const QWidget* pWidget) const
{
    switch (eElement) {
    case PE_PanelButtonCommand:
        return drawButton(*pOption, *pPainter);
    case PE_FrameLineEdit:
        return drawField(*pOption, *pPainter, false);
    case PE_PanelLineEdit:
        if (const auto* pFrame = qstyleoption_cast<const QStyleOptionFrame*>(pOption);
            pFrame && pFrame->lineWidth > 0)
            return drawField(*pOption, *pPainter, true);
        break;
    case PE_IndicatorCheckBox:
        return drawCheckBox(*pOption, *pPainter);
    case PE_IndicatorRadioButton:
        return drawRadioButton(*pOption, *pPainter);
    case PE_FrameGroupBox:
        return drawSurface(*pPainter, pOption->rect.adjusted(0, titleHeight(*pOption, pWidget), 0, 0),
                           CTheme::RADIUS, colours().m_panel, colours().m_line);
    case PE_Frame:
        return drawSurface(*pPainter, pOption->rect, 0.0, Qt::NoBrush, edgeOf(*pOption));
    default:
        break;
    }
    QProxyStyle::drawPrimitive(eElement, pOption, pPainter, pWidget);
}

void CThemeStyle::drawControl(ControlElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                              const QWidget* pWidget) const
{
    if (eElement == CE_HeaderSection)
        return drawHeaderSection(*pOption, *pPainter);
    if (eElement == CE_HeaderEmptyArea)
        return pPainter->fillRect(pOption->rect, colours().m_raised);
    QProxyStyle::drawControl(eElement, pOption, pPainter, pWidget);
}

void CThemeStyle::drawComplexControl(ComplexControl eControl, const QStyleOptionComplex* pOption,
                                     QPainter* pPainter, const QWidget* pWidget) const
{
    if (const auto* pBox = qstyleoption_cast<const QStyleOptionComboBox*>(pOption);
        eControl == CC_ComboBox && pBox)
        return drawComboBox(*pBox, *pPainter, subControlRect(CC_ComboBox, pBox, SC_ComboBoxArrow, pWidget));
    QProxyStyle::drawComplexControl(eControl, pOption, pPainter, pWidget);
}

int CThemeStyle::styleHint(StyleHint eHint, const QStyleOption* pOption, const QWidget* pWidget,
                           QStyleHintReturn* pReturn) const
{
    if (eHint == SH_Table_GridLineColor)
        return static_cast<int>(colours().m_emptySlot.rgb());
    if (eHint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(eHint, pOption, pWidget, pReturn);
}

QIcon CThemeStyle::standardIcon(StandardPixmap eIcon, const QStyleOption* pOption,
                                const QWidget* pWidget) const
{
    switch (eIcon) {
    case SP_MessageBoxInformation:
        return themeIcon(EIcon::Information);
    case SP_MessageBoxQuestion:
        return themeIcon(EIcon::Question);
    default:
        return QProxyStyle::standardIcon(eIcon, pOption, pWidget);
    }
}

} // namespace velmora
