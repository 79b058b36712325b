#pragma once

#include <string>
#include <string_view>

namespace velmora {

// The texts of the .vcproj of the 2008 family and of its .user file: fixed strings sought and spliced. [any]

// The file is an entry, by its bare name or behind ".\".
[[nodiscard]] bool vcprojLists(std::string_view sText, std::string_view sFile);

// Adds an entry behind the one of sAnchor, or, where sAnchor is empty, behind the last entry of the same
// suffix. Nothing if it is listed. False if there is no such place.
[[nodiscard]] bool addVcprojFile(std::string& sText, std::string_view sFile, std::string_view sAnchor = {});

// Sets an attribute of a configuration, "Debug" or "Release" on Win32. If the configuration has none, and
// sTool is given, the attribute is added to that tool. False if there is no place for it.
[[nodiscard]] bool setVcprojAttribute(std::string& sText, std::string_view sConfiguration,
                                      std::string_view sAttribute, std::string_view sValue,
                                      std::string_view sTool = {});

// The marker of a configuration.
[[nodiscard]] std::string vcprojConfiguration(std::string_view sConfiguration);

// Puts the folder, with its closing separator, ahead of "$(ProjectName).dll" in every OutputFile.
void setVcprojOutputFolder(std::string& sText, std::string_view sFolder);

// The program that the Debug configuration of a .vcproj.user starts.
void setVcprojUserCommand(std::string& sText, std::string_view sProgram);

} // namespace velmora
