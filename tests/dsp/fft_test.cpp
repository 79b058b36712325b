#include "dsp/fft.h"

#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace velmora {
namespace {

template <typename Sample>
struct CSpectrum
{
    explicit CSpectrum(int nLength, Sample fill = Sample(0))
        : m_real(static_cast<std::size_t>(nLength), fill), m_imaginary(m_real)
    {
    }

    [[nodiscard]] std::complex<long double> at(std::size_t k) const { return {m_real[k], m_imaginary[k]}; }
    [[nodiscard]] int length() const { return static_cast<int>(m_real.size()); }

    std::vector<Sample> m_real;
    std::vector<Sample> m_imaginary;
};

template <typename Sample>
CSpectrum<Sample> noise(int nLength, unsigned uSeed)
{
    std::mt19937 generator(uSeed);
    std::uniform_real_distribution<Sample> distribution(-1, 1);
    CSpectrum<Sample> signal(nLength);
    for (std::size_t i = 0; i < signal.m_real.size(); ++i) {
        signal.m_real[i] = distribution(generator);
        signal.m_imaginary[i] = distribution(generator);
    }
    return signal;
}

template <typename Sample>
CSpectrum<Sample> transformed(CFFT& fft, const CSpectrum<Sample>& in, bool bInverse)
{
    CSpectrum<Sample> out(in.length());
    fft.transform(in.length(), bInverse, in.m_real.data(), in.m_imaginary.data(), out.m_real.data(),
                  out.m_imaginary.data());
    return out;
}

// Bin k of the definition, with the exponent's sign of the transform.
template <typename Sample>
std::complex<long double> defined(const CSpectrum<Sample>& in, std::size_t k)
{
    const std::size_t uLength = in.m_real.size();
    const long double dAngle = 2.0L * std::numbers::pi_v<long double> / uLength;
    std::complex<long double> sum;
    for (std::size_t n = 0; n < uLength; ++n)
        sum += in.at(n) * std::polar(1.0L, dAngle * (n * k % uLength));
    return sum;
}

// The root of the mean square error over that of the expected values, of every uStep-th value.
template <typename Sample, typename Expected>
long double relativeError(const CSpectrum<Sample>& found, Expected expected, std::size_t uStep = 1)
{
    long double dError = 0.0L;
    long double dExpected = 0.0L;
    for (std::size_t k = 0; k < found.m_real.size(); k += uStep) {
        const std::complex<long double> value = expected(k);
        dError += std::norm(found.at(k) - value);
        dExpected += std::norm(value);
    }
    return std::sqrt(dError / dExpected);
}

// Rounding grows with the number of stages. The recurrence of the factors adds an error that grows with
// the square of the length; in single precision it vanishes when the factors are narrowed.
template <typename Sample>
long double bound(int nLength)
{
    const long double dLength = nLength;
    const long double dRecurrence = std::is_same_v<Sample, double> ? dLength * dLength / 64.0L : 0.0L;
    return std::numeric_limits<Sample>::epsilon() * (std::log2(dLength) + dRecurrence);
}

template <typename Sample>
class FFT : public testing::Test
{
  protected:
    CFFT m_fft;
};

using CSampleTypes = testing::Types<float, double>;
TYPED_TEST_SUITE(FFT, CSampleTypes);

TYPED_TEST(FFT, AgreesWithTheDefinition)
{
    for (int nLength = 4096; nLength >= 2; nLength /= 2) { // the factors of the longest serve all
        const auto in = noise<TypeParam>(nLength, 1);
        const auto found = transformed(this->m_fft, in, false);
        const std::size_t uStep = nLength <= 256 ? 1 : 31; // the definition is slow
        EXPECT_LT(relativeError(
                      found, [&](std::size_t k) { return defined(in, k); }, uStep),
                  bound<TypeParam>(nLength))
            << nLength;
    }
}

TYPED_TEST(FFT, InverseGivesTheInputBack)
{
    for (int nLength = 2; nLength <= 131072; nLength *= 2) { // each appends to the factors
        const auto in = noise<TypeParam>(nLength, 2);
        const auto back = transformed(this->m_fft, transformed(this->m_fft, in, false), true);
        EXPECT_LT(relativeError(back, [&](std::size_t k) { return in.at(k); }), 2 * bound<TypeParam>(nLength))
            << nLength;
    }
}

TYPED_TEST(FFT, AbsentImaginaryInputIsZeroInBothDirections)
{
    for (const int nLength : {4, 16, 256, 2048}) {
        auto in = noise<TypeParam>(nLength, 4);
        in.m_imaginary.assign(in.m_imaginary.size(), TypeParam(0));
        for (const bool bInverse : {false, true}) {
            const auto expected = transformed(this->m_fft, in, bInverse);
            CSpectrum<TypeParam> out(nLength);
            this->m_fft.transform(nLength, bInverse, in.m_real.data(), nullptr, out.m_real.data(),
                                  out.m_imaginary.data());
            EXPECT_EQ(out.m_real, expected.m_real);
            EXPECT_EQ(out.m_imaginary, expected.m_imaginary);
        }
    }
}

TYPED_TEST(FFT, LeavesTheOutputsOfImpossibleCallsAsTheyWere)
{
    std::vector<TypeParam> in(64, TypeParam(1));
    CSpectrum<TypeParam> out(64, TypeParam(7));
    TypeParam* pReal = out.m_real.data();
    TypeParam* pImaginary = out.m_imaginary.data();
    for (const int nLength : {std::numeric_limits<int>::min(), -8, -1, 0, 1, 3, 6, 12, 48, 63})
        this->m_fft.transform(nLength, false, in.data(), nullptr, pReal, pImaginary);
    this->m_fft.transform(64, false, nullptr, in.data(), pReal, pImaginary);
    this->m_fft.transform(64, true, in.data(), in.data(), nullptr, pImaginary);
    this->m_fft.transform(64, true, in.data(), in.data(), pReal, nullptr);
    const CSpectrum<TypeParam> untouched(64, TypeParam(7));
    EXPECT_EQ(out.m_real, untouched.m_real);
    EXPECT_EQ(out.m_imaginary, untouched.m_imaginary);
}

} // namespace
} // namespace velmora
