#include "project/codegen/new_project_request.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/text_surgery.h"
#include "project/project_names.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace velmora {

namespace {

constexpr std::array VST_SDK_FILES = {"aeffect.h", "aeffectx.h", "audioeffect.h", "audioeffectx.h",
                                      "vstplug.def"};

constexpr std::array AU_TEMPLATE_FOLDERS = {"AUFiles/OS10.6/Template",      "AUFiles/OS10.6/TemplateGUI",
                                            "AUFiles/OS10.6/TemplateBlank", "AUFiles/OS10.7/Template",
                                            "AUFiles/OS10.7/TemplateGUI",   "AUFiles/OS10.7/TemplateBlank"};
constexpr std::array VST_TEMPLATE_FOLDERS = {"VST Files/MultiFilterWrap", "VST Files/MultiFilterSynthWrap"};

template <typename TNames>
bool allExist(const std::filesystem::path& folder, const TNames& names)
{
    return std::ranges::all_of(names, [&](const char* pName) { return fileExists(folder / pName); });
}

bool refuse(IUserDialogs& dialogs, std::string_view sMessage)
{
    dialogs.showMessage(sMessage);
    return false;
}

std::vector<std::filesystem::path> sortedEntries(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> list;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        list.push_back(entry->path());
    std::ranges::sort(list);
    return list;
}

} // namespace

void CNewProjectRequest::setName(std::string_view sName)
{
    m_sProjectName = sName;
    m_sHeaderFile = m_sProjectName + ".h";
    m_sSourceFile = m_sProjectName + ".cpp";
}

float CNewProjectRequest::latency() const
{
    const float fSamples = std::strtof(m_sLatency.c_str(), nullptr);
    return std::isfinite(fSamples) ? fSamples : 0.0F;
}

std::string projectNameRefusal(std::string_view sName)
{
    if (isProjectNameValid(sName))
        return {};
    return "Invalid Project Name - the project name can not contain numbers, spaces, punctuation characters, "
           "or symbols; suggest using " +
           cleanedProjectName(sName) +
           " instead.\n\nThis is because the Project Name is the name of a C++ class and there are "
           "restrictions on class naming.";
}

bool checkProjectName(std::string_view sName, std::string& sSuggestion, IUserDialogs& dialogs)
{
    const std::string sRefusal = projectNameRefusal(sName);
    if (sRefusal.empty())
        return true;
    sSuggestion = cleanedProjectName(sName);
    return refuse(dialogs, sRefusal);
}

std::vector<CNewProjectRefusal> newProjectRefusals(const CNewProjectRequest& request, bool bCreating)
{
    std::vector<CNewProjectRefusal> list;
    const auto refuseIf = [&](bool bWrong, ENewProjectField eField, std::string sMessage) {
        if (bWrong)
            list.push_back({eField, std::move(sMessage)});
    };
    const std::string sNameRefusal = projectNameRefusal(request.m_sProjectName);
    refuseIf(!sNameRefusal.empty(), ENewProjectField::Name, sNameRefusal);
    refuseIf(!(request.latency() >= 0.0f), ENewProjectField::Latency, "Latency can not be less than zero.");
    refuseIf(bCreating && fileExists(request.folder()), ENewProjectField::Name,
             "This project already exists; delete it's folder first, or choose a different Project Name.");
    refuseIf(request.m_sCompanyName.empty(), ENewProjectField::Company,
             "Please enter a company name for VST/AU Exports.");
    return list;
}

bool checkNewProject(CNewProjectRequest& request, bool bCreating, IUserDialogs& dialogs)
{
    const std::vector<CNewProjectRefusal> refusals = newProjectRefusals(request, bCreating);
    if (refusals.empty())
        return true;
    if (!isProjectNameValid(request.m_sProjectName))
        request.setName(cleanedProjectName(request.m_sProjectName));
    return refuse(dialogs, refusals.front().m_sMessage);
}

bool checkVSTFiles(const CProjectEnvironment& environment, IUserDialogs& dialogs)
{
    return allExist(environment.m_vstFilesFolder, VST_SDK_FILES) ||
           refuse(dialogs,
                  "VST Files Not Found. Velmora is not licensed to distribute the VST base class "
                  "files.\n\nYou must first download the VST SDK from www.steinberg.net (it's free) and "
                  "after installing, copy the following files to the " +
                      environment.m_vstFilesFolder.string() +
                      " folder:\n\n\taeffect.h\n\taeffectx.h\n\taudioeffect.h\n\taudioeffectx.h\n\t"
                      "vstplug.def\n\nAfter copying these files, you can enable VST compatibility!");
}

bool checkAUTemplates(const CProjectEnvironment& environment, IUserDialogs& dialogs)
{
    return allExist(environment.m_baseClassFolder, AU_TEMPLATE_FOLDERS) ||
           refuse(dialogs, "AU Files Not Found.\n\nAre you sure you have the proper version of Velmora? ");
}

bool checkVSTTemplates(const CProjectEnvironment& environment, IUserDialogs& dialogs)
{
    return allExist(environment.m_baseClassFolder, VST_TEMPLATE_FOLDERS) ||
           refuse(dialogs, "VST Files Not Found.\n\nAre you sure you have the proper version of Velmora? ");
}

std::string auEffectValidation(const CNewProjectRequest& request)
{
    return "auval -v aufx " + request.m_sPlugInCode + " " + request.m_sCompanyCode;
}

std::string auInstrumentValidation(const CNewProjectRequest& request)
{
    return "auval -v aumu " + request.m_sPlugInCode + " " + request.m_sCompanyCode;
}

std::vector<std::filesystem::path> existingPlugIns(const CProjectEnvironment& environment)
{
    std::vector<std::filesystem::path> list;
    for (const auto& folder : sortedEntries(environment.m_projectsFolder)) {
        const auto project = folder / (folder.filename().string() + ".prj");
        std::error_code error;
        if (std::filesystem::is_regular_file(project, error)) {
            list.push_back(project);
            continue;
        }
        // A folder that was renamed still has its one project file.
        const auto entries = sortedEntries(folder);
        const auto found =
            std::ranges::find_if(entries, [](const auto& file) { return file.extension() == ".prj"; });
        if (found != entries.end())
            list.push_back(*found);
    }
    return list;
}

std::vector<std::string> stockObjectNames(const CProjectEnvironment& environment)
{
    std::vector<std::string> names;
    for (const auto& file : sortedEntries(environment.stockObjectsFolder()))
        if (file.extension() == ".h" && fileExists(std::filesystem::path(file).replace_extension(".cpp")))
            names.push_back(file.stem().string());
    return names;
}

} // namespace velmora
