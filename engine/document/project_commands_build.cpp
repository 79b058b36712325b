#include "base/patience.h"
#include "base/progress.h"
#include "base/user_dialogs.h"
#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "host/plugin_library.h"
#include "host/plugin_library_image.h"
#include "host/user_dsp_filter.h"
#include "project/codegen/linux_project_files.h"
#include "project/compiler/build_watch.h"
#include "project/dsp_project.h"
#include "project/preset_file.h"
#include "project/preset_folder.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>

// Rebuild, and loading what it made.

namespace velmora {

namespace {

constexpr const char* COMPILER_NOT_FOUND =
    "Compiler not found - it is either loading up now or you closed it. Wait or reopen it.";
constexpr double START_DEADLINE_SECONDS = 60.0; // for a compiler's window to appear
constexpr double START_POLL_SECONDS = 0.25;

class CStopwatch
{
  public:
    [[nodiscard]] double seconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }

  private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

// A rebuild's progress, which never goes back. Where the rebuild waits, it is reported about a hundred times
// a second.
class CRebuildProgress : public IProgress, public IPatience
{
  public:
    explicit CRebuildProgress(IProgress& progress) : m_progress(progress) {}

    bool report(double fDone) override
    {
        m_dDone = std::max(m_dDone, fDone);
        return m_progress.report(m_dDone);
    }

    bool wait(std::chrono::milliseconds duration, std::string_view) override
    {
        constexpr std::chrono::milliseconds LONGEST{10};
        const auto end = std::chrono::steady_clock::now() + duration;
        while (report(m_dDone)) {
            const auto left = end - std::chrono::steady_clock::now();
            if (left <= left.zero())
                return true;
            std::this_thread::sleep_for(std::min<decltype(left)>(left, LONGEST));
        }
        return false;
    }

  private:
    IProgress& m_progress;
    double m_dDone = 0.0;
};

// Sets a flag for as long as it lives.
class CFlagScope
{
  public:
    explicit CFlagScope(bool& bFlag) : m_bFlag(bFlag) { m_bFlag = true; }
    ~CFlagScope() { m_bFlag = false; }
    CFlagScope(const CFlagScope&) = delete;
    CFlagScope& operator=(const CFlagScope&) = delete;

