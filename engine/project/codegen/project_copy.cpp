#include "project/codegen/project_copy.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/codegen/added_files.h"
#include "project/codegen/base_files.h"
#include "project/codegen/code_markers.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_creation.h"
#include "project/codegen/project_editing.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/text_surgery.h"
#include "project/codegen/variable_rename.h"
#include "project/control_list.h"
#include "project/dsp_project.h"
#include "project/project_file.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

using CNames = const std::string_view[];

constexpr CNames SOURCE_SUFFIXES = {".h", ".hpp", ".hxx", ".inl", ".c", ".cc", ".cpp", ".cxx"};

// What builds and tools leave behind, and what belongs to the one folder alone.
constexpr CNames LEFT_FOLDERS = {".velmora", ".git", ".vs", ".cache", "Debug", "Release", "ipch", "build"};
constexpr CNames LEFT_FILES = {"compile_commands.json", "BuildLog.htm"};
constexpr CNames LEFT_SUFFIXES = {".o",
                                  ".obj",
                                  ".so",
                                  ".dll",
                                  ".ilk",
                                  ".idb",
                                  ".exp",
                                  ".ncb",
                                  ".sdf",
                                  ".suo",
                                  ".log",
                                  ".tlog",
                                  ".opensdf",
                                  ".prj",
                                  ".part",
                                  ".lastbuildstate",
                                  ".unsuccessfulbuild"};

constexpr CNames OMITTED_BEGINNINGS = {"base_", "port2vst3"};
constexpr CNames OMITTED_SUFFIXES = {".lib", ".pdb"};

template <typename TNames>
bool holdsName(const TNames& names, std::string_view sName)
{
    return std::ranges::any_of(names, [&](std::string_view sOne) { return equalsIgnoreCase(sOne, sName); });
}

std::vector<std::filesystem::directory_entry> entriesIn(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::directory_entry> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        entries.push_back(*entry);
    std::ranges::sort(entries);
    return entries;
}

// One run of Save As.
class CProjectCopier
{
  public:
    CProjectCopier(CDSPProject& project, const CNewProjectRequest& creation, IUserDialogs& dialogs)
        : m_project(project), m_creation(creation),
          m_folder(std::filesystem::absolute(creation.folder()).lexically_normal()), m_dialogs(dialogs)
    {
    }

    [[nodiscard]] bool copySources()
    {
        std::vector<std::string> further;
        for (const auto& entry : entriesIn(m_project.folder())) {
            const std::string sName = entry.path().filename().string();
            if (!entry.is_regular_file() || (isBaseFile(sName) && fileExists(m_folder / sName)) ||
                !holdsName(SOURCE_SUFFIXES, entry.path().extension().string()))
                continue;
            if (!copyText(entry.path(), newName(sName), &CProjectCopier::renameInSource))
                return false;
            further.push_back(newName(sName));
        }
        for (const char* pSuffix : {".vcproj", ".vcxproj"}) {
            const auto file = m_project.folder() / (m_project.m_sProjectName + pSuffix);
            if (fileExists(file) &&
                !copyText(file, m_creation.m_sProjectName + pSuffix, &CProjectCopier::renameInProjectFile))
                return false;
        }
        copyFileIfDifferent(m_project.folder() / "Velmora.uidesc", m_folder / "Velmora.uidesc", m_changed);
        return listFiles(m_folder, m_creation.m_sProjectName, further, m_dialogs, m_changed);
    }

    void copyFurtherFiles() { copyFolder(m_project.folder(), m_folder); }

    void removeLibraries()
    {
        for (const auto& entry : entriesIn(m_folder)) {
            const std::string sName = entry.path().filename().string();
            const bool bBegins = std::ranges::any_of(OMITTED_BEGINNINGS, [&](std::string_view sBeginning) {
                return equalsIgnoreCase(std::string_view(sName).substr(0, sBeginning.size()), sBeginning);
            });
            std::error_code ignored;
            if (bBegins && holdsName(OMITTED_SUFFIXES, entry.path().extension().string()))
                std::filesystem::remove(entry.path(), ignored);
        }
    }

