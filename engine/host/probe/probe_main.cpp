// velmora-probe: tries out plug-in libraries for CPlugInProbe, which starts it and knows how to lose it.
//
//     velmora-probe DEADLINE_MS PARENT_PROCESS LIBRARY...
//
// Answers on descriptor PROBE_CHANNEL, as told in probe_protocol.h.

#include "base/text.h"
#include "host/guarded_call.h"
#include "host/plugin_library.h"
#include "host/probe_protocol.h"
#include "host/user_dsp_filter.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <span>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#if defined(VELMORA_SANITIZED)
// Crashes are to end the process by their signal, and sanitizers reserve more addresses than a limit allows.
constexpr bool LIMITS_ADDRESSES = false;
constexpr const char* SANITIZER_OPTIONS =
    "handle_segv=0:handle_abort=0:handle_sigbus=0:handle_sigfpe=0:handle_sigill=0:detect_leaks=0";
extern "C" const char* __asan_default_options()
{
    return SANITIZER_OPTIONS;
}
extern "C" const char* __tsan_default_options()
{
    return SANITIZER_OPTIONS;
}
#else
constexpr bool LIMITS_ADDRESSES = true;
#endif

namespace velmora {

namespace {

constexpr rlim_t MAX_ADDRESSES = rlim_t{4} << 30; // bytes
constexpr UINT MAX_CONTROLS = 4096;               // more than there are control ids
constexpr int PRIVATE_DESCRIPTOR = 100;           // and above: where no library looks for its own

void limit(int nResource, rlim_t uValue)
{
    const rlimit value{uValue, uValue};
    ::setrlimit(static_cast<__rlimit_resource_t>(nResource), &value);
}

// Sees to it that nothing is left of this process, and of no other one if memory runs out.
void confine(double dDeadline, long nParent, std::size_t uLibraries)
{
    if (const int nFile = ::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC); nFile >= 0) {
        [[maybe_unused]] const auto ignored = ::write(nFile, "1000", 4);
        ::close(nFile);
    }
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_CPU, static_cast<rlim_t>(dDeadline / 1000.0 * static_cast<double>(uLibraries)) + 2);
    if (LIMITS_ADDRESSES)
        limit(RLIMIT_AS, MAX_ADDRESSES);
    ::prctl(PR_SET_DUMPABLE, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != nParent)
        ::_exit(EXIT_FAILURE); // it died before the line above
}

// The way back. It is moved from PROBE_CHANNEL to where a library that closes or reuses descriptors is not
// likely to hit it.
class CChannel
{
  public:
    CChannel() : m_nDescriptor(::fcntl(PROBE_CHANNEL, F_DUPFD_CLOEXEC, PRIVATE_DESCRIPTOR))
    {
        ::close(PROBE_CHANNEL);
    }

    void send(const CProbeMessage& message) const
    {
        const std::string sLine = probeLine(message);
        for (std::size_t uSent = 0; uSent < sLine.size();) {
            const ssize_t nWritten = ::write(m_nDescriptor, sLine.data() + uSent, sLine.size() - uSent);
            if (nWritten < 0 && errno == EINTR)
                continue;
            if (nWritten <= 0)
                ::_exit(PROBE_EXIT_CHANNEL_LOST);
            uSent += static_cast<std::size_t>(nWritten);
        }
    }
    void begin(std::size_t uNumber) const { send({EProbeMessage::begin, uNumber, EProbeStep::loading, {}}); }
    void step(EProbeStep eStep) const { send({EProbeMessage::step, 0, eStep, {}}); }
    void result(const CProbeResult& result) const
    {
        send({EProbeMessage::result, 0, EProbeStep::loading, result});
    }
    void end() const { send({EProbeMessage::end, 0, EProbeStep::loading, {}}); }

  private:
    int m_nDescriptor;
};

// The examination of one library: what the host will do with it, one step after the other.
class CExamination
{
  public:
    CExamination(const CChannel& channel, const char* pFile) : m_channel(channel), m_pFile(pFile) {}

    const CProbeResult& run();

  private:
    bool load();
    bool ask();
    bool create();
    bool read();
    bool destroy();
    void unload();
    bool fail(EProbeStatus eStatus, const std::string& sReason);
    bool failThrown(EProbeStep eStep, const std::string& sWhat);

    const CChannel& m_channel;
    const char* m_pFile;
    std::unique_ptr<CPlugInLibrary> m_pLibrary;
    CPlugIn* m_pPlugIn = nullptr;
    CProbeResult m_result;
};

