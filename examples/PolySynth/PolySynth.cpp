#include "PolySynth.h"

#include <algorithm>
#include <cmath>

namespace {

const UINT UPDATE_FRAMES = 16;      // pitch and filter are worked out once in so many frames
const double VOICE_GAIN = 0.2;      // of one voice at full velocity
const double SMOOTHING_MS = 20.0;   // time constant of volume and cutoff
const double METER_FALL_MS = 300.0; // time constant with which the meter falls
const double METER_RANGE_DB = 60.0;
const double VIBRATO_SEMITONES = 0.5; // either way, with the modulation wheel all the way up

const UINT AUDITION_CHORD[] = {57, 61, 64, 69}; // A major
const UINT AUDITION_VELOCITY = 100;

// Presets: one column for each control, in the order of the control list.
const int PRESETS = 6;
const int PRESET_CONTROLS = 13;
const char* const PRESET_NAMES[PRESETS] = {"Init", "Soft Pad", "Pluck", "Bass", "Brass", "Organ"};
const double PRESET_VALUES[PRESETS][PRESET_CONTROLS] = {
    // attack decay sustain release cutoff  Q  sweep detune vibrato bend volume waveform audition
    {5, 300, 70, 250, 2500, 1.0, 2.0, 8, 5.5, 2, 0, 1, 0},
    {900, 1500, 80, 1800, 900, 0.8, 1.5, 14, 4.5, 2, 2, 1, 0},
    {1, 450, 0, 350, 500, 2.0, 4.5, 6, 5.5, 2, 0, 1, 0},
    {2, 250, 40, 120, 220, 2.5, 3.0, 0, 5.5, 12, -3, 2, 0},
    {60, 350, 75, 180, 700, 1.2, 3.0, 10, 5.0, 2, 2, 1, 0},
    {3, 50, 100, 40, 8000, 0.7, 0.0, 4, 6.5, 2, -2, 3, 0},
};

} // namespace

CPolySynth::CPolySynth()
{
    m_PlugInName = "PolySynth";
    m_bOutputOnlyPlugIn = true;
    for (int i = 0; i < PRESETS; ++i)
        m_PresetNames[i] = PRESET_NAMES[i];
    CPolySynth::initUI();
}

// ---- Controls ----

bool CPolySynth::initUI()
{
    appendSliders();
    appendLists();
    appendMeter();
    return true;
}

void CPolySynth::appendSliders()
{
    const struct
    {
        UINT uId;
        const char *pName, *pUnits, *pVariableName;
        float* pVariable;
        float fLow, fHigh;
        bool bExponential; // spread evenly by ratio; the low limit must not be 0
    } sliders[] = {
        {ATTACK, "Attack", "ms", "m_fAttack_ms", &m_fAttack_ms, 1.0f, 5000.0f, true},
        {DECAY, "Decay", "ms", "m_fDecay_ms", &m_fDecay_ms, 1.0f, 5000.0f, true},
        {SUSTAIN, "Sustain", "%", "m_fSustain_pct", &m_fSustain_pct, 0.0f, 100.0f, false},
        {RELEASE, "Release", "ms", "m_fRelease_ms", &m_fRelease_ms, 1.0f, 5000.0f, true},
        {CUTOFF, "Cutoff", "Hz", "m_fCutoff_Hz", &m_fCutoff_Hz, 20.0f, 20480.0f, true},
        {RESONANCE, "Resonance", "Q", "m_fResonance", &m_fResonance, 0.5f, 20.0f, false},
        {SWEEP, "Filter Sweep", "oct", "m_fSweep_octaves", &m_fSweep_octaves, 0.0f, 6.0f, false},
        {DETUNE, "Detune", "cents", "m_fDetune_cents", &m_fDetune_cents, 0.0f, 50.0f, false},
        {VIBRATO_RATE, "Vibrato Rate", "Hz", "m_fVibratoRate_Hz", &m_fVibratoRate_Hz, 0.1f, 12.0f, true},
        {BEND_RANGE, "Bend Range", "semitones", "m_nBendRange_semitones", nullptr, 0.0f, 12.0f, false},
        {VOLUME, "Volume", "dB", "m_fVolume_dB", &m_fVolume_dB, -60.0f, 12.0f, false},
    };
    for (const auto& slider : sliders) {
        CUICtrl record;
        record.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        record.uControlId = slider.uId;
        record.cControlName = slider.pName;
        record.cControlUnits = slider.pUnits;
        record.cVariableName = slider.pVariableName;
        record.fUserDisplayDataLoLimit = slider.fLow;
        record.fUserDisplayDataHiLimit = slider.fHigh;
        record.bExpSlider = slider.bExponential;
        if (slider.pVariable) {
            record.uUserDataType = floatData;
            record.m_pUserCookedFloatData = slider.pVariable;
            record.fInitUserFloatValue = *slider.pVariable; // as the class declares it
        } else {
            record.uUserDataType = intData; // whole semitones
            record.m_pUserCookedIntData = &m_nBendRange_semitones;
            record.fInitUserIntValue = static_cast<float>(m_nBendRange_semitones);
        }
        appendWithPresets(record);
    }
}

