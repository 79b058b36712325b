#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

// What a compiler is told by its keys.
enum class ECompilerOperation : std::uint8_t
{
    saveAll,
    rebuild,
    startDebug,
    stopDebug,
    closeCompiler // 2012 Express at its start page; Code::Blocks
};

struct CCompilerOperation
{
    const char* m_pName;              // behind the word "to"
    std::string_view m_sVisualStudio; // keys of Express, and of Professional from 2008 to 2012
    std::string_view m_sCodeBlocks;
    std::string_view m_sLateProfessional; // 2013 and 2015
    double m_dSecondsUntilFocusReturns;
    bool m_bKeepsMainWindowOnTop; // the compiler is minimised before and restored afterwards
};

[[nodiscard]] const CCompilerOperation& compilerOperation(ECompilerOperation eOperation);

// The keys of the operation with this compiler; empty if it has none.
[[nodiscard]] std::string_view compilerKeys(int nCompilerId, ECompilerOperation eOperation);

// A key string as a person reads it: "CTRL+F11" for "<CTRL><F11>".
[[nodiscard]] std::string readableKeys(std::string_view sKeys);

} // namespace velmora
