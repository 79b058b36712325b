#include "document/crash_recorder.h"

#include "audio/transport_state.h"
#include "base/platform_emergency_file.h"
#include "document/autosave.h"
#include "host/plugin_call_marker.h"

#include <cstdlib>
#include <fstream>
#include <string>
#include <utility>

namespace velmora {

namespace {

enum EProjectText : std::size_t
{
    PROJECT_FILE,
    AUTOSAVE_UNFINISHED,
    AUTOSAVE,
    SECOND_UNFINISHED, // in the user folder
    SECOND_AUTOSAVE,
    PROJECT_BYTES
};

enum EReportPath : std::size_t
{
    REPORT_UNFINISHED,
    REPORT
};

constexpr std::streamsize LARGEST_REPORT = 64 * 1024; // bytes; what follows is not read
constexpr int EXIT_CALLED = 0;                        // in place of a signal

constinit std::atomic<CCrashRecorder*> g_pActive{nullptr};

std::filesystem::path absolutePath(const std::filesystem::path& path)
{
    std::error_code error;
    const auto result = std::filesystem::absolute(path, error);
    return error ? path : result;
}

std::string unfinished(const std::filesystem::path& file)
{
    return (file.parent_path() / ("." + file.filename().string() + ".part")).string();
}

} // namespace

CCrashRecorder::CCrashRecorder(const CTransportState* pTransport) : m_pTransport(pTransport) {}

CCrashRecorder::~CCrashRecorder()
{
    m_watch.reset();
    CCrashRecorder* pThis = this;
    g_pActive.compare_exchange_strong(pThis, nullptr);
}

bool CCrashRecorder::start(const std::filesystem::path& userFolder)
{
    CCrashRecorder* pActive = nullptr;
    if (!g_pActive.compare_exchange_strong(pActive, this) && pActive != this)
        return false;
    m_watch.reset();
    m_userFolder = absolutePath(userFolder.empty() ? "." : userFolder);
    const auto report = m_userFolder / REPORT_FILE;
    if (!m_reportPaths.assign({unfinished(report), report.native()})) {
        g_pActive = nullptr;
        return false;
    }
    watchThread(EThreadRole::main);
    [[maybe_unused]] static const int REGISTERED = std::atexit(onExit);
    m_watch.emplace(EFaultStep::record, onFault);
    return true;
}

// ------------------------------------------------------------------------------------------------
// The project
// ------------------------------------------------------------------------------------------------

bool CCrashRecorder::setProject(const std::filesystem::path& project, std::string_view sBytes, bool bSaved)
{
    if (m_bFrozen)
        return true;
    const int nNext = m_nCurrent == 0 ? 1 : 0;
    CProjectCopy& copy = m_copies[static_cast<std::size_t>(nNext)];
    const auto file = absolutePath(project);
    const std::string sAutosave = autosavePath(file);
    const std::string sSecond = secondAutosavePath(file, m_userFolder);
    const bool bKept = copy.m_texts.assign(
        {file.native(), unfinished(sAutosave), sAutosave, unfinished(sSecond), sSecond, sBytes});
    copy.m_bSaved = bSaved;
    m_nCurrent = bKept ? nNext : -1;
    return bKept;
}

void CCrashRecorder::clearProject()
{
    m_nCurrent = -1;
}

// ------------------------------------------------------------------------------------------------
// The fault
// ------------------------------------------------------------------------------------------------

void CCrashRecorder::onFault(const CFault& fault)
{
    if (CCrashRecorder* const pRecorder = g_pActive)
        pRecorder->record(fault.m_nSignal, fault.m_eRole);
}

void CCrashRecorder::onExit()
{
    CCrashRecorder* const pRecorder = g_pActive;
    if (pRecorder && CPlugInCallMarker::current().m_pName)
        pRecorder->record(EXIT_CALLED, threadRole());
}

// The project comes first: should the report fail, it is safe.
void CCrashRecorder::record(int nSignal, EThreadRole eRole) noexcept
{
    if (m_bFrozen.exchange(true))
        return;
    const int nCurrent = m_nCurrent;
    const CProjectCopy* const pProject =
        nCurrent < 0 ? nullptr : &m_copies[static_cast<std::size_t>(nCurrent)];
    const CAutosave autosave = pProject && !pProject->m_bSaved ? writeAutosave(*pProject) : CAutosave();

    CEmergencyFile report(m_reportPaths.text(REPORT_UNFINISHED).data());
    report.write(CRASH_REPORT_TITLE);
    report.write("\n");
    const CPlugInCallMarker::CCall& call = CPlugInCallMarker::current();
    if (call.m_pName) {
        report.writeLine(CRASH_PLUGIN, call.m_pName);
        report.writeLine(CRASH_LIBRARY, call.m_pLibrary ? call.m_pLibrary : "");
        report.writeLine(CRASH_DOING, plugInCallText(call.m_eCall));
    }
    const bool bExit = nSignal == EXIT_CALLED;
    report.writeLine(CRASH_SIGNAL, bExit ? "exit" : faultSignalName(nSignal));
    report.writeLine(CRASH_FAULT, bExit ? "it ended the program" : faultSignalText(nSignal));
    report.writeLine(CRASH_THREAD, threadRoleText(eRole));
    if (m_pTransport)
        report.writeLine(CRASH_AUDIO, m_pTransport->hasAudioThread() ? CRASH_AUDIO_RAN : "stopped");
    if (pProject)
        report.writeLine(CRASH_PROJECT, pProject->m_texts.text(PROJECT_FILE));
    if (autosave.m_pPath)
        report.writeLine(CRASH_AUTOSAVE, autosave.m_pPath);
    else if (autosave.m_nError != 0)
        report.writeLine(CRASH_AUTOSAVE_ERROR, autosave.m_nError);
    [[maybe_unused]] const int nError = report.commit(m_reportPaths.text(REPORT).data());
}

CCrashRecorder::CAutosave CCrashRecorder::writeAutosave(const CProjectCopy& project) noexcept
{
    const auto text = [&project](EProjectText eText) { return project.m_texts.text(eText); };
    int nError = 0;
    for (const auto& [eUnfinished, eAutosave] :
         {std::pair(AUTOSAVE_UNFINISHED, AUTOSAVE), std::pair(SECOND_UNFINISHED, SECOND_AUTOSAVE)}) {
        CEmergencyFile file(text(eUnfinished).data(), text(PROJECT_FILE).data());
        file.write(text(PROJECT_BYTES));
        const int nErrorHere = file.commit(text(eAutosave).data());
        if (nErrorHere == 0)
            return {text(eAutosave).data(), 0};
        if (nError == 0)
            nError = nErrorHere;
    }
    return {nullptr, nError};
}

// ------------------------------------------------------------------------------------------------
// The next start
// ------------------------------------------------------------------------------------------------

std::optional<CCrashReport> CCrashRecorder::takeReport(const std::filesystem::path& userFolder)
{
    const auto file = absolutePath(userFolder.empty() ? "." : userFolder) / REPORT_FILE;
    std::error_code error;
    if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(file, error)))
        return std::nullopt;
    std::string sText(LARGEST_REPORT, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(sText.data(), LARGEST_REPORT);
    sText.resize(static_cast<std::size_t>(stream.gcount()));
    stream.close();

    const auto kept = file.parent_path() / LAST_REPORT_FILE;
    std::filesystem::rename(file, kept, error);
    auto report = CCrashReport::parse(sText);
    if (!report)
        return std::nullopt;
    report->m_keptAs = error ? file : kept;
    if (!std::filesystem::is_regular_file(report->m_sAutosave, error))
        report->m_sAutosave.clear();
    return report;
}

} // namespace velmora
