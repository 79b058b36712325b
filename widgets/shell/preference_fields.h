#pragma once

#include <span>

namespace velmora {

// The pages of the preferences dialog, in their order.
enum class EPreferencePage
{
    Folders,
    Compiler,
    Export,
    General
};

enum class EPreferenceField
{
    Text,
    Folder,   // with "Browse"
    WaveFile, // with "Browse"
    Check,
    Choice // two radio buttons; the second means true
};

// One line of the settings file as the preferences dialog edits it.
struct CPreferenceField
{
    int m_nLine; // of the settings file
    EPreferencePage m_ePage;
    EPreferenceField m_eField;
    const char* m_pLabel;  // of the field, of the check box, or ahead of the radio buttons
    const char* m_pBrowse; // title of the folder's chooser, or filter of the file's; else null
    const char* m_pFirst;  // of the radio buttons; else null
    const char* m_pSecond;
};

// All of them, page by page in the order in which they stand there; line 5, the compiler, is not among them.
// A folder without a label belongs to the choice above it and is used when that is true.
[[nodiscard]] std::span<const CPreferenceField> preferenceFields();

} // namespace velmora
