#include "audio/audio_devices.h"

#include <algorithm>
#include <iterator>

namespace velmora {

namespace {

constexpr const char* NO_DEVICE = "None";
constexpr const char* NOT_INITIALIZED = "Could not initialize the Port Audio System.";
constexpr int CHANNELS_TO_TEST = 2;
constexpr double USUAL_RATES[] = {8000.0,  11025.0, 16000.0, 22050.0,  32000.0, 44100.0,
                                  48000.0, 88200.0, 96000.0, 176400.0, 192000.0};

using deviceList = std::vector<CAudioDeviceInfo>;

template <typename TPredicate>
int lastNamed(const deviceList& devices, std::string_view sName, TPredicate isWanted)
{
    for (int nDevice = static_cast<int>(devices.size()) - 1; nDevice >= 0; --nDevice) {
        const auto& device = devices[static_cast<std::size_t>(nDevice)];
        if (device.m_sName == sName && isWanted(device))
            return nDevice;
    }
    return -1;
}

bool hasInput(const CAudioDeviceInfo& device)
{
    return device.m_nMaxInputChannels > 0;
}

bool hasOutput(const CAudioDeviceInfo& device)
{
    return device.m_nMaxOutputChannels > 0;
}

int outputNamed(const deviceList& devices, std::string_view sName)
{
    const int nOutputOnly = lastNamed(devices, sName, [](const CAudioDeviceInfo& device) {
        return hasOutput(device) && !hasInput(device);
    });
    return nOutputOnly >= 0 ? nOutputOnly : lastNamed(devices, sName, hasOutput);
}

// The device, or the default one if there is none; sName becomes the name of what is taken then.
int orDefault(int nDevice, int nDefault, const deviceList& devices, std::string& sName)
{
    if (nDevice >= 0)
        return nDevice;
    const bool bExists = nDefault >= 0 && nDefault < static_cast<int>(devices.size());
    sName = bExists ? devices[static_cast<std::size_t>(nDefault)].m_sName : NO_DEVICE;
    return bExists ? nDefault : -1;
}

const char* messageFor(bool bInput, bool bOutput)
{
    static constexpr const char* MESSAGES[2][2] = {
        {"No audio input or output device found!", "No audio input device found!"},
        {"No audio output device found!", ""},
    };
    return MESSAGES[bInput][bOutput];
}

std::optional<CAudioStreamSide> sideOf(const CAudioDeviceInfo* pDevice, int nDevice, int nChannels)
{
    return pDevice ? std::optional(CAudioStreamSide{.m_nDevice = nDevice, .m_nChannels = nChannels})
                   : std::nullopt;
}

} // namespace

double streamLatency(const CAudioDeviceInfo& device, bool bInput, bool bLow, unsigned uMultiplier)
{
    const double dLow = bInput ? device.m_dDefaultLowInputLatency : device.m_dDefaultLowOutputLatency;
    const double dHigh = bInput ? device.m_dDefaultHighInputLatency : device.m_dDefaultHighOutputLatency;
    return (bLow ? dLow : dHigh) * uMultiplier;
}

CAudioDevices::~CAudioDevices()
{
    if (m_bInitialized)
        m_system.terminate();
}

std::string CAudioDevices::choose(CAudioDeviceChoice& choice)
{
    m_nInput = m_nOutput = m_nDUT = -1;
    if (!m_bInitialized && m_system.initialize() != 0)
        return NOT_INITIALIZED;
    m_bInitialized = true;
    return match(choice);
}

std::string CAudioDevices::rescan(CAudioDeviceChoice& choice)
{
    if (!m_bInitialized)
        return choose(choice);
    return m_system.rescan() == 0 ? match(choice) : NOT_INITIALIZED;
}

std::string CAudioDevices::match(CAudioDeviceChoice& choice)
{
    m_devices = m_system.devices();
    m_nInput = orDefault(lastNamed(m_devices, choice.m_sInputName, hasInput), m_system.defaultInputDevice(),
                         m_devices, choice.m_sInputName);
    m_nOutput = orDefault(outputNamed(m_devices, choice.m_sOutputName), m_system.defaultOutputDevice(),
                          m_devices, choice.m_sOutputName);
    m_nDUT = outputNamed(m_devices, choice.m_sDUTName);
    if (m_nDUT < 0)
        choice.m_sDUTName = NO_DEVICE;

    const CAudioDeviceInfo* const pInput = device(m_nInput);
    if (pInput &&
        !m_system.isFormatSupported(sideOf(pInput, m_nInput, CHANNELS_TO_TEST), {}, choice.m_dSampleRate))
        choice.m_dSampleRate = pInput->m_dDefaultSampleRate;
    return messageFor(m_nInput >= 0, m_nOutput >= 0);
}

const CAudioDeviceInfo* CAudioDevices::device(int nDevice) const
{
    const auto uDevice = static_cast<std::size_t>(nDevice);
    return uDevice < m_devices.size() ? &m_devices[uDevice] : nullptr;
}

bool CAudioDevices::isRateSupported(int nInput, int nOutput, double dRate) const
{
    const CAudioDeviceInfo* const pInput = device(nInput);
    const CAudioDeviceInfo* const pOutput = device(nOutput);
    if ((!pInput && !pOutput) || m_system.initialize() != 0)
        return false;
    const bool bSupported = m_system.isFormatSupported(
        sideOf(pInput, nInput, pInput ? pInput->m_nMaxInputChannels : 0),
        sideOf(pOutput, nOutput, pOutput ? pOutput->m_nMaxOutputChannels : 0), dRate);
    m_system.terminate();
    return bSupported;
}

std::vector<double> CAudioDevices::supportedRates(int nInput, int nOutput) const
{
    std::vector<double> rates;
    std::ranges::copy_if(USUAL_RATES, std::back_inserter(rates),
                         [&](double dRate) { return isRateSupported(nInput, nOutput, dRate); });
    return rates;
}

std::span<const double> CAudioDevices::usualRates()
{
    return USUAL_RATES;
}

} // namespace velmora
