#include "project/codegen/visual_studio_files.h"

#include "base/platform_guid.h"
#include "base/user_dialogs.h"
#include "base/xml_text.h"
#include "project/codegen/linker_settings.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/skeleton.h"
#include "project/codegen/text_surgery.h"
#include "project/codegen/vcproj_text.h"
#include "project/codegen/vcxproj_text.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr std::string_view SAFE_HANDLERS = "<ImageHasSafeExceptionHandlers>";

struct CLinkEntry
{
    const char* m_pConfiguration;
    const char* m_pElement;
    const char* m_pValue;
};

constexpr CLinkEntry VST_LINK_ENTRIES[] = {
    {"Debug", "AdditionalDependencies", "Port2VST310d.lib;Port2VST310.res;base_vc10d.lib"},
    {"Debug", "ModuleDefinitionFile", "vst3plug.def"},
    {"Release", "AdditionalDependencies", "Port2VST310.lib;Port2VST310.res;base_vc10.lib"},
    {"Release", "ModuleDefinitionFile", "vst3plug.def"}};

std::vector<CToken> nameTokens(const CNewProjectRequest& request)
{
    return {{"VolumePlugIn.cpp", request.m_sSourceFile},
            {"VolumePlugIn.h", request.m_sHeaderFile},
            {"VolumePlugIn", request.m_sProjectName}};
}

// A skeleton on its way to being a project's file.
class CInstance
{
  public:
    CInstance(const CNewProjectRequest& request, const char* pSkeleton,
              const CProjectEnvironment& environment, IUserDialogs& dialogs)
        : m_path(request.folder() /
                 (request.m_sProjectName + std::filesystem::path(pSkeleton).string().substr(4))),
          m_dialogs(dialogs), m_tokens(nameTokens(request)),
          m_skeleton(environment.m_baseClassFolder / pSkeleton, dialogs)
    {
    }

    CInstance& with(std::string_view sToken, std::string sValue)
    {
        m_tokens.push_back({sToken, std::move(sValue)});
        return *this;
    }

    [[nodiscard]] bool make()
    {
        if (!m_skeleton.check())
            return false;
        m_sText = instantiateSkeleton(m_skeleton.text(), m_tokens);
        return true;
    }

    [[nodiscard]] bool write(std::vector<std::filesystem::path>& changed)
    {
        return writeChangedFile(m_path, m_sText, m_dialogs, changed);
    }

    [[nodiscard]] std::string& text() { return m_sText; }
    [[nodiscard]] std::string name() const { return m_path.string(); }

  private:
    std::filesystem::path m_path; // the skeleton's "skel" stands for the project's name
    IUserDialogs& m_dialogs;
    std::vector<CToken> m_tokens;
    CEditedFile m_skeleton;
    std::string m_sText;
};

// Lists the added files behind the project's own source and header: the last one first, since each is put
// directly behind them.
template <typename TAdd>
bool listAdded(CInstance& file, const CNewProjectRequest& request, const std::vector<std::string>& addedFiles,
               IUserDialogs& dialogs, TAdd add)
{
    std::vector<std::string> files = addedFiles;
    files.push_back("synthfunctions.h");
    for (auto name = files.rbegin(); name != files.rend(); ++name) {
        const std::string& sAnchor = name->ends_with(".cpp") ? request.m_sSourceFile : request.m_sHeaderFile;
        if (!add(file.text(), *name, sAnchor))
            return checkCriticalString(-1, sAnchor, file.name(), dialogs);
    }
    return true;
}

void addSafeHandlers(std::string& sText)
{
    if (sText.find(SAFE_HANDLERS) == sText.npos)
        replaceAll(
            sText, "</Link>",
            fitted("  <ImageHasSafeExceptionHandlers>false</ImageHasSafeExceptionHandlers>\n    </Link>",
                   sText));
}

