#include "project/codegen/linux_project_files.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "base/xml_text.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/skeleton.h"
#include "project/codegen/text_surgery.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr std::string_view FOLDER_TOKEN = "***PlugInsDir***";

struct CLinuxFile
{
    const char* m_pSkeleton;
    const char* m_pName; // null: the project's name with m_pSuffix
    const char* m_pSuffix;
    bool m_bProgram;   // may be run
    bool m_bForBuilds; // builds need it; the others are given once, and may be removed
};

constexpr CLinuxFile FILES[] = {{"skel.cbp", nullptr, ".cbp", false, true},
                                {"skel.layout", nullptr, ".layout", false, false},
                                {"skel.Makefile", "Makefile", "", false, true},
                                {"skel.build.sh", "velmora-build.sh", "", true, true},
                                {"skel.CMakeLists.txt", "CMakeLists.txt", "", false, true},
                                {"skel.clang-format", ".clang-format", "", false, false},
                                {"skel.gitignore", ".gitignore", "", false, false}};

// The skeletons put the folder where every character stands for itself, up to the end of the line or of a
// bracket argument.
bool canBeWritten(const std::string& sFolder)
{
    return sFolder.find("]==]") == sFolder.npos && sFolder.find_first_of("\r\n") == sFolder.npos;
}

std::string instance(std::string_view sSkeleton, const std::string& sName, const std::string& sFolder)
{
    const CToken tokens[] = {{FOLDER_TOKEN, sFolder}, {"VolumePlugIn", sName}};
    return instantiateSkeleton(sSkeleton, tokens);
}

// The skeleton tells what stands around the folder: from the line above up to it, and the rest of its line.
void renewOutputFolder(std::string& sText, std::string_view sSkeleton, const std::string& sName,
                       const std::string& sFolder)
{
    const auto uToken = sSkeleton.find(FOLDER_TOKEN);
    if (uToken == sSkeleton.npos)
        return;
    const auto uLine = sSkeleton.rfind('\n', uToken);
    const auto uLineAbove = uLine == sSkeleton.npos || uLine == 0 ? 0 : sSkeleton.rfind('\n', uLine - 1) + 1;
    const auto uBehind = uToken + FOLDER_TOKEN.size();
    const std::string sAhead = instance(sSkeleton.substr(uLineAbove, uToken - uLineAbove), sName, {});
    const std::string sBehind =
        instance(sSkeleton.substr(uBehind, sSkeleton.find('\n', uBehind) + 1 - uBehind), sName, {});

    const auto place = findBetween(sText, fitted(sAhead, sText), fitted(sBehind, sText));
    if (place && sText.find('\n', place->m_uBegin) + 1 >= place->m_uEnd)
        sText.replace(place->m_uBegin, place->m_uEnd - place->m_uBegin, sFolder);
}

std::string jsonText(std::string_view sText)
{
    std::string sResult = "\"";
    for (const char c : sText) {
        if (c == '"' || c == '\\')
            sResult += '\\';
        if (static_cast<unsigned char>(c) < ' ')
            sResult += formatted("\\u%04x", static_cast<unsigned>(c));
        else
            sResult += c;
    }
    return sResult + '"';
}

std::vector<std::filesystem::path> sourcesOf(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> sources;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        if (entry->path().extension() == ".cpp" && entry->path().filename().native().front() != '.')
            sources.push_back(entry->path());
    std::ranges::sort(sources);
    return sources;
}

} // namespace

bool provideLinuxProjectFiles(const std::filesystem::path& folder, const std::string& sName,
                              const CProjectEnvironment& environment, IUserDialogs& dialogs,
                              std::vector<std::filesystem::path>& changed)
{
    const std::string sFolder = std::filesystem::absolute(environment.m_plugInsFolder).string();
    if (!canBeWritten(sFolder)) {
        dialogs.showMessage("The folder of the plug-ins has a name that can not stand in a Makefile: " +
                            sFolder);
        return false;
    }
    const bool bFirstTime = !fileExists(folder / "Makefile");
    for (const CLinuxFile& row : FILES) {
        CEditedFile skeleton(environment.m_baseClassFolder / row.m_pSkeleton, dialogs);
        CEditedFile file(folder / (row.m_pName ? row.m_pName : sName + row.m_pSuffix), dialogs);
        if (!file.isPresent() && !bFirstTime && !row.m_bForBuilds)
            continue;
        if (!skeleton.check())
            return false;
        if (file.isPresent())
            renewOutputFolder(file.text(), skeleton.text(), sName, sFolder);
        else
            file.text() = instance(skeleton.text(), sName, sFolder);
        if (!file.save(changed))
            return false;
        std::error_code ignored;
        if (row.m_bProgram && !file.isPresent())
            std::filesystem::permissions(file.path(),
                                         std::filesystem::perms::owner_exec |
                                             std::filesystem::perms::group_exec |
                                             std::filesystem::perms::others_exec,
                                         std::filesystem::perm_options::add, ignored);
    }
    return true;
}

bool addCbpFile(std::string& sText, std::string_view sFile)
{
    const std::string sEntry = "<Unit filename=\"" + escapedXml(sFile) + "\"";
    if (sText.find(sEntry) != sText.npos)
        return true;
    const auto uLast = sText.rfind("<Unit filename=\"");
    const auto uTagEnd = uLast == sText.npos ? sText.npos : sText.find('>', uLast);
    if (uTagEnd == sText.npos)
        return false;
    const auto uEnd = sText[uTagEnd - 1] == '/' ? uTagEnd : sText.find("</Unit>", uTagEnd);
    const auto uLineEnd = uEnd == sText.npos ? sText.npos : sText.find('\n', uEnd);
    if (uLineEnd == sText.npos)
        return false;
    sText.insert(uLineEnd + 1, fitted("\t\t" + sEntry + " />\n", sText));
    return true;
}

bool writeCompileCommands(const std::filesystem::path& folder, const std::string& sCompiler,
                          std::span<const std::string> flags)
{
    const auto absoluteFolder = std::filesystem::absolute(folder).lexically_normal();
    std::string sText;
    for (const auto& source : sourcesOf(absoluteFolder)) {
        sText += sText.empty() ? "[\n" : ",\n";
        sText += "  {\n    \"directory\": " + jsonText(absoluteFolder.string()) +
                 ",\n    \"file\": " + jsonText(source.string()) + ",\n    \"arguments\": [" +
                 jsonText(sCompiler);
        for (const std::string& sFlag : flags)
            sText += ", " + jsonText(sFlag);
        sText += ", \"-c\", " + jsonText(source.string()) + "]\n  }";
    }
    sText += sText.empty() ? "[]\n" : "\n]\n";

    const auto path = absoluteFolder / "compile_commands.json";
    return readProjectFile(path) != sText && writeStringToFile(path, sText);
}

} // namespace velmora
