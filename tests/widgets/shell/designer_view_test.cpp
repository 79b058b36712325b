#include "base/text.h"
#include "document/autosave.h"
#include "document/project_commands.h"
#include "document/project_lock.h"
#include "document/tonbox_doc.h"
#include "host/user_dsp_filter.h"
#include "host/view_messages.h"
#include "panel/panel_test_support.h"
#include "project/codegen/control_import.h"
#include "project/codegen/new_project_request.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/dsp_project.h"
#include "support/fake_audio_system.h"
#include "support/test_support.h"
#include "widgets/common/message_dialogs.h"
#include "widgets/common/value_box.h"
#include "widgets/panel/alpha_wheel_setup_dialog.h"
#include "widgets/panel/slider_control_props.h"
#include "widgets/project/recovery_dialog.h"
#include "widgets/shell/designer_view.h"
#include "widgets/shell/preferences_edit.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using ::testing::ElementsAre;
using Strings = std::vector<std::string>;

class CQuietDialogs : public CMessageDialogs
{
  public:
    void showMessage(std::string_view sText) override { m_messages.emplace_back(sText); }
    bool askYesNo(std::string_view sText) override
    {
        m_messages.emplace_back(sText);
        return true;
    }
    bool askOKCancel(std::string_view) override { return false; }
    std::optional<std::filesystem::path> chooseOpenFile(std::string_view sFilter,
                                                        const std::filesystem::path&) override
    {
        m_messages.emplace_back(sFilter);
        return m_file;
    }
    void note(std::string_view) override {}

    Strings m_messages;
    std::optional<std::filesystem::path> m_file;
};

// The hub with its document, as the program puts them together.
class DesignerView : public testing::Test
{
  protected:
    DesignerView()
    {
        CTonboxDoc::CStartUp startUp;
        startUp.m_userFolder = m_folder / "user";
        startUp.m_bScanPlugIns = false;
        startUp.m_bRecordCrashes = false;
        EXPECT_TRUE(m_document.OnNewDocument(startUp));
        m_view.attach(m_document, m_profile, BASE_CLASS_FOLDER);
        m_view.panel()->resize(1280, 680);
        m_view.panel()->show();
        QApplication::setActiveWindow(m_view.panel());
    }
    ~DesignerView() override
    {
        m_view.detach();
        std::filesystem::current_path(m_directory);
    }

    std::filesystem::path newProject(const std::string& sName)
    {
        CNewProjectRequest request;
        request.m_parentFolder = m_folder / "projects";
        request.setName(sName);
        std::filesystem::create_directories(request.m_parentFolder);
        EXPECT_TRUE(m_view.commands().newProject(request));
        return project().m_sProjectFile;
    }

    void addSlider(UINT uId, const std::string& sName)
    {
        CControlEdit edit = newControlEdit(project(), uId);
        edit.m_sName = sName;
        edit.m_sVariableName = "m_f" + sName;
        EXPECT_TRUE(m_view.commands().acceptControl(edit, true));
        m_view.onMessage({MESSAGE_LCD_ORDER, 0, 0}); // shows the project
    }

    CDSPProject& project() { return *m_view.commands().project(); }
    template <class TWidget>
    TWidget* shown()
    {
        for (TWidget* pWidget : m_view.panel()->findChildren<TWidget*>())
            if (pWidget->isVisible())
                return pWidget;
        return nullptr;
    }
    Strings takeMessages() { return std::exchange(m_dialogs.m_messages, {}); }

    const std::filesystem::path m_directory = std::filesystem::current_path();
    test::CTemporaryFolder m_folder;
    CQuietDialogs m_dialogs;
    QSettings m_profile{QString::fromStdString((m_folder / "Velmora.ini").string()), QSettings::IniFormat};
    CDesignerView m_view{m_dialogs};
    test::CFakeAudioSystem m_audio;
    CTonboxDoc m_document{m_dialogs, m_audio, m_view.messages(), &m_view};
};

