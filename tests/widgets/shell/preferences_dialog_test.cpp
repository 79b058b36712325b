#include "host/settings_table.h"
#include "widgets/shell/preferences_dialog.h"
#include "widgets/shell/shell_fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

namespace velmora {
namespace {

using Strings = std::vector<std::string>;

class PreferencesDialogTest : public test::CShellTest
{
  protected:
    // The dialog on the document's values. What it stores is kept.
    CPreferencesDialog& open()
    {
        m_pDialog = std::make_unique<CPreferencesDialog>(preferencesOf(m_document, m_profile), m_dialogs);
        m_pDialog->setStore([this](const CPreferencesEdit& edit) {
            m_stored.push_back(edit);
            return m_bAccept;
        });
        m_pDialog->show();
        return *m_pDialog;
    }

    template <typename T>
    T* named(const QString& sName)
    {
        for (T* pWidget : m_pDialog->findChildren<T*>())
            if (pWidget->accessibleName() == sName)
                return pWidget;
        ADD_FAILURE() << "nothing named " << utf8(sName);
        return nullptr;
    }

    template <typename T>
    T* titled(const QString& sText)
    {
        for (T* pButton : m_pDialog->findChildren<T*>())
            if (pButton->text() == sText)
                return pButton;
        ADD_FAILURE() << "nothing titled " << utf8(sText);
        return nullptr;
    }

    void clickBrowse(const QString& sField)
    {
        QTest::mouseClick(named<QLineEdit>(sField)->parentWidget()->findChild<QPushButton*>(),
                          Qt::LeftButton);
    }

