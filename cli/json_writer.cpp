#include "cli/json_writer.h"

#include "base/text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace velmora::cli {

namespace {

// How many bytes the valid UTF-8 sequence at the beginning of sText has; 0 if there is none.
std::size_t utf8SequenceLength(std::string_view sText)
{
    const auto byteAt = [&](std::size_t u) { return static_cast<unsigned char>(sText[u]); };
    const unsigned uFirst = byteAt(0);
    if (uFirst < 0x80)
        return 1;
    const std::size_t uLength = uFirst >= 0xF0 ? 4 : uFirst >= 0xE0 ? 3 : 2;
    if (uFirst < 0xC2 || uFirst > 0xF4 || sText.size() < uLength)
        return 0;
    for (std::size_t u = 1; u < uLength; ++u)
        if ((byteAt(u) & 0xC0U) != 0x80)
            return 0;
    const unsigned uSecond = byteAt(1);
    const bool bOverlong = (uFirst == 0xE0 && uSecond < 0xA0) || (uFirst == 0xF0 && uSecond < 0x90);
    const bool bSurrogate = uFirst == 0xED && uSecond >= 0xA0;
    const bool bBeyondUnicode = uFirst == 0xF4 && uSecond >= 0x90;
    return bOverlong || bSurrogate || bBeyondUnicode ? 0 : uLength;
}

std::string quoted(std::string_view sText)
{
    std::string sQuoted = "\"";
    for (const char c : toUtf8(sText)) {
        switch (c) {
        case '"':
            sQuoted += "\\\"";
            break;
        case '\\':
            sQuoted += "\\\\";
            break;
        case '\n':
            sQuoted += "\\n";
            break;
        case '\r':
            sQuoted += "\\r";
            break;
        case '\t':
            sQuoted += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
                sQuoted += formatted("\\u%04x", static_cast<unsigned>(c));
            else
                sQuoted += c;
        }
    }
    return sQuoted + '"';
}

} // namespace

std::string toUtf8(std::string_view sText)
{
    std::string sUtf8;
    while (!sText.empty()) {
        std::size_t uLength = utf8SequenceLength(sText);
        if (uLength == 0) {
            const unsigned uByte = static_cast<unsigned char>(sText[0]);
            sUtf8 += static_cast<char>(0xC0 | (uByte >> 6));
            sUtf8 += static_cast<char>(0x80 | (uByte & 0x3F));
            uLength = 1;
        } else {
            sUtf8 += sText.substr(0, uLength);
        }
        sText.remove_prefix(uLength);
    }
    return sUtf8;
}

void CJsonWriter::separate()
{
    if (m_bNeedsComma)
        m_sText += ',';
    m_bNeedsComma = true;
}

void CJsonWriter::beginObject()
{
    separate();
    m_sText += '{';
    m_bNeedsComma = false;
}

void CJsonWriter::endObject()
{
    m_sText += '}';
    m_bNeedsComma = true;
}

void CJsonWriter::beginArray()
{
    separate();
    m_sText += '[';
    m_bNeedsComma = false;
}

void CJsonWriter::endArray()
{
    m_sText += ']';
    m_bNeedsComma = true;
}

void CJsonWriter::key(std::string_view sKey)
{
    separate();
    m_sText += quoted(sKey) + ':';
    m_bNeedsComma = false;
}

void CJsonWriter::value(std::string_view sText)
{
    separate();
    m_sText += quoted(sText);
}

void CJsonWriter::value(bool bValue)
{
    separate();
    m_sText += bValue ? "true" : "false";
}

void CJsonWriter::value(float fValue)
{
    number(fValue);
}

void CJsonWriter::value(double dValue)
{
    number(dValue);
}

void CJsonWriter::value(std::int64_t nValue)
{
    separate();
    m_sText += std::to_string(nValue);
}

void CJsonWriter::value(std::uint64_t uValue)
{
    separate();
    m_sText += std::to_string(uValue);
}

void CJsonWriter::null()
{
    separate();
    m_sText += "null";
}

template <class T>
void CJsonWriter::number(T tValue)
{
    if (std::isnan(tValue))
        return value("nan");
    if (std::isinf(tValue))
        return value(tValue > 0 ? "inf" : "-inf");
    std::array<char, 40> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), tValue, std::chars_format::general,
                                   std::numeric_limits<T>::max_digits10);
    separate();
    m_sText.append(text.data(), end.ptr);
}

} // namespace velmora::cli
