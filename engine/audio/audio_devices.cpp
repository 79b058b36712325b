#include "audio/audio_devices.h"

namespace velmora {

namespace {

constexpr const char* NO_DEVICE = "None";
constexpr int CHANNELS_TO_TEST = 2;

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

} // namespace

CAudioDevices::~CAudioDevices()
{
    if (m_bInitialized)
        m_system.terminate();
}

std::string CAudioDevices::choose(CAudioDeviceChoice& choice)
{
    m_nInput = m_nOutput = m_nDUT = -1;
    if (!m_bInitialized && !m_system.initialize())
        return "Could not initialize the Port Audio System.";
    m_bInitialized = true;

    const deviceList devices = m_system.devices();
    m_nInput = orDefault(lastNamed(devices, choice.m_sInputName, hasInput), m_system.defaultInputDevice(),
                         devices, choice.m_sInputName);
    m_nOutput = orDefault(outputNamed(devices, choice.m_sOutputName), m_system.defaultOutputDevice(), devices,
                          choice.m_sOutputName);
    m_nDUT = outputNamed(devices, choice.m_sDUTName);
    if (m_nDUT < 0)
        choice.m_sDUTName = NO_DEVICE;

    if (m_nInput >= 0 && !m_system.isInputFormatSupported(m_nInput, CHANNELS_TO_TEST, choice.m_dSampleRate))
        choice.m_dSampleRate = devices[static_cast<std::size_t>(m_nInput)].m_dDefaultSampleRate;
    return messageFor(m_nInput >= 0, m_nOutput >= 0);
}

} // namespace velmora
