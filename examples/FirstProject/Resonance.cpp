// Resonance.cpp: what CResonance does.

#include "Resonance.h"

namespace {

const double SMOOTHING_MS = 15.0; // time constant with which cutoff, resonance and level move

} // namespace

CResonance::CResonance()
{
    m_PlugInName = "Resonance";
    m_bOutputOnlyPlugIn = false;
    m_bUseCustomVSTGUI = false;

    m_bUserCustomGUI = false;

    CResonance::initUI();
}

bool CResonance::initUI()
{
    // clang-format off
	// **--0xDEA7--**

	// **--0xEDA5--**
    // clang-format on

    return true;
}

bool CResonance::prepareForPlay()
{
    takeControls();
    for (CParameterSmoother* pSmoother : {&m_octave, &m_q, &m_gain}) {
        pSmoother->setTime(SMOOTHING_MS);
        pSmoother->prepare(m_nSampleRate); // and jumps to the target
    }
    for (CStateVariableFilter& filter : m_filters)
        filter.prepare(m_nSampleRate);
    setFilters();
    return true;
}

// Runs on the main thread, perhaps in the middle of a frame: it only leaves word.
bool CResonance::userInterfaceChange(int)
{
    m_bMoved = true;
    return true;
}

void CResonance::takeControls()
{
    static const CStateVariableFilter::EKind KINDS[] = {
        CStateVariableFilter::lowPass, CStateVariableFilter::bandPass, CStateVariableFilter::highPass,
        CStateVariableFilter::notch};

    m_octave.setTarget(log2(limitValue(m_fCutoff, 20.0, 20480.0)));
    m_q.setTarget(m_fResonance);
    m_gain.setTarget(dBToLinear(m_fLevel));
    m_eKind = KINDS[m_uMode < 4 ? m_uMode : 0];
}

void CResonance::setFilters()
{
    for (CStateVariableFilter& filter : m_filters)
        filter.set(m_eKind, exp2(m_octave.value()), m_q.value());
}

bool CResonance::processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                                   UINT uNumOutputChannels)
{
    const bool bMoved = m_bMoved.exchange(false);
    if (bMoved)
        takeControls();

    // The coefficients cost a tangent: they are worked out only while the sound moves.
    if (bMoved || m_octave.isMoving() || m_q.isMoving()) {
        m_octave.next();
        m_q.next();
        setFilters();
    }
    const float fGain = static_cast<float>(m_gain.next());
    for (UINT uChannel = 0; uChannel < uNumOutputChannels && uChannel < 2; uChannel++) {
        const float fInput = pInputBuffer[uChannel < uNumInputChannels ? uChannel : 0];
        pOutputBuffer[uChannel] = fGain * m_filters[uChannel].process(fInput);
    }
    return true;
}

/*
    What userInterfaceChange() receives from the panel of Resonance. Velmora keeps this table.

        **--0x2983--**

        **--0xFFDD--**
*/
