#include "document/autosave.h"

#include "base/platform_file_read.h"
#include "base/safe_file.h"
#include "base/user_dialogs.h"
#include "project/codegen/project_history.h"
#include "project/dsp_project.h"
#include "project/project_difference.h"
#include "project/project_file.h"

#include <algorithm>

namespace velmora {

namespace {

// Answers nobody and keeps what it is told to itself.
class CSilentDialogs : public IUserDialogs
{
  public:
    void showMessage(std::string_view) override {}
    bool askYesNo(std::string_view) override { return false; }
    bool askOKCancel(std::string_view) override { return false; }
    std::optional<std::filesystem::path> chooseSaveFile(std::string_view,
                                                        const std::filesystem::path&) override
    {
        return std::nullopt;
    }
    std::optional<std::filesystem::path> chooseOpenFile(std::string_view,
                                                        const std::filesystem::path&) override
    {
        return std::nullopt;
    }
    void note(std::string_view) override {}
};

std::filesystem::path absolutePath(const std::filesystem::path& path)
{
    std::error_code error;
    const auto result = std::filesystem::absolute(path, error);
    return error ? path : result;
}

std::filesystem::path autosaveName(const std::filesystem::path& project)
{
    return project.filename().string() + std::string(AUTOSAVE_SUFFIX);
}

std::optional<CRecovery> recoveryFrom(const std::filesystem::path& autosave,
                                      const std::filesystem::path& project, bool bBesideProject)
{
    std::error_code error;
    CRecovery recovery{project, autosave, std::filesystem::last_write_time(autosave, error), {}};
    if (error)
        return std::nullopt;
    const auto projectTime = std::filesystem::last_write_time(project, error);
    if (!error && recovery.m_time < projectTime)
        return std::nullopt;
    CSilentDialogs silent;
    CDSPProject saved;
    CDSPProject rescued;
    static_cast<void>(loadProject(saved, project, silent)); // a damaged one is empty: all the better
    // The user folder takes autosaves of projects from everywhere.
    if (!loadProject(rescued, autosave, silent) ||
        (!bBesideProject && absolutePath(rescued.m_sProjectFile) != absolutePath(project)))
        return std::nullopt;
    recovery.m_differences = CProjectDifference(saved, rescued).sentences();
    if (recovery.m_differences.empty())
        return std::nullopt;
    return recovery;
}

bool tell(IUserDialogs& dialogs, const std::filesystem::path& file, const std::string& sReason)
{
    dialogs.showMessage("The file " + file.string() + " could not be dealt with: " + sReason +
                        ". Nothing was changed.");
    return false;
}

} // namespace

std::filesystem::path autosavePath(const std::filesystem::path& project)
{
    return project.parent_path() / autosaveName(project);
}

std::filesystem::path secondAutosavePath(const std::filesystem::path& project,
                                         const std::filesystem::path& userFolder)
{
    return userFolder / autosaveName(project);
}

// ------------------------------------------------------------------------------------------------
// While the project is open
// ------------------------------------------------------------------------------------------------

void CAutosave::start(std::filesystem::path userFolder)
{
    m_bStarted = true;
    m_userFolder = std::move(userFolder);
}

void CAutosave::setProject(CDSPProject* pProject)
{
    if (!m_pProject || !m_bChanged)
        remove();
    else
        static_cast<void>(write());
    m_written.clear();
    m_pProject = pProject;
    m_bChanged = m_bPending = m_bToldOfFailure = false;
    m_since.reset();
}

void CAutosave::projectChanged(bool bSaved)
{
    if (!m_bStarted || !m_pProject)
        return;
    m_bChanged = m_bPending = !bSaved;
    if (!bSaved)
        return;
    m_since.reset();
    m_bToldOfFailure = false;
    remove();
}

bool CAutosave::onTimer(CClock::time_point now)
{
    if (!m_bPending)
        return true;
    if (!m_since)
        m_since = now;
    if (now - *m_since < INTERVAL)
        return true;
    m_since = now; // a failure is tried again a minute later
    return write();
}

bool CAutosave::write()
{
    const auto project = absolutePath(m_pProject->m_sProjectFile);
    const std::string sBytes = projectBytes(*m_pProject);
    std::string sReason;
    for (const auto& file : {autosavePath(project), secondAutosavePath(project, m_userFolder)}) {
        std::string sReasonHere;
        if (writeFileSafely(file, sBytes, &sReasonHere)) {
            m_written = file;
            m_bPending = false;
            m_since.reset();
            return true;
        }
        if (sReason.empty())
            sReason = sReasonHere;
    }
    if (!m_bToldOfFailure)
        m_dialogs.showMessage("What was changed in the project " + project.string() +
                              " can not be kept beside it: " + sReason +
                              ". Save the project at a place that can be written to.");
    m_bToldOfFailure = true;
    return false;
}

void CAutosave::remove()
{
    std::error_code ignored; // one that stays holds nothing that the project does not
    if (!m_written.empty())
        std::filesystem::remove(m_written, ignored);
    m_written.clear();
}

// ------------------------------------------------------------------------------------------------
// The next start
// ------------------------------------------------------------------------------------------------

std::string CRecovery::question(std::size_t uMostDifferences) const
{
    std::string sText = "Velmora ended before the project\n" + m_project.string() +
                        "\nwas saved. What was not saved is still there:\n\n";
    const std::size_t uShown = std::min(uMostDifferences, m_differences.size());
    for (std::size_t i = 0; i < uShown; ++i)
        sText += m_differences[i] + "\n";
    if (const std::size_t uMore = m_differences.size() - uShown)
        sText += "... and " + std::to_string(uMore) + " more.\n";
    return sText + "\nDo you want to go on with it? With No the project is opened as it was saved last.";
}

std::optional<CRecovery> findRecovery(const std::filesystem::path& project,
                                      const std::filesystem::path& userFolder)
{
    const auto file = absolutePath(project);
    auto beside = recoveryFrom(autosavePath(file), file, true);
    auto second = recoveryFrom(secondAutosavePath(file, absolutePath(userFolder)), file, false);
    return second && (!beside || second->m_time > beside->m_time) ? second : beside;
}

bool recover(const CRecovery& recovery, IUserDialogs& dialogs)
{
    std::string sBytes;
    if (readFileUnlessLocked(recovery.m_autosave, sBytes) != EFileRead::done)
        return tell(dialogs, recovery.m_autosave, "it can not be read");
    CProjectHistory history(recovery.m_project.parent_path());
    if (!history.keep(recovery.m_project, "recovery"))
        return tell(dialogs, recovery.m_project, history.error());
    std::string sReason;
    if (!writeFileSafely(recovery.m_project, sBytes, &sReason))
        return tell(dialogs, recovery.m_project, sReason);
    std::error_code ignored; // it holds what the project holds now, and is not offered again
    std::filesystem::remove(recovery.m_autosave, ignored);
    return true;
}

bool discard(const CRecovery& recovery, IUserDialogs& dialogs)
{
    std::string sBytes;
    if (readFileUnlessLocked(recovery.m_autosave, sBytes) != EFileRead::done)
        return tell(dialogs, recovery.m_autosave, "it can not be read");
    CProjectHistory history(recovery.m_project.parent_path());
    std::error_code error;
    if (!history.keepText(recovery.m_project, sBytes, "discarded autosave"))
        return tell(dialogs, recovery.m_autosave, history.error());
    std::filesystem::remove(recovery.m_autosave, error);
    return !error || tell(dialogs, recovery.m_autosave, error.message());
}

} // namespace velmora
