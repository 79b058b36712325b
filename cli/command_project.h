#pragma once

namespace velmora::cli {

class CCommandContext;

// The commands "project ...", by theme; each answers an exit status.

// command_project_create.cpp: a project as a whole
int runProjectCreate(CCommandContext& context);
int runProjectOpen(CCommandContext& context);
int runProjectSaveAs(CCommandContext& context);
int runProjectClear(CCommandContext& context);
int runProjectImportControls(CCommandContext& context);
int runProjectSync(CCommandContext& context);

// command_project_info.cpp: its file and its past
int runProjectInfo(CCommandContext& context);
int runProjectConvert(CCommandContext& context);
int runProjectHistory(CCommandContext& context);

// command_project_controls.cpp
int runProjectAddControl(CCommandContext& context);
int runProjectEditControl(CCommandContext& context);
int runProjectRemoveControl(CCommandContext& context);
int runProjectAddVariable(CCommandContext& context);
int runProjectRemoveVariable(CCommandContext& context);

// command_project_build.cpp: from its description to a loaded library
int runProjectWriteCode(CCommandContext& context);
int runProjectBuild(CCommandContext& context);

} // namespace velmora::cli