    bool m_bAccept = true;
    std::vector<CPreferencesEdit> m_stored;
    std::unique_ptr<CPreferencesDialog> m_pDialog;
};

TEST_F(PreferencesDialogTest, EveryBrowseAsksUnderItsTitle)
{
    open();
    EXPECT_EQ(m_pDialog->windowTitle(), "Setup Velmora Preferences");
    m_dialogs.m_folder = "/chosen";
    named<QRadioButton>("<Make VST> Project Folder Use Custom Folder")->click();
    named<QRadioButton>("<Make AU> Project Folder Use Custom Folder")->click();
    const struct
    {
        const char* m_pField;
        const char* m_pTitle;
        int m_nLine;
    } cases[] = {
        {"Default Project Folder", "Browse for the DSP Project Folder", 2},
        {"Default WAV File Folder", "Browse for the WAVE Folder", 3},
        {"CodeBlocks Executable Folder", "Browse for the CodeBlocks Folder", 4},
        {"AU Templates Folder", "Browse for the AU Templates Folder", 54},
        {"VST2 (Win) Projects Folder", "Browse for the VST2 Templates Folder", 55},
        {"VST2/3 Templates Folder", "Browse for the VST3 Templates Folder", 65},
        {"<Make VST> Project Folder Use Custom Folder", "Browse for the VST3 Ported Projects Folder", 68},
        {"<Make AU> Project Folder Use Custom Folder", "Browse for the AU Ported Projects Folder", 70},
    };
    for (const auto& one : cases) {
        m_dialogs.m_titles.clear();
        clickBrowse(one.m_pField);
        EXPECT_EQ(m_dialogs.m_titles, Strings{one.m_pTitle});
        EXPECT_EQ(m_pDialog->edit().m_lines.at(one.m_nLine), "/chosen") << one.m_pField;
    }
    const std::string sBefore = test::readFile(m_document.settingsFile());
    QTest::keyClick(m_pDialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(m_pDialog->isVisible());
    EXPECT_TRUE(m_stored.empty());
    EXPECT_EQ(test::readFile(m_document.settingsFile()), sBefore);
    EXPECT_NE(m_document.settings().defaultProjectFolder(), "/chosen");
}

TEST_F(PreferencesDialogTest, OnlyAWaveFileIsTaken)
{
    open();
    m_dialogs.m_openFile = m_folder / "beat.wav";
    clickBrowse("Default WAV File");
    m_dialogs.m_openFile = m_folder / "beat.aif";
    clickBrowse("Default WAV File");
    EXPECT_EQ(takeMessages(), Strings{"Not a .WAV file."});
    EXPECT_EQ(m_pDialog->edit().m_lines.at(9), (m_folder / "beat.wav").string());

    auto* pLine = named<QLineEdit>("Default WAV File");
    pLine->selectAll();
    QTest::keyClicks(pLine, "tune.mp3");
    EXPECT_EQ(takeMessages(), Strings{});
    m_pDialog->findChild<QTabWidget*>()->setCurrentIndex(3);
    QTest::mouseClick(titled<QPushButton>("&Save"), Qt::LeftButton);
    EXPECT_EQ(takeMessages(), Strings{"Not a .WAV file."});
    EXPECT_TRUE(m_pDialog->isVisible());
    EXPECT_TRUE(pLine->isVisible());
    EXPECT_TRUE(m_stored.empty());
    pLine->clear();
    QTest::keyClick(pLine, Qt::Key_Return);
    EXPECT_EQ(m_stored.size(), 1U);
}

TEST_F(PreferencesDialogTest, CompilersStandInTheirOrder)
{
    const int ids[] = {4000, 4002, 4005, 4007, 4003, 4004, 4006, 4008, 4009, 4010, 4011};
    open();
    auto* pList = named<QComboBox>("Visual Studio C++ Compiler");
    ASSERT_EQ(pList->count(), static_cast<int>(std::size(ids)));
    for (int i = 0; i < pList->count(); ++i)
        EXPECT_EQ(pList->itemData(i).toInt(), ids[i]);
    EXPECT_EQ(pList->itemText(7), "2013 Professional/Community");

    const std::pair<unsigned, int> cases[] = {{4010, 4010}, {4008, 4008}, {4001, 4001}, {77, 4000}};
    for (const auto& [uStored, nShown] : cases) {
        m_document.settings().setCompilerId(uStored);
        EXPECT_EQ(open().edit().m_nCompilerId, nShown);
    }
    titled<QCheckBox>("CodeBlocks")->click();
    EXPECT_EQ(m_pDialog->edit().m_nCompilerId, 4001);
    EXPECT_FALSE(named<QComboBox>("Visual Studio C++ Compiler")->isEnabled());
}

TEST_F(PreferencesDialogTest, SaveHandsOverEverythingAndARefusalKeepsItOpen)
{
    // A file of an older program, which ends early.
    std::string sOld;
    for (int nLine = 1; nLine <= 40; ++nLine)
        sOld += m_document.settings().text(nLine) + "\n";
    test::writeFile(m_document.settingsFile(), sOld);
    std::string sError;
    ASSERT_TRUE(m_document.settings().load(m_document.settingsFile(), m_document.userFolder(), sError));

    open();
    EXPECT_EQ(named<QLineEdit>("Company Name (Vendor)")->text(), "Velmora User");
    for (QCheckBox* pCheck : m_pDialog->findChildren<QCheckBox*>())
        if (pCheck->text() != "CodeBlocks")
            pCheck->toggle();
    titled<QRadioButton>("Edit-Append")->click();
    named<QRadioButton>("<Make VST> Project Folder Use Custom Folder")->click();
    named<QLineEdit>("Company Name (Vendor)")->setText("Höhner & Co");
    named<QComboBox>("Colour Scheme")->setCurrentIndex(1);

    m_bAccept = false;
    QTest::mouseClick(titled<QPushButton>("&Save"), Qt::LeftButton);
    EXPECT_TRUE(m_pDialog->isVisible());
    m_bAccept = true;
    QTest::mouseClick(titled<QPushButton>("&Save"), Qt::LeftButton);
    EXPECT_FALSE(m_pDialog->isVisible());
    ASSERT_EQ(m_stored.size(), 2U);

    ASSERT_TRUE(writePreferences(m_stored.back(), m_document, m_profile, sError)) << sError;
    CSettings saved;
    ASSERT_TRUE(saved.load(m_document.settingsFile(), m_document.userFolder(), sError));
    const std::pair<int, const char*> lines[] = {
        {6, "false"},  {7, "false"}, {8, "false"}, {48, "true"},  {49, "false"},       {56, "false"},
        {60, "false"}, {64, "true"}, {69, "true"}, {71, "false"}, {66, "Höhner & Co"}, {5, "4010"}};
    for (const auto& [nLine, pText] : lines)
        EXPECT_EQ(saved.text(nLine), pText) << nLine;
    EXPECT_EQ(saved.text(70), m_document.settings().text(70));
    CPreferences preferences;
    ASSERT_TRUE(preferences.load(m_document.preferencesFile(), sError));
    EXPECT_TRUE(preferences.isOn(START_FROM_INITIAL_VALUES));
    EXPECT_FALSE(preferences.isOn(PROTECT_SPEAKERS));
    EXPECT_FALSE(m_document.audioEngine().m_bProtectSpeakers);
    EXPECT_EQ(preferencesOf(m_document, m_profile).m_eScheme, EColourScheme::Dark);

    // What cannot stand in the file changes nothing.
    CPreferencesEdit bad = m_stored.back();
    bad.m_lines[2] = std::string(9000, 'x');
    bad.m_lines[66] = "Other";
    EXPECT_FALSE(writePreferences(bad, m_document, m_profile, sError));
    EXPECT_FALSE(sError.empty());
    EXPECT_EQ(m_document.settings().companyName(), "Höhner & Co");
}

} // namespace
} // namespace velmora
