#include "real/hand.h"

#include "real/xtest_input.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

constexpr int DIALOG_POLL = 20;       // ms
constexpr int EVENT_PATIENCE = 5000;  // ms that an event may take through the X server
constexpr int ACTIVATION_TIME = 1000; // ms
constexpr int NOTCH = 120;

// Key symbols of keys that stand for no letter; letters and signs have their code of Latin-1.
const QMap<int, unsigned long>& keySymbols()
{
    static const QMap<int, unsigned long> s_symbols = {
        {Qt::Key_Return, 0xFF0D}, {Qt::Key_Escape, 0xFF1B}, {Qt::Key_Tab, 0xFF09},
        {Qt::Key_Delete, 0xFFFF}, {Qt::Key_Home, 0xFF50},   {Qt::Key_End, 0xFF57},
        {Qt::Key_Up, 0xFF52},     {Qt::Key_Down, 0xFF54},   {Qt::Key_Left, 0xFF51},
        {Qt::Key_Right, 0xFF53},  {Qt::Key_PageUp, 0xFF55}, {Qt::Key_PageDown, 0xFF56},
        {Qt::Key_F2, 0xFFBF},     {Qt::Key_F5, 0xFFC2},     {Qt::Key_F10, 0xFFC7},
        {Qt::Key_F12, 0xFFC9},    {Qt::Key_Menu, 0xFF67},
    };
    return s_symbols;
}

constexpr std::pair<Qt::KeyboardModifier, unsigned long> MODIFIER_SYMBOLS[] = {
    {Qt::ControlModifier, 0xFFE3}, {Qt::ShiftModifier, 0xFFE1}, {Qt::AltModifier, 0xFFE9}};

unsigned long keySymbolOf(Qt::Key eKey)
{
    const auto found = keySymbols().constFind(eKey);
    if (found != keySymbols().constEnd())
        return *found;
    const bool bLetter = eKey >= Qt::Key_A && eKey <= Qt::Key_Z;
    return static_cast<unsigned long>(eKey) + (bLetter ? 'a' - 'A' : 0);
}

QWindow& windowOf(const QWidget& widget)
{
    QWindow* pWindow = widget.window()->windowHandle();
    if (!pWindow)
        throw std::runtime_error("a hand can only reach what is shown");
    return *pWindow;
}

QPoint inWindow(const QWidget& widget, const QPoint& place)
{
    return widget.mapTo(widget.window(), place);
}

QString withoutMnemonic(QString sText)
{
    return sText.remove(QLatin1Char('&'));
}

// What a press opens is open when the button is let go.
void clickByQt(QWindow& window, const QPoint& place, Qt::MouseButton eButton)
{
    bool bReleased = false;
    const auto release = [pWindow = QPointer<QWindow>(&window), place, eButton, &bReleased] {
        bReleased = true;
        if (pWindow)
            QTest::mouseRelease(pWindow, eButton, {}, place);
    };
    QMetaObject::invokeMethod(qApp, release, Qt::QueuedConnection);
    QTest::mousePress(&window, eButton, {}, place);
    EXPECT_TRUE(CHand::waitFor([&] { return bReleased; }));
}

unsigned x11Button(Qt::MouseButton eButton)
{
    return eButton == Qt::LeftButton ? 1 : 3;
}

} // namespace

// Counts what the program's windows receive.
class CInputWatch : public QObject
{
  public:
    CInputWatch() { qApp->installEventFilter(this); }

    // A key that is a shortcut is offered, but not delivered.
    [[nodiscard]] int count(int nType) const { return m_counts.value(nType); }

  protected:
    bool eventFilter(QObject* pReceiver, QEvent* pEvent) override
    {
        const int nType = pEvent->type() == QEvent::ShortcutOverride ? QEvent::KeyPress : pEvent->type();
        if (pReceiver->isWindowType() || nType == QEvent::KeyPress)
            ++m_counts[nType];
        return false;
    }

  private:
    QMap<int, int> m_counts;
};

CHand::CHand() : m_pWatch(std::make_unique<CInputWatch>())
{
    if (QApplication::platformName() == QLatin1String("xcb"))
        m_pX11 = std::make_unique<CXTestInput>();
    QApplication::setDoubleClickInterval(1); // two quick clicks are two clicks, but in doubleClick()
}

CHand::~CHand() = default;

