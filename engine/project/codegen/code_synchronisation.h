#pragma once

#include <filesystem>
#include <vector>

namespace velmora {

class CDSPProject;
struct CProjectEnvironment;

inline constexpr const char* SYNCHRONISE_LOAD_FAILED = "Loading DLL Failed. Do  you need to recompile it?";
inline constexpr const char* SYNCHRONISE_DONE =
    "Files copied and code synchronized.\n\nCheck Visual Studio Compiler and agree to reload the project if "
    "prompted.\n\nThen rebuild your DLL.";

// Synchronize Code, the copying of files: the contract's into the project folder, and the wrapper's for a VST
// compatible project. Answers the files that changed. The caller loads the plug-in before, and rewrites
// regions and signatures afterwards. [main]
std::vector<std::filesystem::path> synchroniseFiles(const CDSPProject& project,
                                                    const CProjectEnvironment& environment);

} // namespace velmora
