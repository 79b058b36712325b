#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPProject;

// What the preferences say about compilers with a window.
struct CIdeSettings
{
    std::filesystem::path m_codeBlocksFolder;   // empty: searched on PATH
    bool m_bStartMinimized = false;             // the focus is left where it goes
    bool m_bCloseWithProject = false;           // when another one is opened or the program ends
    std::filesystem::path m_codeBlocksUserData; // empty: the user's own

    bool operator==(const CIdeSettings&) const = default;
};

// Reads the default value of a key under HKEY_LOCAL_MACHINE; empty if there is none.
using CRegistryReader = std::function<std::string(std::string_view sKey)>;

// How a compiler is started.
struct CIdeCommand
{
    std::filesystem::path m_program;      // empty if it is not installed
    std::vector<std::string> m_arguments; // without the program
    std::string m_sCommandLine;           // quoted program, blank, quoted project file
};

// The registry key that names the compiler's program; empty for Code::Blocks.
[[nodiscard]] std::string_view registryKeyOf(int nCompilerId);

// The program in a registry value, quotes and placeholders dropped, with the folder of another version
// replaced by the chosen family's.
[[nodiscard]] std::string programOfRegistryValue(std::string_view sValue, int nCompilerId);

// The file that the compiler opens for this project.
[[nodiscard]] std::filesystem::path ideProjectFile(int nCompilerId, const CDSPProject& project);

[[nodiscard]] CIdeCommand ideCommand(int nCompilerId, const CDSPProject& project,
                                     const CIdeSettings& settings, const CRegistryReader& registry);

// What is shown when the program cannot be started.
[[nodiscard]] std::string ideFailureMessage(const CIdeCommand& command);

// Starts the program so that it outlives this one. 0 if it cannot be started.
[[nodiscard]] std::uint32_t startIde(const CIdeCommand& command);

} // namespace velmora