TEST_F(DesignerView, SaysWhatIsMissingBeforeADialogOpens)
{
    CPrototypePanel& panel = *m_view.panel();
    emit panel.setupRequested(70);
    emit panel.alphaWheelSetupRequested();
    emit panel.assignableSetupRequested();
    EXPECT_EQ(takeMessages(), Strings(3, "Open or Create a new Project first!"));
    EXPECT_EQ(shown<QDialog>(), nullptr);
}

// Slider Properties and Alpha Wheel Setup stand open while something else happens.
TEST_F(DesignerView, ModelessDialogsKeepPaceWithPlugInAndProject)
{
    const std::filesystem::path first = newProject("First");
    const std::filesystem::path second = newProject("Second");
    addSlider(100, "Item");
    m_view.panel()->alphaWheelSetupRequested();
    auto* pWheel = shown<CAlphaWheelSetupDialog>();
    ASSERT_TRUE(pWheel);
    auto* pItems = pWheel->findChild<QListWidget*>();
    ASSERT_EQ(pItems->count(), 1);
    pItems->setFocus();
    QTest::keyClick(pItems, Qt::Key_Return);
    auto* pSlider = shown<CSliderControlProps>();
    ASSERT_TRUE(pSlider);

    test::CPanelPlugIn plugIn({});
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    filter.createControls();
    static_cast<IDocumentView&>(m_view).showFilter(&filter);
    auto* pOK = pSlider->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    QTest::mouseClick(pOK, Qt::LeftButton);
    EXPECT_TRUE(pSlider->isVisible());
    for (auto* pButton : pWheel->findChildren<QPushButton*>())
        if (pButton->text() == "&Remove")
            pButton->click();
    const std::string sRefusal = "Unload the plug-in first. Controls can not be changed while it is loaded.";
    EXPECT_THAT(takeMessages(), ElementsAre(sRefusal, sRefusal));
    EXPECT_TRUE(findControl(project().m_UIControlList, 100));
    static_cast<IDocumentView&>(m_view).showFilter(nullptr);

    QTest::mouseClick(pOK, Qt::LeftButton);
    EXPECT_FALSE(pSlider->isVisible());
    EXPECT_TRUE(QTest::qWaitForWindowActive(pWheel)) << "back where the item was chosen";
    m_view.undo(); // OK changed nothing: this is the item itself
    EXPECT_EQ(pItems->count(), 0);
    m_view.redo();
    EXPECT_EQ(pItems->count(), 1);

    pItems->setCurrentRow(0);
    QTest::keyClick(pItems, Qt::Key_Return);
    EXPECT_FALSE(m_view.openProjectFile(m_folder / "none.prj"));
    EXPECT_TRUE(pSlider->isVisible()) << "nothing was opened";
    ASSERT_TRUE(m_view.openProjectFile(first));
    EXPECT_EQ(shown<QDialog>(), nullptr);
    EXPECT_EQ(m_view.model().project(), &project());
}

TEST_F(DesignerView, MessagesOfValueBoxesKeepToTheirSlots)
{
    newProject("Boxes");
    for (const UINT uId : {3U, 7U})
        addSlider(uId, "Slider" + std::to_string(uId));
    const auto box = [this](UINT uId) {
        const QString sName = QStringLiteral("Slider %1: Slider%1, value").arg(uId);
        for (CValueBox* pBox : m_view.panel()->findChildren<CValueBox*>())
            if (pBox->accessibleName() == sName)
                return pBox;
        return static_cast<CValueBox*>(nullptr);
    };
    box(3)->edit();
    QTest::keyClicks(box(3), "12.5");
    for (const std::ptrdiff_t nNoBox : {-1, 4, 40, 50, 1000}) {
        m_view.onMessage({MESSAGE_COMMIT_EDIT, 0, nNoBox});
        m_view.onMessage({MESSAGE_SELECT_EDIT, 0, nNoBox});
        EXPECT_TRUE(box(3)->hasFocus() && box(3)->isModified()) << nNoBox;
    }
    m_view.onMessage({MESSAGE_COMMIT_EDIT, 0, 3});
    EXPECT_EQ(box(3)->text(), "12.50 Units");
    EXPECT_EQ(box(7)->selectedText(), box(7)->text());
    EXPECT_TRUE(box(7)->hasFocus());
    m_view.onMessage({MESSAGE_SELECT_EDIT, 0, 3});
    EXPECT_TRUE(box(3)->hasFocus()) << "the box that is named, not the next";
}

