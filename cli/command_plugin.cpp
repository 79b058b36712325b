#include "cli/command_plugin.h"

#include "base/text.h"
#include "cli/headless_document.h"
#include "cli/json_writer.h"
#include "cli/shown_values.h"
#include "cli/text_table.h"
#include "dsp/modules/module_filter.h"
#include "host/control_walk.h"
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

void writeControl(CJsonWriter& json, CPlugIn* pPlugIn, const CDSPFilterControl& control)
{
    json.beginObject();
    json.member("uControlType", control.uControlType);
    json.member("uControlId", control.uControlId);
    json.member("m_sName", control.m_sName);
    json.member("m_sUnits", control.m_sUnits);
    json.member("cVariableName", pPlugIn ? variableNameOf(*pPlugIn, control) : std::string());
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

void writeMember(CJsonWriter& json, CPlugIn* pPlugIn, const CPrintedMember& member)
{
    json.key(member.m_pName);
    if (pPlugIn)
        std::visit([&](auto pMember) { json.value(pPlugIn->*pMember); }, member.m_member);
    else
        json.null();
}

// A filter as plugin inspect prints it; a built-in module has no plug-in and no file.
struct CPrintedFilter
{
    CDSPFilter& m_filter;
    CPlugIn* m_pPlugIn;
    std::filesystem::path m_file;

    [[nodiscard]] std::string name() const
    {
        return m_pPlugIn ? textOf(m_pPlugIn->m_PlugInName) : m_filter.m_sName;
    }

    [[nodiscard]] std::vector<std::string> presets() const
    {
        if (m_pPlugIn)
            return presetNames(*m_pPlugIn);
        const auto* pModule = dynamic_cast<const CModuleFilter*>(&m_filter);
        return pModule ? pModule->presetNames() : std::vector<std::string>();
    }
};

std::string filterAsJson(const CPrintedFilter& printed)
{
    CJsonWriter json;
    json.beginObject();
    json.key("file");
    if (printed.m_pPlugIn)
        json.value(printed.m_file.string());
    else
        json.null();
    json.member("m_PlugInName", printed.name());
    for (const CPrintedMember& member : PRINTED_MEMBERS)
        writeMember(json, printed.m_pPlugIn, member);
    json.key("controls");
    json.beginArray();
    for (const CDSPFilterControl* pControl : controlsOf(printed.m_filter))
        writeControl(json, printed.m_pPlugIn, *pControl);
    json.endArray();
    json.key("presets");
    json.array(std::span<const std::string>(printed.presets()));
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

// In the units of the value beside it, which in a module may be others than those of its variable.
CModuleFilter::CShownRange shownRange(const CDSPFilterControl& control)
{
    const auto* pModule = dynamic_cast<const CModuleFilter*>(control.m_pFilter);
    return pModule
               ? pModule->shownRange(control)
               : CModuleFilter::CShownRange{control.fUserDisplayDataLoLimit, control.fUserDisplayDataHiLimit};
}

std::vector<std::string> controlRow(const CDSPFilterControl& control)
{
    std::vector<std::string> cells = {std::to_string(control.uControlId), control.m_sName, kindOf(control),
                                      shownValue(control), control.m_sUnits};
    if (control.uControlType == FILTER_CONTROL_LED_METER)
        return cells; // a meter has no range
    const auto [dLow, dHigh] = shownRange(control);
    cells.push_back(formatted("%g", dLow));
    cells.push_back(formatted("%g", dHigh));
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

std::string filterAsText(const CPrintedFilter& printed)
{
    CTextTable members({"Member", ">Value"});
    if (printed.m_pPlugIn)
        for (const CPrintedMember& member : PRINTED_MEMBERS)
            members.addRow({member.m_pName, memberText(*printed.m_pPlugIn, member)});
    CTextTable controls({">Id", "Name", "Kind", ">Value", "Units", ">Low", ">High", "Law", ">Position"});
    for (const CDSPFilterControl* pControl : controlsOf(printed.m_filter))
        controls.addRow(controlRow(*pControl));

    std::string sText = printed.name() + "\n";
    sText += printed.m_pPlugIn ? printed.m_file.string() + "\n\n" + members.text() : "built-in module\n";
    sText += "\n" + (controls.empty() ? "No controls.\n" : controls.text());
    const auto presets = printed.presets();
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
    const CCommandLine& line = context.line();
    const auto argument = line.argument("FILE");
    const int nGiven = int{argument.has_value()} + int{line.has("--plugin")} + int{line.has("--module")};
    if (nGiven != 1)
        return context.usageError(
            nGiven == 0 ? "The argument FILE is missing."
                        : "The filter is given twice: FILE, --plugin and --module exclude one another.");
    CHeadlessDocument document(context);
    if ((argument && !document.loadPlugIn(*argument)) || !document.applyFilterOptions())
        return EXIT_FAILED;
    context.m_sResult = plugInResult(document, context.json());
    return EXIT_DONE;
}

std::string plugInResult(CHeadlessDocument& document, bool bJson)
{
    CPrintedFilter printed{*document->currentFilter(), nullptr, {}};
    if (CLoadedPlugIn* pLoaded = document->plugInLoader().current()) {
        printed.m_pPlugIn = pLoaded->plugIn();
        printed.m_file = pLoaded->library()->path();
    }
    return (bJson ? filterAsJson : filterAsText)(printed);
}

} // namespace velmora::cli
