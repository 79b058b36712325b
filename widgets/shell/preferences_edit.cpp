#include "widgets/shell/preferences_edit.h"

#include "document/tonbox_doc.h"
#include "host/settings_table.h"
#include "widgets/common/qt_text.h"
#include "widgets/shell/preference_fields.h"

#include <QSettings>
#include <algorithm>

namespace velmora {

CPreferencesEdit preferencesOf(CTonboxDoc& document, const QSettings& profile)
{
    CPreferencesEdit edit;
    for (const CPreferenceField& field : preferenceFields())
        edit.m_lines[field.m_nLine] = document.settings().text(field.m_nLine);
    edit.m_nCompilerId = static_cast<int>(document.settings().compilerId());
    for (const CPreferenceRow& row : preferenceTable())
        edit.m_switches[std::string(row.m_sName)] = document.preferences().isOn(row.m_sName);
    const int nScheme = profile.value(qs(COLOUR_SCHEME_KEY)).toInt();
    edit.m_eScheme =
        static_cast<EColourScheme>(std::clamp(nScheme, 0, static_cast<int>(EColourScheme::Light)));
    return edit;
}

bool writePreferences(const CPreferencesEdit& edit, CTonboxDoc& document, QSettings& profile,
                      std::string& sError)
{
    CSettings settings = document.settings();
    for (const auto& [nLine, sText] : edit.m_lines)
        if (!settings.set(nLine, sText, sError))
            return false;
    settings.setCompilerId(static_cast<unsigned>(edit.m_nCompilerId));
    CPreferences preferences = document.preferences();
    for (const auto& [sName, bOn] : edit.m_switches)
        if (!preferences.set(sName, bOn ? "true" : "false", sError))
            return false;
    document.settings() = settings;
    document.preferences() = preferences;
    document.applyPreferences();
    profile.setValue(qs(COLOUR_SCHEME_KEY), static_cast<int>(edit.m_eScheme));
    profile.sync();
    CTheme::instance().setScheme(edit.m_eScheme);
    return document.settings().save(document.settingsFile(), sError) &&
           document.preferences().save(document.preferencesFile(), sError);
}

} // namespace velmora
