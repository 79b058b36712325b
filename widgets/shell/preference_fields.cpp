#include "widgets/shell/preference_fields.h"

namespace velmora {

namespace {

using enum EPreferencePage;
using enum EPreferenceField;

// clang-format off
constexpr CPreferenceField FIELDS[] = {
    {2, Folders, Folder, "Default Project Folder:", "Browse for the DSP Project Folder", nullptr, nullptr},
    {3, Folders, Folder, "Default WAV File Folder:", "Browse for the WAVE Folder", nullptr, nullptr},
    {9, Folders, WaveFile, "Default WAV File:", "WAVE Files (*.wav)|*.wav||", nullptr, nullptr},
    {4, Folders, Folder, "CodeBlocks Executable Folder:", "Browse for the CodeBlocks Folder", nullptr, nullptr},

    {54, Export, Folder, "AU Templates Folder:", "Browse for the AU Templates Folder", nullptr, nullptr},
    {55, Export, Folder, "VST2 (Win) Projects Folder:", "Browse for the VST2 Templates Folder", nullptr, nullptr},
    {65, Export, Folder, "VST2/3 Templates Folder:", "Browse for the VST3 Templates Folder", nullptr, nullptr},
    {69, Export, Choice, "<Make VST> Project Folder:", nullptr, "Use \\ Project Folder\\ VST Files \\ VST3 ", "Use Custom Folder:"},
    {68, Export, Folder, "", "Browse for the VST3 Ported Projects Folder", nullptr, nullptr},
    {71, Export, Choice, "<Make AU> Project Folder:", nullptr, "Use \\ Project Folder\\ AU Files", "Use Custom Folder:"},
    {70, Export, Folder, "", "Browse for the AU Ported Projects Folder", nullptr, nullptr},
    {66, Export, Text, "Company Name (Vendor):", nullptr, nullptr, nullptr},

    {6, Compiler, Check, "Enable C++ Control/Switching (do NOT disable unless you are an advanced user)", nullptr, nullptr, nullptr},
    {7, Compiler, Check, "Start C++ Compiler Minimized (VS2008 Only)", nullptr, nullptr, nullptr},
    {8, Compiler, Check, "Close Compiler when you open a new Project or Velmora Closes", nullptr, nullptr, nullptr},
    {49, Compiler, Check, "Follow the Visual Studio Rebuild/Debug", nullptr, nullptr, nullptr},

    {56, General, Check, "Automatically make new Plug-In object names Hungarian (e.g. CMyPlugIn) to match the book", nullptr, nullptr, nullptr},
    {60, General, Check, "Automatically check for updates on startup", nullptr, nullptr, nullptr},
    {64, General, Check, "Automatically open the last project you worked on when starting Velmora", nullptr, nullptr, nullptr},
    {48, General, Choice, "Editing Options: ", nullptr, "Edit-Replace", "Edit-Append"},
};
// clang-format on

} // namespace

std::span<const CPreferenceField> preferenceFields()
{
    return FIELDS;
}

} // namespace velmora
