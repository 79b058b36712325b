#include "project/codegen/vcproj_text.h"

#include "base/xml_text.h"
#include "project/codegen/project_text.h"

#include <filesystem>

namespace velmora {

namespace {

constexpr std::string_view PATH_ATTRIBUTE = "RelativePath=\"";
constexpr std::string_view ENTRY_END = "</File>";
constexpr std::string_view LIBRARY_NAME = "$(ProjectName).dll";

// Behind the entry of that file; npos if there is none.
std::size_t findEntryEnd(std::string_view sText, std::string_view sFile)
{
    for (const char* pFolder : {"", ".\\"}) {
        const auto uFound = sText.find(std::string(PATH_ATTRIBUTE) + pFolder + escapedXml(sFile) + "\"");
        const auto uEnd = uFound == sText.npos ? sText.npos : sText.find(ENTRY_END, uFound);
        if (uEnd != sText.npos)
            return uEnd + ENTRY_END.size();
    }
    return sText.npos;
}

// Behind the last entry whose name ends like that.
std::size_t findLastEntryEnd(std::string_view sText, const std::string& sSuffix)
{
    std::size_t uResult = sText.npos;
    CTextRange rest{0, sText.npos};
    while (const auto value = findBetween(sText, PATH_ATTRIBUTE, "\"", rest)) {
        rest.m_uBegin = value->m_uEnd;
        const auto uEnd = sText.find(ENTRY_END, value->m_uEnd);
        if (uEnd != sText.npos && sText.substr(0, value->m_uEnd).ends_with(sSuffix))
            uResult = uEnd + ENTRY_END.size();
    }
    return uResult;
}

} // namespace

bool vcprojLists(std::string_view sText, std::string_view sFile)
{
    const std::string sEnd = escapedXml(sFile) + "\"";
    return sText.find(std::string(PATH_ATTRIBUTE) + sEnd) != sText.npos ||
           sText.find(std::string(PATH_ATTRIBUTE) + ".\\" + sEnd) != sText.npos;
}

bool addVcprojFile(std::string& sText, std::string_view sFile, std::string_view sAnchor)
{
    if (vcprojLists(sText, sFile))
        return true;
    auto uPlace = sAnchor.empty() ? sText.npos : findEntryEnd(sText, sAnchor);
    if (sAnchor.empty())
        uPlace = findLastEntryEnd(sText, std::filesystem::path(sFile).extension().string());
    if (uPlace == sText.npos)
        return false;
    sText.insert(uPlace, fitted("\n\t\t\t<File RelativePath=\"" + escapedXml(sFile) + "\"></File>\n", sText));
    return true;
}

std::string vcprojConfiguration(std::string_view sConfiguration)
{
    return "Name=\"" + std::string(sConfiguration) + "|Win32\"";
}

bool setVcprojAttribute(std::string& sText, std::string_view sConfiguration, std::string_view sAttribute,
                        std::string_view sValue, std::string_view sTool)
{
    const auto uBegin = sText.find(vcprojConfiguration(sConfiguration));
    if (uBegin == sText.npos)
        return false;
    const CTextRange within{uBegin, sText.find("</Configuration>", uBegin)};
    const std::string sOpen = std::string(sAttribute) + "=\"";
    if (const auto value = findBetween(sText, sOpen, "\"", within)) {
        sText.replace(value->m_uBegin, value->m_uEnd - value->m_uBegin, sValue);
        return true;
    }
    const std::string sToolName = "Name=\"" + std::string(sTool) + "\"";
    const auto uTool = sTool.empty() ? sText.npos : sText.find(sToolName, uBegin);
    if (uTool == sText.npos || uTool > within.m_uEnd)
        return false;
    sText.insert(uTool + sToolName.size(), fitted("\n\t\t\t\t" + sOpen + std::string(sValue) + "\"", sText));
    return true;
}

void setVcprojOutputFolder(std::string& sText, std::string_view sFolder)
{
    const std::string sValue = escapedXml(sFolder);
    CTextRange rest{0, sText.npos};
    while (const auto value = findBetween(sText, "OutputFile=\"", "\"", rest)) {
        rest.m_uBegin = value->m_uEnd;
        const auto uName = sText.find(LIBRARY_NAME, value->m_uBegin);
        if (uName < value->m_uEnd) {
            sText.replace(value->m_uBegin, uName - value->m_uBegin, sValue);
            rest.m_uBegin = value->m_uBegin + sValue.size();
        }
    }
}

void setVcprojUserCommand(std::string& sText, std::string_view sProgram)
{
    const auto uBegin = sText.find("Debug|Win32");
    if (uBegin == sText.npos)
        return;
    const CTextRange within{uBegin, sText.find("</Configuration>", uBegin)};
    if (const auto value = findBetween(sText, "Command=\"", "\"", within))
        sText.replace(value->m_uBegin, value->m_uEnd - value->m_uBegin, escapedXml(sProgram));
}

} // namespace velmora