TEST_F(DesignerView, ImportAsksBeforeTheFileIsChosen)
{
    m_view.importUIControls();
    EXPECT_THAT(takeMessages(), ElementsAre(PROJECT_NEEDED));
    m_dialogs.m_file = m_folder / "notes.txt";
    newProject("Gain");
    m_view.deletePreset();
    EXPECT_THAT(takeMessages(), ElementsAre("Load the project's plug-in first."));
    m_view.importUIControls();
    EXPECT_THAT(takeMessages(),
                ElementsAre(IMPORT_QUESTION, "DSP Project Files (*.prj)|*.prj||", "Not a .PRJ file."));
}

TEST_F(DesignerView, AnAutosaveIsOfferedWhenNobodyIsAtWorkOnTheProject)
{
    const std::filesystem::path file = newProject("First");
    addSlider(3, "Level");
    const std::string sWithSlider = test::readFile(file);
    m_view.undo();
    newProject("Second");
    test::writeFile(autosavePath(file), sWithSlider);
    std::filesystem::last_write_time(autosavePath(file),
                                     std::filesystem::last_write_time(file) + std::chrono::seconds(1));
    int nOffers = 0;
    QTimer later;
    QObject::connect(&later, &QTimer::timeout, &later, [&nOffers] {
        if (auto* pDialog = qobject_cast<CRecoveryDialog*>(QApplication::activeModalWidget())) {
            ++nOffers;
            pDialog->reject();
        }
    });
    later.start(5);
    {
        CProjectLock other;
        ASSERT_TRUE(other.take(file));
        EXPECT_FALSE(m_view.openProjectFile(file));
        EXPECT_THAT(takeMessages(), ElementsAre(other.heldByWindow(file)));
        EXPECT_EQ(nOffers, 0);
    }
    EXPECT_FALSE(m_view.openProjectFile(file)) << "decided later";
    EXPECT_EQ(nOffers, 1);
    EXPECT_EQ(project().m_sProjectName, "Second");

    // The program's own autosave is none that a crash has left.
    addSlider(4, "Own");
    findControl(project().m_UIControlList, 4)->fInitUserFloatValue = 0.25F;
    m_document.autosave().start(m_folder / "user");
    m_document.projectChanged(false);
    for (const int nMinutes : {0, 2})
        ASSERT_TRUE(m_document.autosave().onTimer(CAutosave::CClock::now() + std::chrono::minutes(nMinutes)));
    const std::filesystem::path second = project().m_sProjectFile;
    ASSERT_TRUE(std::filesystem::exists(autosavePath(second)));
    EXPECT_TRUE(m_view.openProjectFile(second));
    EXPECT_EQ(nOffers, 1);
    EXPECT_EQ(findControl(project().m_UIControlList, 4)->fInitUserFloatValue, 0.25F);
}

TEST_F(DesignerView, PreferencesAndTheLastProjectReachTheSettingsFile)
{
    const std::filesystem::path first = newProject("First");
    newProject("Second");
    ASSERT_TRUE(m_view.openProjectFile(first));
    CPreferencesEdit edit = preferencesOf(m_document, m_profile);
    edit.m_nCompilerId = 4011;
    edit.m_lines[6] = "false";
    EXPECT_TRUE(m_view.storePreferences(edit));
    CSettings stored;
    std::string sError;
    ASSERT_TRUE(stored.load(m_document.settingsFile(), m_folder / "user", sError)) << sError;
    EXPECT_EQ(stored.text(63), first.string());
    EXPECT_EQ(stored.compilerId(), 4011U);
    EXPECT_EQ(m_view.commands().toolchain().compilerId(), 4011);
    EXPECT_FALSE(m_view.commands().mayControlCompiler());
}

} // namespace
} // namespace velmora
