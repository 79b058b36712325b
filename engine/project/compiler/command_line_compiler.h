#pragma once

#include "base/platform_child_process.h"
#include "base/progress.h"
#include "project/compiler/toolchain.h"

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace velmora {

// How one compiler of the compiler table is called from a command line.
struct CCommandLineProgram
{
    int m_nCompilerId;
    const char* m_pProgram;           // searched on PATH
    const char* m_pPackage;           // Debian's package that brings it
    const char* m_pUniqueSymbolsFlag; // keeps a closed library from staying in memory; null if not needed
    const char* m_pHeaderSuffix;      // of a precompiled header
    bool m_bHeaderNamedByProduct; // -include-pch names the precompiled header, -include the text beside it
};

struct CCompileJob
{
    std::vector<std::filesystem::path> m_sources;        // of the plug-in; the contract's come by themselves
    std::vector<std::filesystem::path> m_includeFolders; // besides the contract's
    std::filesystem::path m_library;                     // what is made
};

struct CCompileResult
{
    bool m_bSucceeded = false;
    bool m_bCancelled = false;
    std::filesystem::path m_library; // only on success
    std::string m_sError;            // what went wrong and what to do; empty on success
    std::string m_sMessages;         // all that the compiler wrote, warnings of a success included
    std::vector<CCompilerMessage> m_list;
    std::string m_sCommandLine; // as it could be typed into a shell
    double m_dSeconds = 0.0;
};

// One installed compiler and how it is called: whole, by compile(), or in the steps that CProjectBuild
// takes. [any but audio]
class CCommandLineCompiler
{
  public:
    using CArguments = std::vector<std::string>;
    using CPath = std::filesystem::path;

    // Uses the first known compiler that is installed, or the one with this id. contractFolder holds
    // plugin.h and its companions.
    explicit CCommandLineCompiler(CPath contractFolder);
    CCommandLineCompiler(CPath contractFolder, int nCompilerId);

    [[nodiscard]] bool isInstalled() const { return !m_program.empty(); }

    // Why there is none, and which package brings one. Only when not installed.
    [[nodiscard]] std::string notInstalledText() const;

    // The chosen one; the first that was looked for when none is installed.
    [[nodiscard]] const CCommandLineProgram& program() const { return *m_candidates.front(); }

    // Its name in the compiler table.
    [[nodiscard]] const char* name() const;

    // The first line of what the compiler says about itself; empty when not installed.
    [[nodiscard]] std::string versionText() const;

    // Changes whenever the compiler is replaced by another one; known without starting it.
    [[nodiscard]] std::string identity() const;

    // The same for the linker that linkArguments() chooses.
    [[nodiscard]] std::string linkerIdentity() const;

    // The steps of a build. A step writes its product and, where named, the list of the files it read as a
    // make rule. header is a contract header that was precompiled beside itself; empty for none.
    [[nodiscard]] CArguments compileArguments(const CPath& source, const CPath& object,
                                              const CPath& dependencies, const CPath& header) const;
    [[nodiscard]] CArguments precompileArguments(const CPath& header, const CPath& dependencies) const;
    [[nodiscard]] CArguments linkArguments(std::span<const CPath> objects, const CPath& library) const;

    // Where precompileArguments() puts its product.
    [[nodiscard]] CPath precompiledHeader(const CPath& header) const;

    // Runs one step. goOn is asked about twenty times a second; false stops the compiler and what it started.
    [[nodiscard]] static CChildResult run(const CArguments& arguments, const std::function<bool()>& goOn);

    // Says why a step failed.
    [[nodiscard]] std::string failureText(const CChildResult& child,
                                          std::span<const CCompilerMessage> messages) const;

    // Makes a library out of the job's sources and the contract's with one call of the compiler. It appears
    // under its name only when it is complete: a failed or cancelled run leaves the one before as it was.
    // pProgress, if given, is asked while the compiler runs and may stop it; how far the compiler is cannot
    // be known, so it hears 0.0 until the end.
    [[nodiscard]] CCompileResult compile(const CCompileJob& job, IProgress* pProgress = nullptr) const;

    // All known ones, preferred ones first.
    [[nodiscard]] static std::span<const CCommandLineProgram> programs();

    // As it could be typed into a shell.
    [[nodiscard]] static std::string asCommandLine(const CArguments& arguments);

  private:
    void chooseInstalled();
    [[nodiscard]] CArguments commonArguments() const;
    void addLinkerArguments(CArguments& arguments) const;
    [[nodiscard]] CArguments wholeArguments(const CCompileJob& job, const CPath& output) const;

    CPath m_contractFolder;
    CPath m_program;
    std::vector<const CCommandLineProgram*> m_candidates; // the chosen one first
};

} // namespace velmora
