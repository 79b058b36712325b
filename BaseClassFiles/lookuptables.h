// lookuptables.h: tables that are worked out once, when the library is loaded, and only read from then on.

#ifndef VELMORA_LOOKUPTABLES_H
#define VELMORA_LOOKUPTABLES_H

#include "pluginconstants.h"

// Steps of the sine table in one period. In a straight line between two entries the error is at most
// (2 pi / 1024)^2 / 8 = 0.0000047, that is -106 dB.
const UINT SINE_TABLE_SIZE = 1024;

// Fills pTable with SINE_TABLE_SIZE + 1 values, sin(2 pi i / SINE_TABLE_SIZE). The last one repeats the
// first, so that the entry behind any position can be read without a wrap.
inline void makeSineTable(float* pTable)
{
    for (UINT i = 0; i <= SINE_TABLE_SIZE; i++)
        pTable[i] = static_cast<float>(sin(2.0 * VELMORA_PI * (i % SINE_TABLE_SIZE) / SINE_TABLE_SIZE));
}

struct CSineTable
{
    CSineTable() { makeSineTable(m_fValues); }

    float m_fValues[SINE_TABLE_SIZE + 1];
};

static const CSineTable g_sineTable;

// sin(2 pi dPhase) from the table, for a phase from 0.0 to below 1.0. [audio]
inline float sineFromTable(const CSineTable& table, double dPhase)
{
    const double dPosition = dPhase * SINE_TABLE_SIZE;
    const UINT uIndex = static_cast<UINT>(dPosition) % SINE_TABLE_SIZE;
    const float fLow = table.m_fValues[uIndex];
    return fLow + static_cast<float>(dPosition - uIndex) * (table.m_fValues[uIndex + 1] - fLow);
}

#endif
