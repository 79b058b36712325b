#pragma once

#include "project/codegen/compiler_family.h"

#include <filesystem>

namespace velmora {

// Where the program's own files lie, and for which compiler project files are written.
struct CProjectEnvironment
{
    std::filesystem::path m_programPath;     // the program itself, absolute
    std::filesystem::path m_baseClassFolder; // BaseClassFiles; the stock objects lie in it
    std::filesystem::path m_vstFilesFolder;  // VSTFiles, which the user fills
    std::filesystem::path m_plugInsFolder;   // where builds on this platform put their libraries, absolute
    std::filesystem::path m_projectsFolder;  // where the user's projects lie
    ECompilerFamily m_eFamily = ECompilerFamily::commandLine;
    unsigned m_uRunningVersion = 0; // of the program that writes; 0 takes runningVersionNumber()

    [[nodiscard]] std::filesystem::path stockObjectsFolder() const
    {
        return m_baseClassFolder / "StockObjects";
    }
    [[nodiscard]] std::filesystem::path programFolder() const { return m_programPath.parent_path(); }
    [[nodiscard]] unsigned runningVersion() const;
};

// The running program as environment: its own path, the data folders beside it, the user folder's PlugIns.
// [main]
[[nodiscard]] CProjectEnvironment currentProjectEnvironment(ECompilerFamily eFamily);

} // namespace velmora
