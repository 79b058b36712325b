#include "project/control_slots.h"
#include "widgets/panel/alpha_wheel_setup_dialog.h"
#include "widgets/panel/panel_dialogs_fixture.h"

#include <QListWidget>

namespace velmora {
namespace {

using namespace test;
using testing::ElementsAre;

class CAlphaWheelSetupDialogTest : public testing::Test
{
  protected:
    void open()
    {
        m_pDialog = std::make_unique<CAlphaWheelSetupDialog>(m_project, m_dialogs);
        m_pDialog->setEditItem([this](UINT uId, UINT uIndex) { m_edited.emplace_back(uId, uIndex); });
        m_pDialog->setRemoveItem([this](UINT uId) { m_project.m_UIControlList.remove(uId); });
        m_pDialog->setClosed([this] { ++m_nClosed; });
        m_pDialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_pDialog.get()));
        m_pList = m_pDialog->findChild<QListWidget*>();
    }

    [[nodiscard]] std::string items() const
    {
        std::string sItems;
        for (int nRow = 0; nRow < m_pList->count(); ++nRow)
            sItems += m_pList->item(nRow)->text().toStdString();
        return sItems;
    }

    CDialogProject m_project;
    CRecordingDialogs m_dialogs;
    std::unique_ptr<CAlphaWheelSetupDialog> m_pDialog;
    QListWidget* m_pList = nullptr;
    std::vector<std::pair<UINT, UINT>> m_edited;
    int m_nClosed = 0;
};

TEST_F(CAlphaWheelSetupDialogTest, ListsMovesEditsAndRemoves)
{
    m_project.add(7, "Slider", "m_fSlider");
    m_project.add(101, "A", "m_fA");
    m_project.add(100, "B", "m_fB");
    m_project.add(103, "C", "m_fC");
    open();
    EXPECT_EQ(items(), "ABC");
    EXPECT_EQ(m_pList->currentRow(), 0);
    QTest::keyClick(m_pList, Qt::Key_Up, Qt::AltModifier); // at the end: nothing
    EXPECT_EQ(items(), "ABC");
    QTest::keyClick(m_pList, Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(m_pList, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(items(), "BCA");
    EXPECT_EQ(m_project.at(101)->uFluxCapControl[FLUX_SLOT_INDEX], 2U);
    m_pDialog->setMoveItem([](UINT, bool) { return false; });
    QTest::keyClick(m_pList, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(items(), "BCA");

    click(*m_pDialog, "Edit");
    click(*m_pDialog, "New");
    EXPECT_THAT(m_edited, ElementsAre(std::pair(101U, 2U), std::pair(102U, 3U)));
    m_pList->setCurrentRow(0);
    m_pList->setFocus();
    QTest::keyClick(m_pList, Qt::Key_Return);
    EXPECT_EQ(m_edited.back(), std::pair(100U, 0U));
    EXPECT_EQ(m_nClosed, 0) << "Enter opens an item and leaves the list open";
    QTest::keyClick(m_pList, Qt::Key_Delete);
    EXPECT_EQ(items(), "CA");
    EXPECT_EQ(m_pList->currentRow(), 0);
    QTest::keyClick(m_pDialog.get(), Qt::Key_Escape);
    EXPECT_EQ(m_nClosed, 1);
}

TEST_F(CAlphaWheelSetupDialogTest, TellsWhenAllItemsAreUsed)
{
    for (UINT uId = 100; uId < 1124; ++uId) {
        CUICtrl item;
        item.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        item.uControlId = uId;
        item.uFluxCapControl[FLUX_SLOT_BOUND] = 1;
        m_project.m_UIControlList.append(item);
    }
    open();
    EXPECT_EQ(m_pList->count(), 1024);
    click(*m_pDialog, "New");
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("All 1024 controls are used."));
    EXPECT_TRUE(m_edited.empty());
}

} // namespace
} // namespace velmora
