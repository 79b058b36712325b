#include "dsp/fft.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

namespace velmora {

namespace {

using std::size_t;

// The input is read and the output written in square tiles, so that both meet memory in whole cache
// lines; the first TILE_BITS stages are done on the way.
constexpr int TILE_BITS = 4;
constexpr size_t TILE = size_t{1} << TILE_BITS;

// Blocks of up to this many bytes in each of the two arrays stay in the first-level cache.
constexpr size_t CACHE_BYTES = 8192;

template <typename Sample>
struct CComplexArrays
{
    Sample* m_pReal;
    Sample* m_pImaginary;
};

template <typename Sample>
struct CFactors
{
    const Sample* m_pReal;
    const Sample* m_pImaginary;
};

size_t bitReversed(size_t uIndex, int nBits)
{
    size_t uReversed = 0;
    for (; nBits > 0; --nBits, uIndex >>= 1)
        uReversed = uReversed << 1 | (uIndex & 1);
    return uReversed;
}

// t = w * b;  b = a - t;  a = a + t
template <typename Sample>
inline void butterfly(Sample& fRealA, Sample& fImaginaryA, Sample& fRealB, Sample& fImaginaryB, Sample fRealW,
                      Sample fImaginaryW)
{
    const Sample fReal = fRealW * fRealB - fImaginaryW * fImaginaryB;
    const Sample fImaginary = fRealW * fImaginaryB + fImaginaryW * fRealB;
    fRealB = fRealA - fReal;
    fImaginaryB = fImaginaryA - fImaginary;
    fRealA += fReal;
    fImaginaryA += fImaginary;
}

// The butterflies between uCount values and the uCount values that belong to them.
template <typename Sample>
void butterflies(Sample* __restrict pRealA, Sample* __restrict pImaginaryA, Sample* __restrict pRealB,
                 Sample* __restrict pImaginaryB, const Sample* pRealW, const Sample* pImaginaryW,
                 size_t uCount)
{
    for (size_t k = 0; k < uCount; ++k)
        butterfly(pRealA[k], pImaginaryA[k], pRealB[k], pImaginaryB[k], pRealW[k], pImaginaryW[k]);
}

// One stage over one block of two halves.
template <typename Sample>
void joinHalves(CComplexArrays<Sample> block, size_t uHalf, CFactors<Sample> w)
{
    butterflies(block.m_pReal, block.m_pImaginary, block.m_pReal + uHalf, block.m_pImaginary + uHalf,
                w.m_pReal + uHalf, w.m_pImaginary + uHalf, uHalf);
}

// Two stages in one pass over memory: the halves of both halves, then the halves. The arithmetic on
// each value is that of joinHalves() three times.
template <typename Sample>
void joinQuarterRows(Sample* __restrict pReal0, Sample* __restrict pReal1, Sample* __restrict pReal2,
                     Sample* __restrict pReal3, Sample* __restrict pImaginary0,
                     Sample* __restrict pImaginary1, Sample* __restrict pImaginary2,
                     Sample* __restrict pImaginary3, size_t uQuarter, CFactors<Sample> w)
{
    const Sample* pInnerReal = w.m_pReal + uQuarter;
    const Sample* pInnerImaginary = w.m_pImaginary + uQuarter;
    const Sample* pOuterReal = w.m_pReal + 2 * uQuarter;
    const Sample* pOuterImaginary = w.m_pImaginary + 2 * uQuarter;
    for (size_t k = 0; k < uQuarter; ++k) {
        Sample r0 = pReal0[k], r1 = pReal1[k], r2 = pReal2[k], r3 = pReal3[k];
        Sample i0 = pImaginary0[k], i1 = pImaginary1[k], i2 = pImaginary2[k], i3 = pImaginary3[k];
        butterfly(r0, i0, r1, i1, pInnerReal[k], pInnerImaginary[k]);
        butterfly(r2, i2, r3, i3, pInnerReal[k], pInnerImaginary[k]);
        butterfly(r0, i0, r2, i2, pOuterReal[k], pOuterImaginary[k]);
        butterfly(r1, i1, r3, i3, pOuterReal[uQuarter + k], pOuterImaginary[uQuarter + k]);
        pReal0[k] = r0, pReal1[k] = r1, pReal2[k] = r2, pReal3[k] = r3;
        pImaginary0[k] = i0, pImaginary1[k] = i1, pImaginary2[k] = i2, pImaginary3[k] = i3;
    }
}

template <typename Sample>
void joinQuarters(CComplexArrays<Sample> block, size_t uQuarter, CFactors<Sample> w)
{
    Sample* r = block.m_pReal;
    Sample* i = block.m_pImaginary;
    joinQuarterRows(r, r + uQuarter, r + 2 * uQuarter, r + 3 * uQuarter, i, i + uQuarter, i + 2 * uQuarter,
                    i + 3 * uQuarter, uQuarter, w);
}

// The stages from blocks of uDone values up to one block of uLength. Long blocks are finished quarter by
// quarter, depth first, so that each is still in the cache when its next stage comes.
template <typename Sample>
void joinBlocks(CComplexArrays<Sample> block, size_t uDone, size_t uLength, CFactors<Sample> w)
{
    if (uLength * sizeof(Sample) > CACHE_BYTES && uLength >= 4 * uDone) {
        const size_t uQuarter = uLength / 4;
        for (size_t q = 0; q < uLength; q += uQuarter)
            joinBlocks({block.m_pReal + q, block.m_pImaginary + q}, uDone, uQuarter, w);
        joinQuarters(block, uQuarter, w);
        return;
    }
    for (; 4 * uDone <= uLength; uDone *= 4) {
        for (size_t b = 0; b < uLength; b += 4 * uDone)
            joinQuarters<Sample>({block.m_pReal + b, block.m_pImaginary + b}, uDone, w);
    }
    if (uDone < uLength)
        joinHalves(block, uDone, w);
}

template <typename Sample>
using CTile = Sample[TILE][TILE];

// Rows of a tile are the lowest bits of the output index, its columns are independent: the first stages
// of TILE transforms side by side.
template <typename Sample>
void joinTileRows(CTile<Sample>& real, CTile<Sample>& imaginary, CFactors<Sample> w)
{
    for (size_t uHalf = 1; uHalf < TILE; uHalf *= 2) {
        for (size_t b = 0; b < TILE; b += 2 * uHalf) {
            for (size_t k = 0; k < uHalf; ++k) {
                const Sample fReal = w.m_pReal[uHalf + k];
                const Sample fImaginary = w.m_pImaginary[uHalf + k];
                Sample* realA = real[b + k];
                Sample* realB = real[b + k + uHalf];
                Sample* imaginaryA = imaginary[b + k];
                Sample* imaginaryB = imaginary[b + k + uHalf];
                for (size_t c = 0; c < TILE; ++c)
                    butterfly(realA[c], imaginaryA[c], realB[c], imaginaryB[c], fReal, fImaginary);
            }
        }
    }
}

template <typename Sample>
void loadTile(CTile<Sample>& tile, const Sample* pIn, size_t uRowStride, const size_t (&reversed)[TILE])
{
    for (size_t r = 0; r < TILE; ++r) {
        if (pIn)
            std::copy_n(pIn + r * uRowStride, TILE, tile[reversed[r]]);
        else
            std::fill_n(tile[reversed[r]], TILE, Sample(0));
    }
}

template <typename Sample>
void storeTile(const CTile<Sample>& tile, Sample* pOut, size_t uRowStride, const size_t (&reversed)[TILE])
{
    for (size_t c = 0; c < TILE; ++c) {
        Sample* pRow = pOut + reversed[c] * uRowStride;
        for (size_t r = 0; r < TILE; ++r)
            pRow[r] = tile[r][c];
    }
}

// The bit-reversed copy and the first TILE_BITS stages of a length of 2 * TILE_BITS bits or more. An
// input index is made of TILE_BITS high bits (a row of the tile), middle bits, and TILE_BITS low bits (a
// column); reversed, the low bits lead and the high bits end the output index.
template <typename Sample>
void reorderInTiles(size_t uLength, const Sample* pRealIn, const Sample* pImaginaryIn,
                    CComplexArrays<Sample> out, CFactors<Sample> w)
{
    size_t reversed[TILE];
    for (size_t i = 0; i < TILE; ++i)
        reversed[i] = bitReversed(i, TILE_BITS);
    const int nMiddleBits = std::countr_zero(uLength) - 2 * TILE_BITS;
    const size_t uRowStride = uLength / TILE;
    alignas(64) CTile<Sample> real;
    alignas(64) CTile<Sample> imaginary;
    for (size_t m = 0; m < size_t{1} << nMiddleBits; ++m) {
        const size_t uIn = m * TILE;
        const size_t uOut = bitReversed(m, nMiddleBits) * TILE;
        loadTile(real, pRealIn ? pRealIn + uIn : nullptr, uRowStride, reversed);
        loadTile(imaginary, pImaginaryIn ? pImaginaryIn + uIn : nullptr, uRowStride, reversed);
        joinTileRows(real, imaginary, w);
        storeTile(real, out.m_pReal + uOut, uRowStride, reversed);
        storeTile(imaginary, out.m_pImaginary + uOut, uRowStride, reversed);
    }
}

template <typename Sample>
void reorder(size_t uLength, const Sample* pIn, Sample* pOut)
{
    const int nBits = std::countr_zero(uLength);
    for (size_t i = 0; i < uLength; ++i)
        pOut[bitReversed(i, nBits)] = pIn ? pIn[i] : Sample(0);
}

} // namespace

template <typename Sample>
void CFFT::provideTwiddles(CTwiddles<Sample>& twiddles, int nLength)
{
    const auto uLength = static_cast<size_t>(nLength);
    size_t uHalf = std::max<size_t>(twiddles.m_imaginary.size(), 1);
    if (uHalf >= uLength)
        return;
    twiddles.m_real.resize(uLength);
    twiddles.m_imaginary.resize(uLength);
    for (; uHalf < uLength; uHalf *= 2) {
        const double dDelta = std::numbers::pi / static_cast<double>(uHalf);
        const double dStep = 2.0 * std::cos(-dDelta);
        double dRealBefore = std::cos(-2.0 * dDelta);
        double dReal = std::cos(-dDelta);
        double dImaginaryBefore = std::sin(-2.0 * dDelta);
        double dImaginary = std::sin(-dDelta);
        for (size_t k = 0; k < uHalf; ++k) {
            dRealBefore = std::exchange(dReal, dStep * dReal - dRealBefore);
            dImaginaryBefore = std::exchange(dImaginary, dStep * dImaginary - dImaginaryBefore);
            twiddles.m_real[uHalf + k] = static_cast<Sample>(dReal);
            twiddles.m_imaginary[uHalf + k] = static_cast<Sample>(dImaginary);
        }
    }
}

template <typename Sample>
void CFFT::run(CTwiddles<Sample>& twiddles, int nLength, bool bInverse, const Sample* pRealIn,
               const Sample* pImaginaryIn, Sample* pRealOut, Sample* pImaginaryOut)
{
    if (!pRealIn || !pRealOut || !pImaginaryOut || nLength < 2 ||
        !std::has_single_bit(static_cast<unsigned>(nLength)))
        return;
    provideTwiddles(twiddles, nLength);

    // A transform with conjugate factors is the forward one with real and imaginary parts exchanged,
    // before and after, operation for operation.
    const auto uLength = static_cast<size_t>(nLength);
    const CFactors<Sample> w{twiddles.m_real.data(), twiddles.m_imaginary.data()};
    CComplexArrays<Sample> out{pRealOut, pImaginaryOut};
    if (bInverse) {
        std::swap(pRealIn, pImaginaryIn);
        std::swap(out.m_pReal, out.m_pImaginary);
    }
    if (uLength >= TILE * TILE) {
        reorderInTiles(uLength, pRealIn, pImaginaryIn, out, w);
        joinBlocks(out, TILE, uLength, w);
    } else {
        reorder(uLength, pRealIn, out.m_pReal);
        reorder(uLength, pImaginaryIn, out.m_pImaginary);
        joinBlocks(out, 1, uLength, w);
    }
    if (bInverse) {
        const Sample fScale = Sample(1) / static_cast<Sample>(nLength); // exact, as is each product
        for (size_t i = 0; i < uLength; ++i) {
            pRealOut[i] *= fScale;
            pImaginaryOut[i] *= fScale;
        }
    }
}

void CFFT::transform(int nLength, bool bInverse, const float* pRealIn, const float* pImaginaryIn,
                     float* pRealOut, float* pImaginaryOut)
{
    run(m_floatTwiddles, nLength, bInverse, pRealIn, pImaginaryIn, pRealOut, pImaginaryOut);
}

void CFFT::transform(int nLength, bool bInverse, const double* pRealIn, const double* pImaginaryIn,
                     double* pRealOut, double* pImaginaryOut)
{
    run(m_doubleTwiddles, nLength, bInverse, pRealIn, pImaginaryIn, pRealOut, pImaginaryOut);
}

} // namespace velmora
