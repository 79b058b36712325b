#include "widgets/common/panel_button.h"
#include "widgets/panel/assignable_button_dlg.h"
#include "widgets/panel/panel_dialogs_fixture.h"

#include <QCheckBox>

namespace velmora {
namespace {

using namespace test;

TEST(AssignableButtonDlg, ShowsStoresAndStaysOpenWhenRefused)
{
    CAssignableButtons stored{{{"B1", false}, {"Freeze", true}, {"B3", false}}};
    CAssignableButtonDlg dialog(stored);
    bool bAnswer = false;
    dialog.setStore([&](const CAssignableButtons& buttons) {
        stored = buttons;
        return bAnswer;
    });
    dialog.show();
    const auto names = dialog.findChildren<QLineEdit*>();
    const auto latching = dialog.findChildren<QCheckBox*>();
    const auto previews = dialog.findChildren<CPanelButton*>();
    EXPECT_EQ(dialog.buttons(), stored);
    QTest::mouseClick(previews[1], Qt::LeftButton);
    EXPECT_TRUE(previews[1]->isChecked()); // it latches

    names[0]->selectAll();
    QTest::keyClicks(names[0], "&Tap");
    EXPECT_EQ(previews[0]->text(), "&Tap");
    EXPECT_TRUE(previews[0]->shortcut().isEmpty());
    QTest::keyClick(latching[2], Qt::Key_Space);
    EXPECT_EQ(previews[2]->kind(), EButtonKind::Latching);
    EXPECT_TRUE(withText<QLabel>(dialog,
                                 "These three assignable buttons will trigger function calls to your "
                                 "userInterfaceChange() function with their control IDs set. There is no "
                                 "underlying variable to declare or maintiain."));

    const CAssignableButtons expected{{{"&Tap", false}, {"Freeze", true}, {"B3", true}}};
    for (const bool bGood : {false, true}) {
        bAnswer = bGood;
        pressOK(dialog);
        EXPECT_EQ(stored, expected);
        EXPECT_EQ(dialog.isVisible(), !bGood);
    }
}

} // namespace
} // namespace velmora