// An event of the X server takes its way through the window manager.
void CHand::perform(int nEventType, const std::function<void()>& input)
{
    const int nBefore = m_pWatch->count(nEventType);
    input();
    if (m_pX11 && !QTest::qWaitFor([&] { return m_pWatch->count(nEventType) > nBefore; }, EVENT_PATIENCE))
        ADD_FAILURE() << "no window got the event of type " << nEventType;
    QApplication::processEvents();
}

void CHand::face(QWidget& widget)
{
    QWidget* pWindow = widget.window();
    if (!waitFor([&] { return pWindow->isVisible() && pWindow->windowHandle()->isExposed(); }))
        ADD_FAILURE() << "the window " << pWindow->windowTitle().toStdString() << " does not come up";
    // A window manager gives the keys back by itself when a dialog closes.
    if (!m_pX11 || !QTest::qWaitFor([&] { return pWindow->isActiveWindow(); }, ACTIVATION_TIME))
        pWindow->activateWindow();
    if (!waitFor([&] { return pWindow->isActiveWindow(); }))
        ADD_FAILURE() << "the window " << pWindow->windowTitle().toStdString() << " does not take keys";
}

bool CHand::isOver(QWidget& widget, const QPoint& place)
{
    QWindow& window = windowOf(widget);
    const bool bSettled = waitFor([&] {
        const QSize size = window.size() * window.devicePixelRatio();
        return m_pX11->hasSize(window.winId(), size.width(), size.height());
    });
    if (!bSettled)
        return false;
    const QPointF pixel = QPointF(inWindow(widget, place)) * window.devicePixelRatio();
    return m_pX11->moveTo(window.winId(), static_cast<int>(pixel.x()), static_cast<int>(pixel.y()));
}

void CHand::click(QWidget& widget, Qt::MouseButton eButton)
{
    clickAt(widget, widget.rect().center(), eButton);
}

void CHand::clickAt(QWidget& widget, const QPoint& place, Qt::MouseButton eButton)
{
    if (!m_pX11)
        return clickByQt(windowOf(widget), inWindow(widget, place), eButton);
    perform(QEvent::MouseButtonRelease, [&] {
        if (isOver(widget, place)) {
            m_pX11->button(x11Button(eButton), true);
            m_pX11->button(x11Button(eButton), false);
        }
    });
}

void CHand::doubleClick(QWidget& widget, const QPoint& place)
{
    QApplication::setDoubleClickInterval(EVENT_PATIENCE);
    if (m_pX11) {
        clickAt(widget, place);
        clickAt(widget, place);
    } else {
        QTest::mouseDClick(&windowOf(widget), Qt::LeftButton, {}, inWindow(widget, place));
    }
    QApplication::setDoubleClickInterval(1);
    QApplication::processEvents();
}

void CHand::press(QWidget& widget, const QPoint& place)
{
    perform(QEvent::MouseButtonPress, [&] {
        if (!m_pX11)
            QTest::mousePress(&windowOf(widget), Qt::LeftButton, {}, inWindow(widget, place));
        else if (isOver(widget, place))
            m_pX11->button(1, true);
    });
}

void CHand::moveTo(QWidget& widget, const QPoint& place)
{
    if (m_pX11)
        static_cast<void>(isOver(widget, place));
    else
        QTest::mouseMove(&windowOf(widget), inWindow(widget, place));
    QApplication::processEvents();
}

void CHand::release(QWidget& widget, const QPoint& place)
{
    perform(QEvent::MouseButtonRelease, [&] {
        if (!m_pX11)
            QTest::mouseRelease(&windowOf(widget), Qt::LeftButton, {}, inWindow(widget, place));
        else if (isOver(widget, place))
            m_pX11->button(1, false);
    });
}

void CHand::turnWheel(QWidget& widget, int nNotches)
{
    const QPoint place = widget.rect().center();
    for (int nNotch = 0; nNotch < std::abs(nNotches); ++nNotch) {
        if (m_pX11) {
            const unsigned uButton = nNotches > 0 ? 4 : 5;
            perform(QEvent::Wheel, [&] {
                static_cast<void>(isOver(widget, place));
                m_pX11->button(uButton, true);
                m_pX11->button(uButton, false);
            });
            continue;
        }
        QWindow& window = windowOf(widget);
        const QPoint at = inWindow(widget, place);
        QWheelEvent event(at, window.mapToGlobal(at), {}, {0, nNotches > 0 ? NOTCH : -NOTCH}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&window, &event);
    }
}

