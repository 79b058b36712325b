// PolySynth: an eight-voice synthesizer with presets.
//
// An output-only plug-in: it ignores its input and sounds when notes come, or while its "Audition" switch
// is on, which holds a chord and so needs no keyboard. Notes arrive on other threads than the audio; a
// queue brings them over. C++20.

#pragma once

#include "NoteQueue.h"
#include "SynthVoice.h"
#include "plugin.h"

#include <atomic>

class CPolySynth : public CPlugIn
{
  public:
    static constexpr UINT VOICES = 8;

    CPolySynth();

    bool initUI() override;
    bool prepareForPlay() override;
    bool userInterfaceChange(int nControlIndex) override;
    bool processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                           UINT uNumOutputChannels) override;

    bool midiNoteOn(UINT uChannel, UINT uMIDINote, UINT uVelocity) override;
    bool midiNoteOff(UINT uChannel, UINT uMIDINote, UINT uVelocity, bool bAllNotesOff) override;
    bool midiPitchBend(UINT uChannel, int nActualPitchBendValue, float fNormalizedPitchBendValue) override;
    bool midiModWheel(UINT uChannel, UINT uModValue) override;

  private:
    // Ids of the controls: 0 to 39 are sliders, 45 to 48 switches, 50 to 59 meters, 70 to 73 combo boxes.
    enum EControl
    {
        ATTACK = 0,
        DECAY = 1,
        SUSTAIN = 2,
        RELEASE = 3,
        CUTOFF = 4,
        RESONANCE = 5,
        SWEEP = 6,
        DETUNE = 7,
        VIBRATO_RATE = 8,
        BEND_RANGE = 9,
        VOLUME = 10,
        AUDITION = 45,
        METER = 50,
        WAVEFORM = 70
    };

    // The items of the waveform's combo box, in its order.
    enum EWaveform
    {
        Sine,
        Saw,
        Square,
        Triangle
    };

    enum
    {
        OFF,
        ON
    };

    void appendSliders();
    void appendLists();
    void appendMeter();
    void appendWithPresets(CUICtrl& record);
    bool sendNote(const SNoteEvent& event);

    void takeSettings();
    void takeNotes();
    void takeAudition();
    void startNote(UINT uNote, double dVelocityGain);
    void releaseNote(UINT uNote);
    void releaseAllNotes();
    CSynthVoice& voiceForNewNote();
    void updateVoices();

    // What the controls are bound to. The host writes these on the main thread while audio runs, so the
    // audio thread leaves them alone.
    float m_fAttack_ms = 5.0f;      // 1 to 5000 ms
    float m_fDecay_ms = 300.0f;     // 1 to 5000 ms
    float m_fSustain_pct = 70.0f;   // 0 to 100 %
    float m_fRelease_ms = 250.0f;   // 1 to 5000 ms
    float m_fCutoff_Hz = 2500.0f;   // 20 to 20480 Hz
    float m_fResonance = 1.0f;      // Q, 0.5 to 20
    float m_fSweep_octaves = 2.0f;  // 0 to 6 octaves
    float m_fDetune_cents = 8.0f;   // 0 to 50 cents
    float m_fVibratoRate_Hz = 5.5f; // 0.1 to 12 Hz
    int m_nBendRange_semitones = 2; // 0 to 12 semitones
    float m_fVolume_dB = 0.0f;      // -60 to +12 dB
    UINT m_uWaveform = Saw;
    UINT m_uAudition = OFF;

    // What the meter is bound to: 0.0 (-60 dB) to 1.0 (0 dB). Written on the audio thread.
    float m_fMeter = 0.0f;

    // What crosses from other threads to the audio thread: settings, with the news that there are new
    // ones, and notes. Each setting stands for itself, so a mixture of old and new does no harm.
    struct SSettings
    {
        std::atomic<CBandLimitedOscillator::EShape> eShape;
        std::atomic<float> fAttack_ms, fDecay_ms, fSustain, fRelease_ms;
        std::atomic<float> fCutoff_Hz, fResonance, fSweep_octaves, fDetune_cents;
        std::atomic<float> fVibratoRate_Hz, fBendRange_semitones, fVolume;
        std::atomic<bool> bAudition;
    };
    SSettings m_settings;
    std::atomic<bool> m_bNewSettings{false};
    CNoteQueue m_notes;
    std::atomic<bool> m_bNotesLost{false}; // the queue was full

    // From here on only the audio thread and prepareForPlay(), which never run together.
    SVoiceSettings m_voiceSettings;
    CSynthVoice m_voices[VOICES];
    unsigned long m_uNotesStarted = 0;
    bool m_bAuditioning = false;
    UINT m_uFramesToUpdate = 1;

    CLFO m_vibrato;
    float m_fBend = 0.0f;     // -1.0 to +1.0
    float m_fModWheel = 0.0f; // 0.0 to 1.0
    double m_dBendRange_semitones = 2.0;
    double m_dPitchRatio = 1.0;  // bend and vibrato together
    CParameterSmoother m_octave; // cutoff in octaves above 1 Hz
    CParameterSmoother m_volume;
    CEnvelopeDetector m_level;
};
