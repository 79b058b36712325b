#pragma once

#include <string>
#include <string_view>

namespace velmora {

// The texts of the .vcxproj of the 2010 and later families and of its .user file: fixed strings sought and
// spliced. [any]

// "ClCompile" for a source, "ClInclude" for anything else.
[[nodiscard]] std::string_view vcxprojEntryKind(std::string_view sFile);

[[nodiscard]] bool vcxprojLists(std::string_view sText, std::string_view sFile);

// Adds an entry behind the one of sAnchor, or, where sAnchor is empty, behind the last entry of the same
// kind. Nothing if it is listed. False if there is no such place.
[[nodiscard]] bool addVcxprojFile(std::string& sText, std::string_view sFile, std::string_view sAnchor = {});

// The marker of the settings of "Debug" or "Release" on Win32.
[[nodiscard]] std::string vcxprojConfiguration(std::string_view sConfiguration);

// Sets the content of an element, such as "AdditionalDependencies", below the configuration's marker; one
// that is missing is put in ahead of sParentEnd, such as "</Link>", as sIndent + element + sBehind. Answers
// the marker that is missing; empty when it is done.
[[nodiscard]] std::string setVcxprojElement(std::string& sText, std::string_view sConfiguration,
                                            std::string_view sElement, std::string_view sValue,
                                            std::string_view sParentEnd, std::string_view sIndent,
                                            std::string_view sBehind);

// setVcxprojElement() for an element of the linker.
[[nodiscard]] std::string setVcxprojLinkElement(std::string& sText, std::string_view sConfiguration,
                                                std::string_view sElement, std::string_view sValue);

// Gives every toolset of 2010 to 2015 that is named the family's: "<PlatformToolset>v110".
void setVcxprojToolset(std::string& sText, std::string_view sToolset);

// Puts the folder, with its closing separator, into the output folders and ahead of the library's name.
// bPlainToo also takes the OutDir element without a condition.
void setVcxprojOutputFolder(std::string& sText, std::string_view sFolder, bool bPlainToo);

// The program that every configuration of a .vcxproj.user starts.
void setVcxprojUserCommand(std::string& sText, std::string_view sProgram);

} // namespace velmora
