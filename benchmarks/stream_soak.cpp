// Plays a file over and over through an audio server without hardware, swaps the filter every 50 ms among
// three plug-ins and two modules while controls move, and judges all that comes out.
//
//     stream_soak [--seconds N]        600 unless given
//
// The exit status is 1 if a buffer was torn, if the stream stopped, if memory grew, or if our own callback
// needs more than half of the period at p99.99. Built with a sanitizer it leaves time and memory unjudged.

#include "benchmarks/resident_memory.h"
#include "host/dsp_filter.h"
#include "real/jack_server.h"
#include "real/signature_module.h"
#include "real/streaming_document.h"
#include "real/swap_listener.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace velmora;
using namespace velmora::test;
using clock = std::chrono::steady_clock;

constexpr int RATE = 48000; // Hz
constexpr int PERIOD = 64;  // frames
constexpr double PERIOD_MICROSECONDS = 1e6 * PERIOD / RATE;
constexpr auto SWAP_INTERVAL = std::chrono::milliseconds(50);
constexpr auto CONTROL_INTERVAL = std::chrono::milliseconds(5);
constexpr unsigned FADE_FRAMES = RATE / 100;
constexpr std::size_t FILE_FRAMES = std::size_t{10} * RATE; // a whole number of buffers
constexpr int DRY = 6;                                      // the file's signature
constexpr int MODULE_SIGNATURE = 3;                         // of the first module
constexpr long MAX_GROWTH_KB = 1024;                        // from the first tenth to the end

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr bool JUDGES_MACHINE = false;
#else
constexpr bool JUDGES_MACHINE = true;
#endif

// Round trips in buffers, 1 being the one that follows the command.
class CRoundTrips
{
  public:
    void add(std::uint64_t uBefore, std::uint64_t uHeardIn)
    {
        const std::uint64_t uBuffers = uHeardIn + 1 > uBefore ? uHeardIn + 1 - uBefore : 0;
        ++m_counts[std::min<std::size_t>(uBuffers, m_counts.size() - 1)];
        ++m_uCount;
    }

    void print(const char* pName) const
    {
        if (m_uCount == 0)
            return;
        std::printf("%s: min %zu, median %zu, p99 %zu, max %zu buffers (%llu measured)\n", pName,
                    quantile(0.0), quantile(0.5), quantile(0.99), quantile(1.0),
                    static_cast<unsigned long long>(m_uCount));
    }

  private:
    [[nodiscard]] std::size_t quantile(double dFraction) const
    {
        const auto uWanted = std::max<std::uint64_t>(
            1, static_cast<std::uint64_t>(std::ceil(dFraction * static_cast<double>(m_uCount))));
        std::uint64_t uSum = 0;
        for (std::size_t i = 0; i < m_counts.size(); ++i)
            if ((uSum += m_counts[i]) >= uWanted)
                return i;
        return m_counts.size();
    }

    std::vector<std::uint64_t> m_counts = std::vector<std::uint64_t>(4096);
    std::uint64_t m_uCount = 0;
};

// One filter to swap to.
struct CTarget
{
    void (*m_pSwap)(CPlugInLoader& loader);
    int m_nSignature;
    bool m_bHasControl;
};

void select(CPlugInLoader& loader, int nPlugIn)
{
    loader.setSelectedPlugIn(nPlugIn);
    loader.selectPlugIn();
}

int s_nFirstModule = 0; // index of the first of ours in the document's list

void selectModule(CPlugInLoader& loader, int nModule)
{
    loader.setSelectedModule(s_nFirstModule + nModule);
    loader.selectModule();
}

// The third plug-in is loaded from its library each time, with all that belongs to a load.
constexpr CTarget TARGETS[] = {
    {[](CPlugInLoader& loader) { select(loader, 0); }, 0, true},
    {[](CPlugInLoader& loader) { selectModule(loader, 0); }, MODULE_SIGNATURE, false},
    {[](CPlugInLoader& loader) { select(loader, 1); }, 1, true},
    {[](CPlugInLoader& loader) { selectModule(loader, 1); }, MODULE_SIGNATURE + 1, false},
    {[](CPlugInLoader& loader) {
         loader.loadPlugin(std::filesystem::path(SIGNATURE_FOLDER) / "SignaturePlanes.so", true);
     },
     2, true},
};

