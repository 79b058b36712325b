#pragma once

#include "project/codegen/compiler_family.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class IUserDialogs;
struct CProjectEnvironment;

// The .sln file as text. [main]

inline constexpr const char* SOLUTION_FILTER = "VC++ Solution Files (*.sln)|*.sln||";

// The skeleton as a solution of one project. Compilers that have no form of their own get that of 2012, which
// every later one opens.
[[nodiscard]] std::string makeSolution(std::string_view sSkeleton, std::string_view sName,
                                       ECompilerFamily eFamily);

// Writes <Name>.sln out of the skeleton. A failure is shown.
bool writeDefaultSolution(const std::filesystem::path& folder, const std::string& sName,
                          const CProjectEnvironment& environment, IUserDialogs& dialogs,
                          std::vector<std::filesystem::path>& changed);

// Format 10.00, whose projects are .vcproj; those of any other, and of no solution at all, are .vcxproj.
[[nodiscard]] bool solutionUsesVcproj(std::string_view sText);

// Whether the text is a solution that a project can be added to; shows what it lacks.
[[nodiscard]] bool checkSolution(std::string_view sText, IUserDialogs& dialogs);

// Adds an entry for the project to a solution that checkSolution() accepts. False, and the text unchanged,
// if it does not, which has been shown.
[[nodiscard]] bool addToSolution(std::string& sText, const std::string& sName,
                                 const std::filesystem::path& folder, IUserDialogs& dialogs);

// Lets the user choose an existing solution and checks it; none on cancel or failure, which has been shown.
[[nodiscard]] std::optional<std::filesystem::path> chooseSolution(IUserDialogs& dialogs);

} // namespace velmora
