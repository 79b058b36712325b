#include "project/compiler/command_line_compiler.h"

#include "base/platform_child_process.h"
#include "base/safe_file.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

namespace velmora {

namespace {

constexpr CCommandLineToolchain TOOLCHAINS[] = {
    {4010, "GCC (command line)", "g++", "g++", true},
    {4011, "Clang (command line)", "clang++", "clang", false},
};

constexpr std::array CONTRACT_SOURCES = {"plugin.cpp", "pluginobjects.cpp"};

constexpr double VERSION_DEADLINE_SECONDS = 10.0;

struct CSeverity
{
    std::string_view m_sMark;
    bool m_bWarning;
};
constexpr CSeverity SEVERITIES[] = {
    {": fatal error: ", false},
    {": error: ", false},
    {": warning: ", true},
};

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

std::string asCommandLine(const std::vector<std::string>& arguments)
{
    std::string sResult;
    for (const std::string& sArgument : arguments)
        sResult += (sResult.empty() ? "" : " ") + quotedForShell(sArgument);
    return sResult;
}

// Takes ":123" off the end of the text; 0 if there is none.
int takeTrailingNumber(std::string_view& sText)
{
    const std::size_t uColon = sText.rfind(':');
    if (uColon == std::string_view::npos || uColon + 1 == sText.size())
        return 0;
    const char* pEnd = sText.data() + sText.size();
    int nNumber = 0;
    const auto [pStop, error] = std::from_chars(sText.data() + uColon + 1, pEnd, nNumber);
    if (error != std::errc() || pStop != pEnd || nNumber <= 0)
        return 0;
    sText = sText.substr(0, uColon);
    return nNumber;
}

bool isUndefinedReference(std::string_view sLine)
{
    return sLine.find("undefined reference to ") != std::string_view::npos;
}

std::string failureText(const CChildResult& child, const CCommandLineToolchain& toolchain,
                        const std::vector<CCompilerMessage>& messages)
{
    const std::string sProgram = toolchain.m_pProgram;
    switch (child.m_eEnd) {
    case EChildEnd::cancelled:
    case EChildEnd::timedOut:
        return "The compilation was stopped.";
    case EChildEnd::notStarted:
        return "The compiler " + sProgram + " could not be started: " + child.m_sError + ".";
    case EChildEnd::signalled:
        return formatted("The compiler %s was ended by signal %d; is there enough memory?", sProgram.c_str(),
                         child.m_nStatus);
    case EChildEnd::exited:
        break;
    }
    const auto isError = [](const CCompilerMessage& message) { return !message.m_bWarning; };
    const auto nErrors = std::count_if(messages.begin(), messages.end(), isError);
    if (nErrors == 0)
        return formatted("The compiler %s failed with status %d.", sProgram.c_str(), child.m_nStatus);
    return formatted("The compiler %s found %d error%s in the sources.", sProgram.c_str(),
                     static_cast<int>(nErrors), nErrors == 1 ? "" : "s");
}

} // namespace

std::span<const CCommandLineToolchain> CCommandLineCompiler::toolchains()
{
    return TOOLCHAINS;
}

CCommandLineCompiler::CCommandLineCompiler(std::filesystem::path contractFolder)
    : m_contractFolder(std::move(contractFolder))
{
    for (const CCommandLineToolchain& toolchain : TOOLCHAINS)
        m_candidates.push_back(&toolchain);
    chooseInstalled();
}

CCommandLineCompiler::CCommandLineCompiler(std::filesystem::path contractFolder, int nCompilerId)
    : m_contractFolder(std::move(contractFolder))
{
    for (const CCommandLineToolchain& toolchain : TOOLCHAINS)
        if (toolchain.m_nCompilerId == nCompilerId)
            m_candidates.push_back(&toolchain);
    if (m_candidates.empty())
        m_candidates.push_back(TOOLCHAINS);
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
    for (const CCommandLineToolchain* pToolchain : m_candidates)
        sPrograms += (!sPrograms.empty()        ? " nor "
                      : m_candidates.size() > 1 ? "neither "
                                                : "") +
                     std::string(pToolchain->m_pProgram);
    return formatted("No C++ compiler was found: %s%s in any folder of PATH. Install one, for example with: "
                     "sudo apt install %s",
                     sPrograms.c_str(), m_candidates.size() > 1 ? " is" : " is not", toolchain().m_pPackage);
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

std::vector<std::string> CCommandLineCompiler::arguments(const CCompileJob& job,
                                                         const std::filesystem::path& output) const
{
    std::vector<std::string> result = {
        m_program.string(), "-std=c++20", "-fPIC", "-fvisibility=hidden", "-O2", "-pipe", "-shared"};
    if (toolchain().m_bHasNoUniqueSymbols)
        result.emplace_back("-fno-gnu-unique");
    if (!CChildProcess::findProgram("mold").empty())
        result.emplace_back("-fuse-ld=mold");
    // A function that was declared but never written is found here, by name, and not at loading.
    result.emplace_back("-Wl,--no-undefined");
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

CCompileResult CCommandLineCompiler::compile(const CCompileJob& job, IProgress* pProgress) const
{
    CCompileResult result;
    if (!isInstalled()) {
        result.m_sError = notInstalledText();
        return result;
    }
    const std::filesystem::path library = std::filesystem::absolute(job.m_library);
    CSafeFile output(library);
    result.m_sCommandLine = asCommandLine(arguments(job, library));

    CChildProcess child(arguments(job, output.path()));
    child.setVariable("LC_ALL", "C.UTF-8"); // messages that parseMessages() can read
    if (pProgress)
        child.setGoOn([pProgress] { return pProgress->report(0.0); });
    const CChildResult run = child.run();

    result.m_sMessages = run.m_sOutput;
    result.m_list = parseMessages(run.m_sOutput);
    result.m_dSeconds = run.m_dSeconds;
    result.m_bCancelled = run.m_eEnd == EChildEnd::cancelled;
    if (!run.succeeded()) {
        result.m_sError = failureText(run, toolchain(), result.m_list);
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

std::vector<CCompilerMessage> CCommandLineCompiler::parseMessages(std::string_view sOutput)
{
    std::vector<CCompilerMessage> result;
    for (const std::string& sLine : split(sOutput, '\n')) {
        CCompilerMessage message;
        std::string_view sPlace;
        for (const CSeverity& severity : SEVERITIES) {
            const std::size_t uMark = sLine.find(severity.m_sMark);
            if (uMark == std::string::npos)
                continue;
            sPlace = std::string_view(sLine).substr(0, uMark);
            message.m_bWarning = severity.m_bWarning;
            message.m_sText = sLine.substr(uMark + severity.m_sMark.size());
            break;
        }
        if (message.m_sText.empty() && isUndefinedReference(sLine))
            message.m_sText = sLine;
        if (message.m_sText.empty())
            continue;
        const int nLast = takeTrailingNumber(sPlace);
        const int nLastButOne = takeTrailingNumber(sPlace);
        message.m_nLine = nLastButOne ? nLastButOne : nLast;
        message.m_nColumn = nLastButOne ? nLast : 0;
        if (message.m_nLine)
            message.m_sFile = sPlace;
        // A collect2 or clang summary ("ld returned 1 exit status") only repeats what stands above it.
        const bool bRepeats =
            !message.m_nLine && !result.empty() && (sPlace == "collect2" || sPlace.starts_with("clang"));
        if (!bRepeats)
            result.push_back(std::move(message));
    }
    return result;
}

} // namespace velmora
