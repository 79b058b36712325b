#include "project/codegen/vcxproj_text.h"

#include "base/xml_text.h"
#include "project/codegen/project_text.h"

#include <array>

namespace velmora {

namespace {

constexpr std::array TOOLSETS = {"<PlatformToolset>v100", "<PlatformToolset>v110", "<PlatformToolset>v120",
                                 "<PlatformToolset>v140"};
constexpr std::string_view LIBRARY_NAME = "$(ProjectName).dll";

// Behind the line that ends the entry which begins at uEntry.
std::size_t lineBehindEntry(std::string_view sText, std::size_t uEntry, std::string_view sKind)
{
    const auto uTagEnd = sText.find('>', uEntry);
    if (uTagEnd == sText.npos)
        return sText.npos;
    const bool bHasContent = sText[uTagEnd - 1] != '/';
    const auto uEnd = bHasContent ? sText.find("</" + std::string(sKind) + ">", uTagEnd) : uTagEnd;
    const auto uLineEnd = uEnd == sText.npos ? sText.npos : sText.find('\n', uEnd);
    return uLineEnd == sText.npos ? sText.npos : uLineEnd + 1;
}

std::string entryBegin(std::string_view sFile)
{
    return "<" + std::string(vcxprojEntryKind(sFile)) + " Include=\"";
}

// Replaces the contents of all elements that begin with sOpen. sKept, if given, is the end of a content that
// stays; a content without it is left alone.
void setContents(std::string& sText, std::string_view sOpen, std::string_view sClose, std::string_view sValue,
                 std::string_view sKept = {})
{
    CTextRange rest{0, sText.npos};
    while (const auto content = findBetween(sText, sOpen, sClose, rest)) {
        const std::string sOld = sText.substr(content->m_uBegin, content->m_uEnd - content->m_uBegin);
        rest.m_uBegin = content->m_uEnd;
        if (!sOld.ends_with(sKept))
            continue;
        sText.replace(content->m_uBegin, sOld.size() - sKept.size(), sValue);
        rest.m_uBegin = content->m_uBegin + sValue.size();
    }
}

} // namespace

std::string_view vcxprojEntryKind(std::string_view sFile)
{
    return sFile.ends_with(".cpp") ? "ClCompile" : "ClInclude";
}

bool vcxprojLists(std::string_view sText, std::string_view sFile)
{
    const std::string sEnd = escapedXml(sFile) + "\"";
    return sText.find(entryBegin(sFile) + sEnd) != sText.npos ||
           sText.find(entryBegin(sFile) + ".\\" + sEnd) != sText.npos;
}

bool addVcxprojFile(std::string& sText, std::string_view sFile, std::string_view sAnchor)
{
    if (vcxprojLists(sText, sFile))
        return true;
    const std::string sBegin = entryBegin(sFile);
    const auto uEntry =
        sAnchor.empty() ? sText.rfind(sBegin) : sText.find(sBegin + escapedXml(sAnchor) + "\"");
    if (uEntry == sText.npos)
        return false;
    const auto uPlace = lineBehindEntry(sText, uEntry, vcxprojEntryKind(sFile));
    if (uPlace == sText.npos)
        return false;
    sText.insert(uPlace, fitted("    " + sBegin + escapedXml(sFile) + "\" />\n", sText));
    return true;
}

std::string vcxprojConfiguration(std::string_view sConfiguration)
{
    return "<ItemDefinitionGroup Condition=\"'$(Configuration)|$(Platform)'=='" +
           std::string(sConfiguration) + "|Win32'\">";
}

std::string setVcxprojElement(std::string& sText, std::string_view sConfiguration, std::string_view sElement,
                              std::string_view sValue, std::string_view sParentEnd, std::string_view sIndent,
                              std::string_view sBehind)
{
    const std::string sGroup = vcxprojConfiguration(sConfiguration);
    const auto uGroup = sText.find(sGroup);
    if (uGroup == sText.npos)
        return sGroup;
    const CTextRange within{uGroup, sText.find("</ItemDefinitionGroup>", uGroup)};
    const std::string sOpen = "<" + std::string(sElement) + ">";
    const std::string sClose = "</" + std::string(sElement) + ">";
    if (const auto content = findBetween(sText, sOpen, sClose, within)) {
        sText.replace(content->m_uBegin, content->m_uEnd - content->m_uBegin, sValue);
        return {};
    }
    const auto uParentEnd = sText.find(sParentEnd, uGroup);
    if (uParentEnd == sText.npos || uParentEnd > within.m_uEnd)
        return std::string(sParentEnd);
    std::string sNew(sIndent);
    sNew.append(sOpen).append(sValue).append(sClose).append(sBehind);
    sText.insert(uParentEnd, fitted(sNew, sText));
    return {};
}

std::string setVcxprojLinkElement(std::string& sText, std::string_view sConfiguration,
                                  std::string_view sElement, std::string_view sValue)
{
    return setVcxprojElement(sText, sConfiguration, sElement, sValue, "</Link>", "  ", "\n    ");
}

void setVcxprojToolset(std::string& sText, std::string_view sToolset)
{
    for (const std::string_view sPresent : TOOLSETS)
        for (auto uFound = sText.find(sPresent); uFound != sText.npos;
             uFound = sText.find(sPresent, uFound + sPresent.size()))
            sText.replace(uFound, sPresent.size(), sToolset);
}

void setVcxprojOutputFolder(std::string& sText, std::string_view sFolder, bool bPlainToo)
{
    const std::string sValue = escapedXml(sFolder);
    for (const char* pConfiguration : {"Debug", "Release"})
        setContents(sText,
                    "<OutDir Condition=\"'$(Configuration)|$(Platform)'=='" + std::string(pConfiguration) +
                        "|Win32'\">",
                    "</OutDir>", sValue);
    setContents(sText, "<OutputFile>", "</OutputFile>", sValue, LIBRARY_NAME);
    if (bPlainToo)
        setContents(sText, "<OutDir>", "</OutDir>", sValue);
}

void setVcxprojUserCommand(std::string& sText, std::string_view sProgram)
{
    setContents(sText, "<LocalDebuggerCommand>", "</LocalDebuggerCommand>", escapedXml(sProgram));
}

} // namespace velmora
