#pragma once

#include "widgets/common/theme.h"

#include <map>
#include <string>

class QSettings;

namespace velmora {

class CTonboxDoc;

// What the preferences dialog shows, and on "Save" hands over: every value that it edits, changed or not.
struct CPreferencesEdit
{
    std::map<int, std::string> m_lines;              // by line of the settings file, as they stand in it
    int m_nCompilerId = 0;                           // line 5; the compiler itself changes apart
    std::map<std::string, bool> m_switches;          // by name of preferenceTable()
    EColourScheme m_eScheme = EColourScheme::System; // kept in the window's profile
};

// The profile's key of the colour scheme, a number.
inline constexpr const char* COLOUR_SCHEME_KEY = "Settings/ColourScheme";

// The values as they are now. [main]
[[nodiscard]] CPreferencesEdit preferencesOf(CTonboxDoc& document, const QSettings& profile);

// Takes over all of it, and writes the settings, the preferences and the profile. The engine
// and the theme follow. False with a message in sError if a value cannot be kept, when nothing has changed,
// or if a file could not be written. [main]
[[nodiscard]] bool writePreferences(const CPreferencesEdit& edit, CTonboxDoc& document, QSettings& profile,
                                    std::string& sError);

} // namespace velmora
