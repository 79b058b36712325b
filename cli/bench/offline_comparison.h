#pragma once

#include "audio/audio_engine.h"
#include "audio/sidechain.h"
#include "audio/transport_state.h"
#include "host/user_dsp_filter.h"
#include "plugin.h"

#include <array>
#include <filesystem>
#include <functional>
#include <span>

namespace velmora::cli {

// A state-variable low-pass (Chamberlin's) for each of two channels, callable on each process path: as
// little work as a real plug-in has.
class CBenchPlugIn : public CPlugIn
{
  public:
    bool prepareForPlay() override;
    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override;
    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT uOut, UINT uSize) override;
    bool processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames) override;

  private:
    std::array<std::array<float, 2>, 2> m_state{};
};

// A process path: how the host is told to take it, and how a bare loop takes it for a stereo block of
// uItems interleaved samples, at most BENCH_BLOCK_ITEMS.
struct CBenchPath
{
    const char* m_pName;
    bool m_bBuffers;
    bool m_bPlanes;
    void (*m_pCall)(CPlugIn&, float* pIn, float* pOut, UINT uItems);
};

inline constexpr int BENCH_SAMPLE_RATE = 44100;
inline constexpr int BENCH_BLOCK_ITEMS = 8192;

[[nodiscard]] std::span<const CBenchPath> benchPaths();

// The engine with the plug-in as its filter, as the document sets it up.
struct CBenchHost
{
    explicit CBenchHost(const CBenchPath& path);

    CTransportState m_transport;
    CSidechain m_sidechain;
    CAudioEngine m_engine{m_transport, m_sidechain};
    CBenchPlugIn m_plugIn;
    CUserDSPFilter m_filter;
};

struct CComparison
{
    double m_dHostWallSeconds; // medians over the rounds
    double m_dHostSeconds;     // of processor time
    double m_dBareSeconds;
    double m_dRatio; // median of host to bare in neighbouring turns
};

// Lets both sides take turns, after one turn of each that does not count, so that a machine whose speed
// drifts favours neither. nextRound comes after each round.
[[nodiscard]] CComparison compareInTurns(
    int nRounds, const std::function<void()>& host, const std::function<void()>& bare,
    const std::function<void()>& nextRound = [] {});

// Two ways through the same file: the host's offline processing, and a bare loop that reads the file, calls
// the same plug-in and writes the result.
class COfflineComparison
{
  public:
    // Writes dSeconds of stereo noise, 16-bit, into the folder. Throws std::runtime_error with a full
    // sentence, as compare() does, if a file cannot be read or written.
    COfflineComparison(std::filesystem::path folder, double dSeconds);

    [[nodiscard]] CComparison compare(
        const CBenchPath& path, int nRounds, const std::function<void()>& nextRound = [] {}) const;

  private:
    void processBare(const CBenchPath& path, CPlugIn& plugIn) const;

    std::filesystem::path m_inFile;
    std::filesystem::path m_outFile;
};

} // namespace velmora::cli
