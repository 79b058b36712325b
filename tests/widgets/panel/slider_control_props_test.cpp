#include "project/menu_groups.h"
#include "widgets/common/track_bar.h"
#include "widgets/panel/enumerated_list_editor.h"
#include "widgets/panel/generic_name_change_dialog.h"
#include "widgets/panel/panel_dialogs_fixture.h"
#include "widgets/panel/slider_control_props.h"

#include <QComboBox>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTimer>

namespace velmora {
namespace {

using namespace test;
using testing::ElementsAre;

constexpr const char* CHARACTERS =
    "Variable name can only contain letters, numbers and the underscore symbol, no spaces are allowed.";

class CSliderControlPropsTest : public testing::Test
{
  protected:
    CSliderControlPropsTest()
    {
        m_project.add(3, "Gain", "m_fGain");
        m_project.add(70, "CMBO1", "m_uBand", "LOW,MID,HIGH");
        m_project.connect(m_dialog);
    }

    void open(UINT uId)
    {
        m_dialog.showControl(m_project, uId);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_dialog));
    }

    void setList(const QString& sList) { m_dialog.findChild<QPlainTextEdit*>()->setPlainText(sList); }

    CDialogProject m_project;
    CRecordingDialogs m_dialogs;
    CSliderControlProps m_dialog{m_dialogs};
};

TEST_F(CSliderControlPropsTest, ShowsTheRowsInTheirOrder)
{
    open(7);
    const std::vector<std::string> rows = {"Slider",
                                           "7",
                                           "Control Name",
                                           "Units",
                                           "float",
                                           "m_fMyVariable",
                                           "0.000000",
                                           "100.000000",
                                           "0.000000",
                                           "false",
                                           "1",
                                           "Continous Controller",
                                           "3",
                                           "automatic (recommended)"};
    ASSERT_EQ(m_dialog.grid().rowCount(), static_cast<int>(rows.size()));
    for (std::size_t u = 0; u < rows.size(); ++u)
        EXPECT_EQ(m_dialog.grid().text(static_cast<int>(u) + 1).toStdString(), rows[u]) << u + 1;
    EXPECT_FALSE(withText<QPushButton>(m_dialog, "Remove Ctrl"));
    EXPECT_FALSE(m_dialog.findChild<CMenuGroupBox*>()->isVisible()); // of the alpha wheel's items
    m_dialog.setMIDIControllerNames({"Bank Select", "Wheel", "Wheel"});
    choose(m_dialog, 13, "Wheel (2)");
    EXPECT_EQ(m_dialog.edit().m_record.uMIDIControlName, 2U);
    type(m_dialog, 3, "Half"); // and the window goes
}

// Each refusal stands at its row while it is typed, and OK tells it, selects the row and changes nothing.
TEST_F(CSliderControlPropsTest, RefusesInlineAndOnOK)
{
    struct CCase
    {
        int m_nRow;
        const char* m_pText;
        const char* m_pMessage;
    };
    for (const CCase& c : std::initializer_list<CCase>{
             {3, "Gain", "This Control Name already exists. All Control Names must be unique."},
             {6, "m f", CHARACTERS},
             {6, "m_fGain", "Variable name is already in use."},
             {8, "1.5x", "\"1.5x\" is not a number. Please type one, such as 0.5."}}) {
        SCOPED_TRACE(c.m_pText);
        open(7);
        m_dialogs.m_messages.clear();
        type(m_dialog, c.m_nRow, c.m_pText);
        EXPECT_EQ(m_dialog.grid().text(c.m_nRow), c.m_pText);
        EXPECT_EQ(m_dialog.grid().error(c.m_nRow), c.m_pMessage);
        pressOK(m_dialog);
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(c.m_pMessage));
        EXPECT_EQ(m_dialog.grid().selectedRow(), c.m_nRow);
        EXPECT_TRUE(m_dialog.isVisible());
        EXPECT_FALSE(m_project.at(7));
        enter(m_dialog, c.m_nRow, c.m_nRow == 8 ? "2" : "Fresh");
        EXPECT_EQ(m_dialog.grid().error(c.m_nRow), "");
    }
}

