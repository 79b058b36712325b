#pragma once

#include <filesystem>
#include <vector>

namespace velmora {

class CDSPProject;
class ICompilerAccess;
class IUserDialogs;
struct CNewProjectRequest;
struct CProjectEnvironment;

inline constexpr const char* EDIT_PROJECT_DONE = "New Files copied and code synchronized.\n\nCheck Visual "
                                                 "Studio Compiler and agree to reload the project if "
                                                 "prompted.\n\nThen you can safely rebuild your DLL.";

// What the dialog shows of an existing project: its values, and what its files say of modules, stock objects
// and GUI.
[[nodiscard]] CNewProjectRequest
requestOfProject(const CDSPProject& project, const CProjectEnvironment& environment, IUserDialogs& dialogs);

// Edit Project after the dialog's checks: copies newly chosen modules and stock objects and lists them,
// switches the flags in the source, and takes the values over into the project. pCompiler, if given, is
// told to save first, and given a moment. False on failure, which has been shown; appends the files that
// changed. The caller saves the project and rewrites the code. [main]
[[nodiscard]] bool editProject(CDSPProject& project, const CNewProjectRequest& request,
                               const CProjectEnvironment& environment, ICompilerAccess* pCompiler,
                               IUserDialogs& dialogs, std::vector<std::filesystem::path>& changed);

} // namespace velmora
