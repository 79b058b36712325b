#include "audio/portaudio_system.h"

#include "base/platform_sound.h"

#include <portaudio.h>

namespace velmora {

namespace {

std::string textOrEmpty(const char* pText)
{
    return pText ? pText : "";
}

int indexOrNone(PaDeviceIndex nDevice)
{
    return nDevice < 0 ? -1 : nDevice;
}

CAudioDeviceInfo infoOf(const PaDeviceInfo& device)
{
    const PaHostApiInfo* pHostApi = ::Pa_GetHostApiInfo(device.hostApi);
    CAudioDeviceInfo info;
    info.m_sName = textOrEmpty(device.name);
    info.m_sHostApi = textOrEmpty(pHostApi ? pHostApi->name : nullptr);
    info.m_nMaxInputChannels = device.maxInputChannels;
    info.m_nMaxOutputChannels = device.maxOutputChannels;
    info.m_dDefaultSampleRate = device.defaultSampleRate;
    info.m_dDefaultLowInputLatency = device.defaultLowInputLatency;
    info.m_dDefaultLowOutputLatency = device.defaultLowOutputLatency;
    info.m_dDefaultHighInputLatency = device.defaultHighInputLatency;
    info.m_dDefaultHighOutputLatency = device.defaultHighOutputLatency;
    return info;
}

} // namespace

bool CPortAudioSystem::initialize()
{
    silenceSoundLibraries();
    return ::Pa_Initialize() == paNoError;
}

void CPortAudioSystem::terminate()
{
    ::Pa_Terminate();
}

std::vector<CAudioDeviceInfo> CPortAudioSystem::devices() const
{
    std::vector<CAudioDeviceInfo> list;
    const PaDeviceIndex nCount = ::Pa_GetDeviceCount();
    for (PaDeviceIndex nDevice = 0; nDevice < nCount; ++nDevice) {
        const PaDeviceInfo* pDevice = ::Pa_GetDeviceInfo(nDevice);
        list.push_back(pDevice ? infoOf(*pDevice) : CAudioDeviceInfo());
    }
    return list;
}

int CPortAudioSystem::defaultInputDevice() const
{
    return indexOrNone(::Pa_GetDefaultInputDevice());
}

int CPortAudioSystem::defaultOutputDevice() const
{
    return indexOrNone(::Pa_GetDefaultOutputDevice());
}

bool CPortAudioSystem::isInputFormatSupported(int nDevice, int nChannels, double dSampleRate) const
{
    PaStreamParameters input = {};
    input.device = nDevice;
    input.channelCount = nChannels;
    input.sampleFormat = paInt16;
    return ::Pa_IsFormatSupported(&input, nullptr, dSampleRate) == paFormatIsSupported;
}

} // namespace velmora
