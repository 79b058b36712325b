#include "analyzer/graph_data_export.h"

#include "base/text.h"

#include <array>

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

std::string cArrayText(std::span<const double> values, const CGraphDescription& description)
{
    std::string sText = "// --- Velmora(TM) Analyzer Graph Data\n"
                        "//     https://velmora.example\n";
    sText += description.m_pGraphType;
    sText += description.m_pUnits;
    sText += " \n// --- C/C++ style array:\n \n";
    sText += formatted("double dGraphArray[%zu] = {", values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        sText += formatted(i + 1 < values.size() ? "%.16f," : "%.16f", values[i]);
    return sText + "};\n";
}

std::string indexedText(std::span<const double> values, char cSeparator)
{
    std::string sText;
    for (std::size_t i = 0; i < values.size(); ++i)
        sText += formatted("%zu%c%.16f\n", i, cSeparator, values[i]);
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
