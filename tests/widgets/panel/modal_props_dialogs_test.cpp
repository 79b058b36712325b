#include "widgets/common/radio_bank.h"
#include "widgets/panel/button_props_dialog.h"
#include "widgets/panel/combo_props_dialog.h"
#include "widgets/panel/enumerated_list_editor.h"
#include "widgets/panel/led_meter_props_dlg.h"
#include "widgets/panel/panel_dialogs_fixture.h"

#include <QPlainTextEdit>

namespace velmora {
namespace {

using namespace test;
using testing::ElementsAre;

constexpr const char* AUTOMATIC = "automatic (recommended)";

// The modal dialogs of banks, switches, combo boxes and meters.
class CModalPropsTest : public testing::Test
{
  protected:
    template <typename TDialog>
    TDialog& open(UINT uId)
    {
        auto pDialog = std::make_unique<TDialog>(m_project, m_dialogs, uId);
        TDialog& dialog = *pDialog;
        m_pDialog = std::move(pDialog);
        m_project.connect(dialog);
        m_pDialog->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_pDialog.get()));
        return dialog;
    }

    [[nodiscard]] std::vector<std::string> texts()
    {
        std::vector<std::string> result;
        for (int nRow = 1; nRow <= m_pDialog->grid().rowCount(); ++nRow)
            result.push_back(m_pDialog->grid().text(nRow).toStdString());
        return result;
    }

    // OK with that list is refused with the message, which also stands below the list.
    void expectListRefused(const QString& sList, const std::string& sMessage)
    {
        SCOPED_TRACE(sList.toStdString());
        auto* pEdit = m_pDialog->findChild<QPlainTextEdit*>();
        pEdit->setPlainText(sList);
        EXPECT_TRUE(withText<QLabel>(*m_pDialog, QString::fromStdString(sMessage)));
        m_dialogs.m_messages.clear();
        pressOK(*m_pDialog);
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(sMessage));
        EXPECT_TRUE(m_pDialog->isVisible());
        EXPECT_TRUE(pEdit->hasFocus());
        EXPECT_EQ(pEdit->textCursor().selectedText(), sList);
    }

    CDialogProject m_project;
    CRecordingDialogs m_dialogs;
    std::unique_ptr<CControlPropsDialog> m_pDialog;
};

TEST_F(CModalPropsTest, BankHasAListOfUpToEightStrings)
{
    m_project.add(3, "Gain", "m_fGain");
    open<CButtonPropsDialog>(42);
    EXPECT_THAT(texts(),
                ElementsAre("Radio Buttons", "42", "Control Name", "enum", "m_uMyButtonSwitch", AUTOMATIC));
    EXPECT_FALSE(withText<QPushButton>(*m_pDialog, "Remove Ctrl"));
    EXPECT_TRUE(withText<QLabel>(*m_pDialog, "NOTE: maximum is 8 strings."));
    expectListRefused("",
                      "Enumerated Variables list is empty! You must first delcare your Radio Button Names.");
    expectListRefused("a", "Enumerated Variables must be separated by commas!");
    expectListRefused("a,,b",
                      "Enumerated Variable list has multiple commas in it (e.g. ,,) please remove repeated "
                      "commas.");
    expectListRefused("a,Thistle",
                      "Enumerated Variables can not contain the word 'this' or any other reserved C++ word.");
    expectListRefused("a,b,c,d,e,f,g,h,i", "The enumerated list has 9 strings; the maximum is 8.");

    m_pDialog->findChild<QPlainTextEdit*>()->setPlainText("LP F,HPF,BPF,");
    auto* pPreview = m_pDialog->findChild<CRadioBank*>();
    EXPECT_EQ(pPreview->count(), 3);
    EXPECT_EQ(pPreview->item(0) + pPreview->item(2), "LPFBPF");
    enter(*m_pDialog, 3, "Gain"); // names of buttons need not be unique
    EXPECT_EQ(pPreview->label(), "Gain");
    enter(*m_pDialog, 5, "m_fGain");
    EXPECT_EQ(m_pDialog->grid().error(5), "Variable name is already in use.");
    enter(*m_pDialog, 5, "m_uType");
    pressOK(*m_pDialog);
    EXPECT_FALSE(m_pDialog->isVisible());
    ASSERT_TRUE(m_project.at(42));
    EXPECT_STREQ(m_project.at(42)->cEnumeratedList, "LPF,HPF,BPF");
    EXPECT_EQ(m_project.at(42)->fUserDisplayDataHiLimit, 2.0F);
}

