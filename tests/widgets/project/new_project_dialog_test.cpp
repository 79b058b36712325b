#include "support/test_support.h"
#include "widgets/common/field_note.h"
#include "widgets/common/qt_text.h"
#include "widgets/project/new_project_dialog.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

// Answers the folder chooser, too.
class CChoosingDialogs : public CRecordingDialogs
{
  public:
    std::optional<std::filesystem::path> chooseFolder(std::string_view sTitle,
                                                      const std::filesystem::path&) override
    {
        m_sTitle = sTitle;
        return m_chosenFolder;
    }

    std::string m_sTitle;
    std::filesystem::path m_chosenFolder;
};

class CNewProjectDialogTest : public testing::Test
{
  protected:
    CNewProjectDialogTest()
    {
        m_environment.m_projectsFolder = m_folder / "Projects";
        m_environment.m_baseClassFolder = m_folder / "Base";
        m_environment.m_vstFilesFolder = m_folder / "VSTFiles";
        m_request.m_parentFolder = m_environment.m_projectsFolder;
        for (const char* pName : {"Echo", "Chorus", "Warm"})
            make("Projects/" + std::string(pName) + "/" + pName + ".prj");
        for (const char* pName : {"Delay.h", "Delay.cpp", "CombFilter.h", "CombFilter.cpp", "Alone.h"})
            make("Base/StockObjects/" + std::string(pName));
    }

    void make(const std::string& sFile)
    {
        std::filesystem::create_directories((m_folder / sFile).parent_path());
        writeFile(m_folder / sFile, "x");
    }

    void open(bool bEdit = false)
    {
        m_pDialog = std::make_unique<CNewProjectDialog>(m_request, bEdit, m_environment, m_dialogs);
        m_pDialog->setStore([this](CNewProjectRequest&) { return ++m_nStores > m_nRefusals; });
        m_pDialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_pDialog.get()));
    }

    // The widget of that accessible name, on the page that is then shown.
    template <typename TWidget>
    [[nodiscard]] TWidget& find(const char* pName) const
    {
        const auto all = m_pDialog->findChildren<TWidget*>();
        const auto found = std::ranges::find_if(all, [&](const TWidget* pWidget) {
            return pWidget->accessibleName() == pName || pWidget->property("text") == QVariant(pName);
        });
        EXPECT_NE(found, all.end()) << pName;
        auto* pTabs = m_pDialog->findChild<QTabWidget*>();
        for (int i = 0; i < pTabs->count(); i++)
            if (pTabs->widget(i)->isAncestorOf(*found))
                pTabs->setCurrentIndex(i);
        return **found;
    }

    void type(const char* pField, const QString& sText) const
    {
        auto& field = find<QLineEdit>(pField);
        field.setFocus();
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClicks(&field, sText);
    }

    void click(const char* pButton) const { QTest::mouseClick(&find<QPushButton>(pButton), Qt::LeftButton); }
    void pressEnter() const { QTest::keyClick(m_pDialog.get(), Qt::Key_Return); }

    [[nodiscard]] std::string text(const char* pField) const { return utf8(find<QLineEdit>(pField).text()); }

    [[nodiscard]] std::vector<std::string> notes(bool bErrors) const
    {
        std::vector<std::string> list;
        for (const auto* pNote : m_pDialog->findChildren<CFieldNote*>())
            if (!pNote->isHidden() && pNote->isError() == bErrors)
                list.push_back(utf8(pNote->text()));
        return list;
    }

    [[nodiscard]] std::vector<std::string> items(const char* pList) const
    {
        const auto& list = find<QListWidget>(pList);
        std::vector<std::string> texts;
        for (int i = 0; i < list.count(); i++)
            texts.push_back(utf8(list.item(i)->text()));
        return texts;
    }

    CTemporaryFolder m_folder;
    CProjectEnvironment m_environment;
    CNewProjectRequest m_request;
    CChoosingDialogs m_dialogs;
    std::unique_ptr<CNewProjectDialog> m_pDialog;
    int m_nStores = 0;
    int m_nRefusals = 0; // of the store function, before it agrees
};

