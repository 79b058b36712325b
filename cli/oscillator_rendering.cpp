#include "cli/oscillator_rendering.h"

#include "audio/sound_file.h"
#include "base/platform_denormals.h"
#include "base/progress.h"
#include "base/safe_file.h"
#include "host/dsp_filter.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace velmora::cli {

namespace {

constexpr int WAV_FLOAT = 0x010006; // libsndfile's word for a WAV file of 32-bit floats
constexpr int BLOCK_FRAMES = 4096;
constexpr long long WAV_BYTES = 0xFFFFF000; // what 32 bits can count, less the headers

} // namespace

long long COscillatorRendering::mostFrames(int nChannels)
{
    return WAV_BYTES / static_cast<long long>(sizeof(float)) / nChannels;
}

bool COscillatorRendering::renderInto(const std::filesystem::path& target, CDSPFilter& source,
                                      const CFormat& format, IProgress& progress)
{
    std::error_code error;
    if (std::filesystem::is_directory(target, error))
        return fail(target.string() + " is a folder; give the name of a file.");
    if (!progress.report(0.0)) // from here on an interrupt is a cancellation
        return fail("Rendering was cancelled; nothing was written.");
    CSafeFile unfinished(target);
    CSoundFile file;
    std::string sReason;
    if (!file.openForWriting(unfinished.path(), {0, format.m_nChannels, format.m_nSampleRate, WAV_FLOAT},
                             sReason)) {
        // The reason is about the file that the user named.
        const std::string sUnfinished = unfinished.path().string();
        if (const auto uAt = sReason.find(sUnfinished); uAt != std::string::npos)
            sReason.replace(uAt, sUnfinished.size(), target.string());
        return fail(sReason);
    }
    if (!runLoop(source, format, file, progress))
        return false;
    if (!file.close())
        return fail("The file could not be written completely; the disk may be full. What stood there "
                    "before is unchanged.");
    return unfinished.commit() || fail(unfinished.error());
}

bool COscillatorRendering::runLoop(CDSPFilter& source, const CFormat& format, CSoundFile& file,
                                   IProgress& progress)
{
    const CDenormalsOff denormals; // as in a stream, for the same samples
    source.m_nSampleRate = format.m_nSampleRate;
    source.m_nChannels = format.m_nChannels;
    source.prepareForPlay();
    const auto uChannels = static_cast<UINT>(format.m_nChannels);
    std::vector<float> block(BLOCK_FRAMES * uChannels);
    for (long long nDone = 0; nDone < format.m_nFrames;) {
        if (!progress.report(static_cast<double>(nDone) / static_cast<double>(format.m_nFrames)))
            return fail("Rendering was cancelled; nothing was written.");
        const long long nFrames = std::min<long long>(BLOCK_FRAMES, format.m_nFrames - nDone);
        const auto uSamples = static_cast<UINT>(nFrames) * uChannels;
        source.processInterleaved(block.data(), block.data(), uChannels, uSamples, 0);
        m_output.add({block.data(), uSamples});
        for (UINT u = 0; u < uSamples; ++u)
            m_dSumOfSquares += static_cast<double>(block[u]) * block[u];
        m_nSamples += uSamples;
        if (file.writeFloats(block.data(), uSamples) != uSamples)
            return fail("The disk is full or was taken away; nothing was changed.");
        nDone += nFrames;
    }
    return progress.report(1.0) || fail("Rendering was cancelled; nothing was written.");
}

double COscillatorRendering::rms() const
{
    return m_nSamples > 0 ? std::sqrt(m_dSumOfSquares / static_cast<double>(m_nSamples)) : 0.0;
}

bool COscillatorRendering::fail(const std::string& sReason)
{
    m_sReason = sReason;
    return false;
}

} // namespace velmora::cli