  private:
    bool& m_bFlag;
};

} // namespace

CRebuildResult CProjectCommands::rebuild(const CRebuildOptions& options)
{
    CRebuildResult result;
    if (!requireProject(BUILT_PROJECT_NEEDED))
        return result;
    const CFlagScope rebuilding(m_bRebuilding);
    std::optional<CRebuildProgress> progress;
    std::optional<CPatienceScope> scope;
    if (options.m_pProgress)
        scope.emplace(progress.emplace(*options.m_pProgress));
    if (!prepareBuild(result, options))
        return result;
    result.m_build = toolchain().waitForBuild(options.m_dDeadlineSeconds, progress ? &*progress : nullptr);
    if (result.m_build.m_eState == EBuildState::succeeded && options.m_bLoad)
        loadResult(result, options);
    return result;
}

// A compiler that was just started takes seconds until its window is there.
bool CProjectCommands::waitForCompiler(CRebuildResult& result, const CRebuildOptions& options)
{
    IToolchain& compiler = toolchain();
    for (double dWaited = 0.0; !compiler.waitForWindow(*project(), START_POLL_SECONDS);
         dWaited += START_POLL_SECONDS) {
        const bool bGoOn = !options.m_pProgress || options.m_pProgress->report(0.0);
        const bool bGone = compiler.state(*project()) == ECompilerState::notFound;
        if (bGoOn && !bGone && dWaited <= START_DEADLINE_SECONDS)
            continue;
        result.m_build.m_bCancelled = !bGoOn;
        const std::string sReason = compiler.lastError();
        if (bGoOn)
            m_dialogs.showMessage(sReason.empty() ? COMPILER_NOT_FOUND : sReason);
        return false;
    }
    return true;
}

// Between two steps, so that each of them is all that a window has to wait for.
bool CProjectCommands::goesOn(CRebuildResult& result, const CRebuildOptions& options)
{
    result.m_build.m_bCancelled = options.m_pProgress && !options.m_pProgress->report(0.0);
    return !result.m_build.m_bCancelled;
}

bool CProjectCommands::prepareBuild(CRebuildResult& result, const CRebuildOptions& options)
{
    IToolchain& compiler = toolchain();
    if (const std::string sReason = compiler.unavailableReason(); !sReason.empty()) {
        m_dialogs.showMessage(sReason);
        return false;
    }
    if (compiler.state(*project()) == ECompilerState::notFound) {
        m_dialogs.showMessage(COMPILER_NOT_FOUND);
        if (!compiler.makeAvailable(*project()))
            return false;
    }
    if (!waitForCompiler(result, options))
        return false;
    if (options.m_onReady)
        options.m_onReady();
    if (const CLoadedPlugIn* pOld = m_document.plugInLoader().current())
        m_keptValues = CControlValues(*pOld->plugIn());
    if (options.m_bUnloadFirst)
        takeOutPlugIn();
    if (!goesOn(result, options))
        return false;

    const CStopwatch writing;
    if (!writeRegions(&compiler))
        return false;
    result.m_dWriteSeconds = writing.seconds();

    if (!goesOn(result, options))
        return false;
    describeForEditors();
    deleteBuildResults(compiler.compilerId(), *project());
    if (compiler.rebuild(*project()))
        return true;
    const std::string sReason = compiler.lastError();
    m_dialogs.showMessage(sReason.empty() ? "The compiler could not be asked to rebuild." : sReason);
    return false;
}

// What a language server needs to know to read the project's sources.
void CProjectCommands::describeForEditors()
{
    static const std::vector<std::string> FLAGS = {"-std=c++20", "-fPIC", "-fvisibility=hidden", "-Wall",
                                                   "-Wextra"};
    if (writeCompileCommands(project()->folder(), "c++", FLAGS))
        m_changedFiles.push_back(project()->folder() / "compile_commands.json");
}

void CProjectCommands::loadResult(CRebuildResult& result, const CRebuildOptions& options)
{
    const CStopwatch loading;
    CPlugInLoader& loader = m_document.plugInLoader();
    const bool bKeepValues =
        !options.m_bStartFromInitialValues && !m_document.preferences().isOn(START_FROM_INITIAL_VALUES);
    if (!loadLibrary(result.m_build.m_library, bKeepValues ? m_keptValues : CControlValues()))
        return;
    result.m_bLoaded = true;
    result.m_changes = loader.changes();
    result.m_sBuildId = loader.current()->library()->buildId();
    m_keptValues = {};
    if (result.m_sBuildId != buildIdOfFile(result.m_build.m_library))
        m_dialogs.note("The code in memory is not the one in " + result.m_build.m_library.string() +
                       "; it may have been rebuilt meanwhile. Load it again.");
    result.m_dLoadSeconds = loading.seconds();
}

bool CProjectCommands::loadBuiltPlugIn()
{
    if (!requireProject(BUILT_PROJECT_NEEDED))
        return false;
    return loadLibrary(builtLibrary(), {});
}

// The values that the plug-in was made with are the factory preset, whatever it is given afterwards.
bool CProjectCommands::loadLibrary(const std::filesystem::path& library, CControlValues values)
{
    CPlugInLoader& loader = m_document.plugInLoader();
    std::string sFactoryPreset;
    loader.carryOver(std::move(values), [&sFactoryPreset](CPlugIn& plugIn) {
        sFactoryPreset = presetText(plugIn, FACTORY_PRESET_NAME);
    });
    if (!loader.loadPlugin(library, m_document.transport().hasAudioThread()))
        return false;
    static_cast<void>(CPresetFolder(project()->folder()).setUp(sFactoryPreset, m_dialogs));
    return true;
}

void CProjectCommands::unloadPlugIn()
{
    if (!isBusy())
        takeOutPlugIn();
}

void CProjectCommands::takeOutPlugIn()
{
    CPlugInLoader& loader = m_document.plugInLoader();
    if (!loader.current())
        return;
    m_keptValues = CControlValues(*loader.current()->plugIn());
    m_document.transport().close();
    loader.unloadPlugin(!loader.isPlugInLoaded()); // one of the list stays there
}

} // namespace velmora
