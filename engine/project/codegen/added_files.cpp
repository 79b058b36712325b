#include "project/codegen/added_files.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/codegen/base_files.h"
#include "project/codegen/linux_project_files.h"
#include "project/codegen/module_files.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/text_surgery.h"
#include "project/codegen/vcproj_text.h"
#include "project/codegen/vcxproj_text.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr const char* FFT_OBJECT = "FFT";

class CFileCopier
{
  public:
    CFileCopier(const CNewProjectRequest& request, const std::filesystem::path& folder,
                const CProjectEnvironment& environment, IUserDialogs& dialogs,
                std::vector<std::filesystem::path>& changed)
        : m_request(request), m_folder(folder), m_environment(environment), m_dialogs(dialogs),
          m_changed(changed)
    {
    }

    void addModule(const std::filesystem::path& project)
    {
        const auto module = findModuleFiles(project, m_dialogs);
        if (!module)
            return;
        for (const std::string& sFile : module->m_files)
            addFromFolder(module->m_folder, sFile);
        include(module->m_sHeader);
    }

    void addStockObject(const std::string& sName)
    {
        const auto files = stockObjectFiles(m_environment, sName);
        if (files.empty())
            m_dialogs.note("There is no stock object named " + sName + ".");
        for (const std::string& sFile : files)
            addFromFolder(m_environment.stockObjectsFolder(), sFile);
        include(sName + ".h");
    }

    [[nodiscard]] CAddedFiles take() { return std::move(m_added); }

  private:
    // The project's own, or a file of that name with another content is there.
    [[nodiscard]] bool isTaken(const std::filesystem::path& from, const std::string& sFile) const
    {
        const auto old = readProjectFile(m_folder / sFile);
        return equalsIgnoreCase(sFile, m_request.m_sHeaderFile) ||
               equalsIgnoreCase(sFile, m_request.m_sSourceFile) || (old && old != readProjectFile(from));
    }

    void addFromFolder(const std::filesystem::path& fromFolder, const std::string& sFile)
    {
        const auto from = fromFolder / sFile;
        if (isTaken(from, sFile)) {
            m_dialogs.note(from.string() + " was not copied: the project has a file of that name.");
            return;
        }
        copyFileIfDifferent(from, m_folder / sFile, m_changed);
        if (std::ranges::find(m_added.m_files, sFile) == m_added.m_files.end())
            m_added.m_files.push_back(sFile);
    }

    void include(const std::string& sHeader)
    {
        if (std::ranges::find(m_added.m_files, sHeader) != m_added.m_files.end())
            m_added.m_includes.push_back(sHeader);
    }

    const CNewProjectRequest& m_request;
    const std::filesystem::path& m_folder;
    const CProjectEnvironment& m_environment;
    IUserDialogs& m_dialogs;
    std::vector<std::filesystem::path>& m_changed;
    CAddedFiles m_added;
};

using CAddFile = bool (*)(std::string&, std::string_view);

struct CListingFile
{
    const char* m_pSuffix;
    CAddFile m_pAdd;
    const char* m_pPlace; // what the missing place is called
};

constexpr CListingFile LISTING_FILES[] = {
    {".vcproj", [](std::string& sText, std::string_view sFile) { return addVcprojFile(sText, sFile); },
     "</File>"},
    {".vcxproj", [](std::string& sText, std::string_view sFile) { return addVcxprojFile(sText, sFile); },
     "ClCompile Include=\""},
    {".cbp", addCbpFile, "<Unit filename=\""}};

} // namespace

CAddedFiles copyAddedFiles(const CNewProjectRequest& request, const std::filesystem::path& folder,
                           const CProjectEnvironment& environment, IUserDialogs& dialogs,
                           std::vector<std::filesystem::path>& changed)
{
    CFileCopier copier(request, folder, environment, dialogs, changed);
    for (const auto& module : request.m_modules)
        copier.addModule(module);
    if (request.m_bIncludeFFT)
        copier.addStockObject(FFT_OBJECT);
    for (const std::string& sName : request.m_stockObjects)
        copier.addStockObject(sName);
    if (request.m_bIncludeReverbObjects)
        for (const std::string_view sName : reverbObjectNames())
            copier.addStockObject(std::string(sName));
    return copier.take();
}

bool listFiles(const std::filesystem::path& folder, const std::string& sName,
               const std::vector<std::string>& files, IUserDialogs& dialogs,
               std::vector<std::filesystem::path>& changed)
{
    bool bDone = true;
    for (const CListingFile& row : LISTING_FILES) {
        CEditedFile file(folder / (sName + row.m_pSuffix), dialogs);
        if (!file.isPresent())
            continue;
        const auto add = [&](const std::string& sFile) { return row.m_pAdd(file.text(), sFile); };
        if (!file.check()) {
            bDone = false;
        } else if (!std::ranges::all_of(files, add)) {
            bDone = checkCriticalString(-1, row.m_pPlace, file.path().string(), dialogs);
        } else {
            bDone = file.save(changed) && bDone;
        }
    }
    return bDone;
}

} // namespace velmora
