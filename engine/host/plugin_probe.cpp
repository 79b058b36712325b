#include "host/plugin_probe.h"

#include "base/platform_folders.h"
#include "base/text.h"
#include "host/plugin_probe_process.h"
#include "host/probe_protocol.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>

namespace velmora {

namespace {

namespace fs = std::filesystem;
using CClock = std::chrono::steady_clock;

constexpr const char* HELPER_NAME = "velmora-probe";
constexpr std::chrono::milliseconds START_UP{2000}; // what the helper itself may take to begin
constexpr std::size_t MAX_BATCH_BYTES = 65536;      // of paths on one command line

fs::path findHelper()
{
    const fs::path program = programFolder();
    std::error_code error;
    for (const auto& folder : {program, program.parent_path() / "libexec" / "velmora"}) {
        if (fs::exists(folder / HELPER_NAME, error))
            return folder / HELPER_NAME;
    }
    return program / HELPER_NAME;
}

std::string endingText(const std::optional<CPlugInProbeProcess::CEnding>& ending, const std::string& sWhen)
{
    if (!ending)
        return "ended the process " + sWhen;
    if (!ending->m_bSignal)
        return ending->m_nCode == PROBE_EXIT_CHANNEL_LOST
                   ? "closed descriptors that were not its own " + sWhen
                   : formatted("called exit(%d) %s", ending->m_nCode, sWhen.c_str());
    const char* pSignal = ::sigdescr_np(ending->m_nCode);
    return formatted("crashed %s (signal %d, %s)", sWhen.c_str(), ending->m_nCode,
                     pSignal ? pSignal : "unknown");
}

// One helper at work on a batch of libraries, up to its end or the first library that it does not survive.
class CBatchRun
{
  public:
    CBatchRun(const fs::path& helper, std::chrono::milliseconds deadline, std::span<CProbeResult> results)
        : m_process(helper, arguments(deadline, results)), m_deadline(deadline), m_results(results)
    {
    }

    // How many results are final now, from the first on; at least one.
    std::size_t run();

  private:
    static std::vector<std::string> arguments(std::chrono::milliseconds deadline,
                                              std::span<const CProbeResult> results);
    bool accept(const CProbeMessage& message);
    void blame(EProbeStatus eStatus, const std::string& sReason);
    std::size_t giveUp(const std::string& sReason);
    std::size_t concludeDeath();
    std::size_t concludeTimeOut();
    std::size_t concludeNonsense();

    CPlugInProbeProcess m_process;
    std::chrono::milliseconds m_deadline;
    CClock::time_point m_limit = CClock::now() + START_UP + m_deadline;
    std::span<CProbeResult> m_results;
    std::size_t m_uDone = 0;
    bool m_bBegun = false; // the library behind those done is being examined
    EProbeStep m_eStep = EProbeStep::loading;
};

std::vector<std::string> CBatchRun::arguments(std::chrono::milliseconds deadline,
                                              std::span<const CProbeResult> results)
{
    std::vector<std::string> texts{std::to_string(deadline.count()), std::to_string(::getpid())};
    for (const auto& result : results) {
        std::error_code error;
        const fs::path absolute = fs::absolute(result.m_file, error);
        texts.push_back((error ? result.m_file : absolute).string());
    }
    return texts;
}

std::size_t CBatchRun::run()
{
    if (!m_process.startError().empty())
        return giveUp("could not be examined: the helper program cannot be started: " +
                      m_process.startError());
    while (m_uDone < m_results.size()) {
        std::string sLine;
        const auto eRead = m_process.readLine(sLine, m_limit);
        if (eRead == CPlugInProbeProcess::ERead::ended)
            return concludeDeath();
        if (eRead == CPlugInProbeProcess::ERead::timedOut)
            return concludeTimeOut();
        const auto message = parseProbeLine(sLine);
        if (!message || !accept(*message))
            return concludeNonsense();
    }
    return m_uDone;
}

// Takes a message over; false if it is not one that may come now.
bool CBatchRun::accept(const CProbeMessage& message)
{
    switch (message.m_eKind) {
    case EProbeMessage::begin:
        if (m_bBegun || message.m_uNumber != m_uDone)
            return false;
        m_bBegun = true;
        m_eStep = EProbeStep::loading;
        m_limit = CClock::now() + m_deadline;
        return true;
    case EProbeMessage::step:
        if (!m_bBegun || message.m_eStep <= m_eStep)
            return false;
        m_eStep = message.m_eStep;
        return true;
    case EProbeMessage::result: {
        if (!m_bBegun)
            return false;
        fs::path file = std::move(m_results[m_uDone].m_file);
        m_results[m_uDone] = message.m_result;
        m_results[m_uDone].m_file = std::move(file);
        m_bBegun = false;
        ++m_uDone;
        m_limit = CClock::now() + m_deadline;
        return true;
    }
    case EProbeMessage::end:
        return false;
    }
    return false;
}

void CBatchRun::blame(EProbeStatus eStatus, const std::string& sReason)
{
    m_results[m_uDone].m_eStatus = eStatus;
    m_results[m_uDone].m_sReason = sReason;
    ++m_uDone;
}

// The helper itself does not work: no use to try it on the rest.
std::size_t CBatchRun::giveUp(const std::string& sReason)
{
    while (m_uDone < m_results.size())
        blame(EProbeStatus::notExamined, sReason);
    return m_uDone;
}

std::size_t CBatchRun::concludeDeath()
{
    if (m_uDone > 0)
        return m_uDone; // the suspect gets its second chance, as the first of the next run
    if (!m_bBegun)
        return giveUp("could not be examined: the helper program ended at once");
    blame(EProbeStatus::crashed, endingText(m_process.ending(), probeStepText(m_eStep)));
    return m_uDone;
}

std::size_t CBatchRun::concludeTimeOut()
{
    const double dSeconds = std::chrono::duration<double>(m_deadline).count();
    if (m_bBegun)
        blame(EProbeStatus::timedOut,
              formatted("did not answer within %.1f s %s", dSeconds, probeStepText(m_eStep)));
    return m_uDone > 0 ? m_uDone : giveUp("could not be examined: the helper program does not answer");
}

std::size_t CBatchRun::concludeNonsense()
{
    if (m_bBegun)
        blame(EProbeStatus::crashed, std::string("disturbed the probe ") + probeStepText(m_eStep));
    return m_uDone > 0 ? m_uDone
                       : giveUp("could not be examined: the helper program speaks another language");
}

// As many from the first on as one command line takes.
std::span<CProbeResult> firstBatch(std::span<CProbeResult> results)
{
    std::size_t uBytes = 0;
    std::size_t uCount = 0;
    while (uCount < results.size() && (uCount == 0 || uBytes < MAX_BATCH_BYTES))
        uBytes += results[uCount++].m_file.native().size() + 1;
    return results.first(uCount);
}

} // namespace

CPlugInProbe::CPlugInProbe(std::chrono::milliseconds deadline, fs::path helper)
    : m_deadline(std::max(deadline, std::chrono::milliseconds(1))),
      m_helper(helper.empty() ? findHelper() : std::move(helper))
{
}

std::vector<CProbeResult> CPlugInProbe::probe(std::span<const fs::path> files) const
{
    std::vector<CProbeResult> results(files.size());
    for (std::size_t i = 0; i < files.size(); ++i)
        results[i].m_file = files[i];
    for (std::span<CProbeResult> rest = results; !rest.empty();)
        rest = rest.subspan(CBatchRun(m_helper, m_deadline, firstBatch(rest)).run());
    return results;
}

} // namespace velmora
