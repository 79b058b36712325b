#include "audio/stream_callbacks.h"

#include "audio/audio_engine.h"
#include "audio/sidechain.h"
#include "audio/wave_stream.h"
#include "base/platform_fault_handler.h"

#include <algorithm>
#include <thread>

namespace velmora {

namespace {

using clock = CCallbackStatistics::clock;

constexpr std::size_t INPUT_CHANNELS = 2;
constexpr std::chrono::milliseconds POLL_INTERVAL{1};

// Part of a buffer, no longer than the context's frames. Null pointers stay null.
struct CPiece
{
    const float* m_pIn;
    float* m_pOut;
    std::size_t m_uFrames;
};

void silence(float* pOut, std::size_t uSamples)
{
    if (pOut)
        std::fill_n(pOut, uSamples, 0.0F);
}

EAudioCallbackResult playFile(CStreamContext& context, const CPiece& piece)
{
    const int nFrames = static_cast<int>(piece.m_uFrames);
    const CWaveStream::CRead read = context.m_wave.read(nFrames);
    context.m_sidechain.readBlock(nFrames);
    if (read.m_bEnd) {
        context.m_wave.finish();
        return AUDIO_COMPLETE;
    }
    const auto uItems = static_cast<std::size_t>(read.m_nItems);
    if (piece.m_pOut)
        silence(piece.m_pOut + uItems, piece.m_uFrames * context.m_uChannels - uItems);
    context.m_engine.processPortAudioFile(read.m_pSamples, piece.m_pOut, read.m_nItems, false, nullptr);
    if (read.m_bWrapped)
        context.m_engine.capture().rewind();
    return AUDIO_CONTINUE;
}

EAudioCallbackResult passInput(CStreamContext& context, const CPiece& piece)
{
    const std::size_t uSamples = piece.m_uFrames * INPUT_CHANNELS;
    if (!piece.m_pIn) {
        silence(piece.m_pOut, uSamples);
        return AUDIO_CONTINUE;
    }
    std::copy_n(piece.m_pIn, uSamples, context.m_input.data());
    context.m_engine.processPortAudioIn(context.m_input.data(), piece.m_pOut, static_cast<int>(uSamples));
    return AUDIO_CONTINUE;
}

EAudioCallbackResult playOscillator(CStreamContext& context, const CPiece& piece)
{
    const std::size_t uSamples = piece.m_uFrames * INPUT_CHANNELS;
    std::fill_n(context.m_input.data(), uSamples, 0.0F);
    context.m_engine.processPortAudioOSC(context.m_input.data(), piece.m_pOut, static_cast<int>(uSamples));
    return AUDIO_CONTINUE;
}

EAudioCallbackResult playMeasurement(CStreamContext& context, const CPiece& piece)
{
    context.m_engine.processDUT(piece.m_pOut, static_cast<int>(piece.m_uFrames * context.m_uChannels));
    return AUDIO_CONTINUE;
}

// Does the work piece by piece. The engine's time in the filter is added up in filterTime, if that is wanted.
template <auto work>
EAudioCallbackResult cutUp(CStreamContext& context, const float* pIn, float* pOut, std::size_t uFrames,
                           clock::duration* pFilterTime)
{
    for (std::size_t uDone = 0; uDone < uFrames;) {
        const std::size_t uPiece = std::min<std::size_t>(context.m_uFrames, uFrames - uDone);
        float* const pOutHere = pOut ? pOut + uDone * context.m_uChannels : nullptr;
        const CPiece piece{pIn ? pIn + uDone * INPUT_CHANNELS : nullptr, pOutHere, uPiece};
        if (work(context, piece) == AUDIO_COMPLETE) {
            silence(pOutHere, (uFrames - uDone) * context.m_uChannels);
            return AUDIO_COMPLETE;
        }
        if (pFilterTime)
            *pFilterTime += context.m_engine.filterTime();
        uDone += uPiece;
    }
    return AUDIO_CONTINUE;
}

// A callback of a stream that the engine works for, with its time taken.
template <auto work>
EAudioCallbackResult timed(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus, void* pContext)
{
    const clock::time_point begin = clock::now();
    CStreamContext& context = *static_cast<CStreamContext*>(pContext);
    if (!context.enter()) {
        silence(pOut, std::size_t{uFrames} * context.m_uChannels);
        return AUDIO_COMPLETE;
    }
    clock::duration filterTime{};
    const EAudioCallbackResult eResult = cutUp<work>(context, pIn, pOut, uFrames, &filterTime);
    context.m_engine.statistics().add(uFrames, uStatus, clock::now() - begin, filterTime);
    context.leave();
    return eResult;
}

} // namespace

bool CStreamContext::enter() noexcept
{
    watchThread(EThreadRole::audio);
    m_nInside.fetch_add(1);
    if (m_bAlive.load())
        return true;
    leave();
    return false;
}

bool CStreamContext::end()
{
    m_bAlive.store(false);
    const auto deadline = std::chrono::steady_clock::now() + CRunGate::PATIENCE;
    while (m_nInside.load() > 0) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(POLL_INTERVAL);
    }
    return true;
}

EAudioCallbackResult inputCallback(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus,
                                   void* pContext)
{
    return timed<passInput>(pIn, pOut, uFrames, pIn ? uStatus : uStatus | AUDIO_INPUT_LOST, pContext);
}

EAudioCallbackResult waveCallback(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus,
                                  void* pContext)
{
    return timed<playFile>(pIn, pOut, uFrames, uStatus, pContext);
}

EAudioCallbackResult oscCallback(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus,
                                 void* pContext)
{
    return timed<playOscillator>(pIn, pOut, uFrames, uStatus, pContext);
}

// Runs beside the input stream, whose callback alone counts.
EAudioCallbackResult dutCallback(const float*, float* pOut, unsigned uFrames, unsigned, void* pContext)
{
    CStreamContext& context = *static_cast<CStreamContext*>(pContext);
    if (!context.enter()) {
        silence(pOut, std::size_t{uFrames} * context.m_uChannels);
        return AUDIO_COMPLETE;
    }
    const EAudioCallbackResult eResult = cutUp<playMeasurement>(context, nullptr, pOut, uFrames, nullptr);
    context.leave();
    return eResult;
}

} // namespace velmora
