#include "project/compiler/contract_cache.h"

#include "base/safe_file.h"
#include "base/text.h"
#include "project/compiler/build_control.h"
#include "project/compiler/build_record.h"
#include "project/compiler/file_stamp.h"
#include "project/compiler/parallel_steps.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <map>

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr const char* REQUIRED_FILES[] = {"plugin.h", "pluginconstants.h", "plugin.cpp", "pluginobjects.cpp"};
constexpr const char* FURTHER_FILES[] = {"synthfunctions.h", "lookuptables.h"};
constexpr const char* SOURCES[] = {"plugin.cpp", "pluginobjects.cpp"};
constexpr const char* HEADER = "plugin.h";

constexpr const char* FOLDER_PREFIX = "contract-";
constexpr const char* MANIFEST = "manifest";
constexpr std::string_view FIRST_LINE = "velmora contract 1";
constexpr std::string_view LAST_LINE = "end";

// A folder without a manifest belongs to somebody at work, or, when it is older than this, to nobody.
constexpr std::chrono::minutes ABANDONED_AFTER{30};

constexpr const char* DEPENDENCIES_SUFFIX = ".d";

std::vector<fs::path> entriesIn(const fs::path& cacheFolder, const std::string& sPrefix)
{
    std::vector<fs::path> result;
    std::error_code error;
    for (fs::directory_iterator entry(cacheFolder, error), end; !error && entry != end;
         entry.increment(error))
        if (entry->path().filename().string().starts_with(sPrefix) && entry->is_directory(error))
            result.push_back(entry->path());
    std::ranges::sort(result);
    return result;
}

fs::path makeFolder(const fs::path& cacheFolder, const std::string& sName)
{
    std::error_code error;
    fs::create_directories(cacheFolder, error);
    std::string sTemplate = (cacheFolder / (sName + "-XXXXXX")).string();
    return ::mkdtemp(sTemplate.data()) ? fs::path(sTemplate) : fs::path();
}

// "STAMP PATH", where a relative path lies in the entry.
bool isManifestLineTrue(const std::string& sLine, const fs::path& folder)
{
    const std::size_t uBlank = sLine.find(' ');
    if (uBlank == std::string::npos)
        return false;
    const auto noted = CFileStamp::fromText(std::string_view(sLine).substr(0, uBlank));
    return noted && CFileStamp::of(folder / sLine.substr(uBlank + 1)) == noted;
}

} // namespace

// The contract's files of a project by name.
struct CContractCache::CContents
{
    std::map<std::string, std::string> m_files;
};

CContractCache::CContractCache(fs::path cacheFolder, int nCompilerId)
    : m_cacheFolder(std::move(cacheFolder)), m_nCompilerId(nCompilerId)
{
}

std::span<const char* const> CContractCache::requiredFiles()
{
    return REQUIRED_FILES;
}

std::span<const char* const> CContractCache::contractSources()
{
    return SOURCES;
}

std::optional<CContractCache::CContents> CContractCache::readContents(const fs::path& projectFolder)
{
    CContents contents;
    for (const char* pName : REQUIRED_FILES) {
        auto file = contentsOfFile(projectFolder / pName);
        if (!file)
            return {};
        contents.m_files[pName] = std::move(*file);
    }
    for (const char* pName : FURTHER_FILES)
        if (auto file = contentsOfFile(projectFolder / pName))
            contents.m_files[pName] = std::move(*file);
    return contents;
}

std::string CContractCache::nameOf(std::uint64_t uKey) const
{
    return FOLDER_PREFIX + hashText(uKey);
}

CCompiledContract CContractCache::contractIn(fs::path folder, std::uint64_t uKey) const
{
    CCompiledContract contract;
    contract.m_header = folder / HEADER;
    for (const char* pSource : SOURCES)
        contract.m_objects.push_back(folder / (std::string(pSource) + ".o"));
    contract.m_folder = std::move(folder);
    contract.m_uKey = uKey;
    return contract;
}

std::optional<CCompiledContract> CContractCache::provide(const fs::path& projectFolder,
                                                         CBuildControl& control, std::string& sLog) const
{
    const auto contents = readContents(projectFolder);
    const CCommandLineCompiler compiler({}, m_nCompilerId);
    if (!contents || !compiler.isInstalled())
        return {};
    std::string sKey = compiler.identity() + "\n" +
                       CCommandLineCompiler::asCommandLine(compiler.precompileArguments(HEADER, {}));
    for (const auto& [sName, sContents] : contents->m_files)
        sKey += formatted("\n%s %zu\n", sName.c_str(), sContents.size()) + sContents;
    const std::uint64_t uKey = contentHash(sKey);
    if (auto found = find(uKey, *contents))
        return found;
    return make(uKey, *contents, control, sLog);
}

std::optional<CCompiledContract> CContractCache::find(std::uint64_t uKey, const CContents& contents) const
{
    for (const fs::path& folder : entriesIn(m_cacheFolder, nameOf(uKey))) {
        std::error_code error;
        if (!fs::exists(folder / MANIFEST, error))
            continue; // another process is at work there
        const CCompiledContract contract = contractIn(folder, uKey);
        if (isIntact(contract, contents)) {
            fs::last_write_time(folder / MANIFEST, fs::file_time_type::clock::now(), error);
            return contract;
        }
        discard(contract);
    }
    return {};
}

