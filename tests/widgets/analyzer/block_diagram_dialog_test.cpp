#include "dsp/modules/module_filter.h"
#include "widgets/analyzer/block_diagram_dialog.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QTableWidget>
#include <QTest>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

// As many coefficients as a test wants.
class CCoefficientFilter : public CModuleFilter
{
  public:
    CCoefficientFilter() : CModuleFilter("Test Filter", 1, {}, {}) {}

    [[nodiscard]] std::vector<CModuleCoefficient> coefficients() const override { return m_list; }

    float m_values[3] = {0.5F, -1.25F, 2.0F};
    std::vector<CModuleCoefficient> m_list = {{"a0", &m_values[0]}, {"b1", &m_values[1]}};
};

std::string textOf(const CBlockDiagramDialog& dialog)
{
    const auto* pTable = dialog.findChild<QTableWidget*>();
    QString sText;
    for (int nRow = 0; nRow < pTable->rowCount(); ++nRow)
        sText += pTable->item(nRow, 0)->text() + '=' + pTable->item(nRow, 1)->text() + ' ';
    return sText.toStdString();
}

} // namespace

TEST(BlockDiagramDialog, followsTheValuesAndKeepsATableOfAnotherSize)
{
    CCoefficientFilter filter;
    CBlockDiagramDialog dialog;
    dialog.show();
    EXPECT_EQ(textOf(dialog), "");
    EXPECT_TRUE(dialog.findChild<QTableWidget*>()->findChild<QLabel*>()->isVisible());
    dialog.setFilter(&filter);
    EXPECT_EQ(textOf(dialog), "a0=0.500000 b1=-1.250000 ");
    filter.m_values[1] = 0.0000015F;
    filter.m_list[0].m_sLabel = "renamed"; // labels stay on a refresh
    dialog.refresh();
    EXPECT_EQ(textOf(dialog), "a0=0.500000 b1=0.000002 ");
    filter.m_list.push_back({"d0", &filter.m_values[2]});
    filter.m_values[0] = 7.0F;
    dialog.refresh();
    EXPECT_EQ(textOf(dialog), "a0=0.500000 b1=0.000002 ");
    dialog.hide();
    dialog.show();
    EXPECT_EQ(textOf(dialog), "renamed=7.000000 b1=0.000002 d0=2.000000 ");

    auto* pTable = dialog.findChild<QTableWidget*>();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    pTable->setFocus();
    pTable->selectRow(2);
    QTest::keyClick(pTable, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "d0\t2.000000\n");

    filter.m_list.clear();
    dialog.setFilter(&filter);
    EXPECT_EQ(textOf(dialog), "");
    filter.m_list = {{"n", &filter.m_values[2]}};
    dialog.refresh(); // rows are made where there were none
    EXPECT_EQ(textOf(dialog), "n=2.000000 ");
    dialog.setFilter(nullptr);
    EXPECT_EQ(textOf(dialog), "");
}

} // namespace velmora::test
