// CVolumePlugIn: turns the volume of its input down.
//
// Velmora keeps the lines between each pair of marks (// **--0x...--**) up to date with the panel;
// all else is yours. plugin.h describes every operation that a plug-in can override.

#ifndef CVolumePlugIn_h
#define CVolumePlugIn_h

#include "plugin.h"

class CVolumePlugIn : public CPlugIn
{
public:
	CVolumePlugIn();
	virtual ~CVolumePlugIn();

	// Makes the controls. Velmora writes it.
	virtual bool initUI() VELMORA_RUNS_ONCE;

	// Ahead of each start of audio, when m_nSampleRate is known.
	virtual bool prepareForPlay();

	// The audio: one sample for each channel.
	virtual bool processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels, UINT uNumOutputChannels);

	// A control was moved, or a button pressed.
	virtual bool userInterfaceChange(int nControlIndex);
	virtual bool joystickControlChange(float fControlA, float fControlB, float fControlC, float fControlD,
		float fACMix, float fBDMix);

	// MIDI
	virtual bool midiNoteOn(UINT uChannel, UINT uMIDINote, UINT uVelocity);
	virtual bool midiNoteOff(UINT uChannel, UINT uMIDINote, UINT uVelocity, bool bAllNotesOff);
	virtual bool midiModWheel(UINT uChannel, UINT uModValue);
	virtual bool midiPitchBend(UINT uChannel, int nActualPitchBendValue, float fNormalizedPitchBendValue);

	// The sidechain, just ahead of the frame that it belongs to.
	virtual bool processAuxInputBus(auxInputData* pAuxInputData);

private:
	// Your own variables go here.

	// The variables of the controls. Velmora writes them.
	// clang-format off
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wmissing-declarations" // an enum without items
#endif
	// **--0x07FD--**

	// **--0x1A7F--**
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
	// clang-format on
};

#endif
