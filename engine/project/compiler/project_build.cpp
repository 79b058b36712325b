#include "project/compiler/project_build.h"

#include "base/safe_file.h"
#include "base/text.h"
#include "project/compiler/build_control.h"
#include "project/compiler/compiler_messages.h"
#include "project/compiler/contract_use.h"
#include "project/compiler/parallel_steps.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <thread>

namespace velmora {

namespace {

namespace fs = std::filesystem;
using CClock = std::chrono::steady_clock;

constexpr const char* RECORD = "record";
constexpr const char* PART_SUFFIX = ".part"; // of what is not complete yet
constexpr const char* DEPENDENCIES_SUFFIX = ".d";
constexpr std::chrono::milliseconds LOCK_INTERVAL{20};
constexpr const char* STOPPED = "The compilation was stopped.";

double secondsSince(CClock::time_point start)
{
    return std::chrono::duration<double>(CClock::now() - start).count();
}

void replaceAllIn(std::string& sText, const std::string& sFrom, const std::string& sTo)
{
    for (std::size_t uAt = sText.find(sFrom); uAt != std::string::npos;
         uAt = sText.find(sFrom, uAt + sTo.size()))
        sText.replace(uAt, sFrom.size(), sTo);
}

} // namespace

CProjectBuild::CProjectBuild(CProjectBuildJob job, CBuildControl& control)
    : m_job(std::move(job)), m_control(control), m_compiler(m_job.m_projectFolder, m_job.m_nCompilerId),
      m_sCompilerIdentity(m_compiler.identity()),
      m_buildFolder(m_job.m_projectFolder / ".velmora" / "build" / std::to_string(m_job.m_nCompilerId))
{
}

CBuildReport CProjectBuild::run()
{
    m_report.m_sError = takeSteps();
    m_report.m_bCancelled = m_control.m_bStop && !m_report.m_sError.empty();
    if (m_report.m_bCancelled)
        m_report.m_sError = STOPPED;
    m_report.m_eState = m_report.m_sError.empty() ? EBuildState::succeeded : EBuildState::failed;
    if (m_report.m_sError.empty())
        m_report.m_library = m_job.m_library;
    return std::move(m_report);
}

std::string CProjectBuild::takeSteps()
{
    if (std::string sError = checkProject(); !sError.empty())
        return sError;
    if (std::string sError = lockBuildFolder(); !sError.empty())
        return sError;
    m_record = CBuildRecord::load(m_buildFolder / RECORD);
    m_sSavedRecord = m_record.text();
    m_files.emplace(m_job.m_projectFolder);

    const auto compileStart = CClock::now();
    std::string sError = compile();
    m_report.m_dCompileSeconds = secondsSince(compileStart);
    if (sError.empty()) {
        const auto linkStart = CClock::now();
        sError = link();
        m_report.m_dLinkSeconds = secondsSince(linkStart);
    }
    if (sError.empty())
        removeOrphans();
    if (m_bContractBad)
        CContractCache::discard(*m_contract);
    saveRecord();
    return sError;
}

std::string CProjectBuild::checkProject() const
{
    if (!m_compiler.isInstalled())
        return m_compiler.notInstalledText();
    std::error_code error;
    for (const char* pName : CContractCache::requiredFiles())
        if (!fs::is_regular_file(m_job.m_projectFolder / pName, error))
            return "The file " + std::string(pName) + " is missing in the project folder " +
                   m_job.m_projectFolder.string() + ". Opening the project again brings it back.";
    return {};
}

std::string CProjectBuild::lockBuildFolder()
{
    std::error_code error;
    fs::create_directories(m_buildFolder, error);
    // One for all compilers: they share the library and the log.
    const fs::path lock = m_buildFolder.parent_path() / "lock";
    m_lock = CDescriptor(::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
    if (m_lock.get() < 0)
        return "The folder " + m_buildFolder.string() + " cannot be written: " + std::strerror(errno) + ".";
    while (::flock(m_lock.get(), LOCK_EX | LOCK_NB) != 0) {
        if (m_control.m_bStop || (errno != EWOULDBLOCK && errno != EINTR))
            return "The folder " + m_buildFolder.string() + " cannot be locked: " + std::strerror(errno) +
                   ".";
        std::this_thread::sleep_for(LOCK_INTERVAL);
    }
    return {};
}

std::vector<CProjectBuild::CUnit> CProjectBuild::plannedUnits() const
{
    std::vector<CUnit> units;
    for (const fs::path& source : m_files->sources()) {
        const bool bOfContract = std::ranges::find(CContractCache::contractSources(), source.filename()) !=
                                 CContractCache::contractSources().end();
        if (bOfContract && m_contract)
            continue;
        CUnit unit;
        unit.m_source = source;
        unit.m_object = m_buildFolder / (source.filename().string() + ".o");
        std::string sCommand =
            CCommandLineCompiler::asCommandLine(m_compiler.compileArguments(source, unit.m_object, {}, {}));
        if (m_contract &&
            beginsWithContract(source, m_job.m_projectFolder / m_contract->m_header.filename())) {
            unit.m_header = m_contract->m_header;
            sCommand += " " + hashText(m_contract->m_uKey);
        }
        unit.m_uCommandHash =
            contentHash(sCommand + "\n" + m_sCompilerIdentity + "\n" + m_files->headerNames());
        units.push_back(std::move(unit));
    }
    return units;
}

bool CProjectBuild::isUpToDate(const CUnit& unit)
{
    const auto position = m_record.m_objects.find(unit.m_source.filename().string());
    if (position == m_record.m_objects.end())
        return false;
    const CObjectRecord& record = position->second;
    return record.m_uCommandHash == unit.m_uCommandHash && CFileStamp::of(unit.m_object) == record.m_object &&
           std::ranges::all_of(record.m_files,
                               [this](const CReadFile& file) { return m_files->isUnchanged(file); });
}

std::string CProjectBuild::compile()
{
    ++m_control.m_uSteps; // the link
    m_contract = CContractCache(m_job.m_cacheFolder, m_job.m_nCompilerId)
                     .provide(m_job.m_projectFolder, m_control, m_sLog);
    m_units = plannedUnits();
    std::vector<CUnit*> changed;
    for (CUnit& unit : m_units)
        if (!isUpToDate(unit))
            changed.push_back(&unit);
    m_control.m_uSteps += static_cast<unsigned>(changed.size());

    std::vector<std::function<void()>> steps;
    for (CUnit* pUnit : changed)
        steps.emplace_back([this, pUnit] { compileUnit(*pUnit); });
    runInParallel(steps);

    const CUnit* pFailed = nullptr;
    for (const CUnit* pUnit : changed) {
        addOutput(pUnit->m_sCommandLine, pUnit->m_result.m_sOutput);
        m_bContractBad |= pUnit->m_bContractBlamed;
        if (pUnit->m_result.succeeded())
            recordUnit(*pUnit);
        else if (!pFailed)
            pFailed = pUnit;
    }
    return pFailed ? m_compiler.failureText(pFailed->m_result, m_report.m_messages) : std::string();
}

void CProjectBuild::compileUnit(CUnit& unit)
{
    const fs::path part = unit.m_object.string() + PART_SUFFIX;
    const auto goesOn = [this] { return !m_control.m_bStop; };
    unit.m_result.m_eEnd = EChildEnd::cancelled;
    while (goesOn()) {
        const auto arguments = m_compiler.compileArguments(
            unit.m_source, part, unit.m_object.string() + DEPENDENCIES_SUFFIX, unit.m_header);
        unit.m_sCommandLine = CCommandLineCompiler::asCommandLine(arguments);
        unit.m_result = CCommandLineCompiler::run(arguments, goesOn);
        if (unit.m_header.empty() || !blamesContract(unit))
            break;
        unit.m_bContractBlamed = true;
        unit.m_header.clear();
    }
    std::error_code error;
    if (unit.m_result.succeeded())
        fs::rename(part, unit.m_object, error);
    else
        fs::remove(part, error);
    if (unit.m_result.succeeded() && error) {
        unit.m_result.m_nStatus = 1;
        unit.m_result.m_sOutput += unit.m_object.string() + ": error: " + error.message() + "\n";
    }
    ++m_control.m_uFinished;
}

// What the compiler says when it cannot use a precompiled header, or dies of it.
bool CProjectBuild::blamesContract(const CUnit& unit) const
{
    const auto says = [&](const std::string& sText) {
        return unit.m_result.m_sOutput.find(sText) != std::string::npos;
    };
    return unit.m_result.m_eEnd == EChildEnd::signalled || says("internal compiler error") || says("PCH") ||
           says("AST file") || says(m_compiler.precompiledHeader(unit.m_header).string());
}

void CProjectBuild::recordUnit(const CUnit& unit)
{
    const auto stamp = CFileStamp::of(unit.m_object);
    const auto rule = contentsOfFile(unit.m_object.string() + DEPENDENCIES_SUFFIX);
    const std::string sName = unit.m_source.filename().string();
    m_record.m_objects.erase(sName);
    if (!stamp || !rule)
        return;
    CObjectRecord& record = m_record.m_objects[sName];
    record.m_uCommandHash = unit.m_uCommandHash;
    record.m_object = *stamp;
    for (const fs::path& file : filesOfMakeRule(*rule))
        if (!m_contract || file.parent_path() != m_contract->m_folder) // its key stands in the command
            record.m_files.push_back(m_files->recordOf(file));
}

std::vector<fs::path> CProjectBuild::linkedObjects() const
{
    std::vector<fs::path> objects;
    for (const CUnit& unit : m_units)
        objects.push_back(unit.m_object);
    if (m_contract)
        objects.insert(objects.end(), m_contract->m_objects.begin(), m_contract->m_objects.end());
    return objects;
}

std::string CProjectBuild::link()
{
    const auto goesOn = [this] { return !m_control.m_bStop; };
    if (!goesOn())
        return STOPPED;
    const auto objects = linkedObjects();
    const fs::path linked = m_buildFolder / m_job.m_library.filename();
    const auto arguments = m_compiler.linkArguments(objects, linked);
    std::string sKey = CCommandLineCompiler::asCommandLine(arguments) + "\n" + m_sCompilerIdentity + "\n" +
                       m_compiler.linkerIdentity() + "\n" + m_job.m_library.string();
    for (const fs::path& object : objects)
        if (const auto stamp = CFileStamp::of(object))
            sKey += "\n" + stamp->text();
    const std::uint64_t uKey = contentHash(sKey);
    if (m_record.m_uLinkHash == uKey && m_record.m_library &&
        CFileStamp::of(m_job.m_library) == m_record.m_library) {
        ++m_control.m_uFinished;
        return {};
    }

    const CChildResult result = CCommandLineCompiler::run(arguments, goesOn);
    ++m_control.m_uFinished;
    addOutput(CCommandLineCompiler::asCommandLine(arguments), result.m_sOutput);
    if (!result.succeeded()) {
        std::error_code ignored;
        fs::remove(linked, ignored);
        // An object of the contract that a disc has spoiled shows nowhere else.
        m_bContractBad |=
            m_contract && result.m_sOutput.find(m_contract->m_folder.string()) != std::string::npos;
        return m_compiler.failureText(result, m_report.m_messages);
    }
    if (std::string sError = placeLibrary(linked); !sError.empty())
        return sError;
    m_record.m_uLinkHash = uKey;
    m_record.m_library = CFileStamp::of(m_job.m_library);
    return {};
}

std::string CProjectBuild::placeLibrary(const fs::path& linked)
{
    std::error_code error;
    fs::create_directories(m_job.m_library.parent_path(), error);
    fs::rename(linked, m_job.m_library, error);
    if (error == std::errc::cross_device_link) {
        CSafeFile output(m_job.m_library);
        fs::copy_file(linked, output.path(), error);
        if (!error && !output.commit())
            return "The library " + m_job.m_library.string() + " could not be written: " + output.error() +
                   ".";
    }
    if (error)
        return "The library " + m_job.m_library.string() + " could not be written: " + error.message() + ".";
    return {};
}

// Objects of sources that are gone.
void CProjectBuild::removeOrphans()
{
    std::erase_if(m_record.m_objects, [this](const auto& entry) {
        const auto isItsSource = [&](const CUnit& unit) { return unit.m_source.filename() == entry.first; };
        if (std::ranges::any_of(m_units, isItsSource))
            return false;
        std::error_code ignored;
        for (const char* pSuffix : {".o", ".o.d"})
            fs::remove(m_buildFolder / (entry.first + pSuffix), ignored);
        return true;
    });
}

void CProjectBuild::saveRecord()
{
    const std::string sText = m_record.text();
    // A record that cannot be written costs the next build its head start, nothing else.
    if (sText != m_sSavedRecord)
        static_cast<void>(replaceBuildFile(m_buildFolder / RECORD, sText));
}

void CProjectBuild::addOutput(const std::string& sCommandLine, std::string sOutput)
{
    // The precompiled contract is a copy of the project's own.
    if (m_contract)
        replaceAllIn(sOutput, m_contract->m_folder.string() + "/", m_job.m_projectFolder.string() + "/");
    const std::string sFolder = m_job.m_projectFolder.string() + "/";
    for (CCompilerMessage& message : parseMessages(sOutput)) {
        if (message.m_sFile.starts_with(sFolder))
            message.m_sFile.erase(0, sFolder.size());
        m_report.m_messages.push_back(std::move(message));
    }
    if (!sCommandLine.empty())
        m_sLog += sCommandLine + "\n";
    m_sLog += sOutput;
    if (!sOutput.empty() && !sOutput.ends_with('\n'))
        m_sLog += '\n';
}

} // namespace velmora
