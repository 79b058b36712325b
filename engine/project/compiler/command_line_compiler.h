#pragma once

#include "base/progress.h"

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// A compiler that is driven from its command line.
struct CCommandLineToolchain
{
    int m_nCompilerId;
    const char* m_pName;        // as the preferences list it
    const char* m_pProgram;     // searched on PATH
    const char* m_pPackage;     // Debian's package that brings it
    bool m_bHasNoUniqueSymbols; // takes -fno-gnu-unique
};

// One complaint of the compiler or the linker.
struct CCompilerMessage
{
    std::string m_sFile; // as the compiler names it; empty for the linker's
    int m_nLine = 0;     // from 1; 0 when not told
    int m_nColumn = 0;   // from 1; 0 when not told
    bool m_bWarning = false;
    std::string m_sText;
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

// Makes a plug-in library out of its sources and the contract's with one direct call of the system's
// compiler. The library appears under its name only when it is complete: a failed or cancelled run
// leaves the one before as it was. [any but audio]
class CCommandLineCompiler
{
  public:
    // Uses the first known compiler that is installed, or the one with this id. contractFolder holds
    // plugin.h and its companions.
    explicit CCommandLineCompiler(std::filesystem::path contractFolder);
    CCommandLineCompiler(std::filesystem::path contractFolder, int nCompilerId);

    [[nodiscard]] bool isInstalled() const { return !m_program.empty(); }

    // Why there is none, and which package brings one. Only when not installed.
    [[nodiscard]] std::string notInstalledText() const;

    // The chosen one; the first that was looked for when none is installed.
    [[nodiscard]] const CCommandLineToolchain& toolchain() const { return *m_candidates.front(); }

    // The first line of what the compiler says about itself; empty when not installed.
    [[nodiscard]] std::string versionText() const;

    // pProgress, if given, is asked while the compiler runs and may stop it; how far the compiler is
    // cannot be known, so it hears 0.0 until the end.
    [[nodiscard]] CCompileResult compile(const CCompileJob& job, IProgress* pProgress = nullptr) const;

    // All known toolchains, preferred ones first.
    [[nodiscard]] static std::span<const CCommandLineToolchain> toolchains();

    // Finds the complaints in a compiler's output.
    [[nodiscard]] static std::vector<CCompilerMessage> parseMessages(std::string_view sOutput);

  private:
    void chooseInstalled();
    [[nodiscard]] std::vector<std::string> arguments(const CCompileJob& job,
                                                     const std::filesystem::path& output) const;

    std::filesystem::path m_contractFolder;
    std::filesystem::path m_program;
    std::vector<const CCommandLineToolchain*> m_candidates; // the chosen one first
};

} // namespace velmora
