#include "project/compiler/command_line_compiler.h"

#include "base/safe_file.h"
#include "base/text.h"
#include "project/compiler/compiler_messages.h"
#include "project/compiler/compiler_table.h"
#include "project/compiler/file_stamp.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace velmora {

namespace {

constexpr CCommandLineProgram PROGRAMS[] = {
    {GCC_COMMAND_LINE_ID, "g++", "g++", "-fno-gnu-unique", ".gch", false},
    {CLANG_COMMAND_LINE_ID, "clang++", "clang", nullptr, ".pch", true},
};

// Linkers beside the system's own, the fastest first.
struct CLinker
{
    const char* m_pProgram;
    const char* m_pFlag;
};
constexpr CLinker LINKERS[] = {
    {"ld.mold", "-fuse-ld=mold"},
    {"ld.gold", "-fuse-ld=gold"},
    {"ld.lld", "-fuse-ld=lld"},
};

constexpr std::array CONTRACT_SOURCES = {"plugin.cpp", "pluginobjects.cpp"};

constexpr double VERSION_DEADLINE_SECONDS = 10.0;

const CLinker* installedLinker()
{
    const auto position = std::ranges::find_if(LINKERS, [](const CLinker& linker) {
        return !CChildProcess::findProgram(linker.m_pProgram).empty();
    });
    return position != std::end(LINKERS) ? position : nullptr;
}

std::string identityOf(const std::filesystem::path& program)
{
    std::error_code error;
    const auto file = std::filesystem::canonical(program, error);
    const auto stamp = CFileStamp::of(file);
    return stamp ? file.string() + " " + stamp->text() : program.string();
}

bool isPlainForShell(char cByte)
{
    return std::isalnum(static_cast<unsigned char>(cByte)) ||
           std::string_view("_-+=./,:@%").find(cByte) != std::string_view::npos;
}

std::string quotedForShell(const std::string& sText)
{
    if (!sText.empty() && std::all_of(sText.begin(), sText.end(), isPlainForShell))
        return sText;
    std::string sResult = "'";
    for (const char cByte : sText)
        sResult += cByte == '\'' ? std::string("'\\''") : std::string(1, cByte);
    return sResult + "'";
}

} // namespace

std::span<const CCommandLineProgram> CCommandLineCompiler::programs()
{
    return PROGRAMS;
}

std::string CCommandLineCompiler::asCommandLine(const CArguments& arguments)
{
    std::string sResult;
    for (const std::string& sArgument : arguments)
        sResult += (sResult.empty() ? "" : " ") + quotedForShell(sArgument);
    return sResult;
}

CCommandLineCompiler::CCommandLineCompiler(CPath contractFolder) : m_contractFolder(std::move(contractFolder))
{
    for (const CCommandLineProgram& program : PROGRAMS)
        m_candidates.push_back(&program);
    chooseInstalled();
}

CCommandLineCompiler::CCommandLineCompiler(CPath contractFolder, int nCompilerId)
    : m_contractFolder(std::move(contractFolder))
{
    for (const CCommandLineProgram& program : PROGRAMS)
        if (program.m_nCompilerId == nCompilerId)
            m_candidates.push_back(&program);
    if (m_candidates.empty())
        m_candidates.push_back(PROGRAMS);
    chooseInstalled();
}

void CCommandLineCompiler::chooseInstalled()
{
    for (auto position = m_candidates.begin(); position != m_candidates.end(); ++position) {
        m_program = CChildProcess::findProgram((*position)->m_pProgram);
        if (!m_program.empty()) {
            std::rotate(m_candidates.begin(), position, position + 1);
            return;
        }
    }
}

std::string CCommandLineCompiler::notInstalledText() const
{
    std::string sPrograms;
    for (const CCommandLineProgram* pProgram : m_candidates)
        sPrograms += (!sPrograms.empty()        ? " nor "
                      : m_candidates.size() > 1 ? "neither "
                                                : "") +
                     std::string(pProgram->m_pProgram);
    return formatted("No C++ compiler was found: %s%s in any folder of PATH. Install one, for example with: "
                     "sudo apt install %s",
                     sPrograms.c_str(), m_candidates.size() > 1 ? " is" : " is not", program().m_pPackage);
}

const char* CCommandLineCompiler::name() const
{
    return findCompiler(program().m_nCompilerId)->m_pName;
}

std::string CCommandLineCompiler::versionText() const
{
    if (!isInstalled())
        return {};
    CChildProcess child({m_program.string(), "--version"});
    child.setVariable("LC_ALL", "C.UTF-8");
    child.setDeadline(VERSION_DEADLINE_SECONDS);
    const CChildResult result = child.run();
    return result.succeeded() ? result.m_sOutput.substr(0, result.m_sOutput.find('\n')) : std::string();
}

std::string CCommandLineCompiler::identity() const
{
    return identityOf(m_program);
}

std::string CCommandLineCompiler::linkerIdentity() const
{
    const CLinker* pLinker = installedLinker();
    return identityOf(CChildProcess::findProgram(pLinker ? pLinker->m_pProgram : "ld"));
}

CCommandLineCompiler::CArguments CCommandLineCompiler::commonArguments() const
{
    CArguments result = {m_program.string(), "-std=c++20", "-fPIC", "-fvisibility=hidden", "-O2", "-Wall",
                         "-Wextra",          "-pipe"};
    if (program().m_pUniqueSymbolsFlag)
        result.emplace_back(program().m_pUniqueSymbolsFlag);
    return result;
}