void CHand::key(Qt::Key eKey, Qt::KeyboardModifiers modifiers)
{
    perform(QEvent::KeyPress, [&] {
        if (!m_pX11) {
            QTest::keyClick(QApplication::focusWindow(), eKey, modifiers);
            return;
        }
        for (const auto& [eModifier, symbol] : MODIFIER_SYMBOLS)
            if (modifiers.testFlag(eModifier))
                m_pX11->hold(symbol, true);
        if (!m_pX11->key(keySymbolOf(eKey)))
            ADD_FAILURE() << "the keyboard has no key " << eKey;
        for (const auto& [eModifier, symbol] : MODIFIER_SYMBOLS)
            if (modifiers.testFlag(eModifier))
                m_pX11->hold(symbol, false);
    });
}

void CHand::type(const QString& sText)
{
    for (const QChar character : sText) {
        perform(QEvent::KeyPress, [&] {
            if (!m_pX11)
                QTest::keyClick(QApplication::focusWindow(), character.toLatin1());
            else if (!m_pX11->key(character.unicode()))
                ADD_FAILURE() << "the keyboard has no " << character.toLatin1();
        });
    }
}

void CHand::choose(QMenuBar& menuBar, const QStringList& texts)
{
    QWidget* pBar = &menuBar;
    for (const QString& sText : texts) {
        QAction* pFound = nullptr;
        for (QAction* pAction : pBar->actions())
            if (withoutMnemonic(pAction->text()).startsWith(sText))
                pFound = pAction;
        if (!pFound)
            throw std::runtime_error("no menu entry begins with " + sText.toStdString());
        if (!waitFor([&] { return pBar->isVisible() && pBar->window()->windowHandle()->isExposed(); }))
            ADD_FAILURE() << "no menu with " << sText.toStdString();
        auto* pMenu = qobject_cast<QMenu*>(pBar);
        const QRect place = pMenu ? pMenu->actionGeometry(pFound) : menuBar.actionGeometry(pFound);
        QMenu* pNext = pFound->menu();
        clickAt(*pBar, place.center());
        pBar = pNext;
    }
}

void CHand::choose(QComboBox& box, const QString& sText)
{
    // The button that opened the list is let go over it without choosing, if that is quick enough.
    QApplication::setDoubleClickInterval(EVENT_PATIENCE);
    click(box);
    QApplication::setDoubleClickInterval(1);
    if (!waitFor(
            [&] { return box.view()->isVisible() && box.view()->window()->windowHandle()->isExposed(); }))
        ADD_FAILURE() << "the list does not open";
    key(Qt::Key_Home);
    for (int nEntry = 1; nEntry < box.count() && box.view()->currentIndex().data().toString() != sText;
         ++nEntry)
        key(Qt::Key_Down);
    EXPECT_EQ(box.view()->currentIndex().data().toString(), sText);
    key(Qt::Key_Return);
}

void CHand::clickButton(QWidget& dialog, const QString& sText)
{
    for (QAbstractButton* pButton : dialog.findChildren<QAbstractButton*>())
        if (pButton->isVisible() && withoutMnemonic(pButton->text()) == sText)
            return click(*pButton);
    throw std::runtime_error("the dialog has no button " + sText.toStdString());
}

void CHand::inDialog(const std::function<void()>& open, const std::function<void(QDialog&)>& work)
{
    const QPointer<QWidget> pBefore = QApplication::activeModalWidget();
    const QPointer<QWidget> pActive = QApplication::activeWindow();
    bool bDone = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        const QPointer<QDialog> pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!pDialog || pDialog == pBefore)
            return;
        poll.stop();
        face(*pDialog);
        work(*pDialog);
        if (!waitFor([&] { return !pDialog || !pDialog->isVisible(); })) {
            ADD_FAILURE() << "the dialog " << pDialog->windowTitle().toStdString() << " stays open";
            pDialog->reject();
        }
        bDone = true;
    });
    poll.start(DIALOG_POLL);
    open();
    EXPECT_TRUE(waitFor([&] { return bDone; })) << "no dialog came";
    if (pActive && pActive->isVisible())
        face(*pActive);
}

QString CHand::answer(const std::function<void()>& ask, const QString& sButton)
{
    QString sText;
    inDialog(ask, [&](QDialog& dialog) {
        if (const auto* pBox = qobject_cast<QMessageBox*>(&dialog))
            sText = pBox->text();
        clickButton(dialog, sButton);
    });
    return sText;
}

} // namespace velmora::test
