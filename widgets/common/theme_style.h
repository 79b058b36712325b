#pragma once

#include <QProxyStyle>

namespace velmora {

// Fusion with flat surfaces and edges in the theme's colours, so that fields, boxes and buttons stand out
// from what lies behind them in both schemes. [main]
class CThemeStyle : public QProxyStyle
{
    Q_OBJECT

  public:
    CThemeStyle();

    void drawPrimitive(PrimitiveElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                       const QWidget* pWidget) const override;
    void drawControl(ControlElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                     const QWidget* pWidget) const override;
    void drawComplexControl(ComplexControl eControl, const QStyleOptionComplex* pOption, QPainter* pPainter,
                            const QWidget* pWidget) const override;
    [[nodiscard]] int styleHint(StyleHint eHint, const QStyleOption* pOption, const QWidget* pWidget,
                                QStyleHintReturn* pReturn) const override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap eIcon, const QStyleOption* pOption,
                                     const QWidget* pWidget) const override;
};

} // namespace velmora
