#include "base/platform_file_lock.h"
#include "base/text.h"
#include "cli/command_context.h"
#include "cli/command_project.h"
#include "cli/headless_project.h"
#include "cli/json_writer.h"
#include "cli/project_json.h"
#include "cli/text_table.h"
#include "document/project_lock.h"
#include "project/codegen/project_history.h"
#include "project/dsp_project.h"
#include "project/project_file.h"
#include "project/project_schema.h"

#include <algorithm>

namespace velmora::cli {

namespace {

// "2024-05-31T12:00:00Z"
std::string timeText(std::chrono::sys_seconds time)
{
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    return formatted("%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                     static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                     static_cast<int>(clock.seconds().count()));
}

void writeEntryMembers(CJsonWriter& json, const CHistoryEntry& entry)
{
    json.member("number", entry.m_uNumber);
    json.member("time", timeText(entry.m_time));
    json.member("file", entry.m_sFile);
    json.member("reason", entry.m_sReason);
}

std::string entriesAsJson(const std::vector<CHistoryEntry>& entries)
{
    CJsonWriter json;
    json.beginObject();
    json.key("entries");
    json.beginArray();
    for (const CHistoryEntry& entry : entries) {
        json.beginObject();
        writeEntryMembers(json, entry);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.text();
}

std::string entriesAsTable(const std::vector<CHistoryEntry>& entries)
{
    if (entries.empty())
        return "No earlier texts.\n";
    CTextTable table({">Number", "Time", "File", ">Bytes", "Replaced by"});
    for (const CHistoryEntry& entry : entries)
        table.addRow({std::to_string(entry.m_uNumber), timeText(entry.m_time), entry.m_sFile,
                      std::to_string(entry.m_uSize), entry.m_sReason});
    return table.text();
}

// The entry that an option names; null, and the user has been told, if there is none.
const CHistoryEntry* entryOf(CCommandContext& context, const std::vector<CHistoryEntry>& entries,
                             std::string_view sOption)
{
    const auto uNumber = static_cast<std::uint32_t>(context.line().number(sOption, 0.0));
    const auto found = std::ranges::find(entries, uNumber, &CHistoryEntry::m_uNumber);
    if (found != entries.end())
        return &*found;
    context.dialogs().showMessage("The history has no entry " + std::to_string(uNumber) +
                                  "; without an option the command lists them.");
    return nullptr;
}

int showEntry(CCommandContext& context, const CProjectHistory& history, const CHistoryEntry& entry)
{
    const auto text = history.text(entry.m_uNumber);
    if (!text)
        return context.fail("The entry " + std::to_string(entry.m_uNumber) + " cannot be read.");
    context.m_sResult = *text;
    if (context.json()) {
        CJsonWriter json;
        json.beginObject();
        writeEntryMembers(json, entry);
        json.member("text", *text);
        json.endObject();
        context.m_sResult = json.text();
    }
    return EXIT_DONE;
}

int restoreEntry(CCommandContext& context, CProjectHistory& history, const CHistoryEntry& entry,
                 const std::filesystem::path& file)
{
    CFileLock lock(CProjectLock::lockFile(file)); // nobody else writes the project meanwhile
    if (!lock.tryToTake()) {
        if (const std::string sReason = CProjectLock::heldByWindow(file); !sReason.empty())
            return context.fail(sReason);
        lock.take();
    }
    if (!history.restore(entry.m_uNumber))
        return context.fail(history.error());
    context.m_sResult =
        entry.m_sFile + " has the text of entry " + std::to_string(entry.m_uNumber) + " again.\n";
    if (context.json()) {
        CJsonWriter json;
        json.beginObject();
        writeEntryMembers(json, entry);
        json.endObject();
        context.m_sResult = json.text();
    }
    return EXIT_DONE;
}

} // namespace

int runProjectInfo(CCommandContext& context)
{
    CDSPProject project;
    const std::filesystem::path file = *context.line().argument("FILE");
    if (!isProjectFileThere(context, file) || !loadProject(project, file, context.dialogs()))
        return EXIT_FAILED;
    context.m_sResult = context.json() ? projectAsJson(project) : projectAsText(project);
    return EXIT_DONE;
}

int runProjectConvert(CCommandContext& context)
{
    CDSPProject project;
    const std::filesystem::path in = *context.line().argument("IN");
    if (!isProjectFileThere(context, in) || !loadProject(project, in, context.dialogs()))
        return EXIT_FAILED;
    const int nFrom = project.loadedSchema();
    if (!saveProject(project, *context.line().argument("OUT"), context.dialogs()))
        return EXIT_FAILED;
    context.m_sResult = formatted("Schema %d became %d.\n", nFrom, NEWEST_SCHEMA);
    if (context.json()) {
        CJsonWriter json;
        json.beginObject();
        json.member("from", nFrom);
        json.member("to", NEWEST_SCHEMA);
        json.endObject();
        context.m_sResult = json.text();
    }
    return EXIT_DONE;
}

int runProjectHistory(CCommandContext& context)
{
    const CCommandLine& line = context.line();
    if (line.has("--show") && line.has("--restore"))
        return context.usageError("The options --show and --restore exclude each other.");
    const std::filesystem::path file = *line.argument("FILE");
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return context.fail("There is no project file " + file.string() + ".");
    CProjectHistory history(file.parent_path());
    const auto entries = history.entries();
    for (const char* pOption : {"--show", "--restore"}) {
        if (!line.has(pOption))
            continue;
        const CHistoryEntry* pEntry = entryOf(context, entries, pOption);
        if (!pEntry)
            return EXIT_FAILED;
        return line.has("--show") ? showEntry(context, history, *pEntry)
                                  : restoreEntry(context, history, *pEntry, file);
    }
    context.m_sResult = context.json() ? entriesAsJson(entries) : entriesAsTable(entries);
    return EXIT_DONE;
}

} // namespace velmora::cli
