#pragma once

#include "support/wave_bytes.h"

#include <bit>
#include <cctype>
#include <cstdint>
#include <functional>
#include <random>
#include <sstream>
#include <string>

namespace velmora::test {

// Project files put together by hand, without the workbench's own table of fields.
//
// A shape is one letter for each field, with a number when the field has that many values: i word, f float,
// b flag, s text, S text that is not empty, t text of a control, k kind of a control, m flag that only a
// meter keeps, n -1, L the list of labels.
inline constexpr const char* CONTROL_SHAPE =
    "t t t f f f f f i k i f t t m m b i m i f f i32 i i b i i i b b "
    "i64 f64";

// In which versions a control ends after which field.
inline constexpr struct
{
    int m_nSince;
    int m_nFields;
} CONTROL_ENDS[] = {{1, 11},  {4, 13},  {6, 17},  {7, 18},  {8, 19}, {11, 22},
                    {15, 23}, {16, 25}, {17, 29}, {23, 30}, {24, 33}};

inline constexpr struct
{
    int m_nFirst;
    int m_nLast;
    const char* m_pShape;
} PROJECT_SHAPE[] = {{1, 99, "s s s s s"},
                     {2, 99, "s"},
                     {3, 99, "b"},
                     {5, 99, "i i"},
                     {9, 99, "s s s"},
                     {10, 99, "b"},
                     {12, 99, "b b b"},
                     {13, 99, "b"},
                     {14, 99, "n n"},
                     {15, 20, "i32"},
                     {21, 99, "i64"},
                     {18, 99, "f80"},
                     {19, 99, "b"},
                     {20, 99, "i b i i i i b i i i"},
                     {22, 99, "f32"},
                     {24, 99, "i64 f64"},
                     {25, 99, "L i64 i64"},
                     {26, 99, "b"},
                     {27, 27, "S s s b b b"},
                     {29, 99, "S s s b b b"},
                     {28, 99, "b s"},
                     {29, 99, "i8"},
                     {30, 99, "s"},
                     {31, 99, "b"}};

// The bytes of one value. The fields of control c, from 0, count from 100 (c + 1) + 1, those of the project
// from 4.
using ValueBytes = std::function<std::string(char cType, int nField, int nElement)>;

inline std::string textBytes(const std::string& sText)
{
    const std::uint32_t uLength = static_cast<std::uint32_t>(sText.size());
    const std::string sLength =
        uLength < 255 ? littleEndianBytes(uLength, 1) : "\xFF" + littleEndianBytes(uLength, 2);
    return sLength + sText;
}

inline std::string fieldsBytes(const std::string& sShape, int nField, int nFields, const ValueBytes& bytes)
{
    std::string sBytes, sToken;
    std::istringstream tokens(sShape);
    for (; nFields > 0 && tokens >> sToken; ++nField, --nFields)
        for (int i = 0, nValues = sToken.size() > 1 ? std::stoi(sToken.substr(1)) : 1; i < nValues; ++i)
            sBytes += bytes(sToken[0], nField, i);
    return sBytes;
}

inline std::string projectStream(int nVersion, int nControls, const ValueBytes& bytes)
{
    int nControlFields = 0;
    for (const auto& end : CONTROL_ENDS)
        if (nVersion >= end.m_nSince)
            nControlFields = end.m_nFields;
    std::string sProjectShape;
    for (const auto& row : PROJECT_SHAPE)
        if (nVersion >= row.m_nFirst && nVersion <= row.m_nLast)
            sProjectShape += std::string(row.m_pShape) + ' ';

    std::string sBytes = littleEndianBytes(static_cast<std::uint32_t>(nVersion), 4) +
                         littleEndianBytes(static_cast<std::uint32_t>(nControls), 4);
    for (int nControl = 0; nControl < nControls; ++nControl)
        sBytes += fieldsBytes(CONTROL_SHAPE, 100 * (nControl + 1) + 1, nControlFields, bytes);
    return sBytes + fieldsBytes(sProjectShape, 4, 99, bytes);
}

// Value e of field n is 100 n + e, the text of field n "text n"; controls are meters; nFlag is the field
// whose flag is set, -1 for all.
inline std::string numberedStream(int nVersion, int nControls, int nFlag = -1)
{
    return projectStream(nVersion, nControls, [nFlag](char cType, int nField, int nElement) {
        const int nNumber = 100 * nField + nElement;
        switch (cType) {
        case 'f':
            return littleEndianBytes(std::bit_cast<std::uint32_t>(static_cast<float>(nNumber)), 4);
        case 'k':
            return littleEndianBytes(103, 4);
        case 'n':
            return littleEndianBytes(0xFFFFFFFF, 4);
        case 'b':
        case 'm':
            return std::string(1, nFlag == nField || nFlag < 0 ? '\x7F' : '\0');
        case 'L': {
            std::string sLabels = littleEndianBytes(64, 2);
            for (int i = 0; i < 64; ++i)
                sLabels += textBytes(i % 2 ? "label " + std::to_string(i) : "");
            return sLabels;
        }
        case 'i':
            return littleEndianBytes(static_cast<std::uint32_t>(nNumber), 4);
        default:
            return textBytes("text " + std::to_string(nField));
        }
    });
}

// Anything that comes back from a load as it was.
inline std::string randomStream(int nVersion, std::mt19937& random)
{
    const auto below = [&](std::uint32_t uEnd) { return static_cast<std::uint32_t>(random() % uEnd); };
    const auto text = [&](std::uint32_t uLowestByte, std::size_t uFewest) {
        std::string sText(uFewest + (below(50) ? below(20) : 250 + below(770)), '\0');
        for (char& c : sText)
            c = static_cast<char>(uLowestByte + below(256 - uLowestByte));
        return textBytes(sText);
    };
    std::uint32_t uKind = 0;
    return projectStream(nVersion, static_cast<int>(below(5)), [&](char cType, int, int) {
        switch (cType) {
        case 'k':
            return littleEndianBytes(uKind = 100 + below(8), 4);
        case 'n':
            return littleEndianBytes(0xFFFFFFFF, 4);
        case 'b':
        case 'm':
            return littleEndianBytes(cType == 'b' || uKind == 103 ? below(2) : 0, 1);
        case 'L': {
            std::string sLabels = littleEndianBytes(64, 2);
            for (int i = 0; i < 64; ++i)
                sLabels += below(2) ? text(1, 0) : textBytes("");
            return sLabels;
        }
        case 's':
        case 'S':
            return text(0, cType == 'S');
        case 't':
            return text(1, 0);
        default:
            return littleEndianBytes(static_cast<std::uint32_t>(random()), 4); // of a float too, NaN included
        }
    });
}

} // namespace velmora::test
