#pragma once

#include "audio/audio_engine.h"
#include "audio/engine_buffer.h"
#include "cli/bench/bench_figure.h"
#include "host/user_dsp_filter.h"

#include <functional>
#include <memory>
#include <vector>

namespace velmora::cli {

// What the engine makes of one callback of a stream: 64 frames of stereo through a plug-in that hands each
// frame on and does no more, with the analyzer's capture running; beside the bare calls of that plug-in.
// There is no audio system and no file in it, and the data are in the caches.
class CCallbackComparison
{
  public:
    static constexpr std::size_t FRAMES = 64;

    CCallbackComparison();
    ~CCallbackComparison();

    CCallbackComparison(const CCallbackComparison&) = delete;
    CCallbackComparison& operator=(const CCallbackComparison&) = delete;

    // Nanoseconds of processor time, each the median over nRounds.
    struct CTimes
    {
        double m_dEngine;
        double m_dBare;
        double m_dFading; // the engine while one such plug-in fades into another
        double m_dRatio;  // engine to bare, in neighbouring turns
    };
    [[nodiscard]] CTimes times(
        int nRounds, const std::function<void()>& nextRound = [] {});

    // Nanoseconds that the steps of a callback take one by one, in their order; their sum is about that of
    // the whole.
    [[nodiscard]] std::vector<CBenchFigure> stages(int nRounds);

  private:
    void callEngine();
    void callBare();
    void callEngineFading();

    CTransportState m_transport;
    CSidechain m_sidechain;
    CAudioEngine m_engine{m_transport, m_sidechain};
    std::unique_ptr<CPlugIn> m_pPlugIn;
    CUserDSPFilter m_filter;
    CUserDSPFilter m_other;
    std::vector<float> m_in;
    std::vector<float> m_out;
};

} // namespace velmora::cli
