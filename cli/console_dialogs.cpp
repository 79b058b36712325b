#include "cli/console_dialogs.h"

#include "cli/console_progress.h"

#include <cerrno>
#include <string>
#include <unistd.h>

namespace velmora::cli {

void printToStandardError(std::string_view sText)
{
    removeProgressBar();
    std::string sLine(sText);
    for (char& c : sLine) // a plug-in or a file name must not steer the terminal
        if (static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t')
            c = '?';
    if (!sLine.ends_with('\n'))
        sLine += '\n';
    for (std::string_view sRest = sLine; !sRest.empty();) {
        const ssize_t nWritten = ::write(STDERR_FILENO, sRest.data(), sRest.size());
        if (nWritten < 0 && errno != EINTR)
            return;
        sRest.remove_prefix(nWritten < 0 ? 0 : static_cast<std::size_t>(nWritten));
    }
}

void CConsoleDialogs::showMessage(std::string_view sText)
{
    m_sLastMessage = sText;
    printToStandardError(sText);
}

bool CConsoleDialogs::askYesNo(std::string_view sText)
{
    printToStandardError(sText);
    const bool bIsOverwriting = sText.find("This operation will overwrite it.") != std::string_view::npos;
    const bool bAnswer = m_bAnswer || (m_bMayOverwrite && bIsOverwriting);
    printToStandardError(bAnswer ? "Answered with Yes." : "Answered with No.");
    m_bDeclined |= !bAnswer;
    return bAnswer;
}

bool CConsoleDialogs::askOKCancel(std::string_view sText)
{
    printToStandardError(sText);
    printToStandardError(m_bAnswer ? "Answered with OK." : "Answered with Cancel.");
    m_bDeclined |= !m_bAnswer;
    return m_bAnswer;
}

std::optional<std::filesystem::path> CConsoleDialogs::chooseSaveFile(std::string_view,
                                                                     const std::filesystem::path&)
{
    return m_saveFile;
}

std::optional<std::filesystem::path> CConsoleDialogs::chooseOpenFile(std::string_view,
                                                                     const std::filesystem::path&)
{
    return m_openFile;
}

void CConsoleDialogs::note(std::string_view sText)
{
    constexpr std::string_view PLUG_IN_MARGIN = "    ";
    const bool bIsSentence = sText.ends_with('.');
    if (!m_bQuiet && (sText.starts_with(PLUG_IN_MARGIN) || (m_bSentences && bIsSentence)))
        printToStandardError(sText);
}

} // namespace velmora::cli
