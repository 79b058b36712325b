#include "FFT.h"

#include <new>

CFFT::CFFT()
    : m_uSize(0), m_pTables(NULL), m_pCosine(NULL), m_pSine(NULL), m_pWindow(NULL), m_fWindowGain(1.0f)
{
}

CFFT::~CFFT()
{
    delete[] m_pTables;
}

bool CFFT::prepare(UINT uSize)
{
    if (uSize < 2 || uSize > 1048576 || (uSize & (uSize - 1)) != 0)
        return false;
    float* pTables = new (std::nothrow) float[2 * static_cast<size_t>(uSize)];
    if (!pTables)
        return false;

    delete[] m_pTables;
    m_uSize = uSize;
    m_pTables = pTables;
    m_pCosine = pTables;
    m_pSine = pTables + uSize / 2;
    m_pWindow = pTables + uSize;
    for (UINT k = 0; k < uSize / 2; k++) {
        const double dAngle = 2.0 * VELMORA_PI * k / uSize;
        m_pCosine[k] = static_cast<float>(cos(dAngle));
        m_pSine[k] = static_cast<float>(sin(dAngle));
    }
    setWindow(rectangularWindow);
    return true;
}

void CFFT::setWindow(EWindowKind eKind)
{
    if (m_uSize == 0)
        return;
    makeWindow(eKind, m_pWindow, m_uSize);
    measureWindow();
}

void CFFT::setWindow(const float* pWindow)
{
    for (UINT n = 0; n < m_uSize; n++)
        m_pWindow[n] = pWindow[n];
    measureWindow();
}

void CFFT::measureWindow()
{
    double dSum = 0.0;
    for (UINT n = 0; n < m_uSize; n++)
        dSum += m_pWindow[n];
    m_fWindowGain = m_uSize == 0 ? 1.0f : static_cast<float>(dSum / m_uSize);
}

void CFFT::forward(float* pReal, float* pImaginary) const
{
    transform(pReal, pImaginary);
}

// The forward transform of the swapped parts is the swapped inverse one, but for 1/N.
void CFFT::inverse(float* pReal, float* pImaginary) const
{
    transform(pImaginary, pReal);
    const float fScale = m_uSize == 0 ? 1.0f : 1.0f / static_cast<float>(m_uSize);
    for (UINT n = 0; n < m_uSize; n++) {
        pReal[n] *= fScale;
        pImaginary[n] *= fScale;
    }
}

void CFFT::analyze(const float* pSamples, float* pReal, float* pImaginary) const
{
    for (UINT n = 0; n < m_uSize; n++) {
        pReal[n] = pSamples[n] * m_pWindow[n];
        pImaginary[n] = 0.0f;
    }
    transform(pReal, pImaginary);
}

void CFFT::magnitudes(const float* pReal, const float* pImaginary, float* pMagnitudes) const
{
    for (UINT k = 0; m_uSize > 0 && k <= m_uSize / 2; k++)
        pMagnitudes[k] = sqrtf(pReal[k] * pReal[k] + pImaginary[k] * pImaginary[k]);
}

void CFFT::phases(const float* pReal, const float* pImaginary, float* pPhases) const
{
    for (UINT k = 0; m_uSize > 0 && k <= m_uSize / 2; k++)
        pPhases[k] = atan2f(pImaginary[k], pReal[k]);
}

// Puts element n where the bits of n, read backwards, say. The counter j runs backwards beside n.
void CFFT::reorder(float* pReal, float* pImaginary) const
{
    UINT j = 0;
    for (UINT n = 0; n < m_uSize; n++) {
        if (n < j) {
            const float fReal = pReal[n];
            const float fImaginary = pImaginary[n];
            pReal[n] = pReal[j];
            pImaginary[n] = pImaginary[j];
            pReal[j] = fReal;
            pImaginary[j] = fImaginary;
        }
        UINT uBit = m_uSize / 2;
        for (; uBit > 0 && (j & uBit) != 0; uBit /= 2)
            j -= uBit;
        j += uBit;
    }
}

// Joins transforms of uHalf points into ones of twice as many, with the factors e^(-j 2 pi k / (2 uHalf)).
void CFFT::transform(float* pReal, float* pImaginary) const
{
    reorder(pReal, pImaginary);
    for (UINT uHalf = 1; uHalf < m_uSize; uHalf *= 2) {
        const UINT uTableStep = m_uSize / (2 * uHalf);
        for (UINT uStart = 0; uStart < m_uSize; uStart += 2 * uHalf)
            for (UINT k = 0; k < uHalf; k++) {
                const UINT uEven = uStart + k;
                const UINT uOdd = uEven + uHalf;
                const float c = m_pCosine[k * uTableStep];
                const float s = m_pSine[k * uTableStep];
                const float fReal = pReal[uOdd] * c + pImaginary[uOdd] * s;
                const float fImaginary = pImaginary[uOdd] * c - pReal[uOdd] * s;
                pReal[uOdd] = pReal[uEven] - fReal;
                pImaginary[uOdd] = pImaginary[uEven] - fImaginary;
                pReal[uEven] += fReal;
                pImaginary[uEven] += fImaginary;
            }
    }
}
