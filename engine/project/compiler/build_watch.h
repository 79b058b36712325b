#pragma once

#include <filesystem>
#include <string>

namespace velmora {

class CDSPProject;

// What a look at the build's files tells the status strip.
enum class EBuildEvent
{
    building,
    succeeded,
    failed
};

// The log that the compiler writes for the project: BuildLog.htm or <Name>.log in the project folder. Empty
// for an unknown compiler. [any]
[[nodiscard]] std::filesystem::path buildLogPath(int nCompilerId, const CDSPProject& project);

// The file whose presence says that a build is under way or has failed: <Name>.unsuccessfulbuild. [any]
[[nodiscard]] std::filesystem::path buildMarkerPath(const CDSPProject& project);

// Where the finished library lies: <outputFolder>/<Name> with the platform's suffix. [any]
[[nodiscard]] std::filesystem::path builtLibraryPath(const CDSPProject& project,
                                                     const std::filesystem::path& outputFolder);

// The line that ends the log of a successful build, without its line end:
// "<Name>.cmake -> <outputFolder>/<Name>.so" or what the compiler's family writes. [any]
[[nodiscard]] std::string buildSuccessLine(int nCompilerId, const CDSPProject& project,
                                           const std::filesystem::path& outputFolder);

// Removes the log and the marker of the build before, so that they are not taken for the next one's. [main]
void deleteBuildResults(int nCompilerId, const CDSPProject& project);

// Reads from disc how the build stands; without a log it goes on building. Called once a second while a
// rebuild is under way. outputFolder is the folder of plug-ins, with or without a closing separator. [main]
[[nodiscard]] EBuildEvent readBuildResult(int nCompilerId, const CDSPProject& project,
                                          const std::filesystem::path& outputFolder);

} // namespace velmora
