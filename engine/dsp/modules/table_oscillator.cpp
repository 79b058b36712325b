#include "dsp/modules/table_oscillator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmora {

namespace {

constexpr std::size_t HALF = CTableOscillator::TABLE_SIZE / 2;
constexpr float TRIANGLE_STEP = 0.00390625F; // 2 / HALF
constexpr float LEAST_PHASE_CHANGE = 0.01F;  // degrees

} // namespace

CTableOscillator::CTableOscillator()
{
    for (std::size_t u = 0; u < TABLE_SIZE; ++u) {
        const double dX = static_cast<double>(u) / TABLE_SIZE;
        m_tables[WAVE_SAWTOOTH][u] = static_cast<float>(2.0 * dX - 1.0);
        m_tables[WAVE_SINE][u] = static_cast<float>(std::sin(2.0 * std::numbers::pi * dX));
        m_tables[WAVE_TRIANGLE][u] = u < HALF ? static_cast<float>(u) * TRIANGLE_STEP - 1.0F
                                              : 1.0F - static_cast<float>(u - (HALF - 1)) * TRIANGLE_STEP;
        m_tables[WAVE_SQUARE][u] = u < HALF ? -1.0F : 1.0F;
    }
}

void CTableOscillator::setAmplitude(float fAmplitude)
{
    m_fAmplitude = std::clamp(fAmplitude, 0.0F, 1.0F);
}

void CTableOscillator::setPhaseOffset(float fDegrees)
{
    m_fPhaseOffset = std::clamp(fDegrees, -180.0F, 180.0F);
    const float fChange = m_fPhaseOffset - m_fLastPhaseOffset;
    if (std::abs(fChange) < LEAST_PHASE_CHANGE)
        return;
    m_fReadIndex = wrapped(m_fReadIndex + fChange / 360.0F * TABLE_SIZE);
    m_fLastPhaseOffset = m_fPhaseOffset;
}

void CTableOscillator::reset()
{
    m_fReadIndex = firstIndex();
}

CTableOscillator::CRun CTableOscillator::begin() const
{
    CRun run;
    run.m_pTable = m_tables[m_eWave].data();
    run.m_fReadIndex = m_fReadIndex;
    run.m_fFirstIndex = firstIndex();
    run.m_fEntriesPerHz = TABLE_SIZE / m_fSampleRate;
    run.m_fScale = (m_bInverted ? -m_fAmplitude : m_fAmplitude) * (m_bUnipolar ? 0.5F : 1.0F);
    run.m_fOffset = m_bUnipolar ? run.m_fScale : 0.0F;
    return run;
}

void CTableOscillator::end(const CRun& run, float fFrequency)
{
    m_fReadIndex = run.m_fReadIndex;
    m_fFrequency = fFrequency;
}

float CTableOscillator::wrapped(float fIndex)
{
    float fWrapped = std::fmod(fIndex, static_cast<float>(TABLE_SIZE));
    if (fWrapped < 0.0F)
        fWrapped += TABLE_SIZE;
    return fWrapped >= 0.0F && fWrapped < TABLE_SIZE ? fWrapped : 0.0F;
}

} // namespace velmora
