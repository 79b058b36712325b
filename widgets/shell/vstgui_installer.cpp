#include "widgets/shell/vstgui_installer.h"

#include "base/user_dialogs.h"

namespace velmora {

namespace {

using std::filesystem::copy_options;

constexpr const char* FOLDER = "vstgui4";

constexpr const char* QUESTION = "This will install the VSTGUI4 folder by copying it into your Velmora "
                                 "Projects folder. You only need this if you "
                                 "are using the advanced GUI features/API. You can always delete or move the "
                                 "VSTGUI4 folder as you wish. OK to "
                                 "install VSTGUI4?";
constexpr const char* OVERWRITE_QUESTION =
    "There is already a VSTGUI4 folder in your projects directory. Do you want overwrite the folder?";
constexpr const char* SUCCESS = "VSTGUI4 folder successfully installed to:\n\n";
constexpr const char* FAILURE = "Failed to copy the folder. Do you have permission to copy files to ";

// Makes the new folder complete beside the target before it takes the target's place.
bool copyInPlace(const std::filesystem::path& source, const std::filesystem::path& target)
{
    const std::filesystem::path stage = target.string() + ".part";
    const std::filesystem::path old = target.string() + ".old";
    std::error_code error;
    std::filesystem::create_directories(target.parent_path(), error);
    std::filesystem::remove_all(stage, error);
    const bool bReplaces = std::filesystem::exists(target, error);
    error.clear();
    if (bReplaces)
        std::filesystem::copy(target, stage, copy_options::recursive | copy_options::copy_symlinks, error);
    if (!error)
        std::filesystem::copy(source, stage, copy_options::recursive | copy_options::overwrite_existing,
                              error);
    if (!error && bReplaces)
        std::filesystem::rename(target, old, error);
    const bool bMovedAway = !error && bReplaces;
    if (!error)
        std::filesystem::rename(stage, target, error);
    std::error_code ignored;
    if (error && bMovedAway)
        std::filesystem::rename(old, target, ignored);
    std::filesystem::remove_all(error ? stage : old, ignored);
    return !error;
}

} // namespace

bool hasVSTGUI4(const std::filesystem::path& baseClassFolder)
{
    std::error_code error;
    return !baseClassFolder.empty() && std::filesystem::is_directory(baseClassFolder / FOLDER, error);
}

void installVSTGUI4(const std::filesystem::path& baseClassFolder, const std::filesystem::path& projectsFolder,
                    IUserDialogs& dialogs)
{
    if (!dialogs.askOKCancel(QUESTION))
        return;
    const std::filesystem::path target = projectsFolder / FOLDER;
    std::error_code error;
    if (std::filesystem::exists(target, error) && !dialogs.askYesNo(OVERWRITE_QUESTION))
        return;
    const bool bDone = copyInPlace(baseClassFolder / FOLDER, target);
    dialogs.showMessage((bDone ? SUCCESS : FAILURE) + target.string());
}

} // namespace velmora
