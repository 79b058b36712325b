#include "cli/build_loop.h"

#include "cli/build_result.h"
#include "cli/console_progress.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace velmora::cli {

namespace {

// How long an interrupt may have to wait that comes at the worst moment.
constexpr double LONGEST_WAIT_SECONDS = 0.2;

// What the compiler reads, and what describes the project. Hidden files are the editors' own.
bool isOfTheProject(std::string_view sName)
{
    constexpr std::array<std::string_view, 9> SUFFIXES = {".cpp", ".cc",  ".cxx", ".h",  ".hh",
                                                          ".hpp", ".hxx", ".inl", ".prj"};
    return !sName.starts_with('.') &&
           std::ranges::any_of(SUFFIXES, [&](std::string_view sSuffix) { return sName.ends_with(sSuffix); });
}

} // namespace

CBuildLoop::CBuildLoop(CCommandContext& context, CHeadlessProject& project)
    : m_context(context), m_project(project), m_projectFile(project->project()->m_sProjectFile),
      m_watch(m_projectFile.parent_path(), isOfTheProject)
{
}

int CBuildLoop::run()
{
    std::vector<std::string> changed;
    while (m_watch.error().empty() && !wasInterrupted()) {
        setCancellable(true);
        if (!m_project.lock(m_projectFile))
            return EXIT_FAILED;
        addLaterChanges(changed);
        if (reloadProject(changed) && !buildOnce(changed))
            return EXIT_FAILED;
        m_project.unlock();
        m_context.announce("Watching " + m_projectFile.parent_path().string() + "; Ctrl-C ends.");
        changed = waitForChanges();
    }
    return m_watch.error().empty() ? EXIT_DONE : m_context.fail(m_watch.error());
}

// What another command wrote between the first change and its end.
void CBuildLoop::addLaterChanges(std::vector<std::string>& changed)
{
    for (std::string& sFile : m_watch.waitForChanges(0.0))
        changed.push_back(std::move(sFile));
    std::ranges::sort(changed);
    changed.erase(std::ranges::unique(changed).begin(), changed.end());
}

// Takes the project over from its file if that is among the changes. False if it cannot be read, which waits
// for the next change.
bool CBuildLoop::reloadProject(const std::vector<std::string>& changed)
{
    return std::ranges::find(changed, m_projectFile.filename().string()) == changed.end() ||
           m_project->loadProject(m_projectFile);
}

// False if the result cannot be printed.
bool CBuildLoop::buildOnce(const std::vector<std::string>& changed)
{
    CRebuildResult result;
    const auto start = std::chrono::steady_clock::now();
    if (!m_project.checkMarks() || !m_project->writeCode()) {
        result.m_build.m_eState = EBuildState::failed;
        result.m_build.m_sError = m_context.dialogs().lastMessage();
        return print(result, changed);
    }
    const std::chrono::duration<double> writing = std::chrono::steady_clock::now() - start;
    m_watch.takeAsKnown();

    CRebuildOptions options;
    options.m_bUnloadFirst = false;
    options.m_bStartFromInitialValues = m_context.line().has("--initial-values");
    options.m_pProgress = &m_context.progress();
    result = m_project->rebuild(options);
    result.m_dWriteSeconds += writing.count();
    setCancellable(true); // which the end of the progress took away
    return wasInterrupted() || print(result, changed);
}

bool CBuildLoop::print(const CRebuildResult& result, const std::vector<std::string>& changed)
{
    m_project.showReasons(result);
    if (m_context.json())
        return m_context.print(buildResultAsJson(result, &changed));
    std::string sText;
    for (const std::string& sFile : changed)
        sText += sFile + " changed.\n";
    return m_context.print(sText + buildResultAsText(result) + "\n");
}

// Empty after an interrupt, or when there is nothing to watch any more.
std::vector<std::string> CBuildLoop::waitForChanges()
{
    std::vector<std::string> changed;
    while (changed.empty() && m_watch.error().empty() && !wasInterrupted())
        changed = m_watch.waitForChanges(LONGEST_WAIT_SECONDS);
    return changed;
}

} // namespace velmora::cli