class CSoak
{
  public:
    explicit CSoak(double dSeconds) : m_dSeconds(dSeconds) {}

    // Whether all was well.
    bool run()
    {
        prepare();
        const auto start = clock::now();
        auto nextReport = start;
        double dElapsed = 0.0;
        for (; dElapsed < m_dSeconds && m_violations.empty(); ++m_nSwaps) {
            swap(TARGETS[m_nSwaps % std::size(TARGETS)], start + (m_nSwaps + 1) * SWAP_INTERVAL);
            dElapsed = std::chrono::duration<double>(clock::now() - start).count();
            m_document.dialogs().m_notes.clear();
            if (m_nSettledMemory == 0 && dElapsed > m_dSeconds / 10.0)
                m_nSettledMemory = residentMemory();
            if (clock::now() >= nextReport) {
                std::fprintf(stderr, "%4.0f s, %d swaps, %ld kB\n", dElapsed, m_nSwaps, residentMemory());
                nextReport += std::chrono::seconds(30);
            }
        }
        judge();
        return m_violations.empty();
    }

  private:
    void prepare()
    {
        m_pPlugIns = &m_document->plugInLoader();
        m_pPlugIns->scanPlugIns(SIGNATURE_FOLDER);
        if (m_pPlugIns->plugIns().size() != 3)
            throw std::runtime_error(std::string("no plug-ins in ") + SIGNATURE_FOLDER);
        s_nFirstModule = m_document->modules().count(); // behind the built-in ones
        for (const int n : {0, 1})
            m_document->modules().add(
                std::make_unique<CSignatureModule>(CSwapWatch::signature(MODULE_SIGNATURE + n)));
        std::vector<float> file(2 * FILE_FRAMES);
        for (std::size_t i = 0; i < file.size(); i += 2)
            file[i] = CSwapWatch::signature(DRY);
        m_document->transport().setWaveFile(m_document.waveFile("dry.wav", file, 2));
        m_document->wave().requestLoop();
        m_document->transport().onPlay();
        if (!hears(DRY))
            throw std::runtime_error("the stream does not start: " + m_document->transport().reason());
        m_uSilentBefore = m_listener.heard().m_swaps.m_uSilent;
    }

    [[nodiscard]] bool hears(int nSignature)
    {
        return m_listener.waitUntil(
            [&](const CSwapListener::CHeard& heard) { return heard.m_swaps.m_nCurrent == nSignature; });
    }

    [[nodiscard]] std::uint64_t buffersHeard() { return m_listener.heard().m_swaps.m_uBuffers; }

    // Swaps, and moves the control until the next swap is due.
    void swap(const CTarget& target, clock::time_point due)
    {
        const std::uint64_t uBefore = buffersHeard();
        target.m_pSwap(*m_pPlugIns);
        m_swapReturns.add(uBefore, buffersHeard());
        if (!hears(target.m_nSignature)) {
            m_violations.push_back("swap " + std::to_string(m_nSwaps) + " is not heard");
            return;
        }
        m_swapStarts.add(uBefore, m_listener.heard().m_swaps.m_uBegan);
        do {
            m_document->transport().onTimer();
            if (target.m_bHasControl)
                moveControl();
            std::this_thread::sleep_for(CONTROL_INTERVAL);
        } while (clock::now() < due && m_violations.empty());
    }

    void moveControl()
    {
        m_nPosition = (m_nPosition + 37) % 256 + 1;
        const float fExpected = static_cast<float>(m_nPosition) / 256.0F;
        const std::uint64_t uBefore = buffersHeard();
        m_document->currentFilter()->setControlPosition(0, m_nPosition);
        if (m_listener.waitUntil([&](const CSwapListener::CHeard& heard) {
                return std::abs(heard.m_fRight - fExpected) < 1e-4F;
            }))
            m_control.add(uBefore, m_listener.heard().m_uRightChanged);
        else
            m_violations.push_back("a control's move to " + std::to_string(fExpected) + " is not heard");
    }

    void require(bool bHolds, const std::string& sViolation)
    {
        if (!bHolds)
            m_violations.push_back(sViolation);
    }