    // The new project file is the old one's copy with its own names.
    [[nodiscard]] std::optional<std::filesystem::path> writeProject()
    {
        const auto file = m_folder / (m_creation.m_sProjectName + ".prj");
        CDSPProject copy;
        if (!saveProject(m_project, file, m_dialogs) || !loadProject(copy, file, m_dialogs))
            return std::nullopt;
        copy.m_sProjectFolder = m_folder.string();
        copy.m_sProjectFile = file.string();
        copy.m_sProjectName = m_creation.m_sProjectName;
        copy.m_sHeaderFile = m_creation.m_sHeaderFile;
        copy.m_sSourceFile = m_creation.m_sSourceFile;
        copy.m_sSolutionFile = (m_folder / (m_creation.m_sProjectName + ".sln")).string();
        if (!saveProject(copy, file, m_dialogs))
            return std::nullopt;
        return file;
    }

  private:
    using CRename = void (CProjectCopier::*)(std::string&) const;

    [[nodiscard]] bool copyText(const std::filesystem::path& from, const std::string& sName, CRename rename)
    {
        CEditedFile file(from, m_dialogs);
        if (!file.check())
            return false;
        (this->*rename)(file.text());
        return writeChangedFile(m_folder / sName, file.text(), m_dialogs, m_changed);
    }

    [[nodiscard]] std::string newName(const std::string& sFile) const
    {
        if (sFile == m_project.m_sHeaderFile)
            return m_creation.m_sHeaderFile;
        return sFile == m_project.m_sSourceFile ? m_creation.m_sSourceFile : sFile;
    }

    // A variable of the project's name keeps it: the controls know it by that.
    [[nodiscard]] bool isVariable(const std::string& sName) const
    {
        return std::ranges::any_of(controlsOf(m_project.m_UIControlList), [&](const CUICtrl* pControl) {
            return sName == pControl->cVariableName || sName == pControl->cMeterVariableName;
        });
    }

    void renameInSource(std::string& sText) const
    {
        const std::string& sOld = m_project.m_sProjectName;
        const std::string& sNew = m_creation.m_sProjectName;
        for (const char* pSuffix : {"", "_h"})
            renameIdentifier(sText, "C" + sOld + pSuffix, "C" + sNew + pSuffix);
        replaceAll(sText, "\"" + m_project.m_sHeaderFile + "\"", "\"" + m_creation.m_sHeaderFile + "\"");
        if (!isVariable(sOld))
            renameOutsideRegion(sText, sOld, sNew);
        if (const auto name = findBetween(sText, "m_PlugInName = \"", "\""))
            sText.replace(name->m_uBegin, name->m_uEnd - name->m_uBegin, sNew);
    }

    // The region holds the texts of controls and presets, which the copy keeps.
    static void renameOutsideRegion(std::string& sText, const std::string& sOld, const std::string& sNew)
    {
        std::string sAhead = sText;
        std::string sBehind;
        std::string sRegion;
        if (const auto region = findBetween(sText, INIT_UI_REGION.m_sBegin, INIT_UI_REGION.m_sEnd)) {
            sAhead = sText.substr(0, region->m_uBegin);
            sRegion = sText.substr(region->m_uBegin, region->m_uEnd - region->m_uBegin);
            sBehind = sText.substr(region->m_uEnd);
        }
        renameIdentifier(sAhead, sOld, sNew);
        renameIdentifier(sBehind, sOld, sNew);
        sText = sAhead + sRegion + sBehind;
    }

