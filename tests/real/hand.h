#pragma once

#include <QApplication>
#include <QDialog>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QTest>
#include <functional>
#include <memory>
#include <stdexcept>

class QAbstractButton;
class QComboBox;
class QMenuBar;

namespace velmora::test {

class CInputWatch;
class CXTestInput;

// A person at the mouse and the keyboard. On an X server the events come from the server, as for every other
// program; without a display they are made by Qt and go to the window, which finds out for itself what they
// mean.
class CHand
{
  public:
    static constexpr int PATIENCE = 60000; // ms, on a machine under load

    CHand();
    ~CHand();
    CHand(const CHand&) = delete;
    CHand& operator=(const CHand&) = delete;

    // Serves events until it is so; false if it never is.
    template <typename TCondition>
    [[nodiscard]] static bool waitFor(TCondition condition)
    {
        return QTest::qWaitFor(condition, PATIENCE);
    }

    // Waits until the window of the widget is shown and takes keys.
    void face(QWidget& widget);

    // In logical pixels of the widget; without a place, in its middle.
    void click(QWidget& widget, Qt::MouseButton eButton = Qt::LeftButton);
    void clickAt(QWidget& widget, const QPoint& place, Qt::MouseButton eButton = Qt::LeftButton);
    void doubleClick(QWidget& widget, const QPoint& place);
    void press(QWidget& widget, const QPoint& place);
    void moveTo(QWidget& widget, const QPoint& place);
    void release(QWidget& widget, const QPoint& place);
    void turnWheel(QWidget& widget, int nNotches); // away from the hand above 0

    // Keys go to the window that has the focus.
    void key(Qt::Key eKey, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString& sText);

    // Opens a menu and its submenus by their texts, mnemonics left out, and clicks on the entry.
    void choose(QMenuBar& menuBar, const QStringList& texts);

    // Opens the list and goes to the entry by keys.
    void choose(QComboBox& box, const QString& sText);

    // The button of a dialog by its text, mnemonics left out.
    void clickButton(QWidget& dialog, const QString& sText);

    // Does what opens a modal dialog, and meanwhile what is to be done in it. Fails the test if none comes,
    // or if it is still open afterwards.
    void inDialog(const std::function<void()>& open, const std::function<void(QDialog&)>& work);

    // Does what shows a message box, and answers it. The box's text.
    QString answer(const std::function<void()>& ask, const QString& sButton = QStringLiteral("OK"));

  private:
    void perform(int nEventType, const std::function<void()>& input);
    [[nodiscard]] bool isOver(QWidget& widget, const QPoint& place);

    std::unique_ptr<CInputWatch> m_pWatch;
    std::unique_ptr<CXTestInput> m_pX11; // null: by Qt
};

// The visible widget that assistive programs know by that name, or by a name that begins so. Throws
// std::runtime_error if there is none.
template <typename TWidget = QWidget>
TWidget& named(QWidget& root, const QString& sName, bool bBeginning = false)
{
    for (TWidget* pWidget : root.findChildren<TWidget*>()) {
        const QString sFound = pWidget->accessibleName();
        if (pWidget->isVisible() && (sFound == sName || (bBeginning && sFound.startsWith(sName))))
            return *pWidget;
    }
    throw std::runtime_error("no visible widget is named " + sName.toStdString());
}

// The visible top-level window of that class; null if there is none.
template <typename TWidget>
TWidget* findShown()
{
    for (QWidget* pWidget : QApplication::topLevelWidgets())
        if (auto* pWindow = qobject_cast<TWidget*>(pWidget); pWindow && pWindow->isVisible())
            return pWindow;
    return nullptr;
}

// The same, once it is there. Throws std::runtime_error if it never is.
template <typename TWidget>
TWidget& shown()
{
    if (!CHand::waitFor([] { return findShown<TWidget>() != nullptr; }))
        throw std::runtime_error(std::string("no window of the class ") +
                                 TWidget::staticMetaObject.className() + " is shown");
    return *findShown<TWidget>();
}

} // namespace velmora::test
