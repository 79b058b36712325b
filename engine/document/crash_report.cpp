#include "document/crash_report.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace velmora {

namespace {

constexpr std::size_t LONGEST_VALUE = 4096; // bytes

struct CTextKey
{
    std::string_view m_sKey;
    std::string CCrashReport::*m_pText;
};

constexpr std::array<CTextKey, 8> TEXT_KEYS = {{
    {CRASH_PLUGIN, &CCrashReport::m_sPlugIn},
    {CRASH_LIBRARY, &CCrashReport::m_sLibrary},
    {CRASH_DOING, &CCrashReport::m_sDoing},
    {CRASH_SIGNAL, &CCrashReport::m_sSignal},
    {CRASH_FAULT, &CCrashReport::m_sFault},
    {CRASH_THREAD, &CCrashReport::m_sThread},
    {CRASH_PROJECT, &CCrashReport::m_sProject},
    {CRASH_AUTOSAVE, &CCrashReport::m_sAutosave},
}};

// The value as it can stand in a message box.
std::string shown(std::string sValue)
{
    for (char& c : sValue)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F')
            c = '?';
    return sValue;
}

void takeLine(CCrashReport& report, std::string_view sLine)
{
    const std::size_t uColon = sLine.find(':');
    if (uColon == std::string_view::npos)
        return;
    const std::string_view sKey = sLine.substr(0, uColon);
    std::string_view sValue = sLine.substr(uColon + 1).substr(0, LONGEST_VALUE);
    if (sValue.starts_with(' '))
        sValue.remove_prefix(1);
    for (const CTextKey& key : TEXT_KEYS)
        if (key.m_sKey == sKey)
            report.*key.m_pText = sValue;
    if (sKey == CRASH_AUDIO)
        report.m_bAudioRan = sValue == CRASH_AUDIO_RAN;
    if (sKey == CRASH_AUTOSAVE_ERROR) {
        const double dError = parseNumber(sValue).value_or(0.0);
        report.m_nAutosaveError = dError > 0.0 && dError < 4096.0 ? static_cast<int>(dError) : 0;
    }
}

} // namespace

std::optional<CCrashReport> CCrashReport::parse(std::string_view sText)
{
    std::optional<CCrashReport> report;
    while (!sText.empty()) {
        const std::size_t uEnd = std::min(sText.find('\n'), sText.size());
        const std::string_view sLine = sText.substr(0, uEnd);
        if (!report && trimmed(sLine) != CRASH_REPORT_TITLE)
            return std::nullopt;
        if (report)
            takeLine(*report, sLine);
        else
            report.emplace();
        sText.remove_prefix(std::min(uEnd + 1, sText.size()));
    }
    return report;
}

std::string CCrashReport::message() const
{
    const bool bPlugIn = !m_sPlugIn.empty();
    std::string sText = "Velmora ended unexpectedly ";
    if (bPlugIn)
        sText += "while the plug-in \"" + shown(m_sPlugIn) + "\" was " + shown(m_sDoing);
    else
        sText += "by a fault in Velmora itself";
    sText += " (" + shown(m_sFault) + ").\n\n" + projectText();

    if (!bPlugIn)
        return sText + "Please report this, and send the file " + shown(m_keptAs.string()) + " along.";
    if (!m_sLibrary.empty())
        sText += "The plug-in's library is " + shown(m_sLibrary) + ". ";
    return sText + "Look for the fault in the plug-in's code, and build it again before you load it.";
}

std::string CCrashReport::projectText() const
{
    const std::string sProject = shown(m_sProject);
    if (!m_sAutosave.empty())
        return "What was not saved yet of the project is in the file\n" + shown(m_sAutosave) +
               "\nTo go on with it, open the project in Velmora's window, which offers it, or put the file "
               "in "
               "the place of " +
               sProject + ", which is as it was last saved.\n\n";
    if (m_nAutosaveError != 0)
        return "What was not saved yet of the project " + sProject +
               " is lost: " + std::generic_category().message(m_nAutosaveError) + ".\n\n";
    return sProject.empty() ? "" : "The project " + sProject + " had been saved; nothing of it is lost.\n\n";
}

} // namespace velmora
