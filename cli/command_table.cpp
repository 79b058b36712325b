#include "cli/audio_command_rows.h"
#include "cli/command.h"
#include "cli/command_bench.h"
#include "cli/command_demo.h"
#include "cli/command_devices.h"
#include "cli/command_plugin.h"
#include "cli/command_settings.h"
#include "cli/project_command_rows.h"

#include <algorithm>
#include <iterator>

namespace velmora::cli {

namespace {

constexpr EValueKind TEXT = EValueKind::Text;
constexpr EValueKind FILE_NAME = EValueKind::File;
constexpr EValueKind FOLDER = EValueKind::Folder;
constexpr EValueKind CHOICE = EValueKind::Choice;

CValueRule oneOf(std::vector<std::string_view> choices)
{
    return {.m_eKind = CHOICE, .m_choices = std::move(choices)};
}

constexpr std::string_view PLUG_IN_JSON =
    R"({"file", "m_PlugInName", "m_uPlugInVersion", "m_bOutputOnlyPlugIn", "m_bWantBuffers", )"
    R"("m_bWantChannelBuffers", "m_bWantIRs", "m_nIRLength", "m_bWantAllMIDIMessages", )"
    R"("m_bEnableMIDIControl", "m_bUserCustomGUI", "m_bUseCustomVSTGUI", "m_uMaxInputChannels", )"
    R"("m_uMaxOutputChannels", "controls": [{"uControlType", "uControlId", "m_sName", "m_sUnits", )"
    R"("cVariableName", "uUserDataType", "fUserDisplayDataLoLimit", "fUserDisplayDataHiLimit", )"
    R"("bLogSlider", "bExpSlider", "cEnumeratedList", "value", "m_sValue", "m_nPos", "m_fNormalized"}], )"
    R"("presets": [names]})";

constexpr std::string_view SETTINGS_JSON =
    R"({"path", "lines": [{"line": 1, "name", "value"} ...], "preferences": [{"name", "value"}]})";

} // namespace

std::span<const COption> globalOptions()
{
    static const std::vector<COption> OPTIONS = {
        {"--json", "", "Prints the result as one JSON object."},
        {"--user-folder",
         "DIR",
         "Uses this user folder instead of the one found from the environment.",
         {FOLDER}},
        {"--answer", "yes|no", "Replies to every Yes/No question; no unless given.", oneOf({"yes", "no"})},
        {"--quiet", "", "Shows neither progress nor the texts of plug-ins."},
        {.m_sName = "--help", .m_sValueName = "", .m_sHelp = "Explains the command.", .m_sShortName = "-h"},
        {"--version", "", "Prints the program's version."},
    };
    return OPTIONS;
}

std::span<const COption> filterOptions()
{
    static const std::vector<COption> OPTIONS = {
        {"--plugin", "FILE", "Loads a plug-in library.", {FILE_NAME}},
        {"--module",
         "NAME",
         "Takes a built-in module in place of a plug-in: its name, or a beginning that no other has; upper "
         "and lower case are alike.",
         {TEXT}},
        {"--set",
         "ID=VALUE",
         "Sets a control to a value, as typed into its edit box; values beyond the control's limits become "
         "the limit. May be given for many controls.",
         {EValueKind::Assignment},
         true},
        {"--set-position",
         "ID=POS",
         "Moves a control to a position, 0 (low end) to 256 (high end). May be given for many controls.",
         {EValueKind::PositionAssignment, 0, 256},
         true},
        {"--preset",
         "FILE.spf",
         "Gives the controls the values of a preset file; with --module, of the module's preset of that "
         "name.",
         {FILE_NAME},
         true},
    };
    return OPTIONS;
}

std::span<const CCommandGroup> commandGroups()
{
    static const std::vector<CCommandGroup> GROUPS = {
        {"settings", "Reads and changes the settings file"},
        {"plugin", "Looks at plug-in libraries"},
        {"project", "Makes, changes and builds the projects of plug-ins"},
        {"preset", "Saves and loads presets of a project"},
        {"osc", "Makes test signals"},
    };
    return GROUPS;
}

namespace {

std::vector<CCommand> plugInCommandRows()
{
    return {
        {
            .m_sName = "settings show",
            .m_sSummary = "prints the settings file",
            .m_sDescription =
                "Reads the settings file of the user folder and prints each of its lines with its "
                "name, then the preferences that stand in a file of their own. A settings file that is "
                "missing "
                "is made with the defaults; an older, shorter one is brought up to date.",
            .m_sJsonResult = SETTINGS_JSON,
            .m_examples = {{"settings show", "Shows all settings."}},
            .m_pRun = runSettingsShow,
        },
        {
            .m_sName = "settings set",
            .m_sSummary = "changes one line of the settings file",
            .m_sDescription =
                "Changes one line or preference, rewrites the file and prints all. A value that does not fit "
                "the line's type is refused, and the file stays as it is.",
            .m_arguments = {{"LINE",
                             "Number of the line, 1 to 71, or its name; or the name of a preference.",
                             {TEXT}},
                            {"VALUE", "The new value; an empty one is given as ''.", {TEXT}}},
            .m_sJsonResult = SETTINGS_JSON,
            .m_examples = {{"settings set 10 128", "Sets the number of frames per buffer to 128."},
                           {"settings set m_sCompanyName \"Loud Noises\"",
                            "Names a line instead of counting."},
                           {"settings set startFromInitialValues true",
                            "Has controls start anew after each rebuild."}},
            .m_pRun = runSettingsSet,
        },
        {
            .m_sName = "plugin scan",
            .m_sSummary = "lists the plug-in libraries of a folder",
            .m_sDescription =
                "Does what the workbench does when it starts: tries out every library of the folder "
                "in a process of its own, loads the good ones, and tells for each what became of it. "
                "Libraries that crash or hang are named and passed over.",
            .m_arguments =
                {{"DIR", "Folder to scan; without it PlugIns in the user folder.", {FOLDER}, true}},
            .m_sJsonResult =
                R"({"plugIns": [{"file", "m_PlugInName", "version", "status": "loaded"|"wrong version"|)"
                R"("no version"|"load failed"|"duplicate"|"crashed", "reason"}]})",
            .m_examples = {{"plugin scan", "Lists what the workbench would find when it starts."},
                           {"plugin scan build --json",
                            "Checks the libraries of a build folder in a script."}},
            .m_pRun = runPlugInScan,
        },
        {
            .m_sName = "plugin inspect",
            .m_sSummary = "prints what a plug-in or a built-in module says of itself, and its controls",
            .m_sDescription =
                "Loads a plug-in, applies the options, and prints its members, each control with its "
                "range, law, value and position, and the names of its presets. A built-in module, which "
                "--module names in place of FILE, has no file and no members of the plug-in contract: they "
                "are null in JSON.",
            .m_arguments =
                {{"FILE", "The plug-in library; may also be given with --plugin.", {FILE_NAME}, true}},
            .m_bTakesFilter = true,
            .m_sJsonResult = PLUG_IN_JSON,
            .m_examples = {{"plugin inspect Gain.so", "Shows the controls and their ids."},
                           {"plugin inspect Gain.so --set 0=-6", "Shows where the slider stands at -6."},
                           {"plugin inspect --module Ten", "Shows the bands of the equalizer."}},
            .m_pRun = runPlugInInspect,
        },
    };
}

std::vector<CCommand> systemCommandRows()
{
    return {
        {
            .m_sName = "devices",
            .m_sSummary = "lists audio and MIDI devices",
            .m_sDescription =
                "Lists the audio devices with their channels, the rates that they take with all of these, "
                "and "
                "which of them the settings name, and the MIDI inputs and outputs. A system without any has "
                "empty lists.",
            .m_sJsonResult = R"({"audio": [{"index", "name", "hostApi", "inputChannels", "outputChannels", )"
                             R"("sampleRate", "lowInputLatency", "lowOutputLatency", "highInputLatency", )"
                             R"("highOutputLatency", "defaultInput", "defaultOutput", "rates": [Hz, ...], )"
                             R"("chosenInput", "chosenOutput", "chosenDUT"}], )"
                             R"("midiIn": [{"name", "api"}], "midiOut": [{"name", "api"}]})",
            .m_examples = {{"devices", "Shows which names the settings may hold."}},
            .m_pRun = runDevices,
        },
        {
            .m_sName = "demo",
            .m_sSummary = "shows what the workbench does, and writes a report of it",
            .m_sDescription =
                "Creates a project, adds controls, puts the sound into its class, builds and loads it, runs "
                "a "
                "recording through it, measures it, and writes the results with their plots into one page, "
                "report.html. Change the project's source in the folder and run it again: what you changed "
                "is "
                "kept.",
            .m_arguments = {{"DIR", "Folder for what is made; velmora-demo unless given.", {FOLDER}, true}},
            .m_sJsonResult = R"({"report"})",
            .m_examples = {{"demo tour", "Writes tour/report.html."}},
            .m_pRun = runDemo,
        },
        {
            .m_sName = "bench",
            .m_sSummary = "measures the speed of the program on this machine",
            .m_sDescription = "Times the parts that matter for sound: what the host adds to a plug-in's own "
                              "work on each of the "
                              "three process paths, the Fourier transform, the level detector, and loading "
                              "and scanning plug-in "
                              "libraries, for which an example is compiled. Figures are medians of several "
                              "runs. Takes some seconds.",
            .m_sJsonResult = R"({"figures": [{"name", "value", "unit"}]})",
            .m_examples = {{"bench --json > bench.json", "Keeps the figures for a comparison."}},
            .m_pRun = runBench,
        },
    };
}

} // namespace

std::span<const CCommand> commandTable()
{
    static const std::vector<CCommand> COMMANDS = [] {
        std::vector<CCommand> all;
        for (auto rows : {plugInCommandRows(), audioCommandRows(), projectCommandRows(), systemCommandRows()})
            std::ranges::move(rows, std::back_inserter(all));
        return all;
    }();
    return COMMANDS;
}

std::vector<COption> optionsOf(const CCommand& command)
{
    std::vector<COption> options = command.m_options;
    if (command.m_bTakesFilter)
        std::ranges::copy(filterOptions(), std::back_inserter(options));
    std::ranges::copy(globalOptions(), std::back_inserter(options));
    return options;
}

const CCommand* findCommand(std::string_view sName)
{
    const auto commands = commandTable();
    const auto found = std::ranges::find(commands, sName, &CCommand::m_sName);
    return found == commands.end() ? nullptr : &*found;
}

} // namespace velmora::cli
