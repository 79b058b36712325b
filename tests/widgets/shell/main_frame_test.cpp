#include "project/dsp_project.h"
#include "support/wave_bytes.h"
#include "widgets/shell/command_actions.h"
#include "widgets/shell/command_table.h"
#include "widgets/shell/main_frame.h"
#include "widgets/shell/shell_fixture.h"

#include <QAction>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>
#include <cstdlib>

namespace velmora {
namespace {

using Strings = std::vector<std::string>;

class MainFrameTest : public test::CShellTest
{
  protected:
    void show()
    {
        m_frame.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_frame));
    }

    QMenu* menu(const char* pText)
    {
        for (QAction* pAction : m_frame.menuBar()->actions())
            if (pAction->text() == pText)
                return pAction->menu();
        ADD_FAILURE() << "no menu " << pText;
        return nullptr;
    }

    Strings textsOf(const char* pMenu)
    {
        Strings texts;
        for (QAction* pAction : menu(pMenu)->actions())
            if (!pAction->isSeparator())
                texts.push_back(utf8(pAction->text()));
        return texts;
    }

    QAction* action(const char* pMenu, const char* pText)
    {
        QAction* pAction = m_frame.actions().find(pMenu, pText);
        EXPECT_NE(pAction, nullptr) << pMenu << pText;
        return pAction;
    }

    // Clicks the tool bar's button of a command.
    void click(const char* pName)
    {
        for (auto* pButton : m_frame.findChild<QToolBar*>()->findChildren<QToolButton*>())
            if (pButton->accessibleName() == pName) {
                EXPECT_TRUE(pButton->isEnabled()) << pName;
                QTest::mouseClick(pButton, Qt::LeftButton);
                return;
            }
        ADD_FAILURE() << "no button " << pName;
    }

    QString status(const char* pField)
    {
        for (const auto* pLabel : m_frame.statusBar()->findChildren<QLabel*>())
            if (pLabel->accessibleName() == pField) {
                EXPECT_EQ(utf8(pLabel->text()), utf8(pLabel->accessibleDescription())) << "cut short";
                return pLabel->accessibleDescription();
            }
        return "no such field";
    }

    void loadPlugIn()
    {
        ASSERT_NE(m_document.plugInLoader().loadPlugin(
                      std::filesystem::path(PLUGIN_TEST_FOLDER) / "changeling.so", false),
                  nullptr);
        m_frame.plugInChanged();
    }

    void drop(const QStringList& files)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& sFile : files)
            urls.append(QUrl::fromLocalFile(sFile));
        data.setUrls(urls);
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&m_frame, &enter);
        if (!enter.isAccepted())
            return;
        QDropEvent event({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_frame, &event);
        EXPECT_TRUE(takeLog().empty()) << "opened while the other program waits";
        QCoreApplication::processEvents();
    }

    CMainFrame m_frame{{m_document, m_commands, m_dialogs, m_profile, m_folder.path()}};
};

TEST(CommandTable, DocumentationIsUpToDate)
{
    if (std::getenv("VELMORA_UPDATE_DOCS"))
        test::writeFile(COMMANDS_PAGE, commandTableAsMarkdown());
    EXPECT_EQ(test::readFile(COMMANDS_PAGE), commandTableAsMarkdown())
        << "Run this test with VELMORA_UPDATE_DOCS=1 to renew the page.";
}

