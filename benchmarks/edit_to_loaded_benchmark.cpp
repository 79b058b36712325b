// From one changed line in a plug-in's source to the new code running in the host, and the same edit through
// other builds: the project's own CMakeLists.txt with make, and a Debian plug-in framework's Makefile.
//
// Usage: edit_to_loaded_benchmark [ROUNDS]     20 rounds if not told

#include "base/platform_child_process.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "host/plugin_library.h"
#include "host/plugin_probe.h"
#include "project/codegen/code_central_services.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_creation.h"
#include "project/codegen/project_environment.h"
#include "project/compiler/command_line_toolchain.h"
#include "project/compiler/compiler_table.h"
#include "project/compiler/file_stamp.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <stdexcept>

namespace velmora {
namespace {

namespace fs = std::filesystem;
using CClock = std::chrono::steady_clock;

constexpr double BUILD_DEADLINE = 300.0; // s

double millisecondsSince(CClock::time_point start)
{
    return std::chrono::duration<double, std::milli>(CClock::now() - start).count();
}

class CThrowingDialogs : public IUserDialogs
{
  public:
    void showMessage(std::string_view sText) override { throw std::runtime_error(std::string(sText)); }
    bool askYesNo(std::string_view) override { return true; }
    bool askOKCancel(std::string_view) override { return true; }
    std::optional<fs::path> chooseSaveFile(std::string_view, const fs::path&) override { return {}; }
    std::optional<fs::path> chooseOpenFile(std::string_view, const fs::path&) override { return {}; }
    void note(std::string_view) override {}
};

class CTemporaryFolder
{
  public:
    CTemporaryFolder()
    {
        std::string sName = (fs::temp_directory_path() / "velmora-bench-XXXXXX").string();
        if (!::mkdtemp(sName.data()))
            throw std::runtime_error("No temporary folder can be made.");
        m_path = sName;
    }
    ~CTemporaryFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    CTemporaryFolder(const CTemporaryFolder&) = delete;
    CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;
    [[nodiscard]] const fs::path& path() const { return m_path; }

  private:
    fs::path m_path;
};

// The figures of all rounds by name, in ms, in the order in which they came first.
class CFigures
{
  public:
    void add(const std::string& sName, double dMilliseconds)
    {
        if (!m_rounds.contains(sName))
            m_names.push_back(sName);
        m_rounds[sName].push_back(dMilliseconds);
    }
    void print() const
    {
        std::printf("%-52s %9s %9s %9s\n", "ms", "median", "least", "most");
        for (const std::string& sName : m_names) {
            std::vector<double> rounds = m_rounds.at(sName);
            std::ranges::sort(rounds);
            const std::size_t uMiddle = rounds.size() / 2;
            const double dMedian =
                rounds.size() % 2 ? rounds[uMiddle] : 0.5 * (rounds[uMiddle - 1] + rounds[uMiddle]);
            std::printf("%-52s %9.1f %9.1f %9.1f\n", sName.c_str(), dMedian, rounds.front(), rounds.back());
        }
    }

  private:
    std::vector<std::string> m_names;
    std::map<std::string, std::vector<double>> m_rounds;
};

void writeFile(const fs::path& file, std::string_view sText)
{
    if (!writeFileSafely(file, sText))
        throw std::runtime_error("The file " + file.string() + " cannot be written.");
}

// The edit: another volume on the one line that holds it.
void setVolume(const fs::path& source, double dVolume)
{
    constexpr std::string_view MARK = "FIXED_VOLUME = ";
    std::string sText = contentsOfFile(source).value_or("");
    const std::size_t uAt = sText.find(MARK);
    if (uAt == std::string::npos)
        throw std::runtime_error(source.string() + " has no line to change.");
    const std::size_t uBegin = uAt + MARK.size();
    sText.replace(uBegin, sText.find(';', uBegin) - uBegin, fixedDecimals(dVolume, 4) + "f");
    writeFile(source, sText);
}

void runOrThrow(std::vector<std::string> arguments)
{
    const CChildResult result = CChildProcess(std::move(arguments)).run();
    if (!result.succeeded())
        throw std::runtime_error(result.m_sError + result.m_sOutput);
}

// Loads the library and makes sure that the new code runs: a frame of ones comes out at the new volume.
void loadAndCheck(const fs::path& file, double dVolume)
{
    std::string sError;
    const auto pLibrary = CPlugInLibrary::load(file, sError);
    const std::unique_ptr<CPlugIn> pPlugIn(pLibrary ? pLibrary->makeObject(sError) : nullptr);
    if (!pPlugIn)
        throw std::runtime_error(sError);
    float input = 1.0f;
    float output = 0.0f;
    pPlugIn->processAudioFrame(&input, &output, 1, 1);
    if (fixedDecimals(static_cast<double>(output), 4) != fixedDecimals(dVolume, 4))
        throw std::runtime_error("The library that was loaded does not hold the edit.");
}

// A skeleton project and the way that the workbench goes with it.
class CWorkbenchLoop
{
  public:
    CWorkbenchLoop(const fs::path& folder, int nCompilerId)
        : m_sName(findCompiler(nCompilerId)->m_pName), m_environment(environmentIn(folder)),
          m_toolchain(nCompilerId, m_environment.m_plugInsFolder, folder / "Cache")
    {
        CNewProjectRequest request;
        request.m_parentFolder = folder;
        request.setName("Volume" + std::string(1, static_cast<char>('A' + nCompilerId % 26)));
        m_pProject = createProject(request, m_environment, m_dialogs);
        if (!m_pProject)
            throw std::runtime_error("The project could not be created.");
    }

