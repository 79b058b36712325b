#include "project/codegen/solution_file.h"

#include "base/platform_guid.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/skeleton.h"

namespace velmora {

namespace {

constexpr std::string_view FORMAT_LINE = "Microsoft Visual Studio Solution File, Format Version 10.00";
constexpr std::string_view PRODUCT_LINE = "# Visual C++ Express 2008";
constexpr std::string_view PROJECT_ENTRY = "Project(\"";

// Where a line that holds this word alone begins; npos if there is none.
std::size_t findLine(std::string_view sText, std::string_view sWord)
{
    for (auto uFound = sText.find(sWord); uFound != sText.npos; uFound = sText.find(sWord, uFound + 1)) {
        const auto uEnd = uFound + sWord.size();
        const bool bBegins = uFound == 0 || sText[uFound - 1] == '\n';
        if (bBegins && (uEnd == sText.size() || sText[uEnd] == '\n' || sText[uEnd] == '\r'))
            return uFound;
    }
    return sText.npos;
}

std::optional<CTextRange> projectTypeGUID(std::string_view sText)
{
    auto guid = findBetween(sText, "Project(\"{", "}");
    if (guid) {
        --guid->m_uBegin; // with its braces
        ++guid->m_uEnd;
    }
    return guid;
}

} // namespace

std::string makeSolution(std::string_view sSkeleton, std::string_view sName, ECompilerFamily eFamily)
{
    std::vector<CToken> tokens = {{"VolumePlugIn", std::string(sName)},
                                  {"***GUID_1***", makeGUIDString()},
                                  {"***GUID_2***", makeGUIDString()}};
    if (eFamily != ECompilerFamily::visualStudio2008) {
        const bool b2010 = eFamily == ECompilerFamily::visualStudio2010;
        tokens.push_back({FORMAT_LINE, std::string("Microsoft Visual Studio Solution File, Format Version ") +
                                           (b2010 ? "11.00" : "12.00")});
        tokens.push_back({PRODUCT_LINE, std::string("# Visual C++ Express ") + (b2010 ? "2010" : "2012")});
        tokens.push_back({"vcproj", "vcxproj"});
    }
    return instantiateSkeleton(sSkeleton, tokens);
}

bool writeDefaultSolution(const std::filesystem::path& folder, const std::string& sName,
                          const CProjectEnvironment& environment, IUserDialogs& dialogs,
                          std::vector<std::filesystem::path>& changed)
{
    CEditedFile skeleton(environment.m_baseClassFolder / "skel.sln", dialogs);
    return skeleton.check() &&
           writeChangedFile(folder / (sName + ".sln"),
                            makeSolution(skeleton.text(), sName, environment.m_eFamily), dialogs, changed);
}

bool solutionUsesVcproj(std::string_view sText)
{
    return sText.find("Format Version 10.00") != sText.npos;
}

bool checkSolution(std::string_view sText, IUserDialogs& dialogs)
{
    if (findLine(sText, "Global") == sText.npos || findLine(sText, "EndGlobal") == sText.npos) {
        dialogs.showMessage("The solution file was not a valid .sln file: misssing Global and EndGlobal.");
        return false;
    }
    if (!projectTypeGUID(sText)) {
        dialogs.showMessage("The solution file was not a valid .sln file: project GUID not found.");
        return false;
    }
    return true;
}

bool addToSolution(std::string& sText, const std::string& sName, const std::filesystem::path& folder,
                   IUserDialogs& dialogs)
{
    if (!checkSolution(sText, dialogs))
        return false;
    const CTextRange type = *projectTypeGUID(sText);
    std::string sEntry(PROJECT_ENTRY);
    sEntry.append(sText, type.m_uBegin, type.m_uEnd - type.m_uBegin)
        .append("\") = \"" + sName + "\", \"" + (folder / sName).string() + ".vcproj\", \"" +
                makeGUIDString() + "\"\nEndProject\n");
    sText.insert(findLine(sText, "Global"), fitted(sEntry, sText));
    return true;
}

std::optional<std::filesystem::path> chooseSolution(IUserDialogs& dialogs)
{
    const auto chosen = dialogs.chooseOpenFile(SOLUTION_FILTER);
    if (!chosen)
        return std::nullopt;
    if (!equalsIgnoreCase(chosen->extension().string(), ".sln")) {
        dialogs.showMessage("Not a .sln file.");
        return std::nullopt;
    }
    CEditedFile solution(*chosen, dialogs);
    if (!checkSolution(solution.text(), dialogs))
        return std::nullopt;
    return chosen;
}

} // namespace velmora
