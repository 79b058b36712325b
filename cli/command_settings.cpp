#include "cli/command_settings.h"

#include "base/text.h"
#include "cli/headless_document.h"
#include "cli/json_writer.h"
#include "cli/text_table.h"

#include <algorithm>

namespace velmora::cli {

namespace {

std::string preferenceText(CTonboxDoc& document, const CPreferenceRow& row)
{
    return document.preferences().isOn(row.m_sName) ? "true" : "false";
}

int printSettings(CCommandContext& context, CTonboxDoc& document)
{
    const std::string sPath = document.settingsFile().string();
    if (context.json()) {
        CJsonWriter json;
        json.beginObject();
        json.member("path", sPath);
        json.key("lines");
        json.beginArray();
        for (const CSettingRow& row : settingsTable()) {
            json.beginObject();
            json.member("line", row.m_nLine);
            json.member("name", row.m_sName);
            json.member("value", document.settings().text(row.m_nLine));
            json.endObject();
        }
        json.endArray();
        json.key("preferences");
        json.beginArray();
        for (const CPreferenceRow& row : preferenceTable()) {
            json.beginObject();
            json.member("name", row.m_sName);
            json.member("value", preferenceText(document, row));
            json.endObject();
        }
        json.endArray();
        json.endObject();
        context.m_sResult = json.text();
        return EXIT_DONE;
    }
    CTextTable table({">Line", "Name", "Value"});
    for (const CSettingRow& row : settingsTable())
        table.addRow(
            {std::to_string(row.m_nLine), std::string(row.m_sName), document.settings().text(row.m_nLine)});
    CTextTable preferences({"Preference", "Value"});
    for (const CPreferenceRow& row : preferenceTable())
        preferences.addRow({std::string(row.m_sName), preferenceText(document, row)});
    context.m_sResult = sPath + "\n\n" + table.text() + "\n" + document.preferencesFile().string() + "\n\n" +
                        preferences.text();
    return EXIT_DONE;
}

// The line that a number or a name stands for; 0 if there is none.
int lineOf(const std::string& sLine)
{
    const auto number = parseNumber(sLine);
    if (!number)
        return settingLine(sLine);
    const bool bGood = *number >= 1 && *number <= static_cast<double>(SETTING_COUNT);
    return bGood && *number == static_cast<int>(*number) ? static_cast<int>(*number) : 0;
}

bool isPreference(const std::string& sName)
{
    return std::ranges::find(preferenceTable(), sName, &CPreferenceRow::m_sName) != preferenceTable().end();
}

// False if the settings cannot be used; the user has been told.
bool readSettings(CHeadlessDocument& document)
{
    return document.start() && document->areSettingsUsable();
}

} // namespace

int runSettingsShow(CCommandContext& context)
{
    CHeadlessDocument document(context);
    if (!readSettings(document))
        return EXIT_FAILED;
    return printSettings(context, *document);
}

int runSettingsSet(CCommandContext& context)
{
    const std::string sLine = *context.line().argument("LINE");
    const int nLine = lineOf(sLine);
    const bool bPreference = isPreference(sLine);
    if (nLine == 0 && !bPreference)
        return context.usageError("There is no settings line or preference \"" + sLine +
                                  "\"; lines are 1 to " + std::to_string(SETTING_COUNT) +
                                  ", or their names. \"settings show\" lists all.");
    CHeadlessDocument document(context);
    if (!readSettings(document))
        return EXIT_FAILED;
    const std::string sValue = *context.line().argument("VALUE");
    std::string sError;
    const bool bDone = bPreference ? document->preferences().set(sLine, sValue, sError) &&
                                         document->preferences().save(document->preferencesFile(), sError)
                                   : document->settings().set(nLine, sValue, sError) &&
                                         document->settings().save(document->settingsFile(), sError);
    if (!bDone)
        return context.fail(sError);
    return printSettings(context, *document);
}

} // namespace velmora::cli