void CPolySynth::appendLists()
{
    CUICtrl waveform;
    waveform.uControlType = FILTER_CONTROL_COMBO_VARIABLE;
    waveform.uControlId = WAVEFORM;
    waveform.cControlName = "Waveform";
    waveform.cVariableName = "m_uWaveform";
    waveform.cEnumeratedList = "Sine,Saw,Square,Triangle";
    waveform.uUserDataType = UINTData;
    waveform.m_pUserCookedUINTData = &m_uWaveform;
    waveform.fUserDisplayDataLoLimit = Sine;
    waveform.fUserDisplayDataHiLimit = Triangle;
    waveform.fInitUserUINTValue = Saw;
    appendWithPresets(waveform);

    CUICtrl audition;
    audition.uControlType = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;
    audition.uControlId = AUDITION;
    audition.cControlName = "Audition";
    audition.cVariableName = "m_uAudition";
    audition.cEnumeratedList = "OFF,ON";
    audition.uUserDataType = UINTData;
    audition.m_pUserCookedUINTData = &m_uAudition;
    audition.fUserDisplayDataLoLimit = OFF;
    audition.fUserDisplayDataHiLimit = ON;
    audition.fInitUserUINTValue = OFF;
    appendWithPresets(audition);
}

void CPolySynth::appendMeter()
{
    CUICtrl meter;
    meter.uControlType = FILTER_CONTROL_LED_METER;
    meter.uControlId = METER;
    meter.cControlName = "Level";
    meter.cMeterVariableName = "m_fMeter";
    meter.m_pCurrentMeterValue = &m_fMeter;
    meter.bUseMeter = true;
    meter.uDetectorMode = DETECT_MODE_NONE;
    m_UIControlList.append(meter);
}

void CPolySynth::appendWithPresets(CUICtrl& record)
{
    const UINT uColumn = m_UIControlList.count();
    for (int i = 0; i < PRESETS; ++i)
        record.dPresetData[i] = PRESET_VALUES[i][uColumn];
    m_UIControlList.append(record);
}

// Runs on the main thread, perhaps in the middle of a process call: it hands the settings over, and the
// audio thread takes them up at its next frame.
bool CPolySynth::userInterfaceChange(int)
{
    static const CBandLimitedOscillator::EShape SHAPES[] = {
        CBandLimitedOscillator::sine, CBandLimitedOscillator::saw, CBandLimitedOscillator::square,
        CBandLimitedOscillator::triangle};

    m_settings.eShape = SHAPES[std::min<UINT>(m_uWaveform, Triangle)];
    m_settings.fAttack_ms = m_fAttack_ms;
    m_settings.fDecay_ms = m_fDecay_ms;
    m_settings.fSustain = m_fSustain_pct / 100.0f;
    m_settings.fRelease_ms = m_fRelease_ms;
    m_settings.fCutoff_Hz = m_fCutoff_Hz;
    m_settings.fResonance = m_fResonance;
    m_settings.fSweep_octaves = m_fSweep_octaves;
    m_settings.fDetune_cents = m_fDetune_cents;
    m_settings.fVibratoRate_Hz = m_fVibratoRate_Hz;
    m_settings.fBendRange_semitones = static_cast<float>(m_nBendRange_semitones);
    m_settings.fVolume = static_cast<float>(dBToLinear(m_fVolume_dB));
    m_settings.bAudition = m_uAudition == ON;
    m_bNewSettings.store(true, std::memory_order_release);
    return true;
}

