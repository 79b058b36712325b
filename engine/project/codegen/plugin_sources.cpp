#include "project/codegen/plugin_sources.h"

#include "base/user_dialogs.h"
#include "project/codegen/code_markers.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/skeleton.h"
#include "project/codegen/text_surgery.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr std::string_view CONTRACT_INCLUDE = "#include \"plugin.h\"";
constexpr std::string_view OWN_GUI_FLAG = "m_bUserCustomGUI";

std::string includeLine(std::string_view sFile)
{
    return "#include \"" + std::string(sFile) + "\"";
}

std::string lowerCase(std::string sText)
{
    std::ranges::transform(sText, sText.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return sText;
}

// Where the text stands first outside the region that is rewritten anyway; npos if nowhere.
std::size_t findOutsideRegion(std::string_view sText, std::string_view sSought)
{
    const auto region = findBetween(sText, INIT_UI_REGION.m_sBegin, INIT_UI_REGION.m_sEnd);
    auto uFound = sText.find(sSought);
    while (uFound != sText.npos && region && uFound >= region->m_uBegin && uFound < region->m_uEnd)
        uFound = sText.find(sSought, region->m_uEnd);
    return uFound;
}

std::string makeHeader(std::string_view sSkeleton, const CNewProjectRequest& request)
{
    const CToken tokens[] = {{"CVolumePlugIn", request.className()}};
    return instantiateSkeleton(sSkeleton, tokens);
}

std::string makeSource(std::string_view sSkeleton, const CNewProjectRequest& request)
{
    const CToken tokens[] = {{"\"VolumePlugIn.h\"", "\"" + request.m_sHeaderFile + "\""},
                             {"\"volumeplugin.h\"", "\"" + request.m_sHeaderFile + "\""},
                             {"CVolumePlugIn", request.className()},
                             {"cvolumeplugin", lowerCase(request.className())},
                             {"VolumePlugIn", request.m_sProjectName},
                             {"volumeplugin", lowerCase(request.m_sProjectName)}};
    std::string sText = instantiateSkeleton(sSkeleton, tokens);
    switchFlags(sText, request);
    return sText;
}

} // namespace

bool writePlugInSources(const CNewProjectRequest& request, std::span<const std::string> includes,
                        const CProjectEnvironment& environment, IUserDialogs& dialogs,
                        std::vector<std::filesystem::path>& changed)
{
    CEditedFile headerSkeleton(environment.m_baseClassFolder / "TemplatePlugIn.h", dialogs);
    if (!headerSkeleton.check() || !headerSkeleton.critical(CONTRACT_INCLUDE))
        return false;
    std::string sHeader = makeHeader(headerSkeleton.text(), request);
    CEditedFile sourceSkeleton(environment.m_baseClassFolder / "TemplatePlugIn.cpp", dialogs);
    return addIncludes(sHeader, includes) &&
           writeChangedFile(request.folder() / request.m_sHeaderFile, sHeader, dialogs, changed) &&
           sourceSkeleton.check() &&
           writeChangedFile(request.folder() / request.m_sSourceFile,
                            makeSource(sourceSkeleton.text(), request), dialogs, changed);
}

bool includesFile(std::string_view sText, std::string_view sFile)
{
    return sText.find(includeLine(sFile)) != sText.npos;
}

bool addIncludes(std::string& sText, std::span<const std::string> files)
{
    std::string sLines;
    for (const std::string& sFile : files)
        if (!includesFile(sText, sFile) && !includesFile(sLines, sFile))
            sLines += "\n" + includeLine(sFile);
    const auto uFound = sText.find(CONTRACT_INCLUDE);
    if (uFound != sText.npos)
        sText.insert(uFound + CONTRACT_INCLUDE.size(), fitted(sLines, sText));
    return sLines.empty() || uFound != sText.npos;
}

void switchFlag(std::string& sText, std::string_view sName, bool bOn)
{
    const std::string sFlag = std::string(sName) + " = ";
    replaceAll(sText, sFlag + (bOn ? "false;" : "true;"), sFlag + (bOn ? "true;" : "false;"));
}

void switchFlags(std::string& sText, const CNewProjectRequest& request)
{
    switchFlag(sText, "m_bUseCustomVSTGUI", request.m_bUseCustomVSTGUI);
    if (findOutsideRegion(sText, OWN_GUI_FLAG) == sText.npos) {
        const std::string sGUIFlag =
            std::string("m_bUseCustomVSTGUI = ") + (request.m_bUseCustomVSTGUI ? "true;" : "false;");
        const auto uFound = findOutsideRegion(sText, sGUIFlag);
        if (uFound != sText.npos)
            sText.insert(uFound + sGUIFlag.size(), fitted("\n\n\tm_bUserCustomGUI = false;", sText));
    }
    switchFlag(sText, OWN_GUI_FLAG, request.m_bUserCustomGUI);
    switchFlag(sText, "m_bOutputOnlyPlugIn", request.m_bOutputOnlyPlugIn);
}

} // namespace velmora