TEST_F(CModalPropsTest, SwitchHasADefault)
{
    open<CButtonPropsDialog>(45);
    EXPECT_FALSE(m_pDialog->findChild<CEnumeratedListEditor*>());
    EXPECT_TRUE(withText<QAbstractButton>(*m_pDialog, "Default OFF")->isChecked());
    click(*m_pDialog, "Default ON");
    QTest::keyClick(m_pDialog.get(), Qt::Key_Return); // OK is the default button
    ASSERT_TRUE(m_project.at(45));
    EXPECT_STREQ(m_project.at(45)->cEnumeratedList, "SWITCH_OFF,SWITCH_ON");
    EXPECT_EQ(m_project.at(45)->fInitUserUINTValue, 1.0F);
    open<CButtonPropsDialog>(45);
    EXPECT_TRUE(withText<QAbstractButton>(*m_pDialog, "Default ON")->isChecked());
    click(*m_pDialog, "Remove Ctrl");
    EXPECT_TRUE(m_pDialog->isRemoval() && !m_project.at(45));
}

TEST_F(CModalPropsTest, ComboKeepsUnderscoresAndImports)
{
    open<CComboPropsDialog>(61);
    EXPECT_THAT(texts(), ElementsAre("Combo Box", "61", "B", "enum", "m_uMyComboVariable", AUTOMATIC));
    EXPECT_EQ(m_pDialog->grid().selectedRow(), 5); // the slot's caption is the name
    open<CComboPropsDialog>(70);
    EXPECT_EQ(m_pDialog->grid().text(3), "CMBO1");
    EXPECT_EQ(m_pDialog->grid().selectedRow(), 3);
    EXPECT_TRUE(withText<QLabel>(*m_pDialog, "NOTE: maximum is 256 strings."));
    EXPECT_TRUE(withText<QLabel>(*m_pDialog,
                                 "All underscores (_) will become SPACES in the combobox, so Grand_Piano "
                                 "will appear \"Grand Piano\""));
    expectListRefused("", "Enumerated Variables list is empty!");
    expectListRefused("a,,b", "Enumerated Variable list has multiple commas in it (e.g. ,,) please remove "
                              "alrepeated commas.");
    const CTemporaryFolder folder;
    m_dialogs.m_openFile = folder / "sounds.txt";
    writeFile(*m_dialogs.m_openFile, "Grand Piano\nOrgan\n");
    click(*m_pDialog, "Import .txt");
    pressOK(*m_pDialog);
    ASSERT_TRUE(m_project.at(70));
    EXPECT_STREQ(m_project.at(70)->cEnumeratedList, "Grand_Piano,Organ");
}

TEST_F(CModalPropsTest, MeterTakesItsRows)
{
    m_project.add(3, "Gain", "m_fGain");
    open<CLEDMeterPropsDlg>(50);
    EXPECT_THAT(texts(), ElementsAre("LED Meter", "50", "Blurb", "true", "false", "linear", "PEAK",
                                     "VU Meter", "10.000000", "500.000000", "m_fMeterValue", AUTOMATIC));
    struct CCase
    {
        int m_nRow;
        const char* m_pText;
        const char* m_pMessage;
        const char* m_pGood;
    };
    for (const CCase& c : std::initializer_list<CCase>{
             {10, "-1", "Please type 0 or more milliseconds.", "250"},
             {9, "soon", "\"soon\" is not a number. Please type one, such as 0.5.", "0"},
             {11, "m f",
              "Variable name can only contain letters, numbers and the underscore symbol, no spaces are "
              "allowed.",
              "m_f"},
             {11, "m_fGain", "Meter Variable name is already in use.", "m_fLevel"}}) {
        SCOPED_TRACE(c.m_pText);
        enter(*m_pDialog, c.m_nRow, c.m_pText);
        EXPECT_EQ(m_pDialog->grid().error(c.m_nRow), c.m_pMessage);
        m_dialogs.m_messages.clear();
        pressOK(*m_pDialog);
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(c.m_pMessage));
        EXPECT_EQ(m_pDialog->grid().selectedRow(), c.m_nRow);
        enter(*m_pDialog, c.m_nRow, c.m_pGood);
        EXPECT_EQ(m_pDialog->grid().error(c.m_nRow), "");
    }
    choose(*m_pDialog, 4, "false");
    choose(*m_pDialog, 5, "true");
    choose(*m_pDialog, 6, "logarithmic");
    choose(*m_pDialog, 7, "None (advanced)");
    pressOK(*m_pDialog);
    const CUICtrl* pMeter = m_project.at(50);
    ASSERT_TRUE(pMeter);
    EXPECT_TRUE(!pMeter->bUseMeter && pMeter->bUpsideDownMeter && pMeter->bLogMeter);
    EXPECT_EQ(pMeter->uDetectorMode, DETECT_MODE_NONE);
    EXPECT_EQ(pMeter->fMeterAttack_ms, 0.0F);
    EXPECT_EQ(pMeter->fMeterRelease_ms, 250.0F);
    EXPECT_STREQ(pMeter->cMeterVariableName, "m_fLevel");
}

} // namespace
} // namespace velmora