TEST_F(CNewProjectDialogTest, TheFileNamesFollowTheName)
{
    m_nRefusals = 1;
    open();
    EXPECT_THAT(notes(true), IsEmpty()); // nothing was typed yet
    EXPECT_EQ(text("Company Name") + text("Latency (samples)"), "Velmora User0");
    EXPECT_TRUE(find<QRadioButton>("Create New Solution").isChecked());
    for (const auto* pBox : m_pDialog->findChildren<QCheckBox*>())
        EXPECT_FALSE(pBox->isChecked()) << utf8(pBox->text());
    type("Project Name", "Tape");
    EXPECT_EQ(text(".h File") + text(".cpp File"), "Tape.hTape.cpp");
    EXPECT_THAT(notes(false), ElementsAre("New folder: " + (m_folder / "Projects/Tape").string()));

    m_dialogs.m_chosenFolder = m_folder.path();
    click("Browse for Project Folder");
    EXPECT_EQ(m_dialogs.m_sTitle, "Browse for the DSP Project Folder");
    type("Latency (samples)", "6x");
    EXPECT_THAT(notes(false), ElementsAre("New folder: " + (m_folder / "Tape").string(),
                                          "Not a number; taken as 6 samples."));
    pressEnter();
    EXPECT_TRUE(m_pDialog->isVisible()); // the store has refused
    pressEnter();
    EXPECT_EQ(m_pDialog->result(), QDialog::Accepted);
    EXPECT_EQ(m_nStores, 2);
    EXPECT_EQ(m_pDialog->request().folder(), m_folder / "Tape");
    EXPECT_EQ(m_pDialog->request().m_sSourceFile, "Tape.cpp");
}

TEST_F(CNewProjectDialogTest, OKRefusesInItsOrderAndLeadsToTheField)
{
    open();
    find<QRadioButton>("Use Existing Solution").click();
    type("Existing Solution", "a.txt");
    type("Company Name", "");
    type("Project Folder", pathText(m_folder / "none"));
    type("Latency (samples)", "-1");
    type("Project Name", "My_Tape 2");
    ASSERT_THAT(notes(true),
                UnorderedElementsAre(StartsWith("Invalid Project Name"), "There is no such folder.",
                                     "Please enter a company name for VST/AU Exports.",
                                     "Latency can not be less than zero.", "Not a .sln file."));
    const struct
    {
        const char* m_pField; // in which the focus then is
        QString m_sMended;
        std::string m_sMessage; // its beginning
    } rows[] = {
        {"Project Name", "Echo",
         "Invalid Project Name - the project name can not contain numbers, spaces, punctuation characters, "
         "or "
         "symbols; suggest using MyTape instead.\n\nThis is because the Project Name is the name of a C++ "
         "class"},
        {"Latency (samples)", "0", "Latency can not be less than zero."},
        {"Company Name", "Me", "Please enter a company name for VST/AU Exports."},
        {"Project Folder", pathText(m_folder / "Projects"), "There is no folder "},
        {"Project Name", "Tape",
         "This project already exists; delete it's folder first, or choose a different Project Name."},
        {"Existing Solution", "a.sln", "Not a .sln file."},
    };
    for (const auto& row : rows) {
        m_dialogs.m_messages.clear();
        pressEnter();
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(StartsWith(row.m_sMessage)));
        EXPECT_TRUE(m_pDialog->isVisible());
        const auto* pFocused = qobject_cast<QLineEdit*>(m_pDialog->focusWidget());
        ASSERT_TRUE(pFocused) << row.m_sMessage;
        EXPECT_EQ(utf8(pFocused->accessibleName()), row.m_pField);
        EXPECT_TRUE(pFocused->isVisible());
        EXPECT_EQ(pFocused->selectedText(), pFocused->text());
        if (row.m_sMended == "Echo") {
            EXPECT_EQ(text("Project Name") + text(".h File") + text(".cpp File"), "MyTapeMyTape.hMyTape.cpp");
        }
        type(row.m_pField, row.m_sMended);
    }
    EXPECT_THAT(notes(true), IsEmpty());
    EXPECT_EQ(m_nStores, 0);
    pressEnter();
    EXPECT_EQ(m_nStores, 1);
}

TEST_F(CNewProjectDialogTest, ABoxWhoseFilesAreMissingIsUntickedAgain)
{
    open();
    const struct
    {
        const char* m_pBox;
        bool CNewProjectRequest::*m_pFlag;
        const char* m_pMessage;
        std::vector<std::string> m_files;
    } rows[] = {
        {"Make VST2 and VST3 Compatible",
         &CNewProjectRequest::m_bVSTCompatible,
         "VST Files Not Found. Velmora is not licensed",
         {"VSTFiles/aeffect.h", "VSTFiles/aeffectx.h", "VSTFiles/audioeffect.h", "VSTFiles/audioeffectx.h",
          "VSTFiles/vstplug.def"}},
        {"Write Audio Units (AU) XCode Wrappers",
         &CNewProjectRequest::m_bWriteAUWrapper,
         "AU Files Not Found.\n\nAre you sure you have the proper version of Velmora? ",
         {"Base/AUFiles/OS10.6/Template/x", "Base/AUFiles/OS10.6/TemplateGUI/x",
          "Base/AUFiles/OS10.6/TemplateBlank/x", "Base/AUFiles/OS10.7/Template/x",
          "Base/AUFiles/OS10.7/TemplateGUI/x", "Base/AUFiles/OS10.7/TemplateBlank/x"}},
    };
    for (const auto& row : rows) {
        auto& box = find<QCheckBox>(row.m_pBox);
        m_dialogs.m_messages.clear();
        box.click();
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(StartsWith(row.m_pMessage)));
        EXPECT_FALSE(box.isChecked() || m_pDialog->request().*row.m_pFlag);
        for (const std::string& sFile : row.m_files)
            make(sFile);
        m_dialogs.m_messages.clear();
        box.click();
        EXPECT_TRUE(box.isChecked() && m_pDialog->request().*row.m_pFlag);
        EXPECT_THAT(m_dialogs.m_messages, IsEmpty());
    }
    EXPECT_TRUE(find<QCheckBox>("Add Cocoa GUI (you will connect it)").isEnabled()); // with the AU
    type("4-Character Company Code", "Acme!");
    type("4-Character PlugIn Code", "Tap");
    EXPECT_EQ(text("AU Validation Code"), "auval -v aufx Tap Acme");
    EXPECT_EQ(text("AU Validation Code SYNTH Plugin"), "auval -v aumu Tap Acme");
}

