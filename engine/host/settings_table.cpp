#include "host/settings_table.h"

#include "base/text.h"
#include "host/preferences.h"

#include <algorithm>

namespace velmora {

namespace {

using enum ESettingType;

// clang-format off
constexpr std::array<CSettingRow, SETTING_COUNT> TABLE{{
    {1, "m_uFormatVersion", Unsigned, "4098", "Version of the file's format. Always written as 4098, and compared with nothing."},
    {2, "m_sDefaultProjectFolder", UserFolderPath, "VelmoraProjects", "Folder that new projects go to."},
    {3, "m_sDefaultWAVFolder", UserFolderPath, "AudioFiles", "Folder that the choosers of wave files begin in."},
    {4, "m_sCodeBlocksFolder", String, "", "Folder that the Code::Blocks program lies in; empty to search the path."},
    {5, "m_uCompilerId", Unsigned, "4010", "Compiler that builds plug-ins: 4000 to 4009 as listed below, 4010 GCC and 4011 Clang without a window."},
    {6, "m_bEnableCompilerControl", Bool, "true", "Start, switch to and command the C++ compiler's window."},
    {7, "m_bStartCompilerMinimized", Bool, "true", "Start the compiler's window minimised."},
    {8, "m_bCloseCompilerWithProject", Bool, "true", "Close the compiler when its project is closed."},
    {9, "m_sDefaultWAVFile", String, "", "Wave file that is opened at start; cleared when the file no longer exists."},
    {10, "m_uFramesPerBuffer", Unsigned, "64", "Frames in one buffer of an audio stream."},
    {11, "m_bUseLowLatency", Bool, "true", "Ask an audio device for its low latency, else for its high one."},
    {12, "m_uLatencyMultiplier", Unsigned, "1", "Factor that the device's latency is multiplied by."},
    {13, "m_bPanelOption1", Bool, "false", "Option of the control panel."},
    {14, "m_sPanelSkin1", String, "", "Skin of the control panel."},
    {15, "m_sPanelSkin2", String, "", "Second skin of the control panel."},
    {16, "m_uPanelColor1", Unsigned, "0", "Colour of the control panel."},
    {17, "m_uPanelColor2", Unsigned, "15066597", "Colour of the control panel."},
    {18, "m_uPanelColor3", Unsigned, "15066597", "Colour of the control panel."},
    {19, "m_uPanelColor4", Unsigned, "0", "Colour of the control panel."},
    {20, "m_sPanelColorName", String, "black", "Name of a colour of the control panel."},
    {21, "m_bPanelOption2", Bool, "false", "Option of the control panel."},
    {22, "m_bPanelOption3", Bool, "true", "Option of the control panel."},
    {23, "m_uPanelColor5", Unsigned, "12632256", "Colour of the control panel."},
    {24, "m_uPanelColor6", Unsigned, "6316128", "Colour of the control panel."},
    {25, "m_bPanelOption4", Bool, "false", "Option of the control panel."},
    {26, "m_uPanelColor7", Unsigned, "14772545", "Colour of the control panel."},
    {27, "m_uAnalyzerColor", Unsigned, "8421504", "Colour of the analyzer."},
    {28, "m_uPanelColor8", Unsigned, "0", "Colour of the control panel."},
    {29, "m_uPanelColor9", Unsigned, "0", "Colour of the control panel."},
    {30, "m_uPanelColor10", Unsigned, "0", "Colour of the control panel."},
    {31, "m_uPanelColor11", Unsigned, "16777215", "Colour of the control panel."},
    {32, "m_uPanelColor12", Unsigned, "35723", "Colour of the control panel."},
    {33, "m_uPanelColor13", Unsigned, "0", "Colour of the control panel."},
    {34, "m_uPanelColor14", Unsigned, "0", "Colour of the control panel."},
    {35, "m_uPanelColor15", Unsigned, "0", "Colour of the control panel."},
    {36, "m_uPanelColor16", Unsigned, "0", "Colour of the control panel."},
    {37, "m_uPanelColor17", Unsigned, "13882323", "Colour of the control panel."},
    {38, "m_uPanelColor18", Unsigned, "16711680", "Colour of the control panel."},
    {39, "m_uPanelColor19", Unsigned, "0", "Colour of the control panel."},
    {40, "m_uPanelColor20", Unsigned, "0", "Colour of the control panel."},
    {41, "m_uPanelColor21", Unsigned, "0", "Colour of the control panel."},
    {42, "m_uPanelColor22", Unsigned, "0", "Colour of the control panel."},
    {43, "m_uPanelColor23", Unsigned, "0", "Colour of the control panel."},
    {44, "m_uPanelColor24", Unsigned, "139", "Colour of the control panel."},
    {45, "m_uPanelColor25", Unsigned, "8355711", "Colour of the control panel."},
    {46, "m_uPanelColor26", Unsigned, "139", "Colour of the control panel."},
    {47, "m_uPanelColor27", Unsigned, "0", "Colour of the control panel."},
    {48, "m_bEditAppend", Bool, "false", "A changed control is appended to the code rather than replaced in it."},
    {49, "m_bFollowRebuild", Bool, "true", "Follow a rebuild that was started in Visual Studio."},
    {50, "m_bViewOption1", Bool, "false", "View option of the main window."},
    {51, "m_bViewOption2", Bool, "true", "View option of the main window."},
    {52, "m_bViewOption3", Bool, "true", "View option of the main window."},
    {53, "m_bViewOption4", Bool, "false", "View option of the main window."},
    {54, "m_sAUTemplatesFolder", UserFolderPath, "AU Templates", "Folder of the Audio Unit templates."},
    {55, "m_sVSTTemplatesFolder", UserFolderPath, "VST Templates", "Folder of the VST2 templates."},
    {56, "m_bHungarianNames", Bool, "true", "Make the class names of new plug-ins Hungarian, such as CMyPlugIn."},
    {57, "m_sInputDeviceName", String, "None", "Audio input device; \"None\" when there is none."},
    {58, "m_sOutputDeviceName", String, "None", "Audio output device; \"None\" when there is none."},
    {59, "m_dSampleRate", Double, "44100", "Sample rate of sound input in Hz."},
    {60, "m_bCheckForUpdates", Bool, "true", "Look for a new version at start."},
    {61, "m_bUpdateFlag", Bool, "false", "Kept by the check for a new version."},
    {62, "m_nUpdateState", Signed, "0", "Kept by the check for a new version."},
    {63, "m_sRecentProject", String, "", "Recent project as the control panel shows it."},
    {64, "m_bOpenLastProject", Bool, "false", "Open the last project at start."},
    {65, "m_sVST3TemplatesFolder", UserFolderPath, "VST Templates/VST3", "Folder of the VST3 templates."},
    {66, "m_sCompanyName", String, "Velmora User", "Company name (vendor) that goes into exported plug-ins."},
    {67, "m_sDUTDeviceName", String, "None", "Audio output device of test and measure mode; \"None\" when there is none."},
    {68, "m_sVSTProjectFolder", UserFolderPath, "VST Ported Projects", "Folder of exported VST projects, if a custom one is used."},
    {69, "m_bUseCustomVSTFolder", Bool, "false", "Export VST projects to that folder rather than into the project's own."},
    {70, "m_sAUProjectFolder", UserFolderPath, "AU Ported Projects", "Folder of exported Audio Unit projects, if a custom one is used."},
    {71, "m_bUseCustomAUFolder", Bool, "false", "Export Audio Unit projects to that folder rather than into the project's own."},
}};
// clang-format on

constexpr std::string_view MARKDOWN_HEAD =
    R"(# The settings file

All settings of the program stand in one text file, `socket.log` in the user folder
(`$APPDATA/Velmora`, with `~/.local/share` in place of an unset `APPDATA`). It has 71 lines, one value
on each, in the order below and without names. `velmora-cli settings show` prints it,
`velmora-cli settings set LINE VALUE` changes a line.

- Numbers are plain decimal; blanks around them do not matter, and an empty line or one that is no number
  reads as 0. A bool is `true` in any mixture of capital and small letters; everything else is false.
  Strings stand as they are. Carriage returns at the end of a line are not part of the value.
- A file may end early: the lines that it lacks have their defaults, and the file is brought up to the
  full length when it is read. A missing file is made with the defaults.
- A file of more than 1 MiB, or with a line of more than 8192 bytes, is no settings file: the program
  says so, runs with the defaults and leaves the file alone.
- The file is replaced as a whole and only when the new one is complete on the disk.

| Line | Name | Type | Default | Meaning |
|---:|---|---|---|---|
)";

constexpr std::string_view MARKDOWN_TAIL = R"(
Compilers of line 5: 4000 Visual C++ 2008 Express, 4001 Code::Blocks, 4002 2010 Express,
4003 2008 Professional, 4004 2010 Professional, 4005 2012 Express, 4006 2012 Professional,
4007 2013 Express, 4008 2013 Professional/Community, 4009 2015 Professional/Community,
4010 GCC (command line), 4011 Clang (command line).

## Preferences

Switches that came later stand in a second file beside it, `preferences.txt`, with `name = true` or
`name = false` on a line. A switch that is missing there has its default, and lines that the program does not
know stay as they are. `settings show` lists them too, and `settings set NAME true` changes one.

)";

