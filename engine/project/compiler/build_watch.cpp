#include "project/compiler/build_watch.h"

#include "base/platform_folders.h"
#include "project/compiler/build_log.h"
#include "project/compiler/compiler_messages.h"
#include "project/compiler/compiler_table.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace velmora {

namespace {

// How a family's log tells the result.
enum class ELogKind
{
    errorCount, // UTF-16 text that ends with a count of errors
    projectLine // a line of project file and library, and a marker while there is none
};

struct CLogRow
{
    ECompilerFamily m_eFamily;
    ELogKind m_eKind;
    const char* m_pProjectSuffix; // of the project file that the success line names
    const char* m_pLibrarySuffix;
    bool m_bMessagesParsed; // complaints look like GCC's, and count only in the form of one
};
constexpr CLogRow LOGS[] = {
    {ECompilerFamily::visualStudio2008, ELogKind::errorCount, ".vcproj", ".dll", false},
    {ECompilerFamily::visualStudio2010, ELogKind::projectLine, ".vcxproj", ".dll", false},
    {ECompilerFamily::visualStudio2012, ELogKind::projectLine, ".vcxproj", ".dll", false},
    {ECompilerFamily::visualStudio2013, ELogKind::projectLine, ".vcxproj", ".dll", false},
    {ECompilerFamily::visualStudio2015, ELogKind::projectLine, ".vcxproj", ".dll", false},
    {ECompilerFamily::codeBlocks, ELogKind::projectLine, ".cbp", ".so", true},
    {ECompilerFamily::commandLine, ELogKind::projectLine, ".cmake", ".so", true},
};

const CLogRow* rowOf(int nCompilerId)
{
    const CCompiler* pCompiler = findCompiler(nCompilerId);
    const auto position =
        pCompiler ? std::ranges::find(LOGS, pCompiler->m_eFamily, &CLogRow::m_eFamily) : std::end(LOGS);
    return position != std::end(LOGS) ? position : nullptr;
}

std::string successLine(const CLogRow& row, const std::string& sName,
                        const std::filesystem::path& outputFolder, char cSeparator)
{
    std::string sFolder = outputFolder.string();
    while (!sFolder.empty() && (sFolder.back() == '/' || sFolder.back() == '\\'))
        sFolder.pop_back();
    return sName + row.m_pProjectSuffix + " -> " + sFolder + cSeparator + sName + row.m_pLibrarySuffix;
}

bool holdsSuccessLine(const CLogRow& row, std::string_view sLog, const std::string& sName,
                      const std::filesystem::path& outputFolder)
{
    return std::ranges::any_of(std::string_view("/\\"), [&](char cSeparator) {
        return sLog.find(successLine(row, sName, outputFolder, cSeparator)) != std::string_view::npos;
    });
}

// What stops a build, in a log whose complaints look like GCC's: the complaint itself, make's last word, or
// the verdict of a build of our own.
bool holdsParsedFailure(std::string_view sLog)
{
    const auto isError = [](const CCompilerMessage& message) { return !message.m_bWarning; };
    return sLog.find(": *** ") != std::string_view::npos ||
           sLog.find(" : error : ") != std::string_view::npos ||
           std::ranges::any_of(parseMessages(sLog), isError);
}

bool holdsFailure(std::string_view sLog)
{
    return sLog.find("fatal error ") != std::string_view::npos ||
           sLog.find(": error ") != std::string_view::npos;
}

EBuildEvent readErrorCount(const std::string& sLog)
{
    if (sLog.find("error(s)") == std::string::npos)
        return EBuildEvent::building;
    return sLog.find(" - 0 error(s)") != std::string::npos ? EBuildEvent::succeeded : EBuildEvent::failed;
}

// While the marker stands the build is running or has failed, whatever else the log says.
EBuildEvent readProjectLine(const CLogRow& row, const std::string& sLog, const CDSPProject& project,
                            const std::filesystem::path& outputFolder)
{
    std::error_code error;
    const bool bMarked = std::filesystem::exists(buildMarkerPath(project), error);
    const bool bSucceeded = !bMarked && holdsSuccessLine(row, sLog, project.m_sProjectName, outputFolder);
    // A warning may quote what looks like an error; where that is known, the finished library decides.
    if (row.m_bMessagesParsed && bSucceeded)
        return EBuildEvent::succeeded;
    if (row.m_bMessagesParsed ? holdsParsedFailure(sLog) : holdsFailure(sLog))
        return EBuildEvent::failed;
    return bSucceeded ? EBuildEvent::succeeded : EBuildEvent::building;
}

} // namespace

std::filesystem::path buildLogPath(int nCompilerId, const CDSPProject& project)
{
    const CLogRow* pRow = rowOf(nCompilerId);
    if (!pRow)
        return {};
    return project.folder() /
           (pRow->m_eKind == ELogKind::errorCount ? "BuildLog.htm" : project.m_sProjectName + ".log");
}

std::filesystem::path buildMarkerPath(const CDSPProject& project)
{
    return project.folder() / (project.m_sProjectName + ".unsuccessfulbuild");
}

std::filesystem::path builtLibraryPath(const CDSPProject& project, const std::filesystem::path& outputFolder)
{
    return outputFolder / (project.m_sProjectName + PLUGIN_LIBRARY_SUFFIX);
}

std::string buildSuccessLine(int nCompilerId, const CDSPProject& project,
                             const std::filesystem::path& outputFolder)
{
    const CLogRow* pRow = rowOf(nCompilerId);
    return pRow ? successLine(*pRow, project.m_sProjectName, outputFolder, '/') : std::string();
}

void deleteBuildResults(int nCompilerId, const CDSPProject& project)
{
    std::error_code ignored;
    for (const auto& file : {buildLogPath(nCompilerId, project), buildMarkerPath(project)})
        if (!file.empty())
            std::filesystem::remove(file, ignored);
}

EBuildEvent readBuildResult(int nCompilerId, const CDSPProject& project,
                            const std::filesystem::path& outputFolder)
{
    const CLogRow* pRow = rowOf(nCompilerId);
    if (!pRow)
        return EBuildEvent::building;
    const bool bCounted = pRow->m_eKind == ELogKind::errorCount;
    const auto sLog = readBuildLog(buildLogPath(nCompilerId, project), bCounted);
    if (!sLog)
        return EBuildEvent::building;
    return bCounted ? readErrorCount(*sLog) : readProjectLine(*pRow, *sLog, project, outputFolder);
}

} // namespace velmora