    [[nodiscard]] bool isAvailable() const { return m_toolchain.unavailableReason().empty(); }
    [[nodiscard]] CDSPProject& project() { return *m_pProject; }
    [[nodiscard]] fs::path library() const
    {
        return m_environment.m_plugInsFolder / (m_pProject->m_sProjectName + ".so");
    }

    void takeRound(double dVolume, CFigures* pFigures)
    {
        setVolume(m_pProject->sourcePath(), dVolume);
        const auto start = CClock::now();
        if (!CCodeCentralServices(nullptr, m_dialogs).writeCodeRegions(m_pProject.get()))
            throw std::runtime_error("The code regions could not be written.");
        const double dWrite = millisecondsSince(start);
        if (!m_toolchain.rebuild(*m_pProject))
            throw std::runtime_error(m_toolchain.unavailableReason());
        const CBuildReport report = m_toolchain.waitForBuild(BUILD_DEADLINE, nullptr);
        if (report.m_eState != EBuildState::succeeded)
            throw std::runtime_error(report.m_sError);
        const double dBuilt = millisecondsSince(start);
        const auto results = m_probe.probe(std::vector<fs::path>{report.m_library});
        if (results.front().m_eStatus != EProbeStatus::good)
            throw std::runtime_error(results.front().m_sReason);
        const double dProbed = millisecondsSince(start);
        loadAndCheck(report.m_library, dVolume);
        const double dLoaded = millisecondsSince(start);
        if (!pFigures)
            return;
        const double dCompile = 1e3 * report.m_dCompileSeconds;
        const double dLink = 1e3 * report.m_dLinkSeconds;
        pFigures->add(m_sName + ": edit to loaded", dLoaded);
        const auto addPart = [&](const char* pPart, double dMilliseconds) {
            pFigures->add("    " + m_sName + ": " + pPart, dMilliseconds);
        };
        addPart("write regions", dWrite);
        addPart("compile", dCompile);
        addPart("link", dLink);
        addPart("log, marker, thread", dBuilt - dWrite - dCompile - dLink);
        addPart("probe", dProbed - dBuilt);
        addPart("load, process a frame, unload", dLoaded - dProbed);
    }

  private:
    static CProjectEnvironment environmentIn(const fs::path& folder)
    {
        CProjectEnvironment environment = currentProjectEnvironment(ECompilerFamily::commandLine);
        environment.m_plugInsFolder = folder / "PlugIns";
        environment.m_projectsFolder = folder;
        return environment;
    }

    CThrowingDialogs m_dialogs;
    std::string m_sName;
    CProjectEnvironment m_environment;
    CCommandLineToolchain m_toolchain;
    CPlugInProbe m_probe;
    std::unique_ptr<CDSPProject> m_pProject;
};

// The same project through the CMakeLists.txt that was made with it.
class CCMakeLoop
{
  public:
    CCMakeLoop(CWorkbenchLoop& project) : m_project(project)
    {
        m_buildFolder = m_project.project().folder() / "build";
        runOrThrow({"cmake", "-S", m_project.project().folder().string(), "-B", m_buildFolder.string(), "-G",
                    "Unix Makefiles", "-DCMAKE_BUILD_TYPE=Release"});
    }
    void takeRound(double dVolume, CFigures* pFigures)
    {
        setVolume(m_project.project().sourcePath(), dVolume);
        const auto start = CClock::now();
        runOrThrow({"make", "-s", "-j", "-C", m_buildFolder.string()});
        loadAndCheck(m_project.library(), dVolume);
        if (pFigures)
            pFigures->add("CMake and make, the same project", millisecondsSince(start));
    }

  private:
    CWorkbenchLoop& m_project;
    fs::path m_buildFolder;
};

// A volume plug-in on the framework of Debian's package dpf-source, as LV2 without a window: its smallest
// form.
class CFrameworkLoop
{
  public:
    static constexpr const char* FRAMEWORK = "/usr/share/dpf";