constexpr std::string_view MARKDOWN_END = R"(
This page is made from the program's own table by the test `SettingsTable.DocumentationIsUpToDate`; run
it with `VELMORA_UPDATE_DOCS=1` to renew the page.
)";

std::string markdownDefault(const CSettingRow& row)
{
    if (row.m_sDefault.empty())
        return "empty";
    const std::string sFolder = row.m_eType == UserFolderPath ? "(user folder)/" : "";
    return "`" + sFolder + std::string(row.m_sDefault) + "`";
}

} // namespace

const std::array<CSettingRow, SETTING_COUNT>& settingsTable()
{
    return TABLE;
}

int settingLine(std::string_view sName)
{
    const auto found = std::ranges::find(TABLE, sName, &CSettingRow::m_sName);
    return found == TABLE.end() ? 0 : found->m_nLine;
}

std::string_view settingTypeName(ESettingType eType)
{
    constexpr std::array<std::string_view, 6> NAMES = {"unsigned", "signed", "bool",
                                                       "double",   "string", "string"};
    return NAMES[static_cast<std::size_t>(eType)];
}

std::string settingDefault(const CSettingRow& row, const std::filesystem::path& userFolder)
{
    if (row.m_eType == UserFolderPath)
        return (userFolder / row.m_sDefault).string();
    return std::string(row.m_sDefault);
}

std::string settingsTableAsMarkdown()
{
    std::string sText(MARKDOWN_HEAD);
    for (const CSettingRow& row : TABLE) {
        sText += "| " + std::to_string(row.m_nLine) + " | `" + std::string(row.m_sName) + "` | ";
        sText += std::string(settingTypeName(row.m_eType)) + " | " + markdownDefault(row) + " | ";
        sText += std::string(row.m_sMeaning) + " |\n";
    }
    sText += MARKDOWN_TAIL;
    sText += "| Name | Default | Meaning |\n|---|---|---|\n";
    for (const CPreferenceRow& row : preferenceTable())
        sText += "| `" + std::string(row.m_sName) + "` | `" + (row.m_bDefault ? "true" : "false") + "` | " +
                 std::string(row.m_sHelp) + " |\n";
    return sText += MARKDOWN_END;
}

} // namespace velmora
