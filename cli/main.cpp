#include "base/platform_descriptor.h"
#include "base/platform_folders.h"
#include "cli/command_context.h"
#include "cli/command_line.h"
#include "cli/console_progress.h"
#include "cli/help_text.h"
#include "cli/signal_guard.h"

#include <cerrno>
#include <exception>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace velmora::cli {

namespace {

// Gives each standard stream that the program was started without a place, so that no file of ours takes
// it. Writing there fails, as it would have.
void occupyStandardStreams()
{
    for (const int nStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(nStream, F_GETFD) < 0 && errno == EBADF)
            (void)::open("/dev/null", O_RDONLY); // takes the lowest free descriptor, which this one is
}

// Keeps standard output for the result: what plug-ins and libraries print there goes to standard error.
CDescriptor takeStandardOutput()
{
    CDescriptor output(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    return output;
}

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
    occupyStandardStreams();
    const CDescriptor output = takeStandardOutput();
    const CCommandLine line = parseCommandLine(words);
    CConsoleDialogs dialogs(line.text("--answer") == "yes", line.has("--quiet"));
    CConsoleProgress progress(line.has("--quiet"));
    CCommandContext context(line, dialogs, progress, absoluteUserFolder(line));
    context.setOutput([&](std::string_view sText) { return output.write(sText.data(), sText.size()); });

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

    if (nStatus != EXIT_USAGE && !context.print(context.m_sResult))
        return EXIT_FAILED;
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