    void renameInProjectFile(std::string& sText) const
    {
        const std::string& sOld = m_project.m_sProjectName;
        const std::string& sNew = m_creation.m_sProjectName;
        replaceAll(sText, "Name=\"" + sOld + "\"", "Name=\"" + sNew + "\"");
        replaceAll(sText, "RootNamespace=\"" + sOld + "\"", "RootNamespace=\"" + sNew + "\"");
        for (const char* pElement : {"RootNamespace", "ProjectName"})
            replaceAll(sText, std::string("<") + pElement + ">" + sOld + "</",
                       std::string("<") + pElement + ">" + sNew + "</");
        for (const char* pFolder : {"\"", "\".\\"})
            for (const auto& [sFrom, sTo] : {std::pair(m_project.m_sHeaderFile, m_creation.m_sHeaderFile),
                                             std::pair(m_project.m_sSourceFile, m_creation.m_sSourceFile),
                                             std::pair(sOld + ".rc", sNew + ".rc")})
                replaceAll(sText, pFolder + sFrom + "\"", pFolder + sTo + "\"");
    }

    [[nodiscard]] bool isLeft(const std::filesystem::directory_entry& entry) const
    {
        const std::string sName = entry.path().filename().string();
        if (entry.is_directory() && !entry.is_symlink())
            return holdsName(LEFT_FOLDERS, sName) || entry.path() == m_folder;
        return holdsName(LEFT_FILES, sName) || holdsName(LEFT_SUFFIXES, entry.path().extension().string()) ||
               (entry.path().parent_path() == m_project.folder() &&
                sName.starts_with(m_project.m_sProjectName + "."));
    }

    // Without what is left behind and what the new project has already.
    void copyFolder(const std::filesystem::path& from, const std::filesystem::path& to)
    {
        for (const auto& entry : entriesIn(from)) {
            const auto target = to / entry.path().filename();
            std::error_code ignored;
            if (isLeft(entry))
                continue;
            if (entry.is_directory() && !entry.is_symlink()) {
                std::filesystem::create_directory(target, ignored);
                copyFolder(entry.path(), target);
            } else if (!fileExists(target)) {
                std::filesystem::copy(entry.path(), target, std::filesystem::copy_options::copy_symlinks,
                                      ignored);
            }
        }
    }

    CDSPProject& m_project;
    const CNewProjectRequest& m_creation;
    std::filesystem::path m_folder;
    IUserDialogs& m_dialogs;
    std::vector<std::filesystem::path> m_changed;
};

} // namespace

std::string checkProjectCopy(const CDSPProject& project, const CProjectCopyRequest& request)
{
    if (request.m_sProjectName.empty())
        return "New Project Name is empty!";
    if (request.m_sProjectName == project.m_sProjectName)
        return "New Project Name must be different from curent Project Name!";
    std::string sRefusal = projectNameRefusal(request.m_sProjectName);
    if (sRefusal.empty() && fileExists(request.m_parentFolder / request.m_sProjectName))
        sRefusal = "This project directory already exists.";
    return sRefusal;
}

std::optional<std::filesystem::path> copyProject(CDSPProject& project, const CProjectCopyRequest& request,
                                                 const CProjectEnvironment& environment,
                                                 IUserDialogs& dialogs)
{
    if (const std::string sRefusal = checkProjectCopy(project, request); !sRefusal.empty()) {
        dialogs.showMessage(sRefusal);
        return std::nullopt;
    }

    CNewProjectRequest creation = requestOfProject(project, environment, dialogs);
    creation.setName(request.m_sProjectName);
    creation.m_parentFolder = request.m_parentFolder;
    creation.m_bCreateNewSolution = true;
    creation.m_modules.clear(); // copied with the sources
    creation.m_stockObjects.clear();
    creation.m_bIncludeFFT = false;
    creation.m_bIncludeReverbObjects = false;
    if (!createProjectFiles(creation, environment, dialogs))
        return std::nullopt;

    CProjectCopier copier(project, creation, dialogs);
    if (!copier.copySources())
        return std::nullopt;
    if (request.m_bCopyEntireFolder)
        copier.copyFurtherFiles();
    if (request.m_bOmitVSTLibraries)
        copier.removeLibraries();
    const auto file = copier.writeProject();
    if (file)
        dialogs.showMessage("Project saved!");
    return file;
}

} // namespace velmora