    void judge()
    {
        const bool bPlays = m_document->transport().state() == TRANSPORT_PLAY;
        const std::uint64_t uRounds = m_document->wave().framesPlayed() / FILE_FRAMES;
        const long nMemory = residentMemory();
        const CSwapWatch::CCounts swaps = m_listener.heard().m_swaps;
        const int nServerXruns = m_listener.serverXruns();
        m_document->transport().close();
        CCallbackStatistics& statistics = m_document->audioEngine().statistics();
        const CCallbackStatistics::CFigures figures = statistics.figures();
        const double dP9999 = statistics.percentileMicroseconds(0.9999);
        const std::uint64_t uSilent = swaps.m_uSilent - m_uSilentBefore;

        std::printf("%d swaps in %.0f s at %d frames and %d Hz, a period of %.1f us\n", m_nSwaps, m_dSeconds,
                    PERIOD, RATE, PERIOD_MICROSECONDS);
        std::printf("buffers: %llu heard, %llu whole, %llu in %llu fades, %llu silent at %llu file ends, "
                    "%llu torn, %llu steps\n",
                    count(swaps.m_uBuffers), count(swaps.m_uWhole), count(swaps.m_uFading),
                    count(swaps.m_uFades), count(uSilent), count(uRounds), count(swaps.m_uTorn),
                    count(swaps.m_uSteps));
        std::printf(
            "own callback: p50 %.1f, p99 %.1f, p99.99 %.1f, max %.1f us (%.1f, %.1f, %.1f, %.1f %% of "
            "the period)\n",
            statistics.percentileMicroseconds(0.5), statistics.percentileMicroseconds(0.99), dP9999,
            figures.m_dPeakLoad * PERIOD_MICROSECONDS, share(statistics.percentileMicroseconds(0.5)),
            share(statistics.percentileMicroseconds(0.99)), share(dP9999), 100.0 * figures.m_dPeakLoad);
        std::printf("gaps: %llu underruns of the host, %d late periods of the server, %llu own overruns\n",
                    count(figures.m_uHostUnderruns), nServerXruns, count(figures.m_uOverruns));
        m_swapStarts.print("swap, from the command to its first buffer");
        m_swapReturns.print("swap, from the command to its return");
        m_control.print("control, from the move to its first buffer");
        std::printf("memory: %ld kB after a tenth of the time, %ld kB at the end\n", m_nSettledMemory,
                    nMemory);

        require(bPlays, "the stream has stopped");
        require(swaps.m_uTorn == 0,
                "torn buffers, the first is number " + std::to_string(swaps.m_uFirstTorn));
        require(swaps.m_uSteps == 0, "swaps without a fade");
        require(uSilent <= uRounds + 1, "silent buffers beside those at the file's ends");
        require(m_document.dialogs().m_messages.empty(), "messages were shown");
        if (JUDGES_MACHINE) {
            require(dP9999 <= PERIOD_MICROSECONDS / 2.0,
                    "our own callback needs more than half of the period");
            require(nMemory - m_nSettledMemory <= MAX_GROWTH_KB, "memory grows");
        }
        for (const std::string& sViolation : m_violations)
            std::printf("VIOLATION: %s\n", sViolation.c_str());
    }

    static unsigned long long count(std::uint64_t uCount) { return uCount; }
    static double share(double dMicroseconds) { return 100.0 * dMicroseconds / PERIOD_MICROSECONDS; }

    double m_dSeconds;
    CJackServer m_server{RATE, PERIOD};
    CSwapListener m_listener{FADE_FRAMES};
    CStreamingDocument m_document{CStreamingDocument::COptions()};
    CPlugInLoader* m_pPlugIns = nullptr;
    std::uint64_t m_uSilentBefore = 0;
    int m_nSwaps = 0;
    int m_nPosition = 0;
    long m_nSettledMemory = 0;
    CRoundTrips m_swapStarts;
    CRoundTrips m_swapReturns;
    CRoundTrips m_control;
    std::vector<std::string> m_violations;
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    double dSeconds = 600.0;
    if (nArguments == 3 && std::strcmp(ppArguments[1], "--seconds") == 0)
        dSeconds = std::max(1.0, std::atof(ppArguments[2]));
    else if (nArguments != 1) {
        std::fputs("Usage: stream_soak [--seconds N]\n", stderr);
        return 2;
    }
    velmora::test::isolateAudioServers();
    try {
        return CSoak(dSeconds).run() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "stream_soak: %s\n", error.what());
        return 1;
    }
}
