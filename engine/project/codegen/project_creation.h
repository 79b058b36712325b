#pragma once

#include <memory>

namespace velmora {

class CDSPProject;
class IUserDialogs;
struct CNewProjectRequest;
struct CProjectEnvironment;

// Makes the project's folder and everything in it: contract, skeletons under the project's name, modules,
// stock objects, and the project files of all compilers. A failure is shown; what was made so far stays. A
// single file that cannot be copied does not stop it. [main]
[[nodiscard]] bool createProjectFiles(const CNewProjectRequest& request,
                                      const CProjectEnvironment& environment, IUserDialogs& dialogs);

// Fills a fresh project with what the dialog holds, the version words included.
void fillProject(CDSPProject& project, const CNewProjectRequest& request,
                 const CProjectEnvironment& environment);

// Of these, what Edit Project may change: company, codes, latency and flags.
void fillProjectSettings(CDSPProject& project, const CNewProjectRequest& request);

// New Project after the dialog's checks: makes the files, fills a project, saves it and sets the linker up
// for the compiler. Null on failure, which has been shown. The caller then makes it the open one, fills
// the plug-in list and starts the compiler.
[[nodiscard]] std::unique_ptr<CDSPProject> createProject(const CNewProjectRequest& request,
                                                         const CProjectEnvironment& environment,
                                                         IUserDialogs& dialogs);

} // namespace velmora