TEST_F(CSliderControlPropsTest, StoresANewControlAndAnEditedOne)
{
    open(7);
    enter(m_dialog, 3, "Cutoff");
    enter(m_dialog, 6, "m_fCutoff");
    enter(m_dialog, 8, "20000");
    click(m_dialog, "1 volt/oct Slider");
    EXPECT_EQ(m_dialog.grid().error(7), "Low limit must be greater than zero for a 1volt/octave control!");
    enter(m_dialog, 7, "20");
    EXPECT_EQ(m_dialog.grid().text(7), "20.000000");
    EXPECT_EQ(m_dialog.grid().error(7), "");
    m_project.m_bStores = false;
    pressOK(m_dialog);
    EXPECT_TRUE(m_dialog.isVisible());
    m_project.m_bStores = true;
    pressOK(m_dialog);
    EXPECT_FALSE(m_dialog.isVisible());
    EXPECT_TRUE(m_project.m_bNew);
    ASSERT_TRUE(m_project.at(7));
    EXPECT_TRUE(m_project.at(7)->bExpSlider);
    EXPECT_EQ(m_project.at(7)->fInitUserFloatValue, 20.0F); // limited

    open(7);
    EXPECT_TRUE(withText<QAbstractButton>(m_dialog, "1 volt/oct Slider")->isChecked());
    choose(m_dialog, 5, "integer");
    enter(m_dialog, 9, "30");
    EXPECT_EQ(m_dialog.grid().text(9), "30");
    pressOK(m_dialog);
    EXPECT_FALSE(m_project.m_bNew);
    EXPECT_EQ(m_project.at(7)->fInitUserIntValue, 30.0F);

    open(7);
    click(m_dialog, "Remove Ctrl");
    EXPECT_TRUE(m_dialog.isRemoval());
    EXPECT_FALSE(m_dialog.isVisible());
    EXPECT_FALSE(m_project.at(7));
}

TEST_F(CSliderControlPropsTest, EnumeratedTypeHasAList)
{
    open(7);
    auto* pList = m_dialog.findChild<CEnumeratedListEditor*>();
    EXPECT_FALSE(pList->isVisible());
    choose(m_dialog, 5, "enum");
    EXPECT_TRUE(pList->isVisible());
    EXPECT_FALSE(m_dialog.findChild<CTrackBar*>()->isVisible());
    for (const int nRow : {7, 8, 9})
        EXPECT_FALSE(m_dialog.grid().isRowEnabled(nRow));
    EXPECT_TRUE(withText<QLabel>(m_dialog, "NOTE: maximum is 256 strings."));

    const QString sSeparated = "Enumerated Variables must be separated by commas!";
    const QString sThis =
        "Enumerated Variables can not contain the word 'this' or any other reserved C++ word.";
    for (const auto& [pText, sMessage] : {std::pair{"a", sSeparated}, {"a,thistle", sThis}}) {
        m_dialogs.m_messages.clear();
        setList(pText);
        EXPECT_TRUE(withText<QLabel>(m_dialog, sMessage));
        pressOK(m_dialog);
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(sMessage.toStdString()));
        EXPECT_EQ(m_dialog.findChild<QPlainTextEdit*>()->textCursor().selectedText(), pText);
    }
    setList("A1, B2\nC3,D4,E5,");
    pressOK(m_dialog);
    ASSERT_TRUE(m_project.at(7));
    EXPECT_STREQ(m_project.at(7)->cEnumeratedList, "A1,B2,C3,D4,E5");
    EXPECT_EQ(m_project.at(7)->fUserDisplayDataHiLimit, 4.0F);
}