TEST_F(MainFrameTest, MenusHoldTheirEntriesInOrder)
{
    const struct
    {
        const char* m_pMenu;
        Strings m_texts;
    } cases[] = {
        {"&File",
         {"&New Project", "&Open Project", "&Recent Projects", "E&dit Project", "&Save Project As...",
          "&Clear Project", "&Import UI Controls from Project", "O&pen Projects Folder",
          "Open &Current Project Folder", "&Exit Velmora"}},
        {"&Edit", {"&Undo", "&Redo"}},
        {"&User Plug-Ins", {"&Reload", "No plug-ins"}},
        {"&Audio/MIDI",
         {"Load &Audio File", "O&pen Audio File Folder", "Load Sidechain Audio File",
          "Activate Sidechain Input", "&Play", "P&ause", "&Stop", "&Loop", "&Bypass",
          "&Process into WAV file", "&Setup Audio Devices", "&Rescan Audio I/O", "&Sample Sound Card Input",
          "&Wave File Input", "&Oscillators", "&Synth PlugIn", "Save Prese&t", "Delete Pres&et"}},
        {"&PlugIn",
         {"&Load", "&Reset -- call prepareForPlay()", "&Unload", "Save Prese&t", "&Delete Preset",
          "&Open PlugIns Folder", "&Synchronize Code", "Load &Remote DLL", "&Add/Remove User Variable"}},
        {"&View",
         {"&Prototype", "&GUI Designer", "&Oscillator", "&Block Diagram", "&Toolbar", "Sidechain Control",
          "&Status Bar", "&Preferences", "Status &Window"}},
        {"&Utilities", {"Open Impulse &Response Folder"}},
        {"&Help", {"&About Velmora(tm)..."}},
    };
    for (const auto& one : cases)
        EXPECT_EQ(textsOf(one.m_pMenu), one.m_texts) << one.m_pMenu;

    // One key, one command.
    for (const bool bLoaded : {false, true}) {
        if (bLoaded)
            loadPlugIn();
        std::map<QString, QString> owners;
        for (const CCommandActions::CEntry& entry : m_frame.actions().entries())
            for (const QKeySequence& key : entry.m_pAction->shortcuts()) {
                const bool bNew = owners.emplace(key.toString(), entry.m_pAction->text()).second;
                EXPECT_TRUE(bNew) << utf8(key.toString());
            }
        EXPECT_NE(action("&PlugIn", "&Load")->isEnabled(), action("&PlugIn", "&Unload")->isEnabled());
    }
}

TEST_F(MainFrameTest, KeysReachTheCommandsUnlessSomethingElseRuns)
{
    show();
    const struct
    {
        Qt::Key m_eKey;
        Qt::KeyboardModifiers m_modifiers;
        const char* m_pCall;
    } cases[] = {
        {Qt::Key_N, Qt::ControlModifier, "newProject"}, {Qt::Key_O, Qt::ControlModifier, "openProject"},
        {Qt::Key_R, Qt::ControlModifier, "rebuild"},    {Qt::Key_L, Qt::ControlModifier, "loadPlugIn"},
        {Qt::Key_S, Qt::ControlModifier, "savePreset"}, {Qt::Key_Z, Qt::ControlModifier, "undo"},
        {Qt::Key_Y, Qt::ControlModifier, "redo"},       {Qt::Key_E, Qt::ControlModifier, "editProject"},
    };
    m_commands.m_sUndo = "Add Slider 3: Dry & Wet";
    m_commands.m_sRedo = "Remove";
    m_frame.refresh();
    EXPECT_EQ(action("&Edit", "&Undo")->text(), "&Undo Add Slider 3: Dry && Wet");
    for (const auto& one : cases) {
        QTest::keyClick(&m_frame, one.m_eKey, one.m_modifiers);
        EXPECT_EQ(takeLog(), Strings{one.m_pCall});
    }
    m_commands.m_bBusy = true;
    m_frame.busyChanged(true);
    for (const auto& one : cases)
        QTest::keyClick(&m_frame, one.m_eKey, one.m_modifiers);
    EXPECT_EQ(takeLog(), Strings{});
    EXPECT_FALSE(menu("&Modules")->actions().first()->isEnabled());
    EXPECT_TRUE(action("&Audio/MIDI", "&Bypass")->isEnabled());
}

TEST_F(MainFrameTest, ListMenusFollowTheLists)
{
    EXPECT_EQ(textsOf("&Modules").front(), "MultiFilter");
    EXPECT_EQ(textsOf("&Modules").size(), static_cast<std::size_t>(m_document.modules().count()));
    menu("&Modules")->actions().at(1)->trigger();

    std::filesystem::copy_file(std::filesystem::path(PLUGIN_TEST_FOLDER) / "changeling.so",
                               m_document.plugInFolder() / "Echo.so");
    m_document.plugInLoader().scanPlugIns(m_document.plugInFolder());
    m_frame.plugInChanged();
    EXPECT_EQ(textsOf("&User Plug-Ins"), (Strings{"&Reload", "Echo"}));
    // The list may change under the entry that was chosen.
    QAction* pEcho = menu("&User Plug-Ins")->actions().last();
    QObject::connect(pEcho, &QAction::triggered, &m_frame, &CMainFrame::plugInChanged);
    pEcho->trigger();
    EXPECT_EQ(takeLog(), (Strings{"selectModule 1", "selectPlugIn 0"}));

    m_document.plugInLoader().setSelectedPlugIn(0);
    m_document.plugInLoader().selectPlugIn();
    m_frame.refresh();
    EXPECT_TRUE(menu("&User Plug-Ins")->actions().last()->isChecked());
    EXPECT_EQ(status("Plug-in"), "Echo");
}

