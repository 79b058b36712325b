#include "widgets/common/property_grid.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using CEdits = std::vector<std::pair<int, QString>>;

class PropertyGrid : public ::testing::Test
{
  protected:
    PropertyGrid() : m_grid(&m_window), m_after(&m_window)
    {
        auto* pLayout = new QVBoxLayout(&m_window);
        pLayout->addWidget(&m_grid);
        pLayout->addWidget(&m_after);
        m_grid.setRows({{"uControlID", "3", EPropertyKind::ReadOnly, {}, false},
                        {"Control Name", "Cutoff", EPropertyKind::Text, {}, false},
                        {"DataType", "float", EPropertyKind::Choice, {"float", "double", "enum"}, true},
                        {"Limit", "1.0", EPropertyKind::Text, {}, false},
                        {"Variable Name", "m_fCutoff", EPropertyKind::Text, {}, false}});
        QObject::connect(&m_grid, &CPropertyGrid::edited,
                         [this](int nRow, const QString& sText) { m_edits.emplace_back(nRow, sText); });
        QObject::connect(&m_grid, &CPropertyGrid::typing,
                         [this](int nRow, const QString& sText) { m_typed.emplace_back(nRow, sText); });
        m_window.resize(420, 360);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_pTable = m_window.findChild<QTableWidget*>();
        m_pTable->setFocus(Qt::TabFocusReason);
    }

    // To whatever has the keyboard.
    static void key(int nKey, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* pPopup = QApplication::activePopupWidget();
        QWidget* pTarget =
            pPopup && pPopup->focusWidget() ? pPopup->focusWidget() : QApplication::focusWidget();
        QTest::keyClick(pTarget, static_cast<Qt::Key>(nKey), modifiers);
        QApplication::processEvents();
    }

    static void type(const char* pText)
    {
        for (; *pText; ++pText)
            QTest::keyClick(QApplication::focusWidget(), *pText);
        QApplication::processEvents();
    }

    QWidget m_window;
    CPropertyGrid m_grid;
    QLineEdit m_after;
    QTableWidget* m_pTable = nullptr;
    CEdits m_edits;
    CEdits m_typed;
};

TEST_F(PropertyGrid, IsCompleteFromTheKeyboard)
{
    EXPECT_EQ(m_grid.selectedRow(), 1);
    type("x"); // read-only
    EXPECT_EQ(m_grid.text(1), "3");

    key(Qt::Key_Down);
    type("Q");
    type("2");
    EXPECT_EQ(m_grid.text(2), "Q2") << "the text that is being typed";
    EXPECT_TRUE(m_edits.empty());
    key(Qt::Key_Return);
    EXPECT_EQ(m_edits, (CEdits{{2, "Q2"}}));
    EXPECT_EQ(m_typed, (CEdits{{2, "Q"}, {2, "Q2"}}));

    key(Qt::Key_F2);
    type("9");
    key(Qt::Key_Escape);
    EXPECT_EQ(m_grid.text(2), "Q2") << "taken back";

    key(Qt::Key_Tab);
    EXPECT_EQ(m_grid.selectedRow(), 3);
    for (const auto& [nKey, modifiers] :
         {std::pair{Qt::Key_Space, Qt::NoModifier}, std::pair{Qt::Key_Down, Qt::AltModifier}}) {
        key(nKey, modifiers);
        ASSERT_TRUE(QApplication::activePopupWidget());
        key(Qt::Key_Down);
        key(Qt::Key_Return);
    }
    EXPECT_EQ(m_edits, (CEdits{{2, "Q2"}, {3, "double"}, {3, "enum"}}));

    m_grid.setEnabled(4, false);
    key(Qt::Key_Down);
    EXPECT_EQ(m_grid.selectedRow(), 5) << "a disabled row is passed over";
    type("m");
    key(Qt::Key_Tab);
    EXPECT_EQ(m_grid.text(5), "m");
    EXPECT_TRUE(m_after.hasFocus()) << "Tab leaves at the last row";
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(m_grid.selectedRow(), 5);
    key(Qt::Key_Home);
    EXPECT_EQ(m_grid.selectedRow(), 1);
}

TEST_F(PropertyGrid, AClickEditsAndAnotherRowTakesTheTextOver)
{
    const auto click = [this](int nRow) {
        QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {},
                          m_pTable->visualRect(m_pTable->model()->index(nRow - 1, 1)).center());
        QApplication::processEvents();
    };
    click(2);
    ASSERT_TRUE(qobject_cast<QLineEdit*>(QApplication::focusWidget()));
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), "Control Name");
    type("A");
    click(4);
    EXPECT_EQ(m_edits, (CEdits{{2, "A"}}));
    type("7");
    m_grid.commit();
    EXPECT_EQ(m_grid.text(4), "7");
    click(3);
    EXPECT_TRUE(QApplication::activePopupWidget());
    key(Qt::Key_Escape);
    EXPECT_EQ(m_grid.text(3), "float");
}

TEST_F(PropertyGrid, ShowsErrorsAndTellsThem)
{
    const int nHeight = m_pTable->rowHeight(4);
    m_grid.setError(5, "Variable name can only contain letters, numbers and the underscore symbol.");
    EXPECT_GT(m_pTable->rowHeight(4), nHeight);
    QAccessibleInterface* pCell =
        QAccessible::queryAccessibleInterface(m_pTable)->tableInterface()->cellAt(4, 1);
    ASSERT_TRUE(pCell);
    EXPECT_EQ(pCell->text(QAccessible::Name), "Variable Name: m_fCutoff");
    EXPECT_EQ(pCell->text(QAccessible::Description), m_grid.error(5));

    m_grid.select(5);
    auto* pLine = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_TRUE(pLine);
    EXPECT_EQ(pLine->selectedText(), "m_fCutoff");
    EXPECT_EQ(pLine->accessibleDescription(), m_grid.error(5));
    EXPECT_LE(pLine->height(), nHeight) << "the message stays to be seen while it is mended";

    m_grid.clearErrors();
    EXPECT_EQ(m_pTable->rowHeight(4), nHeight);
    m_grid.setText(5, "m_fOther");
    EXPECT_EQ(pLine->text(), "m_fOther");
    EXPECT_TRUE(m_edits.empty()) << "what the program sets is no edit";
    EXPECT_EQ(m_grid.text(0) + m_grid.text(6) + m_grid.error(99), QString());
}

} // namespace
} // namespace velmora