bool writeVcxproj(const CNewProjectRequest& request, const std::vector<std::string>& addedFiles,
                  const CProjectEnvironment& environment, IUserDialogs& dialogs,
                  std::vector<std::filesystem::path>& changed)
{
    const std::string sFolder = escapedXml(visualStudioPlugInsFolder(environment));
    CInstance file(request, "skel.vcxproj", environment, dialogs);
    file.with("********.dll", sFolder + "$(ProjectName).dll").with("***PlugInsDir***", sFolder);
    if (!file.make() || !listAdded(file, request, addedFiles, dialogs, addVcxprojFile))
        return false;
    if (const CLinkerLibraries* pLibraries = linkerLibraries(environment.m_eFamily)) {
        setVcxprojToolset(file.text(), pLibraries->m_pToolset);
        addSafeHandlers(file.text());
    }
    if (request.m_bVSTCompatible && !setVSTLinkEntries(file.text(), file.name(), dialogs))
        return false;
    return file.write(changed);
}

} // namespace

std::string visualStudioPlugInsFolder(const CProjectEnvironment& environment)
{
    return environment.programFolder().string() + "\\PlugIns\\";
}

bool setVSTLinkEntries(std::string& sText, const std::string& sFile, IUserDialogs& dialogs)
{
    for (const CLinkEntry& entry : VST_LINK_ENTRIES) {
        const std::string sMissing =
            setVcxprojLinkElement(sText, entry.m_pConfiguration, entry.m_pElement, entry.m_pValue);
        if (!sMissing.empty())
            return checkCriticalString(-1, sMissing, sFile, dialogs);
    }
    return true;
}

bool writeVisualStudioFiles(const CNewProjectRequest& request, const std::vector<std::string>& addedFiles,
                            const CProjectEnvironment& environment, IUserDialogs& dialogs,
                            std::vector<std::filesystem::path>& changed)
{
    const std::string sProgram = escapedXml(environment.m_programPath.string());
    CInstance vcproj(request, "skel.vcproj", environment, dialogs);
    vcproj.with("********.dll", escapedXml(visualStudioPlugInsFolder(environment)) + "$(ProjectName).dll");
    CInstance vcprojUser(request, "skel.vcproj.user", environment, dialogs);
    CInstance vcxprojUser(request, "skel.vcxproj.user", environment, dialogs);
    CInstance filters(request, "skel.vcxproj.filters", environment, dialogs);
    filters.with("***GUID_1***", makeGUIDString())
        .with("***GUID_2***", makeGUIDString())
        .with("***GUID_3***", makeGUIDString());

    return vcproj.make() && listAdded(vcproj, request, addedFiles, dialogs, addVcprojFile) &&
           vcproj.write(changed) && vcprojUser.with("VELMORAEXECUTABLE", sProgram).make() &&
           vcprojUser.write(changed) && vcxprojUser.with("VELMORAEXECUTABLE", sProgram).make() &&
           vcxprojUser.write(changed) && filters.make() && filters.write(changed) &&
           writeVcxproj(request, addedFiles, environment, dialogs, changed);
}

bool renewVisualStudioPaths(const std::filesystem::path& folder, const std::string& sName,
                            const CProjectEnvironment& environment, IUserDialogs& dialogs,
                            std::vector<std::filesystem::path>& changed)
{
    const std::string sFolder = visualStudioPlugInsFolder(environment);
    const std::string sProgram = environment.m_programPath.string();
    const bool bPlainToo = environment.m_eFamily != ECompilerFamily::visualStudio2008 &&
                           environment.m_eFamily != ECompilerFamily::visualStudio2010;
    CEditedFile vcproj(folder / (sName + ".vcproj"), dialogs);
    CEditedFile vcprojUser(folder / (sName + ".vcproj.user"), dialogs);
    CEditedFile vcxproj(folder / (sName + ".vcxproj"), dialogs);
    CEditedFile vcxprojUser(folder / (sName + ".vcxproj.user"), dialogs);
    setVcprojOutputFolder(vcproj.text(), sFolder);
    setVcprojUserCommand(vcprojUser.text(), sProgram);
    setVcxprojOutputFolder(vcxproj.text(), sFolder, bPlainToo);
    setVcxprojUserCommand(vcxprojUser.text(), sProgram);

    bool bDone = true;
    for (const CEditedFile* pFile : {&vcproj, &vcprojUser, &vcxproj, &vcxprojUser})
        bDone = pFile->save(changed) && bDone;
    return bDone;
}

} // namespace velmora