TEST_F(MainFrameTest, TheDesignersTabNeedsAPlugIn)
{
    show();
    action("&View", "&GUI Designer")->trigger();
    EXPECT_EQ(takeMessages(), Strings{"You must load your plug-in before using the GUI Designer."});
    EXPECT_EQ(m_frame.currentTab(), EMainTab::Prototype);
    EXPECT_TRUE(action("&View", "&Prototype")->isChecked());

    loadPlugIn();
    QTest::keyClick(&m_frame, Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(m_frame.currentTab(), EMainTab::GUIDesigner);
    m_document.plugInLoader().unloadPlugin(true);
    m_frame.plugInChanged();
    EXPECT_EQ(m_frame.currentTab(), EMainTab::Prototype);
    EXPECT_EQ(takeMessages(), Strings{});
}

TEST_F(MainFrameTest, TheTransportIsAtHandAndToldInWords)
{
    show();
    EXPECT_FALSE(action("&Audio/MIDI", "&Play")->isEnabled());
    test::writeFile(m_folder / "drums.wav", test::waveBytes({}, std::vector<double>(20000, 0.25)));
    m_document.transport().setWaveFile(m_folder / "drums.wav");
    m_frame.transportChanged();
    EXPECT_EQ(status("Transport"), "Stopped: drums.wav");

    const struct
    {
        const char* m_pButton;
        ETransportState m_eState;
        const char* m_pText;
    } cases[] = {
        {"Play", TRANSPORT_PLAY, "Playing drums.wav"},
        {"Pause", TRANSPORT_PAUSE, "Paused in drums.wav"},
        {"Play", TRANSPORT_PLAY, "Playing drums.wav"},
        {"Stop", TRANSPORT_STOP, "Stopped: drums.wav"},
        {"Loop", TRANSPORT_PLAY, "Looping drums.wav"},
        {"Sample Sound Card Input", TRANSPORT_SOUND_IN, "Sound card input"},
        {"Oscillators", TRANSPORT_OSC, "Oscillator, silent"},
        {"Sample Sound Card Input", TRANSPORT_SOUND_IN, "Sound card input"},
        {"Stop", TRANSPORT_STOP, "Stopped: drums.wav"},
        {"Oscillators", TRANSPORT_OSC, "Oscillator, silent"},
        {"Wave File Input", TRANSPORT_STOP, "Stopped: drums.wav"},
    };
    for (const auto& one : cases) {
        click(one.m_pButton);
        EXPECT_EQ(m_document.transport().state(), one.m_eState) << one.m_pButton;
        EXPECT_EQ(utf8(status("Transport")), one.m_pText) << one.m_pButton;
        EXPECT_EQ(m_audio.openStreams(), one.m_eState == TRANSPORT_STOP ? 0U : 1U) << one.m_pButton;
    }
    EXPECT_TRUE(m_commands.isToolWindowShown(EToolWindow::Oscillator));
    EXPECT_FALSE(action("&Audio/MIDI", "&Synth PlugIn")->isEnabled());

    click("Bypass");
    EXPECT_TRUE(m_document.audioEngine().m_bBypass);
    click("Play");
    m_audio.m_uStatus = AUDIO_OUTPUT_LOST;
    m_audio.run(2);
    m_frame.refresh();
    EXPECT_EQ(status("Gaps"), "Xruns 1");
    EXPECT_EQ(status("Audio device"), "card");
    EXPECT_EQ(status("Sample rate"), "44.1 kHz");
    EXPECT_TRUE(status("Load").endsWith("%"));
}

TEST_F(MainFrameTest, DroppedFilesAreOpened)
{
    const struct
    {
        QStringList m_files;
        Strings m_log;
    } cases[] = {
        {{"/a/Echo.prj"}, {"openProjectFile Echo.prj"}},
        {{"/a/beat.WAV", "/a/notes.txt"}, {"loadAudioFile beat.WAV"}},
        {{"/a/b.aif", "/a/Echo.PRJ", "/a/Second.prj"}, {"openProjectFile Echo.PRJ", "loadAudioFile b.aif"}},
        {{"/a/notes.txt"}, {}},
    };
    for (const auto& one : cases) {
        drop(one.m_files);
        EXPECT_EQ(takeLog(), one.m_log);
    }
    QDialog box; // which may be at work on the open project
    box.setModal(true);
    box.show();
    drop({"/a/Echo.prj"});
    box.hide();
    EXPECT_EQ(takeLog(), Strings{});
    m_commands.m_bBusy = true;
    drop({"/a/Echo.prj"});
    EXPECT_EQ(takeLog(), Strings{});
    EXPECT_EQ(m_frame.statusBar()->currentMessage(), "Wait until the running command has ended.");
}

TEST_F(MainFrameTest, RecentProjectsAreKept)
{
    for (int nProject = 0; nProject < 10; ++nProject) {
        const std::filesystem::path file = m_folder / ("P" + std::to_string(nProject % 9) + ".prj");
        test::writeFile(file, "");
        auto pProject = std::make_unique<CDSPProject>();
        pProject->m_sProjectFile = file.string();
        m_document.setProject(std::move(pProject));
        m_frame.projectChanged();
    }
    const CRecentProjects recent(m_profile);
    ASSERT_EQ(recent.files().size(), CRecentProjects::MOST);
    EXPECT_TRUE(recent.files().first().endsWith("P0.prj"));
    EXPECT_TRUE(recent.files().at(1).endsWith("P8.prj"));

    QMenu* pRecent = menu("&File")->actions().at(2)->menu();
    pRecent->actions().at(0)->trigger();
    EXPECT_EQ(takeLog(), Strings{"openProjectFile P0.prj"});
    std::filesystem::remove(m_folder / "P8.prj");
    pRecent->actions().at(1)->trigger();
    EXPECT_EQ(takeLog(), Strings{});
    EXPECT_EQ(takeMessages(),
              Strings{"The project " + (m_folder / "P8.prj").string() +
                      " is not there any more. It is taken off the list of recent projects."});
    EXPECT_EQ(CRecentProjects(m_profile).files().size(), CRecentProjects::MOST - 1);
    pRecent->actions().last()->trigger();
    EXPECT_FALSE(pRecent->isEnabled());
}

TEST_F(MainFrameTest, ClosingKeepsWhatStoodOpen)
{
    m_document.transport().startSoundIn();
    action("&View", "&Toolbar")->trigger();
    action("&View", "Status &Window")->trigger();
    m_frame.showAsBefore();
    EXPECT_FALSE(m_frame.isToolBarShown());
    m_frame.setGeometry(40, 50, 700, 500);

    m_commands.m_bMayClose = false;
    EXPECT_FALSE(m_frame.close());
    EXPECT_EQ(m_document.transport().state(), TRANSPORT_SOUND_IN);
    m_commands.m_bMayClose = true;
    EXPECT_TRUE(m_frame.close());
    EXPECT_EQ(takeLog(), (Strings{"prepareToClose", "prepareToClose"}));
    EXPECT_EQ(m_audio.openStreams(), 0U);

    std::string sError;
    ASSERT_TRUE(m_document.settings().load(m_document.settingsFile(), m_document.userFolder(), sError));
    for (const auto& [nLine, bOn] : {std::pair(50, true), {51, false}, {52, true}, {53, false}})
        EXPECT_EQ(m_document.settings().boolValue(nLine), bOn) << nLine;
    m_commands.m_shown.clear();
    CMainFrame again({m_document, m_commands, m_dialogs, m_profile, {}});
    again.showAsBefore();
    EXPECT_EQ(again.geometry(), QRect(40, 50, 700, 500));
    EXPECT_FALSE(again.isToolBarShown());
    EXPECT_TRUE(again.isStatusBarShown());
    EXPECT_EQ(m_commands.m_shown, std::set{EToolWindow::Status});
}

TEST_F(MainFrameTest, FoldersAreShownOrTheReasonIsTold)
{
    std::filesystem::path shown;
    bool bCan = true;
    m_frame.m_openFolder = [&](const std::filesystem::path& folder) {
        shown = folder;
        return bCan;
    };
    const struct
    {
        const char* m_pMenu;
        const char* m_pText;
        const char* m_pFolder;
    } cases[] = {{"&File", "O&pen Projects Folder", "VelmoraProjects"},
                 {"&Audio/MIDI", "O&pen Audio File Folder", "AudioFiles"},
                 {"&PlugIn", "&Open PlugIns Folder", "PlugIns"},
                 {"&Utilities", "Open Impulse &Response Folder", "IR1024"}};
    for (const auto& one : cases) {
        action(one.m_pMenu, one.m_pText)->trigger();
        EXPECT_EQ(shown, m_document.userFolder() / one.m_pFolder);
    }
    EXPECT_EQ(takeMessages(), Strings{});
    bCan = false;
    m_frame.openFolder(m_folder.path());
    m_frame.openFolder(m_folder / "gone");
    EXPECT_EQ(takeMessages(), (Strings{"The desktop has no program that shows folders. The folder is:\n\n" +
                                           m_folder.path().string(),
                                       "There is no folder " + (m_folder / "gone").string() +
                                           ". Make it, or choose another one in View->Preferences."}));
}

TEST_F(MainFrameTest, VSTGUI4IsInstalledWithItsMessages)
{
    std::filesystem::create_directories(m_folder / "vstgui4" / "lib");
    test::writeFile(m_folder / "vstgui4" / "lib" / "view.h", "new");
    CMainFrame frame({m_document, m_commands, m_dialogs, m_profile, m_folder.path()});
    QAction* pInstall = frame.actions().find("&Utilities", "Install VSTGUI4");
    ASSERT_NE(pInstall, nullptr);

    const std::filesystem::path projects = m_document.settings().defaultProjectFolder();
    const std::filesystem::path target = projects / "vstgui4";
    const std::string sQuestion = "This will install the VSTGUI4 folder by copying it into your Velmora "
                                  "Projects folder. You only need this if "
                                  "you are using the advanced GUI features/API. You can always delete or "
                                  "move the VSTGUI4 folder as you wish. "
                                  "OK to install VSTGUI4?";
    const std::string sOverwrite =
        "There is already a VSTGUI4 folder in your projects directory. Do you want overwrite the folder?";
    const std::string sDone = "VSTGUI4 folder successfully installed to:\n\n" + target.string();
    const struct
    {
        std::vector<bool> m_answers;
        Strings m_questions;
        Strings m_messages;
        std::string m_sContent; // of the one file afterwards; ahead of the next round it is changed
    } cases[] = {
        {{false}, {sQuestion}, {}, ""},
        {{true}, {sQuestion}, {sDone}, "new"},
        {{true, false}, {sQuestion, sOverwrite}, {}, "mine"},
        {{true, true}, {sQuestion, sOverwrite}, {sDone}, "new"},
    };
    for (const auto& one : cases) {
        if (std::filesystem::exists(target / "lib"))
            test::writeFile(target / "lib" / "view.h", "mine");
        m_dialogs.m_answers = one.m_answers;
        m_dialogs.m_questions.clear();
        pInstall->trigger();
        EXPECT_EQ(m_dialogs.m_questions, one.m_questions);
        EXPECT_EQ(takeMessages(), one.m_messages);
        EXPECT_EQ(test::readFile(target / "lib" / "view.h"), one.m_sContent);
        if (std::filesystem::exists(target))
            test::writeFile(target / "own.txt", "mine");
    }
    EXPECT_EQ(test::entriesOf(target), (Strings{"lib", "own.txt"}));
    EXPECT_EQ(test::entriesOf(projects), Strings{"vstgui4"});

    // Where the projects folder cannot be: below a file.
    std::string sError;
    ASSERT_TRUE(m_document.settings().set(2, (m_folder / "Velmora.txt" / "Projects").string(), sError));
    test::writeFile(m_folder / "Velmora.txt", "");
    m_dialogs.m_answers = {true};
    m_dialogs.m_questions.clear();
    pInstall->trigger();
    EXPECT_EQ(takeMessages(), Strings{"Failed to copy the folder. Do you have permission to copy files to " +
                                      (m_folder / "Velmora.txt" / "Projects" / "vstgui4").string()});
}

} // namespace
} // namespace velmora
