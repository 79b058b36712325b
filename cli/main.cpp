#include "base/platform_folders.h"
#include "cli/command_context.h"
#include "cli/command_line.h"
#include "cli/console_progress.h"
#include "cli/help_text.h"
#include "cli/signal_guard.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <new>
#include <unistd.h>

namespace velmora::cli {

namespace {

// Keeps standard output for the result: what plug-ins and libraries print there goes to standard error.
class CResultOutput
{
  public:
    CResultOutput() : m_nDescriptor(::dup(STDOUT_FILENO)) { ::dup2(STDERR_FILENO, STDOUT_FILENO); }
    ~CResultOutput() { ::close(m_nDescriptor); }
    CResultOutput(const CResultOutput&) = delete;
    CResultOutput& operator=(const CResultOutput&) = delete;

    // False with the reason in errno if not all of it could be written.
    [[nodiscard]] bool write(std::string_view sText) const
    {
        while (!sText.empty()) {
            const ssize_t nWritten = ::write(m_nDescriptor, sText.data(), sText.size());
            if (nWritten < 0 && errno != EINTR)
                return false;
            sText.remove_prefix(nWritten < 0 ? 0 : static_cast<std::size_t>(nWritten));
        }
        return true;
    }

  private:
    int m_nDescriptor;
};

// Runs the command, and nothing that it throws ends the program without a word.
int runCommand(CCommandContext& context)
{
    try {
        return context.line().command()->m_pRun(context);
    } catch (const std::bad_alloc&) {
        return context.fail("There is not enough memory for this.");
    } catch (const std::exception& exception) {
        return context.fail(std::string("Unexpected failure: ") + exception.what());
    }
}

std::string helpFor(const CCommandLine& line)
{
    if (line.command())
        return commandHelp(*line.command());
    return line.group().empty() ? programHelp() : groupHelp(line.group());
}

// Absolute, because commands change the current directory; empty if the environment names none.
std::filesystem::path absoluteUserFolder(const CCommandLine& line)
{
    const std::filesystem::path folder = line.text("--user-folder").value_or(userFolder().string());
    std::error_code error;
    const auto absolute = std::filesystem::absolute(folder, error);
    return folder.empty() || error ? folder : absolute;
}

int run(const std::vector<std::string>& words)
{
    const CResultOutput output;
    const CCommandLine line = parseCommandLine(words);
    CConsoleDialogs dialogs(line.text("--answer") == "yes", line.has("--quiet"));
    CConsoleProgress progress(line.has("--quiet"));
    CCommandContext context(line, dialogs, progress, absoluteUserFolder(line));

    int nStatus = EXIT_DONE;
    if (line.wantsHelp())
        context.m_sResult = helpFor(line);
    else if (line.has("--version"))
        context.m_sResult = versionText() + "\n";
    else if (!line.error().empty())
        nStatus = context.usageError(line.error());
    else
        nStatus = runCommand(context);
    removeProgressBar();

    if (nStatus == EXIT_DONE && !output.write(context.m_sResult))
        return context.fail(std::string("The result cannot be written: ") + std::strerror(errno) + ".");
    return nStatus;
}

} // namespace

} // namespace velmora::cli

int main(int nArguments, char** ppArguments)
{
    velmora::provideApplicationDataVariable();
    velmora::cli::watchForInterrupts();
    return velmora::cli::run({ppArguments + (nArguments > 0 ? 1 : 0), ppArguments + nArguments});
}
