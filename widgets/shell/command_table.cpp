#include "widgets/shell/command_table.h"

#include "document/tonbox_doc.h"
#include "project/dsp_project.h"
#include "widgets/common/qt_text.h"
#include "widgets/shell/audio_commands.h"
#include "widgets/shell/main_frame.h"
#include "widgets/shell/vstgui_installer.h"
#include "widgets/shell/workbench_commands.h"

#include <QObject>

namespace velmora {

namespace {

CTonboxDoc& document(const CMainFrame& frame)
{
    return frame.parts().m_document;
}

bool hasState(const CMainFrame& frame, ETransportState eState)
{
    return document(frame).transport().state() == eState;
}

bool isAtRest(const CMainFrame& frame)
{
    return hasState(frame, TRANSPORT_IDLE) || hasState(frame, TRANSPORT_STOP);
}

template <auto OPERATION>
void does(CMainFrame& frame, bool)
{
    (frame.parts().m_commands.*OPERATION)();
}

template <auto OPERATION>
void transports(CMainFrame& frame, bool)
{
    (document(frame).transport().*OPERATION)();
    frame.showNote(qs(document(frame).transport().reason()));
}

void loops(CMainFrame& frame, bool)
{
    const bool bPlays = document(frame).transport().state() == TRANSPORT_PLAY;
    if (isAtRest(frame))
        document(frame).wave().requestLoop();
    transports<&CTransport::onLoop>(frame, true);
    if (bPlays)
        frame.showNote(QObject::tr("The file loops from its next start on."));
}

template <EToolWindow WINDOW>
void showsWindow(CMainFrame& frame, bool bShow)
{
    frame.parts().m_commands.showToolWindow(WINDOW, bShow);
}

template <EToolWindow WINDOW>
bool isWindowShown(const CMainFrame& frame)
{
    return frame.parts().m_commands.isToolWindowShown(WINDOW);
}

template <EMainTab TAB>
void showsTab(CMainFrame& frame, bool)
{
    frame.selectTab(TAB);
}

template <EMainTab TAB>
bool isTabShown(const CMainFrame& frame)
{
    return frame.currentTab() == TAB;
}

template <EAudioSource SOURCE>
void selectsSource(CMainFrame& frame, bool)
{
    selectAudioSource(SOURCE, document(frame), frame.parts().m_commands);
    frame.showNote(qs(document(frame).transport().reason()));
}

template <EAudioSource SOURCE>
bool isSource(const CMainFrame& frame)
{
    return audioSource(document(frame).transport().state()) == SOURCE;
}

bool isFree(const CMainFrame& frame)
{
    return !frame.parts().m_commands.isBusy();
}

bool isPlugInLoaded(const CMainFrame& frame)
{
    return document(frame).plugInLoader().isPlugInLoaded();
}

// The engine tells some failures in the status window alone, so that opens.
void play(CMainFrame& frame, bool)
{
    CTransport& transport = document(frame).transport();
    transport.onPlay();
    frame.showNote(qs(transport.reason()));
    if (!transport.reason().empty())
        frame.parts().m_commands.showToolWindow(EToolWindow::Status, true);
}

bool canPlay(const CMainFrame& frame)
{
    return hasState(frame, TRANSPORT_PAUSE) ||
           (isAtRest(frame) && !document(frame).transport().waveFile().empty());
}

constexpr auto LOAD_AUDIO_FILE =
    static_cast<void (IWorkbenchCommands::*)()>(&IWorkbenchCommands::loadAudioFile);

// clang-format off
const CCommandRow TABLE[] = {
    {.m_pMenu = FILE_MENU, .m_pText = "&New Project", .m_pShortcut = "Ctrl+N",
     .m_pTip = "Makes the folder and the source files of a new plug-in.",
     .m_run = does<&IWorkbenchCommands::newProject>, .m_isEnabled = isFree},
    {.m_pMenu = FILE_MENU, .m_pText = OPEN_PROJECT_TEXT, .m_pShortcut = "Ctrl+O",
     .m_pTip = "Opens the project file (.prj) of a plug-in.",
     .m_run = does<&IWorkbenchCommands::openProject>, .m_isEnabled = isFree},
    {.m_pMenu = FILE_MENU, .m_pText = "E&dit Project", .m_pShortcut = "Ctrl+E",
     .m_pTip = "Changes the properties of the open project.",
     .m_run = does<&IWorkbenchCommands::editProject>, .m_isEnabled = isFree},
    {.m_pMenu = FILE_MENU, .m_pText = "&Save Project As...", .m_pShortcut = "Ctrl+Shift+S",
     .m_pTip = "Copies the open project under another name.",
     .m_run = does<&IWorkbenchCommands::saveProjectAs>, .m_isEnabled = isFree},
    {.m_pMenu = FILE_MENU, .m_pText = "&Clear Project",
     .m_pTip = "Removes every control of the open project.",
     .m_run = does<&IWorkbenchCommands::clearProject>, .m_isEnabled = isFree},
    {.m_pMenu = FILE_MENU, .m_pText = "&Import UI Controls from Project",
     .m_pTip = "Replaces the controls of the open project by those of another one.",
     .m_run = does<&IWorkbenchCommands::importUIControls>, .m_isEnabled = isFree},
    {.m_pMenu = FILE_MENU, .m_pText = "O&pen Projects Folder",
     .m_pTip = "Shows the folder that new projects go to.",
     .m_run = [](CMainFrame& frame, bool) { frame.openFolder(document(frame).settings().defaultProjectFolder()); },
     .m_bBeginsGroup = true},
    {.m_pMenu = FILE_MENU, .m_pText = "Open &Current Project Folder",
     .m_pTip = "Shows the folder of the open project.",
     .m_run = [](CMainFrame& frame, bool) { frame.openFolder(document(frame).project()->folder()); },
     .m_isEnabled = [](const CMainFrame& frame) { return document(frame).project() != nullptr; }},
    {.m_pMenu = FILE_MENU, .m_pText = "&Exit Velmora", .m_pShortcut = "Ctrl+Q",
     .m_pTip = "Closes the program.",
     .m_run = [](CMainFrame& frame, bool) { frame.close(); }, .m_bBeginsGroup = true},

    {.m_pMenu = EDIT_MENU, .m_pText = "&Undo", .m_pShortcut = "Ctrl+Z",
     .m_pTip = "Takes the last change of the panel back.",
     .m_run = does<&IWorkbenchCommands::undo>,
     .m_isEnabled = [](const CMainFrame& frame) { return isFree(frame) && !frame.parts().m_commands.undoText().isEmpty(); },
     .m_addition = [](const CMainFrame& frame) { return frame.parts().m_commands.undoText(); },
     .m_eToolGroup = EToolGroup::History, .m_icon = EIcon::Undo},
    {.m_pMenu = EDIT_MENU, .m_pText = "&Redo", .m_pShortcut = "Ctrl+Y; Ctrl+Shift+Z",
     .m_pTip = "Makes the change that was taken back once more.",
     .m_run = does<&IWorkbenchCommands::redo>,
     .m_isEnabled = [](const CMainFrame& frame) { return isFree(frame) && !frame.parts().m_commands.redoText().isEmpty(); },
     .m_addition = [](const CMainFrame& frame) { return frame.parts().m_commands.redoText(); },
     .m_eToolGroup = EToolGroup::History, .m_icon = EIcon::Redo},

    {.m_pMenu = USER_PLUG_INS_MENU, .m_pText = "&Reload",
     .m_pTip = "Looks for the plug-in libraries of the folder anew.",
     .m_run = does<&IWorkbenchCommands::reloadPlugIns>, .m_isEnabled = isFree},

    {.m_pMenu = AUDIO_MENU, .m_pText = "Load &Audio File", .m_pShortcut = "Ctrl+Shift+O",
     .m_pTip = "Chooses the file that Play plays.",
     .m_run = does<LOAD_AUDIO_FILE>},
    {.m_pMenu = AUDIO_MENU, .m_pText = "O&pen Audio File Folder",
     .m_pTip = "Shows the folder of the audio files.",
     .m_run = [](CMainFrame& frame, bool) { frame.openFolder(document(frame).settings().defaultWAVFolder()); }},
    {.m_pMenu = AUDIO_MENU, .m_pText = "Load Sidechain Audio File",
     .m_pTip = "Chooses the file that feeds the plug-in's sidechain input.",
     .m_run = [](CMainFrame& frame, bool) {
         document(frame).sidechain().chooseFromMenu(document(frame).transportState(), frame.parts().m_dialogs);
     }},
    {.m_pMenu = AUDIO_MENU, .m_pText = "Activate Sidechain Input",
     .m_pTip = "Hands the sidechain file to the plug-in while it plays.",
     .m_run = [](CMainFrame& frame, bool bOn) { document(frame).sidechain().setEnabled(bOn, document(frame).audioEngine()); },
     .m_isChecked = [](const CMainFrame& frame) { return document(frame).sidechain().m_bEnabled.load(); }},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Play", .m_pShortcut = "F5",
     .m_pTip = "Plays the audio file through the filter.",
     .m_run = play, .m_isEnabled = canPlay, .m_bBeginsGroup = true,
     .m_eToolGroup = EToolGroup::Transport, .m_icon = EIcon::Play},
    {.m_pMenu = AUDIO_MENU, .m_pText = "P&ause", .m_pShortcut = "F6",
     .m_pTip = "Holds the audio file where it is.",
     .m_run = transports<&CTransport::onPause>,
     .m_isEnabled = [](const CMainFrame& frame) { return hasState(frame, TRANSPORT_PLAY); },
     .m_eToolGroup = EToolGroup::Transport, .m_icon = EIcon::Pause},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Stop", .m_pShortcut = "Shift+F5",
     .m_pTip = "Stops the file, the sound card or the oscillator, whichever runs.",
     .m_run = [](CMainFrame& frame, bool) { stopAudio(document(frame)); },
     .m_isEnabled = [](const CMainFrame& frame) { return !isAtRest(frame); },
     .m_eToolGroup = EToolGroup::Transport, .m_icon = EIcon::Stop},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Loop", .m_pShortcut = "F7",
     .m_pTip = "Plays the audio file over and over; if it plays already, from its next start on.",
     .m_run = loops,
     .m_isEnabled = [](const CMainFrame& frame) { return canPlay(frame) || hasState(frame, TRANSPORT_PLAY); },
     .m_isChecked = [](const CMainFrame& frame) { return document(frame).wave().isLooping(); },
     .m_eToolGroup = EToolGroup::Transport, .m_icon = EIcon::Loop},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Bypass", .m_pShortcut = "Ctrl+B",
     .m_pTip = "Passes the audio around the filter.",
     .m_run = [](CMainFrame& frame, bool bOn) { document(frame).audioEngine().m_bBypass = bOn; },
     .m_isChecked = [](const CMainFrame& frame) { return document(frame).audioEngine().m_bBypass.load(); },
     .m_eToolGroup = EToolGroup::Transport, .m_icon = EIcon::Bypass},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Process into WAV file", .m_pShortcut = "Ctrl+P",
     .m_pTip = "Sends the audio file through the filter into a new file.",
     .m_run = does<&IWorkbenchCommands::processIntoWaveFile>, .m_isEnabled = isFree, .m_bBeginsGroup = true},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Setup Audio Devices", .m_pShortcut = "Ctrl+D",
     .m_pTip = "Chooses devices, sample rate and latency.",
     .m_run = does<&IWorkbenchCommands::setupAudioDevices>,
     .m_eToolGroup = EToolGroup::Settings, .m_icon = EIcon::Settings},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Rescan Audio I/O",
     .m_pTip = "Lists the audio devices anew, as after one was plugged in.",
     .m_run = [](CMainFrame& frame, bool) { frame.rescanDevices(); }, .m_isEnabled = isAtRest},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Sample Sound Card Input", .m_pShortcut = "Ctrl+F5",
     .m_pTip = "Sends the sound card's input through the filter.",
     .m_run = selectsSource<EAudioSource::SoundCard>, .m_isChecked = isSource<EAudioSource::SoundCard>,
     .m_bBeginsGroup = true, .m_eToolGroup = EToolGroup::Source, .m_icon = EIcon::Microphone,
     .m_pShortText = "Sound Card"},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Wave File Input", .m_pShortcut = "Ctrl+F6",
     .m_pTip = "Makes the audio file the source again.",
     .m_run = selectsSource<EAudioSource::File>, .m_isChecked = isSource<EAudioSource::File>,
     .m_eToolGroup = EToolGroup::Source, .m_icon = EIcon::Wave, .m_pShortText = "File"},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Oscillators", .m_pShortcut = "Ctrl+F7",
     .m_pTip = "Sends the test oscillator through the filter.",
     .m_run = selectsSource<EAudioSource::Oscillator>, .m_isChecked = isSource<EAudioSource::Oscillator>,
     .m_eToolGroup = EToolGroup::Source, .m_icon = EIcon::Oscillator, .m_pShortText = "Oscillator"},
    {.m_pMenu = AUDIO_MENU, .m_pText = "&Synth PlugIn", .m_pShortcut = "Ctrl+F8",
     .m_pTip = "Plays a plug-in that makes its sound without an input.",
     .m_run = selectsSource<EAudioSource::Synth>,
     .m_isEnabled = [](const CMainFrame& frame) { return isSynthLoaded(document(frame)); },
     .m_isChecked = isSource<EAudioSource::Synth>,
     .m_eToolGroup = EToolGroup::Source, .m_icon = EIcon::Synth, .m_pShortText = "Synth"},
    {.m_pMenu = AUDIO_MENU, .m_pText = "Save Prese&t",
     .m_pTip = "Keeps the values of all controls under a name.",
     .m_run = does<&IWorkbenchCommands::savePreset>, .m_isEnabled = isFree, .m_bBeginsGroup = true},
    {.m_pMenu = AUDIO_MENU, .m_pText = "Delete Pres&et",
     .m_pTip = "Deletes the chosen preset.",
     .m_run = does<&IWorkbenchCommands::deletePreset>, .m_isEnabled = isFree},

    {.m_pText = "Start Compiler", .m_pShortcut = "Ctrl+Shift+R",
     .m_pTip = "Opens the project in the compiler.",
     .m_run = does<&IWorkbenchCommands::startCompiler>, .m_isEnabled = isFree},
    {.m_pText = "Rebuild", .m_pShortcut = "Ctrl+R",
     .m_pTip = "Builds the plug-in and loads it; once more ends the build.",
     .m_run = does<&IWorkbenchCommands::rebuild>,
     .m_isEnabled = [](const CMainFrame& frame) { return isFree(frame) || frame.parts().m_commands.isBuilding(); },
     .m_eToolGroup = EToolGroup::Build, .m_icon = EIcon::Rebuild, .m_pShortText = "Rebuild"},
    {.m_pText = "Debug", .m_pShortcut = "Ctrl+Shift+D",
     .m_pTip = "Has the compiler debug the plug-in.",
     .m_run = does<&IWorkbenchCommands::debug>, .m_isEnabled = isFree},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "&Load", .m_pShortcut = "Ctrl+L",
     .m_pTip = "Loads the library of the open project.",
     .m_run = does<&IWorkbenchCommands::loadPlugIn>,
     .m_isEnabled = [](const CMainFrame& frame) { return isFree(frame) && !isPlugInLoaded(frame); },
     .m_eToolGroup = EToolGroup::Build, .m_icon = EIcon::Load, .m_pShortText = "Load"},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "&Reset -- call prepareForPlay()",
     .m_pTip = "Has the filter begin anew, as ahead of a first buffer.",
     .m_run = does<&IWorkbenchCommands::resetPlugIn>,
     .m_isEnabled = [](const CMainFrame& frame) { return document(frame).currentFilter() != nullptr; }},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "&Unload", .m_pShortcut = "Ctrl+Shift+L",
     .m_pTip = "Takes the plug-in or module out, so that controls can be set up.",
     .m_run = does<&IWorkbenchCommands::unloadPlugIn>,
     .m_isEnabled = [](const CMainFrame& frame) { return isFree(frame) && document(frame).currentFilter(); },
     .m_eToolGroup = EToolGroup::Build, .m_icon = EIcon::Unload, .m_pShortText = "Unload"},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "Save Prese&t", .m_pShortcut = "Ctrl+S",
     .m_pTip = "Keeps the values of all controls under a name.",
     .m_run = does<&IWorkbenchCommands::savePreset>, .m_isEnabled = isFree, .m_bBeginsGroup = true},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "&Delete Preset",
     .m_pTip = "Deletes the chosen preset.",
     .m_run = does<&IWorkbenchCommands::deletePreset>, .m_isEnabled = isFree},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "&Open PlugIns Folder",
     .m_pTip = "Shows the folder of the plug-in libraries.",
     .m_run = [](CMainFrame& frame, bool) { frame.openFolder(document(frame).plugInFolder()); },
     .m_bBeginsGroup = true},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "&Synchronize Code",
     .m_pTip = "Brings the project and the files around it up to date with this version.",
     .m_run = does<&IWorkbenchCommands::synchronizeCode>, .m_isEnabled = isFree},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "Load &Remote DLL",
     .m_pTip = "Loads a plug-in library from any folder.",
     .m_run = does<&IWorkbenchCommands::loadRemotePlugIn>, .m_isEnabled = isFree},
    {.m_pMenu = PLUG_IN_MENU, .m_pText = "&Add/Remove User Variable",
     .m_pTip = "Edits the variables that presets keep beside the controls.",
     .m_run = does<&IWorkbenchCommands::userVariables>, .m_isEnabled = isFree},

    {.m_pMenu = VIEW_MENU, .m_pText = "&Prototype", .m_pShortcut = "Ctrl+1",
     .m_pTip = "Shows the prototype panel.",
     .m_run = showsTab<EMainTab::Prototype>, .m_isChecked = isTabShown<EMainTab::Prototype>},
    {.m_pMenu = VIEW_MENU, .m_pText = "&GUI Designer", .m_pShortcut = "Ctrl+2",
     .m_pTip = "Shows the designer of custom GUIs.",
     .m_run = showsTab<EMainTab::GUIDesigner>, .m_isChecked = isTabShown<EMainTab::GUIDesigner>},
    {.m_pMenu = VIEW_MENU, .m_pText = "&Oscillator", .m_pShortcut = "F8",
     .m_pTip = "Shows or hides the window of the test oscillator.",
     .m_run = showsWindow<EToolWindow::Oscillator>, .m_isChecked = isWindowShown<EToolWindow::Oscillator>,
     .m_bBeginsGroup = true},
    {.m_pMenu = VIEW_MENU, .m_pText = "&Block Diagram", .m_pShortcut = "F9",
     .m_pTip = "Shows or hides the coefficients of the current filter.",
     .m_run = showsWindow<EToolWindow::BlockDiagram>, .m_isChecked = isWindowShown<EToolWindow::BlockDiagram>},
    {.m_pMenu = VIEW_MENU, .m_pText = "&Toolbar",
     .m_pTip = "Shows or hides the tool bar.",
     .m_run = [](CMainFrame& frame, bool bShow) { frame.setToolBarShown(bShow); },
     .m_isChecked = [](const CMainFrame& frame) { return frame.isToolBarShown(); }},
    {.m_pMenu = VIEW_MENU, .m_pText = "Sidechain Control", .m_pShortcut = "Shift+F8",
     .m_pTip = "Shows or hides the window of the sidechain.",
     .m_run = showsWindow<EToolWindow::Sidechain>, .m_isChecked = isWindowShown<EToolWindow::Sidechain>},
    {.m_pMenu = VIEW_MENU, .m_pText = "&Status Bar",
     .m_pTip = "Shows or hides the status bar.",
     .m_run = [](CMainFrame& frame, bool bShow) { frame.setStatusBarShown(bShow); },
     .m_isChecked = [](const CMainFrame& frame) { return frame.isStatusBarShown(); }},
    {.m_pMenu = VIEW_MENU, .m_pText = "&Preferences", .m_pShortcut = "Ctrl+,",
     .m_pTip = "Edits folders, compiler and habits of the program.",
     .m_run = [](CMainFrame& frame, bool) { frame.showPreferences(); }, .m_isEnabled = isFree},
    {.m_pMenu = VIEW_MENU, .m_pText = "Status &Window", .m_pShortcut = "F12",
     .m_pTip = "Shows or hides what the program and the plug-in have to tell.",
     .m_run = showsWindow<EToolWindow::Status>, .m_isChecked = isWindowShown<EToolWindow::Status>},

    {.m_pMenu = UTILITIES_MENU, .m_pText = "Open Impulse &Response Folder",
     .m_pTip = "Shows the folder of the impulse responses.",
     .m_run = [](CMainFrame& frame, bool) { frame.openFolder(document(frame).settingsFile().parent_path() / "IR1024"); }},
    {.m_pMenu = UTILITIES_MENU, .m_pText = "Install VSTGUI4",
     .m_pTip = "Copies the library of the advanced GUI features into the projects folder.",
     .m_run = [](CMainFrame& frame, bool) {
         installVSTGUI4(frame.parts().m_baseClassFolder, document(frame).settings().defaultProjectFolder(), frame.parts().m_dialogs);
     }, .m_isEnabled = isFree,
     .m_isThere = [](const CMainFrame& frame) { return hasVSTGUI4(frame.parts().m_baseClassFolder); }},

    {.m_pMenu = HELP_MENU, .m_pText = "&About Velmora(tm)...",
     .m_pTip = "Tells the version and what the program is made with.",
     .m_run = does<&IWorkbenchCommands::about>},
};
// clang-format on