    explicit CFrameworkLoop(const fs::path& folder) : m_folder(folder / "framework")
    {
        fs::create_directories(m_folder);
        writeFile(m_folder / "DistrhoPluginInfo.h", "#define DISTRHO_PLUGIN_BRAND \"Bench\"\n"
                                                    "#define DISTRHO_PLUGIN_NAME \"Volume\"\n"
                                                    "#define DISTRHO_PLUGIN_URI \"urn:bench:volume\"\n"
                                                    "#define DISTRHO_PLUGIN_NUM_INPUTS 1\n"
                                                    "#define DISTRHO_PLUGIN_NUM_OUTPUTS 1\n"
                                                    "#define DISTRHO_PLUGIN_IS_RT_SAFE 1\n");
        writeFile(source(), R"(#include "DistrhoPlugin.hpp"
START_NAMESPACE_DISTRHO
const float FIXED_VOLUME = 0.5f;
class CVolume : public Plugin
{
  public:
    CVolume() : Plugin(0, 0, 0) {}

  protected:
    const char* getLabel() const override { return "Volume"; }
    const char* getMaker() const override { return "Bench"; }
    const char* getLicense() const override { return "ISC"; }
    uint32_t getVersion() const override { return d_version(1, 0, 0); }
    int64_t getUniqueId() const override { return d_cconst('b', 'V', 'o', 'l'); }
    void run(const float** inputs, float** outputs, uint32_t frames) override
    {
        for (uint32_t frame = 0; frame < frames; ++frame)
            outputs[0][frame] = FIXED_VOLUME * inputs[0][frame];
    }
};
Plugin* createPlugin() { return new CVolume(); }
END_NAMESPACE_DISTRHO
)");
        writeFile(m_folder / "Makefile", "NAME = volume\nFILES_DSP = Volume.cpp\n"
                                         "DPF_PATH = " +
                                             std::string(FRAMEWORK) +
                                             "\nDPF_TARGET_DIR = bin\nDPF_BUILD_DIR = build\n"
                                             "include $(DPF_PATH)/Makefile.plugins.mk\nall: lv2_dsp\n");
    }
    void takeRound(double dVolume, CFigures* pFigures)
    {
        setVolume(source(), dVolume);
        const auto start = CClock::now();
        runOrThrow({"make", "-s", "-j", "-C", m_folder.string(), "all"});
        if (pFigures)
            pFigures->add("dpf-source and make, a plug-in as small (built)", millisecondsSince(start));
    }

  private:
    [[nodiscard]] fs::path source() const { return m_folder / "Volume.cpp"; }

    fs::path m_folder;
};

void run(int nRounds)
{
    const CTemporaryFolder folder;
    CFigures figures;
    std::vector<std::unique_ptr<CWorkbenchLoop>> loops;
    for (const int nCompilerId : {GCC_COMMAND_LINE_ID, CLANG_COMMAND_LINE_ID}) {
        auto pLoop = std::make_unique<CWorkbenchLoop>(folder.path(), nCompilerId);
        if (pLoop->isAvailable())
            loops.push_back(std::move(pLoop));
        else
            std::printf("%s is not installed and left out.\n", findCompiler(nCompilerId)->m_pName);
    }
    const fs::path cmakeFolder = folder.path() / "cmake";
    fs::create_directories(cmakeFolder);
    CWorkbenchLoop cmakeProject(cmakeFolder, GCC_COMMAND_LINE_ID);
    CCMakeLoop cmake(cmakeProject);
    std::optional<CFrameworkLoop> framework;
    if (fs::exists(fs::path(CFrameworkLoop::FRAMEWORK) / "Makefile.plugins.mk"))
        framework.emplace(folder.path());
    else
        std::printf("The package dpf-source is not installed; its comparison is left out.\n");

    // Round 0 fills the caches. Then all take turns, so that a busy moment meets all of them.
    for (int nRound = 0; nRound <= nRounds; ++nRound) {
        CFigures* const pFigures = nRound > 0 ? &figures : nullptr;
        const double dVolume = 0.25 + 0.0003 * nRound;
        for (const auto& pLoop : loops)
            pLoop->takeRound(dVolume, pFigures);
        cmake.takeRound(dVolume, pFigures);
        if (framework)
            framework->takeRound(dVolume, pFigures);
    }
    std::printf("Edit to loaded, %d rounds\n", nRounds);
    figures.print();
}

} // namespace
} // namespace velmora

int main(int nArguments, char** ppArguments)
{
    try {
        const int nRounds = nArguments > 1 ? std::atoi(ppArguments[1]) : 20;
        velmora::run(std::max(1, nRounds));
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
