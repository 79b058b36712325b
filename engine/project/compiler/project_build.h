#pragma once

#include "base/platform_descriptor.h"
#include "project/compiler/command_line_compiler.h"
#include "project/compiler/contract_cache.h"
#include "project/compiler/project_files.h"
#include "project/compiler/toolchain.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

struct CBuildControl;

// What is to be built with which compiler.
struct CProjectBuildJob
{
    int m_nCompilerId = 0;
    std::filesystem::path m_projectFolder; // absolute
    std::filesystem::path m_library;       // absolute
    std::filesystem::path m_cacheFolder;   // for what projects share
};

// One build of a project from its folder.
//
// How it works: every *.cpp in the folder has an object file below .velmora/build/<compiler id>. The record
// there notes what each was made of: the command, the compiler, and each file that was read. An object is
// made anew when any of that has changed. Sources that begin with the contract are compiled with its
// precompiled header. The library is linked in the build folder and then takes its place in one step. One
// build of a project waits for another one, of whatever process, to end: it holds the folder's lock until it
// is destroyed, so that its log can be written meanwhile. [any but audio]
class CProjectBuild
{
  public:
    CProjectBuild(CProjectBuildJob job, CBuildControl& control);

    // Builds, once. The report's m_log and m_dSeconds are left to the caller; m_sError is empty on success.
    [[nodiscard]] CBuildReport run();

    // The commands that were run and what they wrote.
    [[nodiscard]] const std::string& log() const { return m_sLog; }

  private:
    // One source on its way to its object.
    struct CUnit
    {
        std::filesystem::path m_source;
        std::filesystem::path m_object;
        std::filesystem::path m_header; // the contract's, precompiled; empty for none
        std::uint64_t m_uCommandHash = 0;
        bool m_bContractBlamed = false; // the precompiled header could not be used
        std::string m_sCommandLine;
        CChildResult m_result;
    };

    // Each step returns what went wrong, empty if nothing did.
    [[nodiscard]] std::string takeSteps();
    [[nodiscard]] std::string checkProject() const;
    [[nodiscard]] std::string lockBuildFolder();
    [[nodiscard]] std::string compile();
    [[nodiscard]] std::string link();
    [[nodiscard]] std::string placeLibrary(const std::filesystem::path& linked);

    [[nodiscard]] std::vector<CUnit> plannedUnits() const;
    [[nodiscard]] bool isUpToDate(const CUnit& unit);
    void compileUnit(CUnit& unit);
    [[nodiscard]] bool blamesContract(const CUnit& unit) const;
    void recordUnit(const CUnit& unit);
    [[nodiscard]] std::vector<std::filesystem::path> linkedObjects() const;
    void removeOrphans();
    void saveRecord();
    void addOutput(const std::string& sCommandLine, std::string sOutput);

    CProjectBuildJob m_job;
    CBuildControl& m_control;
    CCommandLineCompiler m_compiler;
    std::string m_sCompilerIdentity;
    std::filesystem::path m_buildFolder;
    CDescriptor m_lock;
    std::optional<CProjectFiles> m_files;
    std::optional<CCompiledContract> m_contract;
    bool m_bContractBad = false; // to be removed from the cache
    std::vector<CUnit> m_units;
    CBuildRecord m_record;
    std::string m_sSavedRecord;
    CBuildReport m_report;
    std::string m_sLog;
};

} // namespace velmora
