#include "base/platform_folders.h"
#include "cli/bench/bench_parts.h"
#include "cli/bench/silent_dialogs.h"
#include "host/plugin_library.h"
#include "host/plugin_probe.h"
#include "host/plugin_scanner.h"
#include "project/compiler/command_line_compiler.h"

#include <memory>
#include <stdexcept>

namespace velmora::cli {

namespace {

constexpr int SCANNED_LIBRARIES = 20;
constexpr int ROUNDS = 7;

CBenchFigure compileExample(const std::filesystem::path& library, CBenchSteps& steps)
{
    const auto examples = programDataFolder("examples");
    const auto contract = programDataFolder("BaseClassFiles");
    if (examples.empty() || contract.empty())
        throw std::runtime_error(
            "The folders examples and BaseClassFiles are not where the program looks for "
            "them; there is no library to load.");
    const CCommandLineCompiler compiler(contract);
    if (!compiler.isInstalled())
        throw std::runtime_error(compiler.notInstalledText());
    CCompileJob job;
    job.m_sources = {examples / "Gain" / "Gain.cpp"};
    job.m_library = library;
    const CCompileResult result = compiler.compile(job, &steps);
    if (result.m_bCancelled)
        throw CBenchInterrupted();
    if (!result.m_bSucceeded)
        throw std::runtime_error(result.m_sError);
    return {std::string("compile an example with ") + compiler.name(), result.m_dSeconds, "s"};
}

void loadAndUnload(const std::filesystem::path& file)
{
    std::string sError;
    const auto pLibrary = CPlugInLibrary::load(file, sError);
    if (!pLibrary)
        throw std::runtime_error(sError);
    const std::unique_ptr<CPlugIn> pPlugIn(pLibrary->makeObject(sError));
    if (!pPlugIn)
        throw std::runtime_error(sError);
}

} // namespace

std::vector<CBenchFigure> benchLibraries(const std::filesystem::path& folder, CBenchSteps& steps)
{
    const auto library = folder / "Gain.so";
    std::vector<CBenchFigure> figures = {compileExample(library, steps)};
    steps.next();
    figures.push_back(
        {"load a library and make its object", 1e3 * medianSecondsOf([&] { loadAndUnload(library); }), "ms"});
    steps.next();

    // Copies share one plug-in name: all but the first are found to be duplicates, after the same work.
    const auto scanned = folder / "scanned";
    std::filesystem::create_directory(scanned);
    for (int nCopy = 0; nCopy < SCANNED_LIBRARIES; ++nCopy)
        std::filesystem::copy_file(library, scanned / ("Gain" + std::to_string(nCopy) + ".so"));
    CSilentDialogs dialogs;
    const CPlugInProbe probe;
    std::vector<double> rounds;
    for (int nRound = 0; nRound < ROUNDS; ++nRound) {
        rounds.push_back(secondsOf([&] {
            const auto result = CPlugInScanner(dialogs, probe).scanPlugIns(scanned);
            if (result.m_entries.size() != SCANNED_LIBRARIES)
                throw std::runtime_error("The scan did not find the benchmark's libraries.");
        }));
        steps.next();
    }
    figures.push_back({"scan, one library", 1e3 * medianOf(std::move(rounds)) / SCANNED_LIBRARIES, "ms"});
    return figures;
}

} // namespace velmora::cli