TEST_F(CNewProjectDialogTest, ListsTakeModulesAndStockObjects)
{
    open();
    EXPECT_THAT(items("Existing Plug-Ins"), ElementsAre("Chorus", "Echo", "Warm"));
    EXPECT_THAT(items("Stock Objects"), ElementsAre("CombFilter", "Delay"));
    EXPECT_FALSE(find<QPushButton>("A&dd Stock Object").isEnabled());
    find<QCheckBox>("Include Velmora Reverb Objects (advanced)").click();
    click("&Add Module");
    click("A&dd Stock Object");
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Pick a module first", "Pick a Stock Object first"));
    find<QListWidget>("Existing Plug-Ins").setCurrentRow(1);
    find<QListWidget>("Stock Objects").setCurrentRow(1);
    for (int i = 0; i < 2; i++) { // the second time changes nothing
        click("&Add Module");
        click("A&dd Stock Object");
    }
    EXPECT_THAT(items("Included"), ElementsAre("Echo", "Delay (Stock Object)"));
    EXPECT_THAT(m_pDialog->request().m_modules, ElementsAre(m_folder / "Projects/Echo/Echo.prj"));
    find<QListWidget>("Included").setCurrentRow(1);
    click("Remo&ve");
    EXPECT_THAT(m_pDialog->request().m_stockObjects, IsEmpty());
    EXPECT_FALSE(find<QPushButton>("Remo&ve").isEnabled());
}

TEST_F(CNewProjectDialogTest, ASolutionThatWasBrowsedForMustBeOne)
{
    open();
    find<QRadioButton>("Use Existing Solution").click();
    for (const char* pFile : {"Studio.sln", "Studio.txt"}) {
        m_dialogs.m_openFile = m_folder / pFile;
        click("Browse for Existing Solution");
        EXPECT_EQ(m_pDialog->request().m_existingSolution, m_folder / "Studio.sln");
        EXPECT_EQ(text("Existing Solution"), (m_folder / "Studio.sln").string());
    }
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Not a .sln file."));
}

TEST_F(CNewProjectDialogTest, AnExistingProjectKeepsItsNameAndWhatItHas)
{
    m_request.setName("Warm");
    m_request.m_bCreateNewSolution = false; // and there is none: that is no fault of an edit
    m_request.m_bIncludeFFT = m_request.m_bIncludeReverbObjects = true;
    m_request.m_modules = {m_folder / "Projects/Echo/Echo.prj"};
    open(true);
    EXPECT_TRUE(find<QLineEdit>("Project Name").isReadOnly());
    for (const char* pField : {"Project Folder", "Existing Solution"})
        EXPECT_FALSE(find<QLineEdit>(pField).isEnabled()) << pField;
    for (const char* pBox : {"Include CFFT Object (advanced)", "Include Velmora Reverb Objects (advanced)",
                             "Make VST2 and VST3 Compatible"})
        EXPECT_FALSE(find<QCheckBox>(pBox).isEnabled()) << pBox;
    EXPECT_THAT(items("Existing Plug-Ins"), ElementsAre("Chorus", "Echo"));
    find<QListWidget>("Included").setCurrentRow(0);
    click("Remo&ve");
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre(StartsWith("This is part of the project already.")));
    EXPECT_THAT(items("Included"), ElementsAre("Echo"));
    type("Company Name", "Warm Ltd");
    pressEnter();
    EXPECT_EQ(m_nStores, 1);
    EXPECT_EQ(m_pDialog->request().m_sCompanyName, "Warm Ltd");
}

} // namespace
} // namespace velmora
