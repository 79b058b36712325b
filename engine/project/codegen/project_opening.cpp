#include "project/codegen/project_opening.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/codegen/added_files.h"
#include "project/codegen/base_files.h"
#include "project/codegen/linker_settings.h"
#include "project/codegen/linux_project_files.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/project_update.h"
#include "project/codegen/solution_file.h"
#include "project/codegen/text_surgery.h"
#include "project/codegen/visual_studio_files.h"
#include "project/dsp_project.h"
#include "project/project_file.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr const char* SOLUTION_QUESTION = "The Solution (.sln) File could not be found. You need to setup a "
                                          "Solution file before proceeding. Do you want "
                                          "to create a default .sln file?\n\nChoose <YES> to create a new "
                                          "file or <NO> to browse for an existing .sln "
                                          "file.";

// Sets a text and says whether it was another one.
bool assign(std::string& sTarget, const std::string& sValue)
{
    const bool bDifferent = sTarget != sValue;
    sTarget = sValue;
    return bDifferent;
}

// The repairs of one opening, in their order.
class CProjectOpening
{
  public:
    CProjectOpening(CDSPProject& project, const std::filesystem::path& file,
                    const CProjectEnvironment& environment, IUserDialogs& dialogs,
                    std::vector<std::filesystem::path>& changed)
        : m_project(project), m_file(file), m_environment(environment), m_dialogs(dialogs), m_changed(changed)
    {
    }

    // What cannot be repaired or saved has been shown; the project is open nevertheless.
    void run()
    {
        if (updateNames())
            save();
        removeDebugDatabase();
        (void)renewVisualStudioPaths(folder(), m_project.m_sProjectName, m_environment, m_dialogs, m_changed);
        provideBaseFiles();
        const bool bSidechainChanged = checkSidechainFile();
        const bool bSolutionChanged = provideSolution();
        if (bSidechainChanged || bSolutionChanged)
            save();
        updateBaseFiles(m_project, m_environment, m_changed);
        updateProject(m_project, m_environment, m_dialogs, m_changed);
        updateLinkerSettings(m_project, m_environment, m_dialogs, m_changed);
        (void)provideLinuxProjectFiles(folder(), m_project.m_sProjectName, m_environment, m_dialogs,
                                       m_changed);
    }

  private:
    [[nodiscard]] std::filesystem::path folder() const { return m_file.parent_path(); }

    void save()
    {
        if (saveProject(m_project, m_file, m_dialogs))
            addChanged(m_changed, m_file);
    }

    // Names that are missing follow the file's, and the folder is the one that the file lies in.
    bool updateNames()
    {
        const std::filesystem::path solution = withPlatformSeparators(m_project.m_sSolutionFile);
        const std::filesystem::path oldFolder = withPlatformSeparators(m_project.m_sProjectFolder);
        bool bChanged = false;
        if (m_project.m_sProjectName.empty())
            bChanged |= assign(m_project.m_sProjectName, m_file.stem().string());
        if (m_project.m_sHeaderFile.empty())
            bChanged |= assign(m_project.m_sHeaderFile, m_project.m_sProjectName + ".h");
        if (m_project.m_sSourceFile.empty())
            bChanged |= assign(m_project.m_sSourceFile, m_project.m_sProjectName + ".cpp");
        const bool bMoved = assign(m_project.m_sProjectFolder, folder().string());
        bChanged |= assign(m_project.m_sProjectFile, m_file.string()) || bMoved;
        // A solution of the project's own moved with it.
        if (bMoved && !solution.empty() && solution.parent_path() == oldFolder &&
            fileExists(folder() / solution.filename()))
            bChanged |= assign(m_project.m_sSolutionFile, (folder() / solution.filename()).string());
        return bChanged;
    }

    void removeDebugDatabase()
    {
        const auto path = folder() / (m_project.m_sProjectName + ".pdb");
        std::error_code error;
        if (std::filesystem::remove(path, error))
            addChanged(m_changed, path);
    }

    void provideBaseFiles()
    {
        std::vector<std::string> listed;
        for (const std::string_view sName : listedBaseFiles()) {
            const auto path = folder() / sName;
            if (!fileExists(path))
                copyFileIfDifferent(m_environment.m_baseClassFolder / sName, path, m_changed);
            listed.emplace_back(sName);
        }
        (void)listFiles(folder(), m_project.m_sProjectName, listed, m_dialogs, m_changed);
    }

    bool checkSidechainFile()
    {
        const std::filesystem::path file = withPlatformSeparators(m_project.m_sSidechainFile);
        return !file.empty() && !fileExists(file) && assign(m_project.m_sSidechainFile, {});
    }

    bool provideSolution()
    {
        if (!m_project.m_sSolutionFile.empty() && fileExists(m_project.m_sSolutionFile))
            return false;
        const auto own = folder() / (m_project.m_sProjectName + ".sln");
        if (fileExists(own))
            return assign(m_project.m_sSolutionFile, own.string());
        if (m_dialogs.askYesNo(SOLUTION_QUESTION)) {
            if (!writeDefaultSolution(folder(), m_project.m_sProjectName, m_environment, m_dialogs,
                                      m_changed))
                return false;
            m_dialogs.showMessage("Created default .sln file for project.");
            return assign(m_project.m_sSolutionFile, own.string());
        }
        const auto chosen = chooseSolution(m_dialogs);
        return chosen && assign(m_project.m_sSolutionFile, std::filesystem::absolute(*chosen).string());
    }

    CDSPProject& m_project;
    const std::filesystem::path& m_file;
    const CProjectEnvironment& m_environment;
    IUserDialogs& m_dialogs;
    std::vector<std::filesystem::path>& m_changed;
};

} // namespace

COpenedProject openProjectFile(const std::filesystem::path& file, const CProjectEnvironment& environment,
                               IUserDialogs& dialogs)
{
    COpenedProject result;
    const auto absoluteFile = std::filesystem::absolute(file).lexically_normal();
    if (!equalsIgnoreCase(absoluteFile.extension().string(), ".prj")) {
        dialogs.showMessage(NO_PROJECT_FILE);
        return result;
    }
    auto pProject = std::make_unique<CDSPProject>();
    if (!loadProject(*pProject, absoluteFile, dialogs))
        return result;
    CProjectOpening(*pProject, absoluteFile, environment, dialogs, result.m_changed).run();
    result.m_pProject = std::move(pProject);
    return result;
}

} // namespace velmora
