#pragma once

#include "project/codegen/compiler_family.h"

#include <span>

namespace velmora {

enum class ECompilerKind
{
    express,
    professional,
    codeBlocks,
    commandLine
};

// The ids of the compilers that run on Linux.
inline constexpr int CODE_BLOCKS_ID = 4001;
inline constexpr int GCC_COMMAND_LINE_ID = 4010;
inline constexpr int CLANG_COMMAND_LINE_ID = 4011;
inline constexpr int DEFAULT_COMPILER_ID = GCC_COMMAND_LINE_ID;

// One compiler that the preferences offer.
struct CCompiler
{
    int m_nId;
    const char* m_pName; // as the preferences show it
    ECompilerFamily m_eFamily;
    ECompilerKind m_eKind;
};

// All compilers, by ascending id. [any]
[[nodiscard]] std::span<const CCompiler> compilers();

// Null if there is none of that id. [any]
[[nodiscard]] const CCompiler* findCompiler(int nCompilerId);

// Whether the id is one of that family; false for an unknown id. [any]
[[nodiscard]] bool isCompilerOfFamily(int nCompilerId, ECompilerFamily eFamily);

} // namespace velmora
