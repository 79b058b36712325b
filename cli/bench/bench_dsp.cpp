#include "cli/bench/bench_parts.h"
#include "dsp/fft.h"
#include "dsp/level_detector.h"

#include <cmath>

namespace velmora::cli {

namespace {

template <class TSample>
CBenchFigure benchTransform(const char* pPrecision, int nLength)
{
    const auto uLength = static_cast<std::size_t>(nLength);
    std::vector<TSample> in(uLength);
    for (std::size_t u = 0; u < uLength; ++u)
        in[u] = static_cast<TSample>(std::sin(0.1 * static_cast<double>(u)));
    std::vector<TSample> real(uLength);
    std::vector<TSample> imaginary(uLength);
    CFFT fft;
    const double dSeconds = medianSecondsOf(
        [&] { fft.transform(nLength, false, in.data(), nullptr, real.data(), imaginary.data()); });
    return {"FFT of " + std::to_string(nLength) + " points, " + pPrecision, 1e6 * dSeconds, "us"};
}

std::vector<CBenchFigure> benchDetector()
{
    constexpr int SAMPLES = 8192;
    std::vector<float> samples(SAMPLES);
    for (int n = 0; n < SAMPLES; ++n)
        samples[static_cast<std::size_t>(n)] = 0.5F * std::sin(0.05F * static_cast<float>(n));
    CLevelDetector detector;
    detector.init(44100.0F, 0.0F, 500.0F, false, CLevelDetector::ROOT_MEAN_SQUARE, true);
    volatile float fLevel = 0.0F; // keeps the results alive
    const double dSingle = medianSecondsOf([&] {
        for (const float fSample : samples)
            fLevel = detector.detect(fSample);
    });
    const double dBlock = medianSecondsOf([&] { fLevel = detector.detectBlock(samples.data(), 1, SAMPLES); });
    return {{"level detector, one sample", 1e9 * dSingle / SAMPLES, "ns"},
            {"level detector, one sample of a block", 1e9 * dBlock / SAMPLES, "ns"}};
}

} // namespace

std::vector<CBenchFigure> benchDsp(CBenchSteps& steps)
{
    std::vector<CBenchFigure> figures;
    for (const int nLength : {1024, 131072}) {
        figures.push_back(benchTransform<float>("float", nLength));
        steps.next();
        figures.push_back(benchTransform<double>("double", nLength));
        steps.next();
    }
    for (CBenchFigure& figure : benchDetector())
        figures.push_back(std::move(figure));
    steps.next();
    return figures;
}

} // namespace velmora::cli
