#include "cli/headless_project.h"

#include "base/platform_folders.h"
#include "base/text.h"
#include "cli/json_writer.h"
#include "project/codegen/code_markers.h"
#include "project/codegen/text_surgery.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <utility>

namespace velmora::cli {

CHeadlessProject::CHeadlessProject(CCommandContext& context) : m_context(context), m_document(context) {}

bool CHeadlessProject::start()
{
    if (!m_document.start())
        return false;
    m_commands.emplace(*m_document, m_context.dialogs(), programDataFolder("BaseClassFiles"));
    const unsigned uSettingsId = m_document->settings().compilerId();
    const double dId = m_context.line().number("--compiler", uSettingsId);
    if (m_commands->compilers().choose(static_cast<int>(dId)))
        return true;
    m_context.dialogs().showMessage(formatted("There is no compiler with the id %.0f. --compiler chooses "
                                              "another one for this command, \"settings set "
                                              "m_uCompilerId ID\" for all.",
                                              dId));
    return false;
}

bool CHeadlessProject::startWith(const std::filesystem::path& file)
{
    if (!start() || !isProjectFileThere(m_context, file))
        return false;
    return lock(file) && m_commands->loadProject(file) && checkMarks();
}

bool CHeadlessProject::checkMarks()
{
    const CDSPProject& project = *m_commands->project();
    const std::pair<std::filesystem::path, CCodeRegion> REGIONS[] = {
        {project.headerPath(), HEADER_REGION},
        {project.sourcePath(), INIT_UI_REGION},
        {project.sourcePath(), CONTROL_TABLE_REGION}};
    for (const auto& [path, region] : REGIONS) {
        std::string sText; // one that is not there, or empty, is told by what follows
        if (!readFileToString(path, sText, false, 0, true) || sText.empty())
            continue;
        const auto fault = findRegionFault(sText, region);
        if (!fault)
            continue;
        m_context.dialogs().showMessage(
            "In " + path.string() + " " + fault->m_sText + ". Velmora writes its lines between " +
            std::string(region.m_sBegin) + " and " + std::string(region.m_sEnd) +
            ": put it back where it stood, or take an earlier text back; \"project history\" lists them.");
        return false;
    }
    return true;
}

bool CHeadlessProject::lock(const std::filesystem::path& projectFile)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(projectFile, error))
        return true; // which whoever reads it tells
    m_lock.emplace(CProjectLock::lockFile(projectFile));
    if (m_lock->tryToTake())
        return true;
    if (const std::string sReason = CProjectLock::heldByWindow(projectFile); !sReason.empty()) {
        m_context.dialogs().showMessage(sReason);
        return false;
    }
    m_context.announce("Waiting for another command on " + projectFile.string() + " ...");
    m_lock->take();
    return true;
}

int CHeadlessProject::refused()
{
    CConsoleDialogs& dialogs = m_context.dialogs();
    if (dialogs.hasDeclined())
        dialogs.showMessage("Nothing was done, because a question was answered with No; --answer yes replies "
                            "with Yes.");
    else if (dialogs.lastMessage().empty())
        dialogs.showMessage("The command was refused.");
    return EXIT_FAILED;
}

void CHeadlessProject::showReasons(const CRebuildResult& result)
{
    const CBuildReport& report = result.m_build;
    if (report.m_bCancelled)
        m_context.dialogs().showMessage("The build was stopped.");
    else if (report.m_eState == EBuildState::building)
        m_context.dialogs().showMessage("The build took too long and was given up.");
    else if (!report.m_sError.empty())
        m_context.showReason(report.m_sError);
    else if (report.m_eState == EBuildState::succeeded && !result.m_bLoaded)
        m_context.showReason(m_document->plugInLoader().reason());
}

bool isProjectFileThere(CCommandContext& context, const std::filesystem::path& file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        context.dialogs().showMessage(file.string() + " is a folder. Name the .prj file in it.");
    else if (!std::filesystem::exists(file, error) && !error)
        context.dialogs().showMessage("There is no project file " + file.string() + ".");
    else
        return true;
    return false;
}

std::string filesResult(const CCommandContext& context, std::string_view sKey,
                        const std::vector<std::filesystem::path>& files)
{
    if (context.json()) {
        CJsonWriter json;
        json.beginObject();
        json.key(sKey);
        json.beginArray();
        for (const auto& file : files)
            json.value(file.string());
        json.endArray();
        json.endObject();
        return json.text();
    }
    std::string sText;
    for (const auto& file : files)
        sText += file.string() + "\n";
    return sText.empty() ? "No file was changed.\n" : sText;
}

std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    std::error_code error;
    using CIterator = std::filesystem::recursive_directory_iterator;
    for (CIterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unreadable;
        if (entry->is_directory(unreadable) && entry->path().filename().string().starts_with('.'))
            entry.disable_recursion_pending();
        else if (entry->is_regular_file(unreadable))
            files.push_back(entry->path());
    }
    std::ranges::sort(files);
    return files;
}

} // namespace velmora::cli
