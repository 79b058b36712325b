#include "cli/command_devices.h"

#include "audio/portaudio_system.h"
#include "base/text.h"
#include "cli/command_context.h"
#include "cli/json_writer.h"
#include "cli/text_table.h"
#include "midi/midi_devices.h"

namespace velmora::cli {

namespace {

struct CDeviceList
{
    std::vector<CAudioDeviceInfo> m_audio;
    int m_nDefaultInput = -1;
    int m_nDefaultOutput = -1;
    std::vector<CMidiDeviceInfo> m_midiIn;
    std::vector<CMidiDeviceInfo> m_midiOut;
};

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
    for (int nDevice = 0; const CAudioDeviceInfo& device : list.m_audio) {
        json.beginObject();
        json.member("index", nDevice);
        json.member("name", device.m_sName);
        json.member("hostApi", device.m_sHostApi);
        json.member("inputChannels", device.m_nMaxInputChannels);
        json.member("outputChannels", device.m_nMaxOutputChannels);
        json.member("sampleRate", device.m_dDefaultSampleRate);
        json.member("lowInputLatency", device.m_dDefaultLowInputLatency);
        json.member("lowOutputLatency", device.m_dDefaultLowOutputLatency);
        json.member("highInputLatency", device.m_dDefaultHighInputLatency);
        json.member("highOutputLatency", device.m_dDefaultHighOutputLatency);
        json.member("defaultInput", nDevice == list.m_nDefaultInput);
        json.member("defaultOutput", nDevice == list.m_nDefaultOutput);
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

std::string asText(const CDeviceList& list)
{
    CTextTable table(
        {">No.", "Audio device", "System", ">In", ">Out", ">Hz", ">In ms", ">Out ms", "Default"});
    for (int nDevice = 0; const CAudioDeviceInfo& device : list.m_audio) {
        const bool bIn = nDevice == list.m_nDefaultInput;
        const bool bOut = nDevice == list.m_nDefaultOutput;
        table.addRow({std::to_string(nDevice), device.m_sName, device.m_sHostApi,
                      std::to_string(device.m_nMaxInputChannels), std::to_string(device.m_nMaxOutputChannels),
                      shortestDecimal(device.m_dDefaultSampleRate),
                      formatted("%.1f", 1000.0 * device.m_dDefaultLowInputLatency),
                      formatted("%.1f", 1000.0 * device.m_dDefaultLowOutputLatency),
                      bIn && bOut ? "in, out"
                      : bIn       ? "in"
                      : bOut      ? "out"
                                  : ""});
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
    if (!audio.initialize())
        return context.fail("Could not initialize the Port Audio System.");
    list.m_audio = audio.devices();
    list.m_nDefaultInput = audio.defaultInputDevice();
    list.m_nDefaultOutput = audio.defaultOutputDevice();
    audio.terminate();
    const CRtMidiSystem midi;
    list.m_midiIn = midi.inputs();
    list.m_midiOut = midi.outputs();
    context.m_sResult = context.json() ? asJson(list) : asText(list);
    return EXIT_DONE;
}

} // namespace velmora::cli
