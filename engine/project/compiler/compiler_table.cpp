#include "project/compiler/compiler_table.h"

#include <algorithm>
#include <iterator>

namespace velmora {

namespace {

constexpr CCompiler COMPILERS[] = {
    {4000, "2008 Express", ECompilerFamily::visualStudio2008, ECompilerKind::express},
    {CODE_BLOCKS_ID, "Code::Blocks", ECompilerFamily::codeBlocks, ECompilerKind::codeBlocks},
    {4002, "2010 Express", ECompilerFamily::visualStudio2010, ECompilerKind::express},
    {4003, "2008 Professional", ECompilerFamily::visualStudio2008, ECompilerKind::professional},
    {4004, "2010 Professional", ECompilerFamily::visualStudio2010, ECompilerKind::professional},
    {4005, "2012 Express", ECompilerFamily::visualStudio2012, ECompilerKind::express},
    {4006, "2012 Professional", ECompilerFamily::visualStudio2012, ECompilerKind::professional},
    {4007, "2013 Express", ECompilerFamily::visualStudio2013, ECompilerKind::express},
    {4008, "2013 Professional/Community", ECompilerFamily::visualStudio2013, ECompilerKind::professional},
    {4009, "2015 Professional/Community", ECompilerFamily::visualStudio2015, ECompilerKind::professional},
    {GCC_COMMAND_LINE_ID, "GCC (command line)", ECompilerFamily::commandLine, ECompilerKind::commandLine},
    {CLANG_COMMAND_LINE_ID, "Clang (command line)", ECompilerFamily::commandLine, ECompilerKind::commandLine},
};

} // namespace

std::span<const CCompiler> compilers()
{
    return COMPILERS;
}

const CCompiler* findCompiler(int nCompilerId)
{
    const auto position = std::ranges::find(COMPILERS, nCompilerId, &CCompiler::m_nId);
    return position != std::end(COMPILERS) ? position : nullptr;
}

bool isCompilerOfFamily(int nCompilerId, ECompilerFamily eFamily)
{
    const CCompiler* pCompiler = findCompiler(nCompilerId);
    return pCompiler && pCompiler->m_eFamily == eFamily;
}

} // namespace velmora