bool CContractCache::isIntact(const CCompiledContract& contract, const CContents& contents) const
{
    for (const auto& [sName, sContents] : contents.m_files)
        if (contentsOfFile(contract.m_folder / sName) != sContents)
            return false;
    const auto lines = split(contentsOfFile(contract.m_folder / MANIFEST).value_or(""), '\n');
    if (lines.size() < 3 || lines.front() != FIRST_LINE || lines[lines.size() - 2] != LAST_LINE)
        return false;
    return std::all_of(lines.begin() + 1, lines.end() - 2, [&](const std::string& sLine) {
        return isManifestLineTrue(sLine, contract.m_folder);
    });
}

std::optional<CCompiledContract> CContractCache::make(std::uint64_t uKey, const CContents& contents,
                                                      CBuildControl& control, std::string& sLog) const
{
    const std::int64_t nStarted = CFileStamp::now();
    const fs::path folder = makeFolder(m_cacheFolder, nameOf(uKey));
    if (folder.empty())
        return {};
    const CCompiledContract contract = contractIn(folder, uKey);
    const bool bCopied = std::ranges::all_of(contents.m_files, [&](const auto& file) {
        return writeFileSafely(folder / file.first, file.second);
    });
    if (!bCopied || !compile(contract, control, sLog) || !writeManifest(contract, nStarted)) {
        discard(contract);
        return {};
    }
    trim();
    return contract;
}

bool CContractCache::compile(const CCompiledContract& contract, CBuildControl& control,
                             std::string& sLog) const
{
    // The entry's own copies are compiled, so that nothing of the project's folder is read.
    const CCommandLineCompiler compiler(contract.m_folder, m_nCompilerId);
    const auto dependenciesOf = [](const fs::path& file) { return file.string() + DEPENDENCIES_SUFFIX; };
    std::vector<CCommandLineCompiler::CArguments> commands = {
        compiler.precompileArguments(contract.m_header, dependenciesOf(contract.m_header))};
    for (std::size_t uSource = 0; uSource < std::size(SOURCES); ++uSource)
        commands.push_back(compiler.compileArguments(contract.m_folder / SOURCES[uSource],
                                                     contract.m_objects[uSource],
                                                     dependenciesOf(contract.m_objects[uSource]), {}));
    std::vector<CChildResult> results(commands.size());
    std::vector<std::function<void()>> steps;
    for (std::size_t uStep = 0; uStep < commands.size(); ++uStep)
        steps.emplace_back([&, uStep] {
            results[uStep] =
                CCommandLineCompiler::run(commands[uStep], [&control] { return !control.m_bStop; });
            ++control.m_uFinished;
        });
    control.m_uSteps += static_cast<unsigned>(steps.size());
    runInParallel(steps);
    for (const auto& command : commands)
        sLog += CCommandLineCompiler::asCommandLine(command) + "\n";
    return std::ranges::all_of(results, &CChildResult::succeeded);
}

bool CContractCache::writeManifest(const CCompiledContract& contract, std::int64_t nStarted) const
{
    const CCommandLineCompiler compiler({}, m_nCompilerId);
    std::vector<fs::path> products = contract.m_objects;
    products.push_back(compiler.precompiledHeader(HEADER));
    std::string sManifest = std::string(FIRST_LINE) + "\n";
    const auto note = [&](const fs::path& file, const CFileStamp& stamp) {
        sManifest += stamp.text() + " " + file.string() + "\n";
    };
    for (const fs::path& product : products) {
        const auto stamp = CFileStamp::of(contract.m_folder / product);
        if (!stamp)
            return false;
        note(product.filename(), *stamp);
    }
    std::map<fs::path, CFileStamp> headers;
    std::vector<fs::path> readers = contract.m_objects;
    readers.push_back(contract.m_header);
    for (const fs::path& reader : readers)
        for (const fs::path& file :
             filesOfMakeRule(contentsOfFile(reader.string() + DEPENDENCIES_SUFFIX).value_or(""))) {
            const auto stamp = CFileStamp::of(file);
            if (file.parent_path() == contract.m_folder)
                continue;
            // One that changed while it was read may have gone in half old, half new.
            if (!stamp || !stamp->isSettledAt(nStarted))
                return false;
            headers.emplace(file, *stamp);
        }
    for (const auto& [file, stamp] : headers)
        note(file, stamp);
    return writeFileSafely(contract.m_folder / MANIFEST, sManifest + std::string(LAST_LINE) + "\n");
}

void CContractCache::discard(const CCompiledContract& contract)
{
    std::error_code ignored;
    fs::remove(contract.m_folder / MANIFEST, ignored); // first, so that nobody takes the rest for an entry
    fs::remove_all(contract.m_folder, ignored);
}

void CContractCache::trim() const
{
    using CTime = fs::file_time_type;
    std::vector<std::pair<CTime, fs::path>> complete;
    std::error_code error;
    for (const fs::path& folder : entriesIn(m_cacheFolder, FOLDER_PREFIX)) {
        const CTime used = fs::last_write_time(folder / MANIFEST, error);
        if (!error)
            complete.emplace_back(used, folder);
        else if (fs::last_write_time(folder, error) + ABANDONED_AFTER < CTime::clock::now() && !error)
            fs::remove_all(folder, error);
    }
    std::ranges::sort(complete, std::greater<>());
    for (std::size_t uEntry = MAX_ENTRIES; uEntry < complete.size(); ++uEntry)
        discard(contractIn(complete[uEntry].second, 0));
}

} // namespace velmora
