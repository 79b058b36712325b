#include "project/codegen/library_files.h"

#include "base/platform_guid.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/codegen/code_text.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/skeleton.h"

namespace velmora {

namespace {

std::string idLines(const char* pName)
{
    std::string sLines;
    int nWord = 0;
    for (const std::uint32_t uWord : guidWords(makeGUID()))
        sLines += formatted("unsigned long %s%d = %u;\n", pName, ++nWord, uWord);
    return sLines;
}

bool writeInstance(const CLibraryFiles& files, const char* pName, std::span<const CToken> tokens,
                   const CProjectEnvironment& environment, IUserDialogs& dialogs,
                   std::vector<std::filesystem::path>& changed)
{
    CEditedFile skeleton(environment.m_baseClassFolder / pName, dialogs);
    return skeleton.check() &&
           writeChangedFile(files.m_folder / pName, instantiateSkeleton(skeleton.text(), tokens), dialogs,
                            changed);
}

} // namespace

bool writeLibraryFiles(const CLibraryFiles& files, const CProjectEnvironment& environment,
                       IUserDialogs& dialogs, std::vector<std::filesystem::path>& changed)
{
    std::string sCompany;
    appendLiteral(sCompany, files.m_sCompanyName);
    std::string sIds(ID_MARKER);
    sIds += "\n" + idLines("uPCID") + idLines("uCCID");
    sIds += files.m_bVSTCompatible ? "// --- VSTCompatibility: ENABLED --- //\n"
                                   : "// --- VSTCompatibility: DISABLED --- //\n";

    const CToken headerTokens[] = {
        {"volumeplugin", std::filesystem::path(files.m_sHeaderFile).stem().string()}};
    const CToken sourceTokens[] = {
        {"CVolumePlugIn", "C" + files.m_sProjectName}, {"Velmora User", sCompany}, {ID_MARKER, sIds}};
    return writeInstance(files, "VelmoraDLL.h", headerTokens, environment, dialogs, changed) &&
           writeInstance(files, "VelmoraDLL.cpp", sourceTokens, environment, dialogs, changed);
}

} // namespace velmora
