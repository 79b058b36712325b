#pragma once

namespace velmora {

// How audio is routed through the filter: into it mono or stereo, out of it mono or stereo, and in the
// upper three modes the dry input is added to the output.
enum EChannelMode : unsigned
{
    CHANNEL_MODE_MONO_MONO = 0,
    CHANNEL_MODE_MONO_STEREO = 1,
    CHANNEL_MODE_STEREO_STEREO = 2,
    CHANNEL_MODE_AUX_MONO_MONO = 3,
    CHANNEL_MODE_AUX_MONO_STEREO = 4,
    CHANNEL_MODE_AUX_STEREO_STEREO = 5,
};

// Whether the left channel of a stereo output is copied to the right one. [any]
[[nodiscard]] constexpr bool copiesLeftToRight(unsigned uMode, int nChannels)
{
    return nChannels == 2 && uMode % 3 == CHANNEL_MODE_MONO_MONO;
}

// Whether filter and dry signal get 0.5 left + 0.5 right of a stereo source. [any]
[[nodiscard]] constexpr bool usesMonoMix(unsigned uMode, int nChannels)
{
    return nChannels == 2 && uMode % 3 != CHANNEL_MODE_STEREO_STEREO;
}

// Whether the dry signal is added to the output. [any]
[[nodiscard]] constexpr bool addsDrySignal(unsigned uMode)
{
    return uMode >= CHANNEL_MODE_AUX_MONO_MONO;
}

// The mode that a plug-in is called with. A mono source has no stereo to offer: modes 1 and 2 become 0, modes
// 4 and 5 become 3. [any]
[[nodiscard]] constexpr unsigned plugInMode(unsigned uMode, int nChannels)
{
    return nChannels == 1 ? uMode / 3 * 3 : uMode;
}

} // namespace velmora
