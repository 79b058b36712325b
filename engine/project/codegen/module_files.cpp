#include "project/codegen/module_files.h"

#include "base/user_dialogs.h"
#include "project/codegen/base_files.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/solution_file.h"
#include "project/codegen/text_surgery.h"
#include "project/dsp_project.h"
#include "project/project_file.h"

#include <algorithm>

namespace velmora {

namespace {

bool isSourceOrHeader(std::string_view sName)
{
    return sName.ends_with(".cpp") || sName.ends_with(".h");
}

std::string withoutCurrentFolder(std::string_view sPath)
{
    return std::string(sPath.starts_with(".\\") || sPath.starts_with("./") ? sPath.substr(2) : sPath);
}

void addOnce(std::vector<std::string>& names, const std::string& sName)
{
    if (std::ranges::find(names, sName) == names.end())
        names.push_back(sName);
}

// What the module's compiler project lists.
std::vector<std::string> listedFiles(const std::filesystem::path& folder, const std::string& sName,
                                     IUserDialogs& dialogs)
{
    CEditedFile solution(folder / (sName + ".sln"), dialogs);
    const bool bVcproj = solutionUsesVcproj(solution.text());
    CEditedFile project(folder / (sName + (bVcproj ? ".vcproj" : ".vcxproj")), dialogs);
    return quotedValues(project.text(), bVcproj ? "RelativePath=\"" : "Include=\"");
}

std::vector<std::string> filesInFolder(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        names.push_back(entry->path().filename().string());
    std::ranges::sort(names);
    return names;
}

} // namespace

std::optional<CModuleFiles> findModuleFiles(const std::filesystem::path& project, IUserDialogs& dialogs)
{
    CDSPProject module;
    if (!loadProject(module, project, dialogs))
        return std::nullopt;

    CModuleFiles result{std::filesystem::absolute(project).parent_path(), module.m_sHeaderFile, {}};
    std::vector<std::string> candidates = {module.m_sHeaderFile, module.m_sSourceFile};
    if (isPlainFileName(module.m_sProjectName))
        std::ranges::copy(listedFiles(result.m_folder, module.m_sProjectName, dialogs),
                          std::back_inserter(candidates));
    std::ranges::copy(filesInFolder(result.m_folder), std::back_inserter(candidates));

    for (const std::string& sCandidate : candidates) {
        const std::string sName = withoutCurrentFolder(sCandidate);
        std::error_code error;
        if (isPlainFileName(sName) && isSourceOrHeader(sName) && !isBaseFile(sName) &&
            std::filesystem::is_regular_file(result.m_folder / sName, error))
            addOnce(result.m_files, sName);
    }
    return result;
}

std::vector<std::string> stockObjectFiles(const CProjectEnvironment& environment, std::string_view sName)
{
    const auto exists = [&](const std::string& sFile) {
        return isPlainFileName(sFile) && !isBaseFile(sFile) &&
               fileExists(environment.stockObjectsFolder() / sFile);
    };
    std::vector<std::string> files;
    if (exists(std::string(sName) + ".h"))
        files.push_back(std::string(sName) + ".h");
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::string sText = readProjectFile(environment.stockObjectsFolder() / files[i]).value_or("");
        for (const std::string& sIncluded : quotedValues(sText, "#include \""))
            if (exists(sIncluded))
                addOnce(files, sIncluded);
        const auto sSource = std::filesystem::path(files[i]).replace_extension(".cpp").string();
        if (exists(sSource))
            addOnce(files, sSource);
    }
    return files;
}

} // namespace velmora
