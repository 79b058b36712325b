#include "cli/project_command_rows.h"

#include "cli/command_preset.h"
#include "cli/command_project.h"

#include <algorithm>
#include <iterator>

namespace velmora::cli {

namespace {

constexpr EValueKind TEXT = EValueKind::Text;
constexpr EValueKind FILE_NAME = EValueKind::File;
constexpr EValueKind FOLDER = EValueKind::Folder;

// What fits into a float, which is what the project's file keeps.
constexpr CValueRule floatNumber(double dLowest = -3.4e38)
{
    return {EValueKind::Number, dLowest, 3.4e38, {}};
}
constexpr CValueRule wholeNumber(double dLowest, double dHighest)
{
    return {EValueKind::WholeNumber, dLowest, dHighest, {}};
}
CValueRule oneOf(std::vector<std::string_view> choices)
{
    return {.m_eKind = EValueKind::Choice, .m_choices = std::move(choices)};
}

const CArgument PROJECT = {"FILE", "The project, a .prj file.", {FILE_NAME}};
const CArgument CONTROL = {"ID", "The control's id.", wholeNumber(0, 4294967294.0)};
const COption COMPILER = {
    "--compiler", "ID",
    "Compiler: 4010 GCC, 4011 Clang, 4001 Code::Blocks, 4000 to 4009 the Visual Studio versions. Unless "
    "given, the one of the settings.",
    wholeNumber(0, 65535)};

constexpr std::string_view RECORD_JSON =
    R"({"uControlType", "uControlId", "cControlName", "cControlUnits", "cVariableName", "uUserDataType", )"
    R"("fUserDisplayDataLoLimit", "fUserDisplayDataHiLimit", "fInitUserIntValue", "fInitUserFloatValue", )"
    R"("fInitUserDoubleValue", "fInitUserUINTValue", "cEnumeratedList", "bOwnerControl", "bLogSlider", )"
    R"("bExpSlider", "bUseMeter", "cMeterVariableName", "uDetectorMode", "bUpsideDownMeter", "bLogMeter", )"
    R"("uMeterColorScheme", "fMeterAttack_ms", "fMeterRelease_ms", "bMIDIControl", "uMIDIControlCommand", )"
    R"("uMIDIControlName", "uMIDIControlChannel", "nGUIRow", "nGUIColumn", "uControlTheme": [32], )"
    R"("dPresetData": [16], "uFluxCapControl": [64], "fFluxCapData": [64]})";

constexpr std::string_view NEW_PROJECT_JSON = R"({"folder", "project", "files": [...]})";
constexpr std::string_view WRITTEN_JSON = R"({"written": [files]})";

// The fields of a slot's property dialog.
std::vector<COption> controlOptions(std::vector<COption> first)
{
    const std::vector<COption> fields = {
        {"--name", "T", "Name of the control.", {TEXT}},
        {"--variable", "V", "Name of the variable in the class; of a meter, its meter variable.", {TEXT}},
        {"--units", "T", "Units, such as dB or Hz.", {TEXT}},
        {"--type", "TYPE", "Type of the variable. Banks, switches and combo boxes are always enum.",
         oneOf({"int", "float", "double", "enum"})},
        {"--lo", "X", "Low limit of a slider.", floatNumber()},
        {"--hi", "X", "High limit of a slider.", floatNumber()},
        {"--init", "X", "Initial value, kept within the limits; of a list, the item counted from 0.",
         floatNumber()},
        {"--list", "A,B", "Items of a list, which become an enumeration of the class.", {TEXT}},
        {"--linear", "", "Linear slider law."},
        {"--log", "", "Logarithmic slider law."},
        {"--exp", "", "1 volt/octave slider law; the low limit must be above 0."},
        {"--midi",
         "CH,CMD,CC",
         "MIDI message that moves the control: channel 1 to 16, cc (176) or bend (224), controller 0 to 127; "
         "or off.",
         {TEXT}},
        {"--detector", "N",
         "How a meter follows its variable: 0 peak, 1 mean square, 2 root mean square, 3 not at all.",
         wholeNumber(0, 3)},
        {"--attack", "MS", "Attack time of a meter in ms.", floatNumber(0)},
        {"--release", "MS", "Release time of a meter in ms.", floatNumber(0)},
        {"--linear-meter", "", "The meter shows its value as it is."},
        {"--log-meter", "", "The meter shows dB."},
        {"--upright", "", "The meter fills from below."},
        {"--invert", "", "The meter fills from the top."},
    };
    first.insert(first.end(), fields.begin(), fields.end());
    return first;
}

std::vector<CCommand> wholeProjectRows()
{
    return {
        {
            .m_sName = "project create",
            .m_sSummary = "makes a new project",
            .m_sDescription =
                "Makes a folder with everything that a plug-in needs: the project file, a class of your own "
                "with a working volume plug-in in it, the contract, and files with which compilers and "
                "editors open it. It can be built at once.",
            .m_arguments = {{"NAME",
                             "Name of the project and, behind a C, of its class; letters only.",
                             {TEXT}}},
            .m_options =
                {
                    {"--folder",
                     "DIR",
                     "Folder that the project's own is made in; unless given, the projects folder of the "
                     "settings.",
                     {FOLDER}},
                    {"--company", "T", "Vendor for the exports; unless given, that of the settings.", {TEXT}},
                    {"--latency", "N", "Latency in samples.", {EValueKind::Number}},
                    {"--synth", "", "Output-only plug-in: makes sound without input."},
                    {"--custom-gui", "", "With a GUI from the designer."},
                    {"--own-gui", "", "With a GUI that you write yourself."},
                    {"--vst-compatible", "",
                     "Makes the Visual Studio project build VST2 and VST3; needs files of the VST SDK."},
                    {"--sidechain", "", "With a sidechain input in the exports."},
                    {"--module",
                     "P.prj",
                     "Copies the class of another project into this one. May be given for many.",
                     {FILE_NAME},
                     true},
                    {"--stock",
                     "NAME",
                     "Copies a stock object, such as Delay or OnePoleLPF. May be given for many.",
                     {TEXT},
                     true},
                    {"--fft", "", "Copies the FFT object."},
                    {"--solution",
                     "FILE.sln",
                     "Enters the project there instead of in a new solution.",
                     {FILE_NAME}},
                    COMPILER,
                },
            .m_sJsonResult = NEW_PROJECT_JSON,
            .m_examples = {{"project create Softener", "Makes a project in the projects folder."},
                           {"project create Softener --folder . --stock OnePoleLPF",
                            "Makes it here, with a filter to use in it."}},
            .m_pRun = runProjectCreate,
        },
        {
            .m_sName = "project open",
            .m_sSummary = "repairs and updates what has become stale around a project",
            .m_sDescription =
                "Does what opening a project in the workbench does: takes over a new place of the folder, "
                "mends the paths in the compilers' files, adds base files that are missing, updates a "
                "project "
                "of an older version. A second time it changes nothing.",
            .m_arguments = {PROJECT},
            .m_options = {COMPILER},
            .m_sJsonResult = R"({"changed": [files]})",
            .m_examples = {{"project open Softener/Softener.prj", "After the folder was moved or copied."}},
            .m_pRun = runProjectOpen,
        },
        {
            .m_sName = "project save-as",
            .m_sSummary = "copies a project under a new name",
            .m_sDescription = "Makes a new project with the sources, settings and controls of this one, its "
                              "class and files under the new name. This one stays as it is.",
            .m_arguments = {PROJECT, {"NEWNAME", "Name of the new project; letters only.", {TEXT}}},
            .m_options =
                {
                    {"--folder",
                     "DIR",
                     "Folder that the new project's own is made in; unless given, beside this one's.",
                     {FOLDER}},
                    {"--copy-all", "", "Copies presets and all other files of the folder as well."},
                    {"--omit-libraries", "", "Leaves out the VST and GUI libraries."},
                    COMPILER,
                },
            .m_sJsonResult = NEW_PROJECT_JSON,
            .m_examples = {{"project save-as Softener/Softener.prj Harder --copy-all",
                            "Makes the project Harder beside it, with its presets."}},
            .m_pRun = runProjectSaveAs,
        },
        {
            .m_sName = "project clear",
            .m_sSummary = "removes all controls of a project",
            .m_sDescription = "Removes all controls and user variables and rewrites the code.",
            .m_arguments = {PROJECT},
            .m_sJsonResult = WRITTEN_JSON,
            .m_examples = {{"project clear Softener/Softener.prj", "Starts the panel over."}},
            .m_pRun = runProjectClear,
        },
        {
            .m_sName = "project import-controls",
            .m_sSummary = "takes over the controls of another project",
            .m_sDescription =
                "Replaces the project's controls, labels, button names and custom GUI by those of another "
                "project and rewrites the code. It asks before it does so: give --answer yes.",
            .m_arguments = {PROJECT, {"OTHER", "The project whose controls are taken.", {FILE_NAME}}},
            .m_sJsonResult = WRITTEN_JSON,
            .m_examples = {{"project import-controls New/New.prj Old/Old.prj --answer yes",
                            "Gives New the panel of Old."}},
            .m_pRun = runProjectImportControls,
        },
        {
            .m_sName = "project sync",
            .m_sSummary = "brings the contract's files and the code of a built project up to date",
            .m_sDescription =
                "Loads the project's library, copies the contract into the project folder, rewrites the code "
                "regions and repairs the signatures of old sources. If the library cannot be loaded it asks "
                "whether to rebuild it.",
            .m_arguments = {PROJECT},
            .m_options = {COMPILER},
            .m_sJsonResult = WRITTEN_JSON,
            .m_examples = {{"project sync Softener/Softener.prj", "After an update of the program."}},
            .m_pRun = runProjectSync,
        },
        {
            .m_sName = "project info",
            .m_sSummary = "prints a project file",
            .m_sDescription = "Reads a project file of any version and prints its members and controls. "
                              "Nothing is changed.",
            .m_arguments = {PROJECT},
            .m_sJsonResult =
                R"({"schema", every member of the project, "controls": [every field of each record]})",
            .m_examples = {{"project info Softener/Softener.prj", "Shows the controls and their ids."}},
            .m_pRun = runProjectInfo,
        },
        {
            .m_sName = "project convert",
            .m_sSummary = "writes a project file of any version in the newest one",
            .m_sDescription = "Reads IN and writes OUT, which may be the same file.",
            .m_arguments = {{"IN", "The project file to read.", {FILE_NAME}},
                            {"OUT", "The project file to write.", {FILE_NAME}}},
            .m_sJsonResult = R"({"from", "to"})",
            .m_examples = {{"project convert old.prj new.prj", "Makes a project of the newest schema."}},
            .m_pRun = runProjectConvert,
        },
        {
            .m_sName = "project history",
            .m_sSummary = "lists, shows and restores earlier texts of a project's sources",
            .m_sDescription =
                "Before a command writes into your sources it keeps their text in the project's "
                "folder .velmora/history, the newest 100. Without an option they are listed.",
            .m_arguments = {PROJECT},
            .m_options = {{"--show", "N", "Prints the text of an entry.", wholeNumber(0, 4294967295.0)},
                          {"--restore", "N",
                           "Puts the text of an entry back into its file; what stands there is kept first.",
                           wholeNumber(0, 4294967295.0)}},
            .m_sJsonResult =
                R"({"entries": [{"number", "time", "file", "reason"}]}; with --show or --restore )"
                R"(that entry alone, with --show also its "text")",
            .m_examples = {{"project history Softener/Softener.prj", "Lists the earlier texts."},
                           {"project history Softener/Softener.prj --restore 3", "Brings one back."}},
            .m_pRun = runProjectHistory,
        },
    };
}

std::vector<CCommand> controlRows()
{
    return {
        {
            .m_sName = "project add-control",
            .m_sSummary = "puts a control on a slot of the panel",
            .m_sDescription =
                "Does what OK of the slot's property dialog does: checks everything, stores the control, "
                "declares its variable in your class and saves the project. What is not given is as the "
                "dialog offers it. The slot says what the control is:\n"
                "0 to 39 sliders; 41 to 44 banks of up to 8 radio buttons; 45 to 48 two-state switches; 50 "
                "to "
                "59 LED meters; 60 to 63 the joystick's combo boxes; 70 to 73 combo boxes; 100 to 1123 "
                "sliders of the alpha wheel.",
            .m_arguments = {PROJECT},
            .m_options = controlOptions(
                {{"--slot", "ID", "The slot, which becomes the control's id.", wholeNumber(0, 1123)}}),
            .m_sJsonResult = RECORD_JSON,
            .m_examples = {{"project add-control P.prj --slot 0 --name Cutoff --units Hz --variable "
                            "m_fCutoff --lo 20 --hi "
                            "20000 --init 1000 --exp",
                            "Adds a slider with a volt/octave law."},
                           {"project add-control P.prj --slot 41 --name Shape --variable m_uShape --list "
                            "SINE,SAW,SQUARE",
                            "Adds a bank of radio buttons."},
                           {"project add-control P.prj --slot 50 --name Level --variable m_fLevel --detector "
                            "2 --log-meter",
                            "Adds a meter."}},
            .m_pRun = runProjectAddControl,
        },
        {
            .m_sName = "project edit-control",
            .m_sSummary = "changes a control",
            .m_sDescription =
                "As add-control, for a slot that has a control; what is not given stays. A new variable name "
                "raises the question whether your code is to follow: --answer yes renames it there, no "
                "renames only the declaration. The old text is kept in the history.",
            .m_arguments = {PROJECT, CONTROL},
            .m_options = controlOptions({}),
            .m_sJsonResult = RECORD_JSON,
            .m_examples = {{"project edit-control P.prj 0 --hi 12000 --midi 1,cc,74",
                            "Lowers the high limit and binds a MIDI controller."},
                           {"project edit-control P.prj 0 --variable m_fFrequency --answer yes",
                            "Renames the variable in the code too."}},
            .m_pRun = runProjectEditControl,
        },
        {
            .m_sName = "project remove-control",
            .m_sSummary = "removes a control",
            .m_sDescription = "Removes a control and the declaration of its variable; prints what it was.",
            .m_arguments = {PROJECT, CONTROL},
            .m_sJsonResult = RECORD_JSON,
            .m_examples = {{"project remove-control P.prj 41", "Empties slot 41."}},
            .m_pRun = runProjectRemoveControl,
        },
        {
            .m_sName = "project add-variable",
            .m_sSummary = "adds a user variable, which is stored in presets",
            .m_sDescription = "Adds a variable of the class that has no control but is part of each preset.",
            .m_arguments = {PROJECT},
            .m_options = {{"--type", "DATATYPE", "Type of the variable.",
                           oneOf({"integer", "float", "double", "UINT", "VSTGUI"})},
                          {"--name", "V", "Name of the variable in the class.", {TEXT}},
                          {"--value", "X", "Initial value; 0 unless given.", {TEXT}}},
            .m_sJsonResult = RECORD_JSON,
            .m_examples = {{"project add-variable P.prj --type double --name m_dSpread --value 0.5",
                            "Adds a variable that starts at 0.5."}},
            .m_pRun = runProjectAddVariable,
        },
        {
            .m_sName = "project remove-variable",
            .m_sSummary = "removes a user variable",
            .m_sDescription = "Removes a user variable and its declaration; prints what it was.",
            .m_arguments = {PROJECT},
            .m_options = {{"--name", "V", "Name of the variable.", {TEXT}}},
            .m_sJsonResult = RECORD_JSON,
            .m_examples = {{"project remove-variable P.prj --name m_dSpread", "Removes it."}},
            .m_pRun = runProjectRemoveVariable,
        },
    };
}

std::vector<CCommand> buildRows()
{
    return {
        {
            .m_sName = "project write-code",
            .m_sSummary = "writes a project's controls and presets into its sources",
            .m_sDescription =
                "Rewrites what stands between the markers of the .h and the .cpp, and nothing "
                "else, and saves the project. Every command that changes a control does so too.",
            .m_arguments = {PROJECT},
            .m_sJsonResult = WRITTEN_JSON,
            .m_examples = {{"project write-code P.prj", "Brings the sources up to date."}},
            .m_pRun = runProjectWriteCode,
        },
        {
            .m_sName = "project build",
            .m_sSummary = "compiles a project's plug-in and loads it",
            .m_sDescription =
                "Writes the code, compiles every .cpp of the project folder, puts the library into PlugIns "
                "of "
                "the user folder and loads it. Errors are printed as compilers do, so that editors find the "
                "line. With --watch it goes on: each time a source, a header or the project file is saved, "
                "it "
                "builds and loads again, and prints what changed and how long each part took; with --json "
                "one object a line. The values of the controls go over to the new code by the names of their "
                "variables. Ctrl-C ends it.",
            .m_arguments = {PROJECT},
            .m_options = {COMPILER,
                          {"--watch", "", "Builds and loads again on each save until Ctrl-C."},
                          {"--initial-values", "",
                           "Starts each build from the initial values instead of carrying values over."}},
            .m_sJsonResult =
                R"({"result": "succeeded"|"failed", "library", "log", "errors": [{"file", "line", "column", )"
                R"("text"}], "warnings": [likewise], "reason", "seconds", "writeSeconds", "compileSeconds", )"
                R"("linkSeconds", "loadSeconds", "loaded", "buildId", "controls": {"carried": [variables], )"
                R"("new": [...], "dropped": [...]}}; with --watch also "changed": [file names])",
            .m_examples = {{"project build Softener/Softener.prj", "Builds once."},
                           {"project build Softener/Softener.prj --watch", "Builds on each save."}},
            .m_pRun = runProjectBuild,
        },
    };
}

std::vector<CCommand> presetRows()
{
    const COption project = {"--project", "FILE.prj", "The project that the presets belong to.", {FILE_NAME}};
    const CArgument name = {"NAME", "Name of the preset.", {TEXT}};
    return {
        {
            .m_sName = "preset save",
            .m_sSummary = "saves the values of a plug-in's controls as a preset",
            .m_sDescription =
                "Loads the plug-in, applies the options, and saves the values of its controls and user "
                "variables in the project's folder Presets. The code is rewritten, so that the next build "
                "has "
                "the preset compiled in, as far as it is one of the first sixteen.",
            .m_arguments = {name},
            .m_options = {project},
            .m_bTakesFilter = true,
            .m_sJsonResult = R"({"file", "name"})",
            .m_examples = {{"preset save Warm --plugin P.so --project P.prj --set 0=400",
                            "Saves a preset with one control set."}},
            .m_pRun = runPresetSave,
        },
        {
            .m_sName = "preset load",
            .m_sSummary = "gives a plug-in the values of a preset, and prints it",
            .m_sDescription =
                "Loads the plug-in, then the preset, then applies the other options, and prints "
                "the plug-in as \"plugin inspect\" does.",
            .m_arguments = {name},
            .m_options = {project},
            .m_bTakesFilter = true,
            .m_sJsonResult = "as of plugin inspect",
            .m_examples = {{"preset load Warm --plugin P.so --project P.prj", "Shows what a preset holds."}},
            .m_pRun = runPresetLoad,
        },
        {
            .m_sName = "preset list",
            .m_sSummary = "lists the presets of a project",
            .m_sDescription =
                "Lists the preset files of the project and their names. With a plug-in it first "
                "writes the factory preset anew from the plug-in's own values.",
            .m_options = {project},
            .m_bTakesFilter = true,
            .m_sJsonResult = R"({"presets": [{"file", "name"}]})",
            .m_examples = {{"preset list --project P.prj", "Shows the presets."}},
            .m_pRun = runPresetList,
        },
        {
            .m_sName = "preset delete",
            .m_sSummary = "deletes a preset of a project",
            .m_sDescription = "Deletes the preset's file and rewrites the code. The factory preset stays.",
            .m_arguments = {name},
            .m_options = {project},
            .m_bTakesFilter = true,
            .m_sJsonResult = R"({"file", "name"})",
            .m_examples = {{"preset delete Warm --project P.prj", "Deletes one."}},
            .m_pRun = runPresetDelete,
        },
    };
}

} // namespace

std::vector<CCommand> projectCommandRows()
{
    std::vector<CCommand> all;
    for (auto rows : {wholeProjectRows(), controlRows(), buildRows(), presetRows()})
        std::ranges::move(rows, std::back_inserter(all));
    return all;
}

} // namespace velmora::cli
