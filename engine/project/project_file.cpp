#include "project/project_file.h"

#include "base/archive.h"
#include "base/safe_file.h"
#include "project/dsp_project.h"

#include <cstdint>
#include <fstream>
#include <new>
#include <optional>
#include <span>
#include <string>

namespace velmora {

namespace {

void showError(IUserDialogs& dialogs, const std::filesystem::path& path, const std::string& sWhat)
{
    dialogs.showMessage("Error: The File " + path.string() + " " + sWhat);
}

// Far above the size of any project: 100,000 controls with their longest texts take less.
constexpr std::uintmax_t LARGEST_FILE = std::uintmax_t(1) << 30;

// The bytes of a regular file; none if it cannot be opened or read.
std::optional<std::string> readWholeFile(const std::filesystem::path& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) // a device or a pipe might never end
        return {};
    const auto uSize = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file)
        return {};
    if (uSize > LARGEST_FILE)
        throw CArchiveError("It is larger than any project.");
    std::string sBytes(static_cast<std::size_t>(uSize), '\0');
    file.read(sBytes.data(), static_cast<std::streamsize>(sBytes.size()));
    if (file.bad())
        return {};
    sBytes.resize(static_cast<std::size_t>(file.gcount()));
    return sBytes;
}

// The first of the names that become files of the project's folder and would lead out of it; none if all
// are plain.
std::optional<std::string> nameLeadingElsewhere(const CDSPProject& project)
{
    for (const std::string& sName : {project.m_sProjectName, project.m_sHeaderFile, project.m_sSourceFile}) {
        if (sName.find_first_of("/\\") != std::string::npos || sName == "." || sName == ".." ||
            sName.find('\0') != std::string::npos)
            return sName;
    }
    return {};
}

} // namespace

std::string projectBytes(CDSPProject& project)
{
    std::string sBytes;
    CArchive archive(sBytes);
    project.Serialize(archive);
    return sBytes;
}

bool saveProject(CDSPProject& project, const std::filesystem::path& path, IUserDialogs& dialogs)
{
    std::string sReason;
    if (writeFileSafely(path, projectBytes(project), &sReason))
        return true;
    dialogs.note(path.string() + ": " + sReason);
    showError(dialogs, path, "could not be created.");
    return false;
}

bool loadProject(CDSPProject& project, const std::filesystem::path& path, IUserDialogs& dialogs)
{
    project.clear();
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) {
        showError(dialogs, path, "has an invalid path.");
        return false;
    }
    try {
        const auto bytes = readWholeFile(path);
        if (!bytes) {
            showError(dialogs, path, "could not be opened.");
            return false;
        }
        CArchive archive(std::as_bytes(std::span(*bytes)));
        project.Serialize(archive);
        const auto sElsewhere = nameLeadingElsewhere(project);
        if (!sElsewhere)
            return true;
        project.clear();
        showError(dialogs, path,
                  "could not be read. It names \"" + *sElsewhere + "\", which is no file of its own folder.");
    } catch (const CArchiveError& error) {
        showError(dialogs, path, std::string("could not be read. ") + error.what());
    } catch (const std::bad_alloc&) {
        showError(dialogs, path, "could not be read. There is not enough memory.");
    }
    return false;
}

} // namespace velmora
