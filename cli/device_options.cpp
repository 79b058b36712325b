#include "cli/device_options.h"

#include "base/text.h"
#include "document/tonbox_doc.h"

#include <set>

namespace velmora::cli {

namespace {

constexpr std::string_view NO_DEVICE = "None";

const char* directionOf(bool bInput)
{
    return bInput ? "input" : "output";
}

int channelsOf(const CAudioDeviceInfo& device, bool bInput)
{
    return bInput ? device.m_nMaxInputChannels : device.m_nMaxOutputChannels;
}

std::string noDeviceText(bool bInput)
{
    return formatted("There is no audio %s device. Connect a sound card or start the audio server, such as "
                     "JACK, and see what \"velmora-cli devices\" lists.",
                     directionOf(bInput));
}

// Puts the device that the option names into sName, if it is given; false if there is no such device.
bool nameGivenDevice(CCommandContext& context, const CAudioDevices& devices, bool bInput, std::string& sName)
{
    const auto given = context.line().text(bInput ? "--input-device" : "--output-device");
    if (!given)
        return true;
    std::string sError;
    const auto found = deviceNamed(devices.devices(), *given, bInput, sError);
    if (found)
        sName = *found;
    else
        context.dialogs().showMessage(sError);
    return found.has_value();
}

bool chooseDevices(CCommandContext& context, CAudioDevices& devices, CAudioDeviceChoice& choice, bool bInput)
{
    const CAudioDeviceChoice wanted = choice;
    (void)devices.choose(choice); // what is missing is told below, if it is needed
    if (!devices.isAvailable()) {
        context.dialogs().showMessage(
            "Could not initialize the Port Audio System. If an audio server such as "
            "JACK runs, it does not answer; restart it.");
        return false;
    }
    CAudioDeviceChoice named = wanted;
    for (const bool bSide : {false, true}) {
        if (bSide && !bInput)
            continue;
        if ((bSide ? devices.inputDevice() : devices.outputDevice()) < 0) {
            context.dialogs().showMessage(noDeviceText(bSide));
            return false;
        }
        if (!nameGivenDevice(context, devices, bSide, bSide ? named.m_sInputName : named.m_sOutputName))
            return false;
    }
    choice = named;
    (void)devices.choose(choice);
    for (const bool bSide : {false, true}) {
        const std::string& sNamed = bSide ? named.m_sInputName : named.m_sOutputName;
        const std::string& sChosen = bSide ? choice.m_sInputName : choice.m_sOutputName;
        if ((!bSide || bInput) && sNamed != sChosen && sNamed != NO_DEVICE && !sNamed.empty())
            context.dialogs().showMessage(
                formatted("The %s device \"%s\" of the settings is not there; \"%s\" "
                          "is used.",
                          directionOf(bSide), sNamed.c_str(), sChosen.c_str()));
    }
    return true;
}

std::string ratesText(const std::vector<double>& rates)
{
    std::string sText;
    for (const double dRate : rates)
        sText += (sText.empty() ? "" : ", ") + shortestDecimal(dRate);
    return sText;
}

// A rate that was asked for must be one of the devices'; one of the settings that is not gives way to the
// output device's own.
bool chooseRate(CCommandContext& context, const CAudioDevices& devices, bool bInput, double& dRate)
{
    const int nInput = bInput ? devices.inputDevice() : -1;
    const int nOutput = devices.outputDevice();
    dRate = context.line().number("--rate", dRate);
    if (devices.isRateSupported(nInput, nOutput, dRate))
        return true;
    if (!context.line().has("--rate")) {
        dRate = devices.device(nOutput)->m_dDefaultSampleRate;
        return true;
    }
    const std::string sFault = rateFault(devices, bInput, dRate);
    if (!sFault.empty())
        context.dialogs().showMessage(sFault);
    return sFault.empty();
}

} // namespace

std::string rateFault(const CAudioDevices& devices, bool bInput, double dRate)
{
    const int nInput = bInput ? devices.inputDevice() : -1;
    const std::vector<double> rates = devices.supportedRates(nInput, devices.outputDevice());
    if (rates.empty() || devices.isRateSupported(nInput, devices.outputDevice(), dRate))
        return {};
    const CAudioDeviceInfo* pDevice = devices.device(devices.outputDevice());
    return formatted("The device \"%s\" does not take %s Hz. It takes: %s Hz.",
                     pDevice ? pDevice->m_sName.c_str() : "", shortestDecimal(dRate).c_str(),
                     ratesText(rates).c_str());
}

bool applyDeviceOptions(CCommandContext& context, CTonboxDoc& document, bool bInput)
{
    CSettings& settings = document.settings();
    CAudioDevices& devices = document.audioDevices();
    CAudioDeviceChoice choice{settings.inputDeviceName(), settings.outputDeviceName(),
                              settings.DUTDeviceName(), settings.sampleRate()};
    double dRate = choice.m_dSampleRate;
    if (!chooseDevices(context, devices, choice, bInput) || !chooseRate(context, devices, bInput, dRate))
        return false;
    settings.setInputDeviceName(choice.m_sInputName);
    settings.setOutputDeviceName(choice.m_sOutputName);
    settings.setSampleRate(dRate);
    std::string sError;
    const auto frames = context.line().text("--frames");
    if (!frames || settings.set(settingLine("m_uFramesPerBuffer"), *frames, sError))
        return true;
    context.dialogs().showMessage(sError);
    return false;
}

std::optional<std::string> deviceNamed(std::span<const CAudioDeviceInfo> devices, std::string_view sName,
                                       bool bInput, std::string& sError)
{
    std::set<std::string> names;
    std::set<std::string> matching;
    for (const CAudioDeviceInfo& device : devices) {
        if (channelsOf(device, bInput) <= 0)
            continue;
        if (device.m_sName == sName)
            return device.m_sName;
        names.insert(device.m_sName);
        if (equalsIgnoreCase(std::string_view(device.m_sName).substr(0, sName.size()), sName))
            matching.insert(device.m_sName);
    }
    if (matching.size() == 1)
        return *matching.begin();
    sError =
        formatted(matching.empty() ? "There is no audio %s device whose name begins with \"%s\". There are:"
                                   : "There are several audio %s devices whose names begin with \"%s\":",
                  directionOf(bInput), std::string(sName).c_str());
    for (const std::string& sDevice : matching.empty() ? names : matching)
        sError += "\n  " + sDevice;
    return std::nullopt;
}

} // namespace velmora::cli
