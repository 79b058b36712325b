#include "cli/build_result.h"

#include "base/text.h"
#include "cli/json_writer.h"
#include "document/project_commands.h"

#include <span>

namespace velmora::cli {

namespace {

void writeMessages(CJsonWriter& json, const CBuildReport& report, bool bWarnings)
{
    json.key(bWarnings ? "warnings" : "errors");
    json.beginArray();
    for (const CCompilerMessage& message : report.m_messages) {
        if (message.m_bWarning != bWarnings)
            continue;
        json.beginObject();
        json.member("file", message.m_sFile);
        json.member("line", message.m_nLine);
        json.member("column", message.m_nColumn);
        json.member("text", message.m_sText);
        json.endObject();
    }
    json.endArray();
}

void writeNames(CJsonWriter& json, const char* pKey, const std::vector<std::string>& names)
{
    json.key(pKey);
    json.array(std::span<const std::string>(names));
}

std::string messageLine(const CCompilerMessage& message)
{
    std::string sLine = message.m_sFile;
    for (const int nNumber : {message.m_nLine, message.m_nColumn})
        if (nNumber > 0)
            sLine += ":" + std::to_string(nNumber);
    return sLine + (sLine.empty() ? "" : ": ") + (message.m_bWarning ? "warning: " : "error: ") +
           message.m_sText + "\n";
}

std::string namesText(const char* pIntroduction, const std::vector<std::string>& names)
{
    std::string sText;
    for (const std::string& sName : names)
        sText += (sText.empty() ? pIntroduction : ", ") + sName;
    return sText.empty() ? sText : sText + "\n";
}

double totalSeconds(const CRebuildResult& result)
{
    return result.m_dWriteSeconds + result.m_build.m_dSeconds + result.m_dLoadSeconds;
}

// "regions 0.004 s, compile 0.120 s, link 0.031 s, load 0.005 s"
std::string partsText(const CRebuildResult& result)
{
    std::string sText = formatted("regions %.3f s", result.m_dWriteSeconds);
    if (result.m_build.m_dCompileSeconds > 0.0)
        sText += formatted(", compile %.3f s", result.m_build.m_dCompileSeconds);
    if (result.m_build.m_dLinkSeconds > 0.0)
        sText += formatted(", link %.3f s", result.m_build.m_dLinkSeconds);
    if (result.m_bLoaded)
        sText += formatted(", load %.3f s", result.m_dLoadSeconds);
    return sText;
}

} // namespace

std::string buildResultAsJson(const CRebuildResult& result, const std::vector<std::string>* pChangedFiles)
{
    const CBuildReport& report = result.m_build;
    CJsonWriter json;
    json.beginObject();
    if (pChangedFiles)
        writeNames(json, "changed", *pChangedFiles);
    json.member("result", report.m_eState == EBuildState::succeeded ? "succeeded" : "failed");
    json.member("library", report.m_library.string());
    json.member("log", report.m_log.string());
    writeMessages(json, report, false);
    writeMessages(json, report, true);
    json.member("reason", report.m_sError);
    json.member("seconds", totalSeconds(result));
    json.member("writeSeconds", result.m_dWriteSeconds);
    json.member("compileSeconds", report.m_dCompileSeconds);
    json.member("linkSeconds", report.m_dLinkSeconds);
    json.member("loadSeconds", result.m_dLoadSeconds);
    json.member("loaded", result.m_bLoaded);
    json.member("buildId", result.m_sBuildId);
    json.key("controls");
    json.beginObject();
    writeNames(json, "carried", result.m_changes.m_carried);
    writeNames(json, "new", result.m_changes.m_new);
    writeNames(json, "dropped", result.m_changes.m_dropped);
    json.endObject();
    json.endObject();
    return json.text();
}

std::string buildResultAsText(const CRebuildResult& result)
{
    const CBuildReport& report = result.m_build;
    std::string sText;
    for (const CCompilerMessage& message : report.m_messages)
        sText += messageLine(message);
    if (report.m_eState != EBuildState::succeeded)
        return sText + formatted("The build failed after %.3f s.%s%s\n", report.m_dSeconds,
                                 report.m_log.empty() ? "" : " The log is ", report.m_log.c_str());
    sText += report.m_library.string() + "\n";
    sText += result.m_bLoaded ? "Built and loaded" : "Built, but not loaded,";
    sText += formatted(" in %.3f s: ", totalSeconds(result)) + partsText(result) + "\n";
    if (!result.m_sBuildId.empty())
        sText += "Build " + result.m_sBuildId + "\n";
    sText += namesText("Values carried over: ", result.m_changes.m_carried);
    sText += namesText("New: ", result.m_changes.m_new);
    sText += namesText("Dropped: ", result.m_changes.m_dropped);
    return sText;
}

bool isBuildGood(const CRebuildResult& result)
{
    return result.m_build.m_eState == EBuildState::succeeded && result.m_bLoaded;
}

} // namespace velmora::cli
