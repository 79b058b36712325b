#include "widgets/common/theme.h"
#include "widgets/shell/status_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

namespace velmora {
namespace {

class StatusWindow : public ::testing::Test
{
  protected:
    StatusWindow()
    {
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_pView = m_window.findChild<QListView*>();
    }

    void add(int nCount, const char* pText)
    {
        for (int n = 0; n < nCount; ++n)
            m_window.addLine(QString(pText).arg(n));
        QApplication::processEvents();
    }

    [[nodiscard]] bool showsText(const QString& sText) const
    {
        const auto labels = m_window.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&](const QLabel* pLabel) {
            return pLabel->isVisible() && pLabel->text() == sText;
        });
    }

    CStatusWindow m_window;
    QListView* m_pView = nullptr;
};

TEST_F(StatusWindow, FollowsTheNewestLineUnlessTheUserHasScrolledUp)
{
    EXPECT_TRUE(showsText("Nothing has been reported yet."));
    add(200, "line %1");
    QScrollBar* pBar = m_pView->verticalScrollBar();
    EXPECT_EQ(pBar->value(), pBar->maximum());
    EXPECT_FALSE(showsText("Nothing has been reported yet."));
    pBar->setValue(0);
    add(10, "later %1");
    EXPECT_EQ(pBar->value(), 0);
    pBar->setValue(pBar->maximum());
    add(10, "last %1");
    EXPECT_EQ(pBar->value(), pBar->maximum());

    add(10000, "many %1\nsecond");
    EXPECT_EQ(m_window.lineCount(), 10000);
    EXPECT_EQ(m_window.line(0), "many 5000");
    EXPECT_EQ(m_window.line(9999), "second");
}

TEST_F(StatusWindow, FindsAndCopiesAndClears)
{
    m_window.addLine("-- Create() Function Found\n    Gain: prepared\nother\nGAIN is loaded");
    QApplication::processEvents();
    const auto foreground = [this](int nRow) {
        return m_pView->model()->index(nRow, 0).data(Qt::ForegroundRole).value<QColor>();
    };
    EXPECT_EQ(foreground(1), CTheme::instance().colours().m_live) << "a line of the plug-in stands out";
    EXPECT_NE(foreground(0), foreground(1));

    QTest::keyClick(&m_window, Qt::Key_F, Qt::ControlModifier);
    auto* pSearch = m_window.findChild<QLineEdit*>();
    ASSERT_TRUE(pSearch->hasFocus());
    QTest::keyClicks(pSearch, "gain");
    EXPECT_TRUE(showsText("2 hits"));
    EXPECT_EQ(m_pView->currentIndex().row(), 3) << "the newest hit first";
    for (const auto& [nKey, modifiers, nRow] :
         {std::tuple{Qt::Key_F3, Qt::NoModifier, 1}, std::tuple{Qt::Key_Return, Qt::NoModifier, 3},
          std::tuple{Qt::Key_F3, Qt::ShiftModifier, 1}}) {
        QTest::keyClick(pSearch, nKey, modifiers);
        EXPECT_EQ(m_pView->currentIndex().row(), nRow);
    }
    QTest::keyClick(pSearch, Qt::Key_Escape);
    EXPECT_TRUE(pSearch->text().isEmpty());

    m_pView->setFocus();
    QTest::keyClick(m_pView, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(m_pView, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "    Gain: prepared\nother");
    m_window.copyAll();
    EXPECT_EQ(QGuiApplication::clipboard()->text().count('\n'), 3);
    m_window.findChild<QCheckBox*>()->click();
    EXPECT_TRUE(m_pView->model()->index(2, 0).data().toString().endsWith("  other"));
    EXPECT_EQ(m_window.line(2), "other");

    m_window.clear();
    EXPECT_EQ(m_window.lineCount(), 0);
    EXPECT_TRUE(showsText("Nothing has been reported yet."));
    for (const QPushButton* pButton : m_window.findChildren<QPushButton*>())
        EXPECT_FALSE(pButton->isEnabled()) << pButton->text().toStdString();
}

} // namespace
} // namespace velmora