constexpr const char* MENUS[] = {FILE_MENU,    EDIT_MENU, MODULES_MENU,   USER_PLUG_INS_MENU, AUDIO_MENU,
                                 PLUG_IN_MENU, VIEW_MENU, UTILITIES_MENU, HELP_MENU};

constexpr const char* MARKDOWN_HEAD = R"(# Commands of the main window

All commands of the main window, menu by menu, with their keys. Those without a menu stand on the tool bar and
on the prototype panel. What cannot be done at the moment, as during a build, is greyed out.
)";

constexpr const char* MARKDOWN_TAIL = R"(
The menu "Modules" lists the built-in modules, and "User Plug-Ins" the plug-ins of the folder below "Reload".
Behind "Open Project" the last eight projects can be opened directly. A project file (`.prj`) or an audio file
that is dropped on the window is opened, too.

This page is made from the program's own table by the test `CommandTable.DocumentationIsUpToDate`; run it with
`VELMORA_UPDATE_DOCS=1` to renew the page.
)";

// A menu text without the marks of its mnemonic.
std::string plain(std::string_view sText)
{
    std::string sPlain;
    for (std::size_t i = 0; i < sText.size(); ++i) {
        if (sText[i] == '&' && i + 1 < sText.size())
            ++i;
        sPlain += sText[i];
    }
    return sPlain;
}

std::string markdownOf(std::string_view sMenu)
{
    std::string sText;
    for (const CCommandRow& row : TABLE)
        if (row.m_pMenu == sMenu)
            sText += "| " + plain(row.m_pText) + " | " + row.m_pShortcut + " | " + row.m_pTip + " |\n";
    if (sText.empty())
        return sText;
    const std::string sHead = sMenu.empty() ? "Without a menu" : plain(sMenu);
    return "\n## " + sHead + "\n\n| Command | Key | What it does |\n|---|---|---|\n" + sText;
}

} // namespace

std::span<const CCommandRow> commandTable()
{
    return TABLE;
}

std::span<const char* const> menuTexts()
{
    return MENUS;
}

std::string commandTableAsMarkdown()
{
    std::string sText = MARKDOWN_HEAD;
    for (const char* pMenu : MENUS)
        sText += markdownOf(pMenu);
    return sText + markdownOf("") + MARKDOWN_TAIL;
}

} // namespace velmora
