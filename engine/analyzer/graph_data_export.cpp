#include "analyzer/graph_data_export.h"

#include "base/text.h"

#include <array>
#include <cmath>

namespace velmora {

namespace {

struct CGraphDescription
{
    EGraphKind m_eKind;
    const char* m_pGraphType;
    const char* m_pUnits;
    const char* m_pCsvHeading;
};

constexpr std::array<CGraphDescription, 5> DESCRIPTIONS = {{
    {EGraphKind::oscilloscope, "//     Graph Type: \tOscilloscope (time) \n",
     "//     Units: \t\tAmplitude [-1..+1]) \n", "sample,amplitude\n"},
    {EGraphKind::frequency, "//     Graph Type: \tFFT (Frequency) \n", "//     Units: \t\tdBFS \n",
     "bin,dBFS\n"},
    {EGraphKind::impulseResponse, "//     Graph Type: \tImpulse Response (time) \n",
     "//     Units: \t\tAmplitude [-1..+1] \n", "sample,amplitude\n"},
    {EGraphKind::stepResponse, "//     Graph Type: \tStep Response (time) \n",
     "//     Units: \t\tAmplitude [-1..+1] \n", "sample,amplitude\n"},
    {EGraphKind::phaseResponse, "//     Graph Type: \tPhase Response (angle) \n",
     "//     Units: \t\tdegrees \n", "bin,degrees\n"},
}};

const CGraphDescription& descriptionOf(EGraphKind eKind)
{
    for (const auto& description : DESCRIPTIONS)
        if (description.m_eKind == eKind)
            return description;
    return DESCRIPTIONS.front();
}

// How a language writes what is no finite number.
struct CNumberWords
{
    const char* m_pInfinity;
    const char* m_pNegativeInfinity;
    const char* m_pNotANumber;
};

constexpr CNumberWords C_WORDS = {"HUGE_VAL", "-HUGE_VAL", "NAN"}; // of <math.h>
constexpr CNumberWords TEXT_WORDS = {"Inf", "-Inf", "NaN"};

std::string numberText(double dValue, const CNumberWords& words)
{
    if (std::isnan(dValue))
        return words.m_pNotANumber;
    if (std::isinf(dValue))
        return dValue > 0.0 ? words.m_pInfinity : words.m_pNegativeInfinity;
    return formatted("%.16f", dValue);
}

std::string cArrayText(std::span<const double> values, const CGraphDescription& description)
{
    std::string sText = "// --- Velmora(TM) Analyzer Graph Data\n"
                        "//     https://velmora.example\n";
    sText += description.m_pGraphType;
    sText += description.m_pUnits;
    sText += " \n// --- C/C++ style array:\n \n";
    sText += formatted("double dGraphArray[%zu] = {", values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        sText += numberText(values[i], C_WORDS) + (i + 1 < values.size() ? "," : "");
    return sText + "};\n";
}

std::string indexedText(std::span<const double> values, char cSeparator)
{
    std::string sText;
    for (std::size_t i = 0; i < values.size(); ++i)
        sText += std::to_string(i) + cSeparator + numberText(values[i], TEXT_WORDS) + "\n";
    return sText;
}

} // namespace

std::optional<EGraphFormat> graphFormatByName(std::string_view sName)
{
    if (sName == "c")
        return EGraphFormat::cArray;
    if (sName == "matlab")
        return EGraphFormat::matlab;
    if (sName == "csv")
        return EGraphFormat::csv;
    return std::nullopt;
}

std::string graphDataText(std::span<const double> values, EGraphKind eKind, EGraphFormat eFormat)
{
    const CGraphDescription& description = descriptionOf(eKind);
    switch (eFormat) {
    case EGraphFormat::cArray:
        return cArrayText(values, description);
    case EGraphFormat::matlab:
        return indexedText(values, ' ');
    case EGraphFormat::csv:
        return description.m_pCsvHeading + indexedText(values, ',');
    }
    return {};
}

} // namespace velmora
