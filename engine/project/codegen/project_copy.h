#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace velmora {

class CDSPProject;
class IUserDialogs;
struct CProjectEnvironment;

// What the dialog "Save Project As" holds.
struct CProjectCopyRequest
{
    std::string m_sProjectName;           // "Project Name:"
    std::filesystem::path m_parentFolder; // "Save As:"; the new project's folder is made in it
    bool m_bCopyEntireFolder = false;     // presets and all other files too
    bool m_bOmitVSTLibraries = false;     // "Omit VST/GUI Libraries"
};

// Why a project can not be copied so; empty if it can. [main]
[[nodiscard]] std::string checkProjectCopy(const CDSPProject& project, const CProjectCopyRequest& request);

// Save As: makes a project of the new name with the sources, compiler files and settings of this one, which
// stays as it is. Build products and the history are not taken along. Answers the new .prj; none on
// failure. What went wrong, or "Project saved!", has been shown. [main]
[[nodiscard]] std::optional<std::filesystem::path> copyProject(CDSPProject& project,
                                                               const CProjectCopyRequest& request,
                                                               const CProjectEnvironment& environment,
                                                               IUserDialogs& dialogs);

} // namespace velmora
