#include "project/compiler/compiler_operations.h"

#include "project/compiler/compiler_table.h"

namespace velmora {

namespace {

// In the order of ECompilerOperation.
constexpr CCompilerOperation OPERATIONS[] = {
    {"save all files", "<CTRL+SHIFT>S", "<CTRL+SHIFT>S", "<CTRL+SHIFT>S", 0.0, true},
    {"rebuild", "<F7>", "<CTRL><F11>", "<CTRL+SHIFT>B", 0.5, false},
    {"debug", "<F5>", "<CTRL><F10>", "<F5>", 0.5, false},
    {"stop debugging", "<SHIFT><F5>", "<SHIFT><F5>", "<SHIFT><F5>", 0.5, false},
    {"close the compiler", "<ALT><F4>", "<CTRL>q", "", 0.0, false},
};

} // namespace

const CCompilerOperation& compilerOperation(ECompilerOperation eOperation)
{
    return OPERATIONS[static_cast<std::size_t>(eOperation)];
}

std::string_view compilerKeys(int nCompilerId, ECompilerOperation eOperation)
{
    const CCompilerOperation& operation = compilerOperation(eOperation);
    const CCompiler* pCompiler = findCompiler(nCompilerId);
    if (!pCompiler || pCompiler->m_eKind == ECompilerKind::commandLine)
        return {};
    if (pCompiler->m_eKind == ECompilerKind::codeBlocks)
        return operation.m_sCodeBlocks;
    const bool bLate = pCompiler->m_eKind == ECompilerKind::professional &&
                       (pCompiler->m_eFamily == ECompilerFamily::visualStudio2013 ||
                        pCompiler->m_eFamily == ECompilerFamily::visualStudio2015);
    return bLate ? operation.m_sLateProfessional : operation.m_sVisualStudio;
}

std::string readableKeys(std::string_view sKeys)
{
    std::string sText;
    for (std::size_t u = 0; u < sKeys.size(); ++u) {
        if (sKeys[u] == '>' && u + 1 < sKeys.size())
            sText += '+';
        else if (sKeys[u] != '<' && sKeys[u] != '>')
            sText += sKeys[u];
    }
    return sText;
}

} // namespace velmora
