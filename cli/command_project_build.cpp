#include "cli/build_loop.h"
#include "cli/build_result.h"
#include "cli/command_project.h"
#include "cli/headless_project.h"
#include "project/dsp_project.h"

namespace velmora::cli {

int runProjectWriteCode(CCommandContext& context)
{
    CHeadlessProject project(context);
    if (!project.startWith(*context.line().argument("FILE")))
        return EXIT_FAILED;
    if (!project->writeCode())
        return project.refused();
    context.m_sResult = filesResult(context, "written", project->changedFiles());
    return EXIT_DONE;
}

int runProjectBuild(CCommandContext& context)
{
    const CCommandLine& line = context.line();
    CHeadlessProject project(context);
    if (!project.startWith(*line.argument("FILE")))
        return EXIT_FAILED;
    project.document().guardPlugIn(project->project()->m_sProjectName);
    if (line.has("--watch"))
        return CBuildLoop(context, project).run();

    CRebuildOptions options;
    options.m_bStartFromInitialValues = line.has("--initial-values");
    options.m_pProgress = &context.progress();
    const CRebuildResult result = project->rebuild(options);
    if (result.m_build.m_eState == EBuildState::none && !result.m_build.m_bCancelled)
        return project.refused();
    context.m_sResult = context.json() ? buildResultAsJson(result, nullptr) : buildResultAsText(result);
    project.showReasons(result);
    return isBuildGood(result) ? EXIT_DONE : EXIT_FAILED;
}

} // namespace velmora::cli