TEST_F(CSliderControlPropsTest, SharesAndImportsAList)
{
    CEnumeratedListEditor editor(m_dialogs);
    editor.setImportOffered(true);
    editor.setLists({"LOW,MID,HIGH", "ON,OFF"});
    editor.show();
    auto* pEdit = editor.findChild<QPlainTextEdit*>();
    auto* pLists = editor.findChild<QListWidget*>();
    const QPoint second = pLists->visualItemRect(pLists->item(1)).center();
    QTest::mouseClick(pLists->viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(pLists->viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(editor.text(), "ON,OFF");
    EXPECT_TRUE(editor.isSharing() && pEdit->isReadOnly());
    click(editor, "Use Existing String List");
    EXPECT_FALSE(editor.isSharing() || pEdit->isReadOnly());
    EXPECT_EQ(editor.text(), "ON,OFF");

    const CTemporaryFolder folder;
    struct CCase
    {
        const char* m_pBytes;
        const char* m_pList; // null: refused
    };
    for (const CCase& c : std::initializer_list<CCase>{
             {"\xEF\xBB\xBFGrand Piano\r\n\r\n Organ \n", "Grand_Piano,Organ"}, {"\n \n", nullptr}}) {
        m_dialogs.m_openFile = folder / "names.txt";
        m_dialogs.m_messages.clear();
        writeFile(*m_dialogs.m_openFile, c.m_pBytes);
        click(editor, "Import .txt");
        EXPECT_EQ(m_dialogs.m_messages.empty(), c.m_pList != nullptr);
        EXPECT_EQ(editor.text(), "Grand_Piano,Organ");
    }
}

// The thumb's formula leaves out the low limit; so it stays.
TEST_F(CSliderControlPropsTest, PreviewSetsTheInitialValue)
{
    open(7);
    enter(m_dialog, 7, "20");
    enter(m_dialog, 8, "119.5");
    auto* pBar = m_dialog.findChild<CTrackBar*>();
    pBar->setPosition(48);
    QTest::keyClick(pBar, Qt::Key_PageUp);
    ASSERT_EQ(pBar->position(), 64);
    EXPECT_EQ(m_dialog.grid().text(9), "24.88"); // 99.5 / 4
    EXPECT_EQ(m_dialog.edit().m_record.fInitUserFloatValue, 24.88F);
    choose(m_dialog, 5, "integer");
    QTest::keyClick(pBar, Qt::Key_PageUp);
    EXPECT_EQ(m_dialog.grid().text(9), "6"); // 16 of 256, from an integer of 0
}

TEST_F(CSliderControlPropsTest, CopiesAnotherSlider)
{
    CUICtrl& gain = *m_project.at(3);
    gain.bLogSlider = gain.bMIDIControl = gain.bOwnerControl = true;
    gain.uMIDIControlChannel = 4;
    gain.fUserDisplayDataHiLimit = 12.0F;
    gain.fInitUserFloatValue = 6.0F;
    open(7);
    auto* pCopy = m_dialog.findChild<QComboBox*>();
    EXPECT_EQ(pCopy->count(), 2);
    EXPECT_EQ(pCopy->itemText(0), "none");
    QTest::keyClick(pCopy, Qt::Key_Down);
    const CControlEdit& edit = m_dialog.edit();
    EXPECT_EQ(edit.m_record.uControlId, 7U);
    EXPECT_EQ(edit.m_sName + edit.m_sVariableName, "Gainm_fGain");
    EXPECT_EQ(m_dialog.grid().text(8), "12.000000");
    EXPECT_EQ(m_dialog.grid().text(9), "6.000000");
    EXPECT_EQ(m_dialog.grid().text(11), "5");
    EXPECT_EQ(m_dialog.grid().text(14), "owner control (advanced)");
    EXPECT_TRUE(withText<QAbstractButton>(m_dialog, "Log Slider")->isChecked());
    EXPECT_TRUE(withText<QLabel>(m_dialog, "5") && withText<QLabel>(m_dialog, "176"));
    choose(m_dialog, 12, "Pitch Bend");
    EXPECT_TRUE(withText<QLabel>(m_dialog, "224") && withText<QLabel>(m_dialog, "--n/a--"));
    choose(m_dialog, 10, "false");
    EXPECT_FALSE(withText<QLabel>(m_dialog, "224"));
}

TEST_F(CSliderControlPropsTest, KeepsMenuGroups)
{
    const CUICtrl* pItem = m_project.add(100, "Attack", "m_fAttack");
    setMenuGroup(*m_project.at(100), "Envelope");
    ASSERT_TRUE(pItem);
    m_dialog.setMenuGroupChange([this](const std::string& sFrom, const std::string& sTo) {
        return renameMenuGroup(m_project, sFrom, sTo) > 0;
    });
    open(101);
    EXPECT_EQ(m_dialog.edit().m_record.uFluxCapControl[FLUX_SLOT_INDEX], 1U);
    auto* pBox = m_dialog.findChild<CMenuGroupBox*>();
    auto* pNew = pBox->findChild<QLineEdit*>();
    m_dialogs.m_bAnswer = true;
    for (const char* pName : {"", "Envelope", "Filter"}) {
        pNew->setText(pName);
        pNew->setFocus();
        QTest::keyClick(pNew, Qt::Key_Return);
    }
    click(m_dialog, "Delete Menu");
    click(m_dialog, "Edit Menu");
    EXPECT_THAT(m_dialogs.m_messages,
                ElementsAre("Type a Menu Name in the New Menu box, then press <Add Menu>",
                            "Menu Name already exists - can not add a duplicate name.",
                            "Click on a Menu Name first.", "Click on a Menu Name first."));
    EXPECT_THAT(pBox->groups(), ElementsAre("Envelope", "Filter"));

    pBox->findChild<QListWidget*>()->setCurrentRow(1);
    EXPECT_EQ(menuGroupOf(m_dialog.edit().m_record), "Envelope");
    m_dialogs.m_messages.clear();
    QTimer::singleShot(0, &m_dialog, [] {
        auto* pDialog = qobject_cast<CGenericNameChangeDialog*>(QApplication::activeModalWidget());
        auto* pName = pDialog->findChild<QLineEdit*>();
        pName->clear();
        pressOK(*pDialog); // stays open
        QTest::keyClicks(pName, "Shape");
        pressOK(*pDialog);
    });
    click(m_dialog, "Edit Menu");
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Empty String!"));
    EXPECT_EQ(menuGroupOf(m_dialog.edit().m_record), "Shape");
    EXPECT_EQ(menuGroupOf(*m_project.at(100)), "Shape");
    click(m_dialog, "Delete Menu");
    EXPECT_THAT(
        m_dialogs.m_questions,
        ElementsAre("Are you sure you want to edit Envelope? It will change all other controls with this "
                    "Menu Group as well!",
                    "Are you sure you want to remove Shape from the Menu List?"));
    EXPECT_EQ(menuGroupOf(m_dialog.edit().m_record) + menuGroupOf(*m_project.at(100)), "");
    EXPECT_THAT(pBox->groups(), ElementsAre("Filter"));
}

} // namespace
} // namespace velmora
