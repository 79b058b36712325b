// VolumePlugIn.cpp: what CVolumePlugIn does.

#include "VolumePlugIn.h"

namespace {

// The volume, linear: 0.5 is -6 dB. To turn it with a slider instead:
//   1. In Velmora, right-click an empty slider: variable name m_fVolume, type float, from 0 to 1.
//   2. In processAudioFrame(), write m_fVolume in place of FIXED_VOLUME, and delete that here.
//   3. Rebuild. If fast moves click, CParameterSmoother in pluginconstants.h takes the clicks out.
const float FIXED_VOLUME = 0.5f;

} // namespace

CVolumePlugIn::CVolumePlugIn()
{
	// The library's file name without its suffix.
	m_PlugInName = "VolumePlugIn";

	// True for a synth: it makes sound without an input.
	m_bOutputOnlyPlugIn = false;

	// Which interface of its own the plug-in has: one made with the GUI Designer, or one written by hand.
	m_bUseCustomVSTGUI = false;

	m_bUserCustomGUI = false;

	initUI();

	// Start values of your own variables go here.
}

CVolumePlugIn::~CVolumePlugIn() {}

bool CVolumePlugIn::initUI()
{
	// clang-format off
	// **--0xDEA7--**

	// **--0xEDA5--**
	// clang-format on

	return true;
}

// Not on the audio thread: clear what remembers the sound so far, take memory, and work out all that
// depends on m_nSampleRate (Hz).
bool CVolumePlugIn::prepareForPlay()
{
	return true;
}

// On the audio thread, once for each frame; samples run from -1.0 to +1.0. Nothing here may wait or take
// memory. A mono input goes to every output.
bool CVolumePlugIn::processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels, UINT uNumOutputChannels)
{
	for (UINT uChannel = 0; uChannel < uNumOutputChannels; uChannel++) {
		const float fInput = pInputBuffer[uChannel < uNumInputChannels ? uChannel : 0];
		pOutputBuffer[uChannel] = fInput * FIXED_VOLUME;
	}

	return true;
}

// The control's variable holds its new value already. The indices stand at the end of this file. While
// you look for a fault, a line in the status window can help:
//     sendStatusWndText("cvolumeplugin: userInterfaceChange");
bool CVolumePlugIn::userInterfaceChange(int nControlIndex)
{
	switch (nControlIndex) {
	case ASSIGN_BUTTON_1:
		break;

	default:
		break;
	}

	return true;
}

// The mix of the four corners and of the two axes, each from 0.0 to 1.0.
bool CVolumePlugIn::joystickControlChange(float /*fControlA*/, float /*fControlB*/, float /*fControlC*/, float /*fControlD*/,
	float /*fACMix*/, float /*fBDMix*/)
{
	return true;
}

// Channels are 0 to 15, notes and velocities 0 to 127. MIDI comes on a thread of its own, while audio runs.
bool CVolumePlugIn::midiNoteOn(UINT /*uChannel*/, UINT /*uMIDINote*/, UINT /*uVelocity*/)
{
	return true;
}

bool CVolumePlugIn::midiNoteOff(UINT /*uChannel*/, UINT /*uMIDINote*/, UINT /*uVelocity*/, bool /*bAllNotesOff*/)
{
	return true;
}

bool CVolumePlugIn::midiModWheel(UINT /*uChannel*/, UINT /*uModValue*/)
{
	return true;
}

// The bend from -8192 to 8191, and from -1.0 to +1.0.
bool CVolumePlugIn::midiPitchBend(UINT /*uChannel*/, int /*nActualPitchBendValue*/, float /*fNormalizedPitchBendValue*/)
{
	return true;
}

// pAuxInputData->pFramePtr holds one sample for each of uNumChannels channels.
bool CVolumePlugIn::processAuxInputBus(auxInputData* /*pAuxInputData*/)
{
	return true;
}

/*
	What userInterfaceChange() receives from the panel of volumeplugin. Velmora keeps this table.

	**--0x2983--**

	**--0xFFDD--**
*/
