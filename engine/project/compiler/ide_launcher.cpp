#include "project/compiler/ide_launcher.h"

#include "base/platform_child_process.h"
#include "project/compiler/compiler_table.h"
#include "project/dsp_project.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace velmora {

namespace {

constexpr std::string_view EXPRESS_2010 =
    R"(Software\Microsoft\Windows\CurrentVersion\App Paths\VCExpress.exe)";
constexpr std::string_view EXPRESS_2013 = R"(Software\Classes\Applications\WDExpress.exe\shell\open\command)";
constexpr std::string_view PROFESSIONAL = R"(Software\Microsoft\Windows\CurrentVersion\App Paths\devenv.exe)";

struct CFamilyFolder
{
    ECompilerFamily m_eFamily;
    std::string_view m_sExpressKey;
    std::string_view m_sFolder;
};

constexpr CFamilyFolder FAMILY_FOLDERS[] = {
    {ECompilerFamily::visualStudio2008, EXPRESS_2010, "Microsoft Visual Studio 9.0"},
    {ECompilerFamily::visualStudio2010, EXPRESS_2010, "Microsoft Visual Studio 10.0"},
    {ECompilerFamily::visualStudio2012, EXPRESS_2013, "Microsoft Visual Studio 11.0"},
    {ECompilerFamily::visualStudio2013, EXPRESS_2013, "Microsoft Visual Studio 12.0"},
    {ECompilerFamily::visualStudio2015, EXPRESS_2013, "Microsoft Visual Studio 14.0"},
};

const CFamilyFolder* familyFolder(int nCompilerId)
{
    for (const CFamilyFolder& row : FAMILY_FOLDERS)
        if (isCompilerOfFamily(nCompilerId, row.m_eFamily))
            return &row;
    return nullptr;
}

std::string quoted(const std::string& sText)
{
    return '"' + sText + '"';
}

CIdeCommand codeBlocksCommand(const std::filesystem::path& projectFile, const CIdeSettings& settings)
{
    CIdeCommand command;
    command.m_program = settings.m_codeBlocksFolder.empty() ? CChildProcess::findProgram("codeblocks")
                                                            : settings.m_codeBlocksFolder / "codeblocks";
    // Each project in a window of its own, and no word to one that the user has open already.
    command.m_arguments = {"--no-splash-screen", "--no-ipc", "--multiple-instance"};
    if (!settings.m_codeBlocksUserData.empty())
        command.m_arguments.push_back("--user-data-dir=" + settings.m_codeBlocksUserData.string());
    command.m_arguments.push_back(projectFile.string());
    return command;
}

} // namespace

std::string_view registryKeyOf(int nCompilerId)
{
    const CCompiler* pCompiler = findCompiler(nCompilerId);
    const CFamilyFolder* pFamily = familyFolder(nCompilerId);
    if (!pCompiler || !pFamily)
        return {};
    return pCompiler->m_eKind == ECompilerKind::express ? pFamily->m_sExpressKey : PROFESSIONAL;
}

std::string programOfRegistryValue(std::string_view sValue, int nCompilerId)
{
    std::string sProgram(sValue);
    if (sValue.starts_with('"'))
        sProgram = sValue.substr(1, sValue.find('"', 1) - 1);
    const CFamilyFolder* pFamily = familyFolder(nCompilerId);
    for (const CFamilyFolder& other : FAMILY_FOLDERS)
        if (const std::size_t uFound = sProgram.find(other.m_sFolder); pFamily && uFound != std::string::npos)
            return sProgram.replace(uFound, other.m_sFolder.size(), pFamily->m_sFolder);
    return sProgram;
}

std::filesystem::path ideProjectFile(int nCompilerId, const CDSPProject& project)
{
    const std::filesystem::path projectFile = project.m_sProjectFile;
    const CCompiler* pCompiler = findCompiler(nCompilerId);
    const auto withExtension = [&](const char* pExtension) {
        return std::filesystem::path(projectFile).replace_extension(pExtension);
    };
    if (pCompiler && pCompiler->m_eKind == ECompilerKind::codeBlocks)
        return project.folder() / (project.m_sProjectName + ".cbp");
    if (!pCompiler || pCompiler->m_eKind != ECompilerKind::professional)
        return withExtension(".sln");
    if (!project.m_sSolutionFile.empty())
        return project.m_sSolutionFile;
    return withExtension(pCompiler->m_eFamily == ECompilerFamily::visualStudio2008 ? ".vcproj" : ".vcxproj");
}

CIdeCommand ideCommand(int nCompilerId, const CDSPProject& project, const CIdeSettings& settings,
                       const CRegistryReader& registry)
{
    const std::filesystem::path projectFile = ideProjectFile(nCompilerId, project);
    CIdeCommand command;
    if (nCompilerId == CODE_BLOCKS_ID) {
        command = codeBlocksCommand(projectFile, settings);
    } else {
        const std::string_view sKey = registryKeyOf(nCompilerId);
        if (registry && !sKey.empty())
            command.m_program = programOfRegistryValue(registry(sKey), nCompilerId);
        command.m_arguments = {projectFile.string()};
    }
    command.m_sCommandLine = quoted(command.m_program.string()) + " " + quoted(projectFile.string());
    return command;
}

std::string ideFailureMessage(const CIdeCommand& command)
{
    return "Error in CreateProcess() for the compiler path: " + command.m_program.string() +
           "\n and command prompt: " + command.m_sCommandLine +
           "\n\nCheck your compiler choice in View->Properties.\n\nIn Win7 and Win8 you must be logged in as "
           "Administrator to spawn this process.";
}

std::uint32_t startIde(const CIdeCommand& command)
{
    if (command.m_program.empty() || ::access(command.m_program.c_str(), X_OK) != 0)
        return 0;
    std::vector<std::string> texts = {command.m_program.string()};
    texts.insert(texts.end(), command.m_arguments.begin(), command.m_arguments.end());
    std::vector<char*> arguments;
    for (std::string& sText : texts)
        arguments.push_back(sText.data());
    arguments.push_back(nullptr);

    // The IDE's windows must be ones that this program can see, also in a Wayland session.
    std::string sBackend = "GDK_BACKEND=x11";
    std::vector<char*> environment;
    for (char** ppEntry = environ; ppEntry && *ppEntry; ++ppEntry)
        if (!std::string_view(*ppEntry).starts_with("GDK_BACKEND="))
            environment.push_back(*ppEntry);
    environment.push_back(sBackend.data());
    environment.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    for (const int nStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, nStream, "/dev/null", O_RDWR, 0);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    // A session of its own: an interrupt at our terminal does not end the user's IDE.
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t nChild = 0;
    const int nError = ::posix_spawn(&nChild, command.m_program.c_str(), &actions, &attributes,
                                     arguments.data(), environment.data());
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return nError == 0 ? static_cast<std::uint32_t>(nChild) : 0;
}

} // namespace velmora
