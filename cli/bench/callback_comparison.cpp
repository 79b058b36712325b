#include "cli/bench/callback_comparison.h"

#include "audio/channel_mix.h"
#include "audio/filter_call.h"
#include "base/platform_denormals.h"
#include "cli/bench/offline_comparison.h"

namespace velmora::cli {

namespace {

constexpr int SAMPLES = 2 * static_cast<int>(CCallbackComparison::FRAMES);
constexpr int CALLS = 10000; // timed at once

class CHandingOnPlugIn : public CPlugIn
{
  public:
    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override
    {
        for (UINT u = 0; u < uOut; ++u)
            pOut[u] = pIn[u < uIn ? u : 0];
        return true;
    }
};

// Out of line, so that no caller knows what it calls.
[[gnu::noinline]] std::unique_ptr<CPlugIn> makePlugIn()
{
    return std::make_unique<CHandingOnPlugIn>();
}

// Of processor time, for one call; the median over the rounds, after one that does not count.
double nanoseconds(const std::function<void()>& calls, int nRounds)
{
    calls();
    std::vector<double> rounds;
    for (int nRound = 0; nRound < nRounds; ++nRound)
        rounds.push_back(1e9 * processorSecondsOf(calls) / CALLS);
    return medianOf(std::move(rounds));
}

} // namespace

CCallbackComparison::CCallbackComparison() : m_pPlugIn(makePlugIn()), m_in(SAMPLES, 0.25F), m_out(SAMPLES)
{
    for (CUserDSPFilter* pFilter : {&m_filter, &m_other}) {
        pFilter->attachPlugIn(m_pPlugIn.get());
        pFilter->setBufferSize(FRAMES);
    }
    m_engine.setFilter(&m_filter);
    m_engine.capture().setRunning(true);
    m_engine.statistics().reset(BENCH_SAMPLE_RATE);
    m_transport.setState(TRANSPORT_PLAY);
}

CCallbackComparison::~CCallbackComparison() = default;

void CCallbackComparison::callEngine()
{
    using clock = CCallbackStatistics::clock;
    for (int i = 0; i < CALLS; ++i) {
        const auto start = clock::now();
        m_engine.processPortAudioFile(m_in.data(), m_out.data(), SAMPLES, false, nullptr);
        m_engine.statistics().add(FRAMES, 0, clock::now() - start, m_engine.filterTime());
    }
}

void CCallbackComparison::callBare()
{
    CPlugIn& plugIn = *m_pPlugIn;
    for (int i = 0; i < CALLS; ++i)
        for (int n = 0; n < SAMPLES; n += 2)
            plugIn.processAudioFrame(m_in.data() + n, m_out.data() + n, 2, 2);
}

// A fade is begun anew as soon as it is over; closing the gate for it is no part of a callback, but is left
// in: it is one of seven calls.
void CCallbackComparison::callEngineFading()
{
    for (int i = 0; i < CALLS; ++i) {
        if (i % 6 == 0) {
            const CClosedGate gate(m_engine.gate());
            m_engine.fadeTo(m_engine.filter() == &m_filter ? &m_other : &m_filter);
        }
        m_engine.processPortAudioFile(m_in.data(), m_out.data(), SAMPLES, false, nullptr);
    }
}

CCallbackComparison::CTimes CCallbackComparison::times(int nRounds, const std::function<void()>& nextRound)
{
    const CComparison result = compareInTurns(
        nRounds, [this] { callEngine(); }, [this] { callBare(); }, nextRound);
    constexpr double SCALE = 1e9 / CALLS;
    return {SCALE * result.m_dHostSeconds, SCALE * result.m_dBareSeconds,
            nanoseconds([this] { callEngineFading(); }, nRounds), result.m_dRatio};
}

std::vector<CBenchFigure> CCallbackComparison::stages(int nRounds)
{
    std::vector<float> mono(FRAMES);
    const CEngineBuffer buffer{
        .m_in = m_in, .m_pOut = m_out.data(), .m_pMono = mono.data(), .m_uMode = CHANNEL_MODE_STEREO_STEREO};
    CRunGate gate;
    CLevelMeters meters;
    meters.prepare(BENCH_SAMPLE_RATE);
    CCaptureExchange capture;
    CAudioNotices notices;
    COutputGuard guard(notices);
    CCallbackStatistics statistics;
    statistics.reset(BENCH_SAMPLE_RATE);

    std::vector<CBenchFigure> figures;
    const auto add = [&](const char* pName, const auto& step) {
        const double dTime = nanoseconds(
            [&step] {
                for (int i = 0; i < CALLS; ++i) {
                    step();
                    __asm__ volatile("" ::: "memory"); // each call is made anew
                }
            },
            nRounds);
        figures.push_back({pName, dTime, "ns"});
    };
    add("run gate", [&] { const CGatePassage passage(gate); });
    add("denormals off and on", [] { const CDenormalsOff denormals; });
    add("input gain", [&] { mixInput(buffer, 0.999999F); });
    std::ranges::fill(m_in, 0.25F);
    add("input meters", [&] { meters.addFrames(METER_INPUT_LEFT, m_in.data(), FRAMES); });
    add("filter", [&] { callFilter(&m_filter, buffer); });
    add("clock of the filter", [] {
        static_cast<void>(CCallbackStatistics::clock::now());
        static_cast<void>(CCallbackStatistics::clock::now());
    });
    add("output gain and mix", [&] { mixOutput(buffer, 0.999999F); });
    std::ranges::fill(m_out, 0.25F);
    add("output meters", [&] { meters.addFrames(METER_OUTPUT_LEFT, m_out.data(), FRAMES); });
    add("capture", [&] { capture.add(m_in.data(), m_out.data(), SAMPLES, 2, false, false); });
    add("output guard", [&] { guard.apply(buffer.out(), true); });
    add("statistics, with their clock", [&] {
        const auto start = CCallbackStatistics::clock::now();
        statistics.add(FRAMES, 0, CCallbackStatistics::clock::now() - start, {});
    });
    return figures;
}

} // namespace velmora::cli
