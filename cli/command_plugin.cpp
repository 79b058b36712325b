#include "cli/command_plugin.h"

#include "base/text.h"
#include "cli/headless_document.h"
#include "cli/json_writer.h"
#include "cli/shown_values.h"
#include "cli/text_table.h"
#include "host/plugin_library.h"
#include "host/user_dsp_filter.h"
#include "plugin.h"

#include <array>
#include <variant>

namespace velmora::cli {

namespace {

std::string versionText(int nVersion)
{
    return nVersion < 0 ? "" : std::to_string(nVersion);
}

std::string scanAsJson(const std::vector<CScanEntry>& entries)
{
    CJsonWriter json;
    json.beginObject();
    json.key("plugIns");
    json.beginArray();
    for (const CScanEntry& entry : entries) {
        json.beginObject();
        json.member("file", entry.m_file.string());
        json.member("m_PlugInName", entry.m_sPlugInName);
        json.key("version");
        if (entry.m_nVersion < 0)
            json.null();
        else
            json.value(entry.m_nVersion);
        json.member("status", scanStatusText(entry.m_eStatus));
        json.member("reason", entry.m_sReason);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.text();
}

std::string scanAsTable(const std::vector<CScanEntry>& entries, const std::filesystem::path& folder)
{
    if (entries.empty())
        return "No plug-in libraries in " + folder.string() + "\n";
    CTextTable table({"File", "Plug-in", ">Version", "Status", "Reason"});
    for (const CScanEntry& entry : entries)
        table.addRow({entry.m_file.filename().string(), entry.m_sPlugInName, versionText(entry.m_nVersion),
                      scanStatusText(entry.m_eStatus), entry.m_sReason});
    return table.text();
}

// A member of CPlugIn as it is printed.
struct CPrintedMember
{
    const char* m_pName;
    std::variant<bool CPlugIn::*, int CPlugIn::*, UINT CPlugIn::*> m_member;
};

constexpr std::array<CPrintedMember, 12> PRINTED_MEMBERS = {{
    {"m_uPlugInVersion", &CPlugIn::m_uPlugInVersion},
    {"m_bOutputOnlyPlugIn", &CPlugIn::m_bOutputOnlyPlugIn},
    {"m_bWantBuffers", &CPlugIn::m_bWantBuffers},
    {"m_bWantChannelBuffers", &CPlugIn::m_bWantChannelBuffers},
    {"m_bWantIRs", &CPlugIn::m_bWantIRs},
    {"m_nIRLength", &CPlugIn::m_nIRLength},
    {"m_bWantAllMIDIMessages", &CPlugIn::m_bWantAllMIDIMessages},
    {"m_bEnableMIDIControl", &CPlugIn::m_bEnableMIDIControl},
    {"m_bUserCustomGUI", &CPlugIn::m_bUserCustomGUI},
    {"m_bUseCustomVSTGUI", &CPlugIn::m_bUseCustomVSTGUI},
    {"m_uMaxInputChannels", &CPlugIn::m_uMaxInputChannels},
    {"m_uMaxOutputChannels", &CPlugIn::m_uMaxOutputChannels},
}};

std::string textOf(const char* pText)
{
    return pText ? pText : "";
}

// The variable's value with the precision of its own type; null for a control without one.
void writeValue(CJsonWriter& json, const CDSPFilterControl& control)
{
    json.key("value");
    const auto value = control.cookedValue();
    if (!value)
        json.null();
    else if (control.uUserDataType == floatData)
        json.value(static_cast<float>(*value));
    else if (control.uUserDataType == doubleData)
        json.value(*value);
    else
        json.value(static_cast<std::int64_t>(*value));
}

void writeControl(CJsonWriter& json, CPlugIn& plugIn, const CDSPFilterControl& control)
{
    json.beginObject();
    json.member("uControlType", control.uControlType);
    json.member("uControlId", control.uControlId);
    json.member("m_sName", control.m_sName);
    json.member("m_sUnits", control.m_sUnits);
    json.member("cVariableName", variableNameOf(plugIn, control));
    json.member("uUserDataType", control.uUserDataType);
    json.member("fUserDisplayDataLoLimit", control.fUserDisplayDataLoLimit);
    json.member("fUserDisplayDataHiLimit", control.fUserDisplayDataHiLimit);
    json.member("bLogSlider", control.bLogSlider);
    json.member("bExpSlider", control.bExpSlider);
    json.member("cEnumeratedList", control.cEnumeratedList);
    writeValue(json, control);
    json.member("m_sValue", control.m_sValue);
    json.member("m_nPos", control.m_nPos);
    json.member("m_fNormalized", control.m_fNormalized);
    json.endObject();
}

std::vector<std::string> presetNames(const CPlugIn& plugIn)
{
    std::vector<std::string> names;
    for (const char* pName : plugIn.m_PresetNames)
        if (pName && *pName)
            names.emplace_back(pName);
    return names;
}

std::string plugInAsJson(CPlugIn& plugIn, const CDSPFilter& filter, const std::filesystem::path& file)
{
    CJsonWriter json;
    json.beginObject();
    json.member("file", file.string());
    json.member("m_PlugInName", textOf(plugIn.m_PlugInName));
    for (const CPrintedMember& member : PRINTED_MEMBERS)
        std::visit([&](auto pMember) { json.member(member.m_pName, plugIn.*pMember); }, member.m_member);
    json.key("controls");
    json.beginArray();
    for (const auto& pControl : filter.m_ControlList)
        writeControl(json, plugIn, *pControl);
    json.endArray();
    json.key("presets");
    json.array(std::span<const std::string>(presetNames(plugIn)));
    json.endObject();
    return json.text();
}

const char* kindOf(const CDSPFilterControl& control)
{
    switch (control.uControlType) {
    case FILTER_CONTROL_CONTINUOUSLY_VARIABLE:
        return "slider";
    case FILTER_CONTROL_DIRECT_DATA_ENTRY:
        return "text";
    case FILTER_CONTROL_RADIO_SWITCH_VARIABLE:
        return "radio";
    case FILTER_CONTROL_LED_METER:
        return "meter";
    case FILTER_CONTROL_COMBO_VARIABLE:
        return "list";
    default:
        return "other";
    }
}

// What the value of a list stands for: "1 (Highpass)".
std::string shownValue(const CDSPFilterControl& control)
{
    const std::string sItem = chosenItem(control);
    return sItem.empty() ? control.m_sValue : control.m_sValue + " (" + sItem + ")";
}

std::vector<std::string> controlRow(const CDSPFilterControl& control)
{
    std::vector<std::string> cells = {std::to_string(control.uControlId), control.m_sName, kindOf(control),
                                      shownValue(control), control.m_sUnits};
    if (control.uControlType == FILTER_CONTROL_LED_METER)
        return cells; // a meter has no range
    cells.push_back(formatted("%g", static_cast<double>(control.fUserDisplayDataLoLimit)));
    cells.push_back(formatted("%g", static_cast<double>(control.fUserDisplayDataHiLimit)));
    cells.emplace_back(control.bLogSlider ? "log" : control.bExpSlider ? "exp" : "linear");
    cells.push_back(std::to_string(control.m_nPos));
    return cells;
}

std::string memberText(const CPlugIn& plugIn, const CPrintedMember& member)
{
    if (const auto* pFlag = std::get_if<bool CPlugIn::*>(&member.m_member))
        return plugIn.**pFlag ? "yes" : "no";
    if (const auto* pNumber = std::get_if<int CPlugIn::*>(&member.m_member))
        return std::to_string(plugIn.**pNumber);
    return std::to_string(plugIn.*std::get<UINT CPlugIn::*>(member.m_member));
}

std::string plugInAsText(CPlugIn& plugIn, const CDSPFilter& filter, const std::filesystem::path& file)
{
    CTextTable members({"Member", ">Value"});
    for (const CPrintedMember& member : PRINTED_MEMBERS)
        members.addRow({member.m_pName, memberText(plugIn, member)});
    CTextTable controls({">Id", "Name", "Kind", ">Value", "Units", ">Low", ">High", "Law", ">Position"});
    for (const auto& pControl : filter.m_ControlList)
        controls.addRow(controlRow(*pControl));

    std::string sText = textOf(plugIn.m_PlugInName) + "\n" + file.string() + "\n\n" + members.text() + "\n";
    sText += controls.empty() ? "No controls.\n" : controls.text();
    const auto presets = presetNames(plugIn);
    for (const std::string& sPreset : presets)
        sText += (&sPreset == &presets.front() ? "\nPresets: " : ", ") + sPreset;
    return presets.empty() ? sText : sText + "\n";
}

} // namespace

int runPlugInScan(CCommandContext& context)
{
    CHeadlessDocument document(context);
    const auto given = context.line().argument("DIR");
    if (!given && !document.start())
        return EXIT_FAILED;
    const std::filesystem::path folder = given ? std::filesystem::path(*given) : document->plugInFolder();
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        return context.fail("There is no folder " + folder.string() + ".");
    context.announce("Scanning the libraries of " + folder.string() + " ...");
    document->plugInLoader().scanPlugIns(folder);
    const auto& entries = document->plugInLoader().scanEntries();
    context.m_sResult = context.json() ? scanAsJson(entries) : scanAsTable(entries, folder);
    return EXIT_DONE;
}

int runPlugInInspect(CCommandContext& context)
{
    const auto argument = context.line().argument("FILE");
    if (argument.has_value() == context.line().has("--plugin"))
        return context.usageError(argument ? "The plug-in is given twice." : "The argument FILE is missing.");
    CHeadlessDocument document(context);
    if ((argument && !document.loadPlugIn(*argument)) || !document.applyFilterOptions())
        return EXIT_FAILED;
    context.m_sResult = plugInResult(document, context.json());
    return EXIT_DONE;
}

std::string plugInResult(CHeadlessDocument& document, bool bJson)
{
    CLoadedPlugIn& loaded = *document->plugInLoader().current();
    const std::filesystem::path file = loaded.library()->path();
    return (bJson ? plugInAsJson : plugInAsText)(*loaded.plugIn(), loaded.filter(), file);
}

} // namespace velmora::cli
