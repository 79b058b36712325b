#include "document/toolchain_choice.h"

#include "project/compiler/code_blocks_toolchain.h"
#include "project/compiler/command_line_toolchain.h"
#include "project/compiler/compiler_table.h"
#include "project/compiler/visual_studio_toolchain.h"
#include "project/compiler/x11_window_system.h"

#include <utility>

namespace velmora {

CToolchainChoice::CToolchainChoice(IUserDialogs& dialogs, std::filesystem::path plugInsFolder,
                                   std::filesystem::path cacheFolder, CIdeSettings ideSettings,
                                   int nCompilerId)
    : m_dialogs(dialogs), m_plugInsFolder(std::move(plugInsFolder)), m_cacheFolder(std::move(cacheFolder)),
      m_ideSettings(std::move(ideSettings)),
      m_nCompilerId(findCompiler(nCompilerId) ? nCompilerId : DEFAULT_COMPILER_ID)
{
}

CToolchainChoice::~CToolchainChoice() = default;

bool CToolchainChoice::choose(int nCompilerId)
{
    if (!findCompiler(nCompilerId))
        return false;
    if (nCompilerId != m_nCompilerId)
        m_pToolchain.reset();
    m_nCompilerId = nCompilerId;
    return true;
}

void CToolchainChoice::setIdeSettings(CIdeSettings ideSettings)
{
    if (ideSettings == m_ideSettings)
        return;
    m_ideSettings = std::move(ideSettings);
    m_pToolchain.reset();
}

IToolchain& CToolchainChoice::chosen()
{
    if (!m_pToolchain)
        m_pToolchain = makeToolchain();
    return *m_pToolchain;
}

IWindowSystem& CToolchainChoice::windowSystem()
{
    if (!m_pWindowSystem)
        m_pWindowSystem = std::make_unique<CX11WindowSystem>();
    return *m_pWindowSystem;
}

std::unique_ptr<IToolchain> CToolchainChoice::makeToolchain()
{
    switch (findCompiler(m_nCompilerId)->m_eKind) {
    case ECompilerKind::commandLine:
        return std::make_unique<CCommandLineToolchain>(m_nCompilerId, m_plugInsFolder, m_cacheFolder);
    case ECompilerKind::codeBlocks:
        return std::make_unique<CCodeBlocksToolchain>(windowSystem(), m_dialogs, m_ideSettings,
                                                      m_plugInsFolder);
    case ECompilerKind::express:
    case ECompilerKind::professional:
        break;
    }
    return std::make_unique<CVisualStudioToolchain>(windowSystem(), m_dialogs, m_nCompilerId, m_ideSettings,
                                                    m_plugInsFolder);
}

} // namespace velmora
