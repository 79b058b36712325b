#include "cli/command_devices.h"

#include "audio/audio_devices.h"
#include "audio/portaudio_system.h"
#include "base/text.h"
#include "cli/command_context.h"
#include "cli/json_writer.h"
#include "cli/text_table.h"
#include "host/settings.h"
#include "midi/midi_devices.h"

#include <filesystem>
#include <initializer_list>
#include <span>
#include <utility>

namespace velmora::cli {

namespace {

// An audio device as it is listed.
struct CListedDevice
{
    CAudioDeviceInfo m_info;
    std::vector<double> m_rates; // Hz
    bool m_bDefaultInput = false;
    bool m_bDefaultOutput = false;
    bool m_bChosenInput = false;
    bool m_bChosenOutput = false;
    bool m_bChosenDUT = false;
};

struct CDeviceList
{
    std::vector<CListedDevice> m_audio;
    std::vector<CMidiDeviceInfo> m_midiIn;
    std::vector<CMidiDeviceInfo> m_midiOut;
};

// What the settings name; nothing if there is no settings file, for a list is no reason to make one.
CAudioDeviceChoice namesInSettings(const CCommandContext& context)
{
    const auto file = context.userFolder() / "socket.log";
    std::error_code error;
    CSettings settings;
    std::string sError;
    if (!std::filesystem::is_regular_file(file, error))
        return {};
    (void)settings.load(file, context.userFolder(), sError); // what was read counts
    return {settings.inputDeviceName(), settings.outputDeviceName(), settings.DUTDeviceName(),
            settings.sampleRate()};
}

// A device is marked as chosen only where it is the one that the settings name, not where it stands in for
// it.
std::vector<CListedDevice> audioDevices(IAudioSystem& system, const CAudioDeviceChoice& named)
{
    CAudioDevices devices(system);
    CAudioDeviceChoice choice = named;
    (void)devices.choose(choice); // none there is no fault of the list
    std::vector<CListedDevice> list;
    for (int nDevice = 0; const CAudioDeviceInfo& info : devices.devices()) {
        list.push_back({info,
                        devices.supportedRates(info.m_nMaxInputChannels > 0 ? nDevice : -1,
                                               info.m_nMaxOutputChannels > 0 ? nDevice : -1),
                        nDevice == system.defaultInputDevice(), nDevice == system.defaultOutputDevice(),
                        nDevice == devices.inputDevice() && choice.m_sInputName == named.m_sInputName,
                        nDevice == devices.outputDevice() && choice.m_sOutputName == named.m_sOutputName,
                        nDevice == devices.dutDevice()});
        ++nDevice;
    }
    return list;
}

void writeMidi(CJsonWriter& json, std::string_view sKey, const std::vector<CMidiDeviceInfo>& devices)
{
    json.key(sKey);
    json.beginArray();
    for (const CMidiDeviceInfo& device : devices) {
        json.beginObject();
        json.member("name", device.m_sName);
        json.member("api", device.m_sApi);
        json.endObject();
    }
    json.endArray();
}

std::string asJson(const CDeviceList& list)
{
    CJsonWriter json;
    json.beginObject();
    json.key("audio");
    json.beginArray();
    for (int nDevice = 0; const CListedDevice& device : list.m_audio) {
        const CAudioDeviceInfo& info = device.m_info;
        json.beginObject();
        json.member("index", nDevice);
        json.member("name", info.m_sName);
        json.member("hostApi", info.m_sHostApi);
        json.member("inputChannels", info.m_nMaxInputChannels);
        json.member("outputChannels", info.m_nMaxOutputChannels);
        json.member("sampleRate", info.m_dDefaultSampleRate);
        json.member("lowInputLatency", info.m_dDefaultLowInputLatency);
        json.member("lowOutputLatency", info.m_dDefaultLowOutputLatency);
        json.member("highInputLatency", info.m_dDefaultHighInputLatency);
        json.member("highOutputLatency", info.m_dDefaultHighOutputLatency);
        json.member("defaultInput", device.m_bDefaultInput);
        json.member("defaultOutput", device.m_bDefaultOutput);
        json.key("rates");
        json.array(std::span<const double>(device.m_rates));
        json.member("chosenInput", device.m_bChosenInput);
        json.member("chosenOutput", device.m_bChosenOutput);
        json.member("chosenDUT", device.m_bChosenDUT);
        json.endObject();
        ++nDevice;
    }
    json.endArray();
    writeMidi(json, "midiIn", list.m_midiIn);
    writeMidi(json, "midiOut", list.m_midiOut);
    json.endObject();
    return json.text();
}

std::string midiText(const char* pHeading, const std::vector<CMidiDeviceInfo>& devices)
{
    if (devices.empty())
        return std::string("\nNo ") + pHeading + ".\n";
    CTextTable table({pHeading, "System"});
    for (const CMidiDeviceInfo& device : devices)
        table.addRow({device.m_sName, device.m_sApi});
    return "\n" + table.text();
}

// "in, out" of two marks and their names.
std::string marks(std::initializer_list<std::pair<bool, const char*>> given)
{
    std::string sMarks;
    for (const auto& [bSet, pName] : given)
        if (bSet)
            sMarks += (sMarks.empty() ? "" : ", ") + std::string(pName);
    return sMarks;
}

std::string ratesText(const std::vector<double>& rates)
{
    std::string sRates;
    for (const double dRate : rates)
        sRates += (sRates.empty() ? "" : " ") + shortestDecimal(dRate / 1000.0);
    return sRates;
}

std::string asText(const CDeviceList& list)
{
    CTextTable table({">No.", "Audio device", "System", ">In", ">Out", ">Hz", ">In ms", ">Out ms", "Default",
                      "In the settings", "Rates in kHz"});
    for (int nDevice = 0; const CListedDevice& device : list.m_audio) {
        const CAudioDeviceInfo& info = device.m_info;
        table.addRow({std::to_string(nDevice), info.m_sName, info.m_sHostApi,
                      std::to_string(info.m_nMaxInputChannels), std::to_string(info.m_nMaxOutputChannels),
                      shortestDecimal(info.m_dDefaultSampleRate),
                      formatted("%.1f", 1000.0 * info.m_dDefaultLowInputLatency),
                      formatted("%.1f", 1000.0 * info.m_dDefaultLowOutputLatency),
                      marks({{device.m_bDefaultInput, "in"}, {device.m_bDefaultOutput, "out"}}),
                      marks({{device.m_bChosenInput, "in"},
                             {device.m_bChosenOutput, "out"},
                             {device.m_bChosenDUT, "under test"}}),
                      ratesText(device.m_rates)});
        ++nDevice;
    }
    const std::string sAudio = table.empty() ? "No audio devices.\n" : table.text();
    return sAudio + midiText("MIDI inputs", list.m_midiIn) + midiText("MIDI outputs", list.m_midiOut);
}

} // namespace

int runDevices(CCommandContext& context)
{
    CDeviceList list;
    CPortAudioSystem audio;
    if (const int nError = audio.initialize()) {
        const int nStatus = context.fail("Could not initialize the Port Audio System.");
        context.showReason(audio.errorText(nError) + ".");
        return nStatus;
    }
    context.announce("Testing the rates of the audio devices");
    list.m_audio = audioDevices(audio, namesInSettings(context));
    audio.terminate();
    const CRtMidiSystem midi;
    list.m_midiIn = midi.inputs();
    list.m_midiOut = midi.outputs();
    context.m_sResult = context.json() ? asJson(list) : asText(list);
    return EXIT_DONE;
}

} // namespace velmora::cli
