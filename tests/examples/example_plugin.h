#pragma once

#include "host/user_dsp_filter.h"
#include "plugin.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velmora::test {

// The examples that are built and tested, in the order of their index.
inline constexpr const char* EXAMPLE_NAMES[] = {"Gain", "ResonantFilter", "StereoDelay", "Compressor",
                                                "PolySynth"};

// One example plug-in, loaded from its built library and driven as the host drives it: start values
// written when it is loaded, rate and channels written ahead of prepareForPlay(), and the process path
// that its flags ask for.
class CExamplePlugIn
{
  public:
    explicit CExamplePlugIn(const std::string& sName);
    ~CExamplePlugIn();
    CExamplePlugIn(const CExamplePlugIn&) = delete;
    CExamplePlugIn& operator=(const CExamplePlugIn&) = delete;

    CPlugIn* operator->() { return m_pPlugIn; }

    // Another object out of the same library, as the library makes it.
    [[nodiscard]] std::unique_ptr<CPlugIn> createAnother() const
    {
        return std::unique_ptr<CPlugIn>(m_pCreateObject());
    }

    [[nodiscard]] std::vector<CUICtrl*> controls() const;
    [[nodiscard]] CUICtrl& control(UINT uId) const;

    // Writes a control's variable and tells the plug-in, like a moved control.
    void set(UINT uId, double dValue);
    [[nodiscard]] double value(UINT uId) const;

    // The meter variable of a control.
    [[nodiscard]] float meter(UINT uId) const { return *control(uId).m_pCurrentMeterValue; }

    // Writes the controls' values of a preset.
    void selectPreset(int nPreset);

    void prepare(int nRate, UINT uInputChannels = 2, UINT uOutputChannels = 2);

    // Processes interleaved samples in calls of uBlockFrames. The sidechain is mono, one sample for
    // each frame, or empty.
    std::vector<float> process(const std::vector<float>& input, const std::vector<float>& sidechain = {},
                               UINT uBlockFrames = 64, bool bSidechainEnabled = true);

    // The same for one call with at most BLOCK frames, without allocating.
    void processBlock(float* pInput, float* pOutput, UINT uFrames, float* pSidechain, bool bSidechainEnabled);

    // Runs that many frames of silence and returns the output.
    std::vector<float> processSilence(size_t uFrames);

    static constexpr UINT BLOCK = 512;

  private:
    void* m_hLibrary = nullptr;
    createObjectFunction m_pCreateObject = nullptr;
    CPlugIn* m_pPlugIn = nullptr;
    UINT m_uInputChannels = 2;
    UINT m_uOutputChannels = 2;
    CUserDSPFilter m_filter;
};

// Every second sample of interleaved stereo, from channel 0 or 1 on.
[[nodiscard]] std::vector<float> channelOf(const std::vector<float>& stereo, size_t uChannel);

// Interleaved stereo with the same samples in both channels.
[[nodiscard]] std::vector<float> bothChannels(const std::vector<float>& mono);

[[nodiscard]] std::vector<float> sine(double dHz, double dAmplitude, int nRate, size_t uFrames);

// Amplitude of the component at a frequency, measured over the whole of the samples with a Hann window.
[[nodiscard]] double amplitudeAt(std::span<const float> samples, double dHz, int nRate);

[[nodiscard]] double decibels(double dLinear);
[[nodiscard]] double peakOf(std::span<const float> samples);
[[nodiscard]] bool allFinite(std::span<const float> samples);

} // namespace velmora::test