void CCommandLineCompiler::addLinkerArguments(CArguments& arguments) const
{
    arguments.emplace_back("-shared");
    if (const CLinker* pLinker = installedLinker())
        arguments.emplace_back(pLinker->m_pFlag);
    // A function that was declared but never written is found here, by name, and not at loading.
    arguments.emplace_back("-Wl,--no-undefined");
    arguments.emplace_back("-Wl,--build-id=sha1");
}

CCommandLineCompiler::CArguments CCommandLineCompiler::compileArguments(const CPath& source,
                                                                        const CPath& object,
                                                                        const CPath& dependencies,
                                                                        const CPath& header) const
{
    CArguments result = commonArguments();
    // For quoted names alone: a project called "string" has a string.h that is not the system's.
    result.insert(result.end(), {"-iquote", m_contractFolder.string()});
    if (!header.empty()) {
        const bool bProduct = program().m_bHeaderNamedByProduct;
        result.emplace_back(bProduct ? "-include-pch" : "-include");
        result.push_back((bProduct ? precompiledHeader(header) : header).string());
        result.emplace_back("-Winvalid-pch");
    }
    for (const auto& sArgument : {std::string("-MD"), std::string("-MF"), dependencies.string(),
                                  std::string("-c"), source.string(), std::string("-o"), object.string()})
        result.push_back(sArgument);
    return result;
}

CCommandLineCompiler::CArguments CCommandLineCompiler::precompileArguments(const CPath& header,
                                                                           const CPath& dependencies) const
{
    CArguments result = commonArguments();
    for (const auto& sArgument :
         {std::string("-MD"), std::string("-MF"), dependencies.string(), std::string("-x"),
          std::string("c++-header"), header.string(), std::string("-o"), precompiledHeader(header).string()})
        result.push_back(sArgument);
    return result;
}

CCommandLineCompiler::CPath CCommandLineCompiler::precompiledHeader(const CPath& header) const
{
    return header.string() + program().m_pHeaderSuffix;
}

CCommandLineCompiler::CArguments CCommandLineCompiler::linkArguments(std::span<const CPath> objects,
                                                                     const CPath& library) const
{
    CArguments result = {m_program.string(), "-fPIC"};
    addLinkerArguments(result);
    for (const CPath& object : objects)
        result.push_back(object.string());
    result.emplace_back("-o");
    result.push_back(library.string());
    return result;
}

CCommandLineCompiler::CArguments CCommandLineCompiler::wholeArguments(const CCompileJob& job,
                                                                      const CPath& output) const
{
    CArguments result = commonArguments();
    addLinkerArguments(result);
    result.emplace_back("-I" + m_contractFolder.string());
    for (const auto& folder : job.m_includeFolders)
        result.emplace_back("-I" + folder.string());
    for (const auto& source : job.m_sources)
        result.push_back(std::filesystem::absolute(source).string());
    for (const char* pSource : CONTRACT_SOURCES)
        result.push_back((m_contractFolder / pSource).string());
    result.emplace_back("-o");
    result.push_back(output.string());
    return result;
}

CChildResult CCommandLineCompiler::run(const CArguments& arguments, const std::function<bool()>& goOn)
{
    CChildProcess child(arguments);
    child.setVariable("LC_ALL", "C.UTF-8"); // messages that parseMessages() can read
    if (goOn)
        child.setGoOn(goOn);
    return child.run();
}

std::string CCommandLineCompiler::failureText(const CChildResult& child,
                                              std::span<const CCompilerMessage> messages) const
{
    const char* pProgram = program().m_pProgram;
    switch (child.m_eEnd) {
    case EChildEnd::cancelled:
    case EChildEnd::timedOut:
        return "The compilation was stopped.";
    case EChildEnd::notStarted:
        return formatted("The compiler %s could not be started: %s.", pProgram, child.m_sError.c_str());
    case EChildEnd::signalled:
        return formatted("The compiler %s was ended by signal %d; is there enough memory?", pProgram,
                         child.m_nStatus);
    case EChildEnd::exited:
        break;
    }
    const auto nErrors =
        std::ranges::count_if(messages, [](const CCompilerMessage& message) { return !message.m_bWarning; });
    if (nErrors == 0)
        return formatted("The compiler %s failed with status %d.", pProgram, child.m_nStatus);
    return formatted("The compiler %s found %d error%s in the sources.", pProgram, static_cast<int>(nErrors),
                     nErrors == 1 ? "" : "s");
}

CCompileResult CCommandLineCompiler::compile(const CCompileJob& job, IProgress* pProgress) const
{
    CCompileResult result;
    if (!isInstalled()) {
        result.m_sError = notInstalledText();
        return result;
    }
    const CPath library = std::filesystem::absolute(job.m_library);
    CSafeFile output(library);
    result.m_sCommandLine = asCommandLine(wholeArguments(job, library));

    const auto goOn = [pProgress] { return !pProgress || pProgress->report(0.0); };
    const CChildResult child = run(wholeArguments(job, output.path()), goOn);

    result.m_sMessages = child.m_sOutput;
    result.m_list = parseMessages(child.m_sOutput);
    result.m_dSeconds = child.m_dSeconds;
    result.m_bCancelled = child.m_eEnd == EChildEnd::cancelled;
    if (!child.succeeded()) {
        result.m_sError = failureText(child, result.m_list);
    } else if (!output.commit()) {
        result.m_sError =
            "The library " + library.string() + " could not be written: " + output.error() + ".";
    } else {
        result.m_bSucceeded = true;
        result.m_library = library;
        if (pProgress)
            static_cast<void>(pProgress->report(1.0));
    }
    return result;
}

} // namespace velmora