// ---- Notes, on the threads that play ----

bool CPolySynth::midiNoteOn(UINT, UINT uMIDINote, UINT uVelocity)
{
    return sendNote({SNoteEvent::noteOn, uMIDINote, static_cast<float>(midiVelocityToGain(uVelocity))});
}

bool CPolySynth::midiNoteOff(UINT, UINT uMIDINote, UINT, bool bAllNotesOff)
{
    return sendNote({bAllNotesOff ? SNoteEvent::allNotesOff : SNoteEvent::noteOff, uMIDINote, 0.0f});
}

bool CPolySynth::midiPitchBend(UINT, int, float fNormalizedPitchBendValue)
{
    return sendNote({SNoteEvent::pitchBend, 0, fNormalizedPitchBendValue});
}

bool CPolySynth::midiModWheel(UINT, UINT uModValue)
{
    return sendNote({SNoteEvent::modWheel, 0, static_cast<float>(uModValue) / 127.0f});
}

// A lost note-off would sound for ever, so a full queue makes the audio thread let go of all notes.
bool CPolySynth::sendNote(const SNoteEvent& event)
{
    if (!m_notes.push(event))
        m_bNotesLost = true;
    return true;
}

// ---- Sound ----

bool CPolySynth::prepareForPlay()
{
    for (CSynthVoice& voice : m_voices)
        voice.prepare(m_nSampleRate);
    m_vibrato.prepare(m_nSampleRate / static_cast<double>(UPDATE_FRAMES));
    m_level.prepare(m_nSampleRate);
    m_level.set(DETECT_MODE_PEAK, 0.0, METER_FALL_MS);

    // What was played while there was no sound is not made up for.
    SNoteEvent stale;
    while (m_notes.pop(stale)) {
    }
    m_bNotesLost = false;
    m_fBend = m_fModWheel = m_fMeter = 0.0f;
    m_bAuditioning = false;

    userInterfaceChange(WAVEFORM);
    takeSettings();
    for (CParameterSmoother* pSmoother : {&m_octave, &m_volume})
        pSmoother->setTime(SMOOTHING_MS);
    m_octave.prepare(m_nSampleRate / static_cast<double>(UPDATE_FRAMES)); // and jumps to the target
    m_volume.prepare(m_nSampleRate);
    updateVoices();
    takeAudition();
    m_uFramesToUpdate = UPDATE_FRAMES;
    return true;
}

void CPolySynth::takeSettings()
{
    m_bNewSettings.exchange(false, std::memory_order_acquire);
    m_voiceSettings.eShape = m_settings.eShape;
    m_voiceSettings.dAttack_ms = m_settings.fAttack_ms;
    m_voiceSettings.dDecay_ms = m_settings.fDecay_ms;
    m_voiceSettings.dSustain = m_settings.fSustain;
    m_voiceSettings.dRelease_ms = m_settings.fRelease_ms;
    m_voiceSettings.dResonance = m_settings.fResonance;
    m_voiceSettings.dSweep_octaves = m_settings.fSweep_octaves;
    m_voiceSettings.dDetune_cents = m_settings.fDetune_cents;
    m_octave.setTarget(std::log2(limitValue(m_settings.fCutoff_Hz, 20.0, 20480.0)));
    m_volume.setTarget(m_settings.fVolume);
    m_vibrato.set(CLFO::sine, m_settings.fVibratoRate_Hz);
    m_dBendRange_semitones = m_settings.fBendRange_semitones;
}

void CPolySynth::takeAudition()
{
    const bool bAudition = m_settings.bAudition;
    if (bAudition == m_bAuditioning)
        return;
    m_bAuditioning = bAudition;
    for (UINT uNote : AUDITION_CHORD) {
        if (bAudition)
            startNote(uNote, midiVelocityToGain(AUDITION_VELOCITY));
        else
            releaseNote(uNote);
    }
}

