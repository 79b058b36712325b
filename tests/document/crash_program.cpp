// A program that crashes, for the tests of CCrashRecorder: loads the plug-in LIBRARY, has it process audio in
// the mood MOOD (its control 7) on a thread that plays the audio thread, and waits.
//
// Usage: crash_program LIBRARY MOOD USER_FOLDER PROJECT WAY...
// The PROJECT's file is there; each WAY is one of those below.

#include "audio/transport_state.h"
#include "base/platform_fault_handler.h"
#include "document/crash_recorder.h"
#include "host/loaded_plugin.h"
#include "host/plugin_call_marker.h"
#include "host/plugin_library.h"
#include "host/user_dsp_filter.h"
#include "project/dsp_project.h"
#include "project/project_file.h"
#include "support/test_support.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace velmora {
namespace {

constexpr int STATUS_OF_GUARD = 9;
constexpr unsigned DEADLINE_SECONDS = 60; // for a crash that does not come

struct CWays
{
    bool m_bBare;    // without a recorder
    bool m_bSaved;   // the project has no unsaved changes
    bool m_bGuarded; // somebody else ends the program in his own way
    bool m_bTwice;   // two threads run the plug-in at once
    bool m_bBusy;    // the project changes all the time; its states are one letter repeated
    bool m_bInHost;  // the fault is the program's own, on the main thread
};

void endInOwnWay(const CFault& fault)
{
    const char* pName = faultSignalName(fault.m_nSignal);
    [[maybe_unused]] const auto nWritten =
        ::write(STDERR_FILENO, pName, std::char_traits<char>::length(pName));
    ::_exit(STATUS_OF_GUARD);
}

void playAudioThread(CUserDSPFilter& filter)
{
    watchThread(EThreadRole::audio);
    std::array<float, 64> in = {};
    std::array<float, 64> out = {};
    for (;;) {
        const CPlugInCallMarker marker(filter, EPlugInCall::processing);
        filter.processUserBuffer(in.data(), out.data(), 2, 2, in.size(), in.size(), nullptr, 0, false);
    }
}

// Waits for the end, with a new state of the project whenever the last one was taken over.
void waitForEnd(CCrashRecorder& recorder, const std::string& sProject, bool bBusy)
{
    for (std::size_t u = 0;; ++u) {
        if (bBusy)
            (void)recorder.setProject(sProject, std::string(1000 + u % 50 * 10000, 'a' + u % 26), false);
        else
            std::this_thread::yield();
    }
}

int run(const std::string& sLibrary, const std::string& sMood, const std::string& sUserFolder,
        const std::string& sProject, const CWays& ways)
{
    const rlimit noCore = {0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    ::alarm(DEADLINE_SECONDS);

    test::CRecordingDialogs dialogs;
    CDSPProject project;
    std::string sError;
    auto pLibrary = CPlugInLibrary::load(sLibrary, sError);
    CPlugIn* pPlugIn = pLibrary ? pLibrary->makeObject(sError) : nullptr;
    if (!pPlugIn || !loadProject(project, sProject, dialogs))
        return EXIT_FAILURE;
    const auto pLoaded = CLoadedPlugIn::create(std::move(pLibrary), pPlugIn);
    pLoaded->filter().createControls();
    pLoaded->filter().setControlText(7, sMood, false);

    CTransportState transport;
    transport.setState(TRANSPORT_SOUND_IN);
    CCrashRecorder recorder(&transport);
    std::optional<CFaultWatch> guard;
    if (ways.m_bGuarded)
        guard.emplace(EFaultStep::finish, endInOwnWay);
    project.m_sProjectName = "Changed";
    if (!ways.m_bBare &&
        !(recorder.start(sUserFolder) && recorder.setProject(sProject, projectBytes(project), ways.m_bSaved)))
        return EXIT_FAILURE;

    if (ways.m_bInHost)
        return ::raise(SIGSEGV);
    std::thread(playAudioThread, std::ref(pLoaded->filter())).detach();
    if (ways.m_bTwice)
        std::thread(playAudioThread, std::ref(pLoaded->filter())).detach();
    waitForEnd(recorder, sProject, ways.m_bBusy);
    return EXIT_SUCCESS;
}

} // namespace
} // namespace velmora

int main(int nArguments, char** ppArguments)
{
    const std::vector<std::string> words(ppArguments + 1, ppArguments + nArguments);
    if (words.size() < 4)
        return EXIT_FAILURE;
    const std::set<std::string> ways(words.begin() + 4, words.end());
    return velmora::run(words[0], words[1], words[2], words[3],
                        {ways.contains("bare"), ways.contains("saved"), ways.contains("guarded"),
                         ways.contains("twice"), ways.contains("busy"), ways.contains("host")});
}
