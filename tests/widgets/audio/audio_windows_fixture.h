#pragma once

#include "audio/transport_bench.h"

#include <QAbstractButton>
#include <QTest>
#include <gmock/gmock.h>

namespace velmora::test {

// The widget of a window with that accessible name; null if there is none.
template <typename TWidget>
TWidget* named(const QWidget& window, const char* pName)
{
    for (TWidget* pWidget : window.findChildren<TWidget*>())
        if (pWidget->accessibleName() == QLatin1String(pName))
            return pWidget;
    return nullptr;
}

// The button with that text, mnemonics apart; null if none is visible.
inline QAbstractButton* button(const QWidget& window, const char* pText)
{
    for (QAbstractButton* pButton : window.findChildren<QAbstractButton*>())
        if (pButton->text().remove(QLatin1Char('&')) == QLatin1String(pText) && pButton->isVisible())
            return pButton;
    return nullptr;
}

inline void click(const QWidget& window, const char* pText)
{
    QAbstractButton* pButton = button(window, pText);
    ASSERT_TRUE(pButton) << pText;
    QTest::mouseClick(pButton, Qt::LeftButton, {}, QPoint(8, pButton->height() / 2));
}

} // namespace velmora::test