void CPolySynth::takeNotes()
{
    if (m_bNotesLost.load(std::memory_order_relaxed) && m_bNotesLost.exchange(false))
        releaseAllNotes();

    SNoteEvent event;
    while (m_notes.pop(event)) {
        switch (event.eKind) {
        case SNoteEvent::noteOn:
            startNote(event.uNote, event.fValue);
            break;
        case SNoteEvent::noteOff:
            releaseNote(event.uNote);
            break;
        case SNoteEvent::allNotesOff:
            releaseAllNotes();
            break;
        case SNoteEvent::pitchBend:
            m_fBend = event.fValue;
            break;
        case SNoteEvent::modWheel:
            m_fModWheel = event.fValue;
            break;
        }
    }
}

void CPolySynth::startNote(UINT uNote, double dVelocityGain)
{
    CSynthVoice& voice = voiceForNewNote();
    voice.start(uNote, VOICE_GAIN * dVelocityGain, ++m_uNotesStarted, m_voiceSettings);
    voice.update(m_voiceSettings, m_dPitchRatio); // its pitch must be right from its first sample on
}

// A free voice if there is one. Else one is stolen: of those whose key is up, the softest; if all keys are
// down, the one that was played first.
CSynthVoice& CPolySynth::voiceForNewNote()
{
    CSynthVoice* pSoftest = nullptr;
    CSynthVoice* pOldest = &m_voices[0];
    for (CSynthVoice& voice : m_voices) {
        if (!voice.isSounding())
            return voice;
        if (!voice.isHeld() && (!pSoftest || voice.envelope() < pSoftest->envelope()))
            pSoftest = &voice;
        if (voice.age() < pOldest->age())
            pOldest = &voice;
    }
    return pSoftest ? *pSoftest : *pOldest;
}

void CPolySynth::releaseNote(UINT uNote)
{
    for (CSynthVoice& voice : m_voices)
        if (voice.isHeld() && voice.note() == uNote)
            voice.release(m_voiceSettings);
}

void CPolySynth::releaseAllNotes()
{
    for (CSynthVoice& voice : m_voices)
        if (voice.isHeld())
            voice.release(m_voiceSettings);
}

void CPolySynth::updateVoices()
{
    m_voiceSettings.dCutoff_Hz = std::exp2(m_octave.next());
    const double dSemitones =
        m_fBend * m_dBendRange_semitones + m_fModWheel * VIBRATO_SEMITONES * m_vibrato.next();
    m_dPitchRatio = pitchBendToRatio(1.0, dSemitones);
    for (CSynthVoice& voice : m_voices)
        if (voice.isSounding())
            voice.update(m_voiceSettings, m_dPitchRatio);
}

bool CPolySynth::processAudioFrame(float*, float* pOutputBuffer, UINT, UINT uNumOutputChannels)
{
    if (m_bNewSettings.load(std::memory_order_relaxed)) {
        takeSettings();
        takeAudition();
    }
    takeNotes();

    const bool bUpdate = --m_uFramesToUpdate == 0;
    if (bUpdate) {
        updateVoices();
        m_uFramesToUpdate = UPDATE_FRAMES;
    }

    double dSum = 0.0;
    for (CSynthVoice& voice : m_voices)
        if (voice.isSounding())
            dSum += voice.next();
    const auto fOutput = static_cast<float>(dSum * m_volume.next());
    std::fill_n(pOutputBuffer, uNumOutputChannels, fOutput);

    const float fLevel = m_level.process(fOutput);
    if (bUpdate) { // the panel reads the meter on another thread, so it is written in one piece
        const double dShown = limitValue(1.0 + linearToDB(fLevel) / METER_RANGE_DB, 0.0, 1.0);
        std::atomic_ref(m_fMeter).store(static_cast<float>(dShown), std::memory_order_relaxed);
    }
    return true;
}

VELMORA_EXPORT_PLUGIN(CPolySynth)
