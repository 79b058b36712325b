#include "widgets/shell/audio_commands.h"

#include "base/user_dialogs.h"
#include "document/tonbox_doc.h"
#include "host/dsp_filter.h"
#include "plugin.h"
#include "widgets/shell/workbench_commands.h"

namespace velmora {

EAudioSource audioSource(ETransportState eState)
{
    switch (eState) {
    case TRANSPORT_SOUND_IN:
        return EAudioSource::SoundCard;
    case TRANSPORT_OSC:
        return EAudioSource::Oscillator;
    case TRANSPORT_USER_OSC:
        return EAudioSource::Synth;
    default:
        return EAudioSource::File;
    }
}

bool isSynthLoaded(const CTonboxDoc& document)
{
    const CDSPFilter* pFilter = document.currentFilter();
    return pFilter && pFilter->m_pPlugIn && pFilter->m_pPlugIn->m_bOutputOnlyPlugIn;
}

void selectAudioSource(EAudioSource eSource, CTonboxDoc& document, IWorkbenchCommands& commands)
{
    CTransport& transport = document.transport();
    const EAudioSource eBefore = audioSource(transport.state());
    if (eBefore != EAudioSource::File)
        stopAudio(document);
    if (eSource == eBefore)
        return;
    if (eSource == EAudioSource::SoundCard)
        transport.startSoundIn();
    else if (eSource == EAudioSource::Synth)
        transport.startUserOsc();
    else if (eSource == EAudioSource::Oscillator) {
        transport.startOsc();
        if (transport.state() == TRANSPORT_OSC)
            commands.showToolWindow(EToolWindow::Oscillator, true);
    }
}

void stopAudio(CTonboxDoc& document)
{
    CTransport& transport = document.transport();
    switch (audioSource(transport.state())) {
    case EAudioSource::SoundCard:
        transport.stopSoundIn();
        break;
    case EAudioSource::Oscillator:
        transport.stopOsc();
        break;
    case EAudioSource::Synth:
        transport.stopUserOsc();
        break;
    case EAudioSource::File:
        break;
    }
    transport.onStop();
}

bool rescanAudioDevices(CTonboxDoc& document, IUserDialogs& dialogs)
{
    CSettings& settings = document.settings();
    CAudioDeviceChoice choice{settings.inputDeviceName(), settings.outputDeviceName(),
                              settings.DUTDeviceName(), settings.sampleRate()};
    const std::string sMessage = document.audioDevices().rescan(choice);
    settings.setInputDeviceName(choice.m_sInputName);
    settings.setOutputDeviceName(choice.m_sOutputName);
    settings.setDUTDeviceName(choice.m_sDUTName);
    settings.setSampleRate(choice.m_dSampleRate);
    if (!sMessage.empty())
        dialogs.showMessage(sMessage);
    return sMessage.empty();
}

} // namespace velmora