const CProbeResult& CExamination::run()
{
    m_result.m_eStatus = EProbeStatus::good;
    if (!load())
        return m_result;
    if (ask() && create()) {
        read();
        destroy();
    }
    unload();
    return m_result;
}

// The first thing that went wrong is what counts.
bool CExamination::fail(EProbeStatus eStatus, const std::string& sReason)
{
    if (m_result.m_eStatus == EProbeStatus::good) {
        m_result.m_eStatus = eStatus;
        m_result.m_sReason = sReason;
    }
    return false;
}

bool CExamination::failThrown(EProbeStep eStep, const std::string& sWhat)
{
    return fail(EProbeStatus::crashed,
                std::string("threw an exception ") + probeStepText(eStep) + ": " + sWhat);
}

bool CExamination::load()
{
    std::string sError;
    m_pLibrary = CPlugInLibrary::load(m_pFile, sError);
    return m_pLibrary || fail(EProbeStatus::loadFailed, sError);
}

bool CExamination::ask()
{
    m_channel.step(EProbeStep::asking);
    if (!m_pLibrary->getAPIVersion())
        return fail(EProbeStatus::noVersion, "has no getAPIVersion()");
    UINT uVersion = 0;
    if (const auto thrown = thrownBy([&] { uVersion = m_pLibrary->getAPIVersion()(); }))
        return failThrown(EProbeStep::asking, *thrown);
    m_result.m_nVersion = static_cast<int>(uVersion & INT_MAX);
    return uVersion == PLUGIN_API_VERSION ||
           fail(EProbeStatus::wrongVersion,
                formatted("was built for contract version %u; it takes version %u", uVersion,
                          PLUGIN_API_VERSION));
}

bool CExamination::create()
{
    m_channel.step(EProbeStep::creating);
    if (!m_pLibrary->createObject())
        return fail(EProbeStatus::noCreateObject, "has no createObject()");
    if (const auto thrown = thrownBy([&] { m_pPlugIn = m_pLibrary->createObject()(); }))
        return failThrown(EProbeStep::creating, *thrown);
    return m_pPlugIn || fail(EProbeStatus::nullObject, "returned null from createObject()");
}

bool CExamination::read()
{
    m_channel.step(EProbeStep::reading);
    if (!m_pPlugIn->m_PlugInName)
        return fail(EProbeStatus::badObject, "has a null m_PlugInName");
    m_result.m_sPlugInName.assign(m_pPlugIn->m_PlugInName,
                                  ::strnlen(m_pPlugIn->m_PlugInName, MAX_PROBE_TEXT));
    for (UINT uCount = 0; m_pPlugIn->m_UIControlList.getAt(uCount); ++uCount) {
        if (uCount == MAX_CONTROLS)
            return fail(EProbeStatus::badObject, "has a control list without an end");
    }
    const auto thrown = thrownBy([&] {
        CUserDSPFilter filter;
        filter.attachPlugIn(m_pPlugIn);
        filter.createControls();
        filter.detachPlugIn();
    });
    return !thrown || failThrown(EProbeStep::reading, *thrown);
}

bool CExamination::destroy()
{
    m_channel.step(EProbeStep::deleting);
    const auto thrown = thrownBy([&] { delete m_pPlugIn; });
    return !thrown || failThrown(EProbeStep::deleting, *thrown);
}

void CExamination::unload()
{
    m_channel.step(EProbeStep::unloading);
    m_pLibrary->unload();
}

void examineAll(std::span<char*> files)
{
    const CChannel channel;
    for (std::size_t i = 0; i < files.size(); ++i) {
        channel.begin(i);
        channel.result(CExamination(channel, files[i]).run());
    }
    channel.end();
}

} // namespace

int runProbe(std::span<char*> arguments)
{
    constexpr std::size_t FIRST_LIBRARY = 3;
    const bool bEnough = arguments.size() > FIRST_LIBRARY;
    const auto deadline = bEnough ? parseNumber(arguments[1]) : std::nullopt;
    const auto parent = bEnough ? parseNumber(arguments[2]) : std::nullopt;
    if (!deadline || !parent) {
        std::fputs("velmora-probe examines plug-in libraries for velmora-cli and the workbench, which start "
                   "it themselves.\n",
                   stderr);
        return 2;
    }
    const auto files = arguments.subspan(FIRST_LIBRARY);
    confine(*deadline, static_cast<long>(*parent), files.size());
    examineAll(files);
    return EXIT_SUCCESS;
}

} // namespace velmora

int main(int nArguments, char** pArguments)
{
    // At once: nothing that a library registered for the end is to run.
    ::_exit(velmora::runProbe({pArguments, static_cast<std::size_t>(nArguments)}));
}
