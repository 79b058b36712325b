#include "base/platform_folders.h"
#include "base/text.h"
#include "cli/command_project.h"
#include "cli/headless_project.h"
#include "cli/json_writer.h"
#include "cli/signal_guard.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_copy.h"
#include "project/codegen/project_environment.h"
#include "project/dsp_project.h"

#include <algorithm>

namespace velmora::cli {

namespace {

// The stock object of a name, whatever its case; empty, and the user has been told, if there is none.
std::string stockObjectNamed(CCommandContext& context, const std::string& sName)
{
    CProjectEnvironment environment;
    environment.m_baseClassFolder = programDataFolder("BaseClassFiles");
    const auto names = stockObjectNames(environment);
    const auto found =
        std::ranges::find_if(names, [&](const std::string& s) { return equalsIgnoreCase(s, sName); });
    if (found != names.end())
        return *found;
    std::string sList;
    for (const std::string& sOffered : names)
        sList += (sList.empty() ? "" : ", ") + sOffered;
    context.dialogs().showMessage("There is no stock object \"" + sName + "\". There are " + sList + ".");
    return {};
}

// False if a solution, module or stock object is not there; the user has been told.
bool takeFiles(CCommandContext& context, CNewProjectRequest& request)
{
    for (const CGivenOption& option : context.line().options()) {
        std::error_code error;
        if (option.m_sName == "--solution" && !std::filesystem::is_regular_file(option.m_sValue, error)) {
            context.dialogs().showMessage("There is no solution file " + option.m_sValue + ".");
            return false;
        }
        if (option.m_sName == "--module") {
            request.m_modules.emplace_back(option.m_sValue);
            if (!std::filesystem::is_regular_file(option.m_sValue, error)) {
                context.dialogs().showMessage("There is no project file " + option.m_sValue + ".");
                return false;
            }
        } else if (option.m_sName == "--stock") {
            request.m_stockObjects.push_back(stockObjectNamed(context, option.m_sValue));
            if (request.m_stockObjects.back().empty())
                return false;
        }
    }
    return true;
}

CNewProjectRequest requestOf(const CCommandLine& line, const CSettings& settings)
{
    CNewProjectRequest request;
    request.setName(*line.argument("NAME"));
    request.m_parentFolder = line.text("--folder").value_or(settings.defaultProjectFolder());
    request.m_sCompanyName = line.text("--company").value_or(settings.companyName());
    request.m_sLatency = line.text("--latency").value_or("0");
    request.m_bOutputOnlyPlugIn = line.has("--synth");
    request.m_bUseCustomVSTGUI = line.has("--custom-gui");
    request.m_bUserCustomGUI = line.has("--own-gui");
    request.m_bVSTCompatible = line.has("--vst-compatible");
    request.m_bSidechainEnabled = line.has("--sidechain");
    request.m_bIncludeFFT = line.has("--fft");
    request.m_bCreateNewSolution = !line.has("--solution");
    request.m_existingSolution = line.text("--solution").value_or("");
    return request;
}

// A new project's folder, its .prj, and all that was made.
std::string newProjectResult(const CCommandContext& context, const std::filesystem::path& projectFile)
{
    const std::filesystem::path folder = projectFile.parent_path();
    const auto files = filesBelow(folder);
    if (!context.json()) {
        std::string sText = projectFile.string() + "\n\nIn " + folder.string() + ":\n";
        for (const auto& file : files)
            sText += "  " + file.lexically_relative(folder).string() + "\n";
        return sText;
    }
    CJsonWriter json;
    json.beginObject();
    json.member("folder", folder.string());
    json.member("project", projectFile.string());
    json.key("files");
    json.beginArray();
    for (const auto& file : files)
        json.value(file.string());
    json.endArray();
    json.endObject();
    return json.text();
}

// A command that works on FILE and answers the files that it changed.
int runOnProject(CCommandContext& context, std::string_view sKey,
                 bool (*pCommand)(CProjectCommands& commands, const CCommandLine& line))
{
    CHeadlessProject project(context);
    if (!project.startWith(*context.line().argument("FILE")))
        return EXIT_FAILED;
    if (!pCommand(*project, context.line()))
        return project.refused();
    context.m_sResult = filesResult(context, sKey, project->changedFiles());
    return EXIT_DONE;
}

} // namespace

int runProjectCreate(CCommandContext& context)
{
    CHeadlessProject project(context);
    if (!project.start())
        return EXIT_FAILED;
    CNewProjectRequest request = requestOf(context.line(), project.document()->settings());
    if (!takeFiles(context, request))
        return EXIT_FAILED;
    if (!checkNewProject(request, true, context.dialogs()))
        return EXIT_FAILED;
    std::error_code error; // a folder that cannot be made is told by what follows
    std::filesystem::create_directories(request.m_parentFolder, error);
    if (!project->newProject(request))
        return project.refused();
    context.m_sResult = newProjectResult(context, project->project()->m_sProjectFile);
    return EXIT_DONE;
}

int runProjectOpen(CCommandContext& context)
{
    CHeadlessProject project(context);
    if (!project.start())
        return EXIT_FAILED;
    if (!isProjectFileThere(context, *context.line().argument("FILE")))
        return EXIT_FAILED;
    if (!project.lock(*context.line().argument("FILE")) ||
        !project->openProject(*context.line().argument("FILE")))
        return project.refused();
    context.m_sResult = filesResult(context, "changed", project->changedFiles());
    return EXIT_DONE;
}

int runProjectSaveAs(CCommandContext& context)
{
    const CCommandLine& line = context.line();
    CHeadlessProject project(context);
    if (!project.startWith(*line.argument("FILE")))
        return EXIT_FAILED;
    CProjectCopyRequest request;
    request.m_sProjectName = *line.argument("NEWNAME");
    request.m_parentFolder =
        line.text("--folder").value_or(project->project()->folder().parent_path().string());
    request.m_bCopyEntireFolder = line.has("--copy-all");
    request.m_bOmitVSTLibraries = line.has("--omit-libraries");
    if (!project->saveAs(request))
        return project.refused();
    context.m_sResult = newProjectResult(context, project->changedFiles().front());
    return EXIT_DONE;
}

int runProjectClear(CCommandContext& context)
{
    return runOnProject(context, "written", [](CProjectCommands& commands, const CCommandLine&) {
        return commands.clearProject();
    });
}

int runProjectImportControls(CCommandContext& context)
{
    return runOnProject(context, "written", [](CProjectCommands& commands, const CCommandLine& line) {
        return commands.importControls([&] { return line.argument("OTHER"); });
    });
}

int runProjectSync(CCommandContext& context)
{
    return runOnProject(context, "written", [](CProjectCommands& commands, const CCommandLine&) {
        const CCrashGuard guard(commands.project()->m_sProjectName); // for the plug-in that it loads
        return commands.synchronizeCode();
    });
}

} // namespace velmora::cli
