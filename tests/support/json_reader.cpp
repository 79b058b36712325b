#include "support/json_reader.h"

#include "base/text.h"

#include <cctype>
#include <stdexcept>

namespace velmora::test {

namespace {

class CJsonParser
{
  public:
    explicit CJsonParser(std::string_view sText) : m_sText(sText) {}

    CJsonValue parse()
    {
        CJsonValue value = parseValue();
        skipBlanks();
        if (!m_sText.empty())
            fail("more than one value");
        return value;
    }

  private:
    [[noreturn]] void fail(const std::string& sWhy) const
    {
        throw std::runtime_error("no JSON: " + sWhy + " before \"" + std::string(m_sText.substr(0, 20)) +
                                 "\"");
    }

    void skipBlanks()
    {
        while (!m_sText.empty() && std::string_view(" \t\r\n").find(m_sText[0]) != std::string_view::npos)
            m_sText.remove_prefix(1);
    }

    bool take(std::string_view sToken)
    {
        if (!m_sText.starts_with(sToken))
            return false;
        m_sText.remove_prefix(sToken.size());
        return true;
    }

    void expect(std::string_view sToken)
    {
        skipBlanks();
        if (!take(sToken))
            fail("expected " + std::string(sToken));
    }

    CJsonValue parseValue()
    {
        using enum CJsonValue::EKind;
        CJsonValue value;
        skipBlanks();
        if (take("null"))
            return value;
        if (take("{"))
            return parseObject();
        if (take("["))
            return parseArray();
        if (m_sText.starts_with('"')) {
            value.m_eKind = text;
            value.m_sText = parseText();
        } else if (m_sText.starts_with('t') || m_sText.starts_with('f')) {
            value.m_eKind = boolean;
            value.m_bValue = take("true");
            if (!value.m_bValue)
                expect("false");
        } else {
            value.m_eKind = number;
            value.m_dNumber = parseNumberToken();
        }
        return value;
    }

    CJsonValue parseObject()
    {
        CJsonValue value;
        value.m_eKind = CJsonValue::EKind::object;
        skipBlanks();
        if (take("}"))
            return value;
        do {
            skipBlanks();
            const std::string sKey = parseText();
            expect(":");
            if (!value.m_members.emplace(sKey, parseValue()).second)
                fail("the key " + sKey + " twice");
            skipBlanks();
        } while (take(","));
        expect("}");
        return value;
    }

    CJsonValue parseArray()
    {
        CJsonValue value;
        value.m_eKind = CJsonValue::EKind::array;
        skipBlanks();
        if (take("]"))
            return value;
        do {
            value.m_elements.push_back(parseValue());
            skipBlanks();
        } while (take(","));
        expect("]");
        return value;
    }

    std::string parseText()
    {
        expect("\"");
        std::string sValue;
        while (!m_sText.empty() && m_sText[0] != '"') {
            const char c = m_sText[0];
            if (static_cast<unsigned char>(c) < 0x20)
                fail("a control character in a text");
            m_sText.remove_prefix(1);
            if (c == '\\')
                appendEscape(sValue);
            else
                sValue += c;
        }
        expect("\"");
        return sValue;
    }

    void appendEscape(std::string& sValue)
    {
        constexpr std::string_view LETTERS = "\"\\/bfnrt";
        constexpr std::string_view MEANINGS = "\"\\/\b\f\n\r\t";
        if (m_sText.empty())
            fail("an escape at the end");
        const auto uLetter = LETTERS.find(m_sText[0]);
        if (uLetter != std::string_view::npos) {
            sValue += MEANINGS[uLetter];
            m_sText.remove_prefix(1);
            return;
        }
        expect("u00"); // nothing beyond is ever escaped
        if (m_sText.size() < 2 || !std::isxdigit(static_cast<unsigned char>(m_sText[0])) ||
            !std::isxdigit(static_cast<unsigned char>(m_sText[1])))
            fail("a bad escape");
        sValue += static_cast<char>(std::stoi(std::string(m_sText.substr(0, 2)), nullptr, 16));
        m_sText.remove_prefix(2);
    }

    double parseNumberToken()
    {
        const std::string_view sToken = m_sText.substr(0, m_sText.find_first_not_of("+-.0123456789eE"));
        const auto value = parseNumber(sToken);
        const bool bBegins =
            !sToken.empty() && (sToken[0] == '-' || std::isdigit(static_cast<unsigned char>(sToken[0])));
        if (!bBegins || !value)
            fail("a bad number");
        m_sText.remove_prefix(sToken.size());
        return *value;
    }

    std::string_view m_sText;
};

void require(bool bTrue, const char* pWhat)
{
    if (!bTrue)
        throw std::runtime_error(std::string("JSON value: ") + pWhat);
}

} // namespace

CJsonValue CJsonValue::parse(std::string_view sText)
{
    return CJsonParser(sText).parse();
}

bool CJsonValue::boolean() const
{
    require(m_eKind == EKind::boolean, "not a boolean");
    return m_bValue;
}

double CJsonValue::number() const
{
    require(m_eKind == EKind::number, "not a number");
    return m_dNumber;
}

const std::string& CJsonValue::text() const
{
    require(m_eKind == EKind::text, "not a text");
    return m_sText;
}

const CJsonValue& CJsonValue::operator[](const std::string& sMember) const
{
    require(m_members.contains(sMember), ("no member " + sMember).c_str());
    return m_members.at(sMember);
}

const CJsonValue& CJsonValue::operator[](std::size_t uElement) const
{
    require(uElement < m_elements.size(), "no such element");
    return m_elements[uElement];
}

const std::vector<CJsonValue>& CJsonValue::elements() const
{
    require(m_eKind == EKind::array, "not an array");
    return m_elements;
}

std::vector<std::string> CJsonValue::members() const
{
    std::vector<std::string> names;
    for (const auto& [sName, value] : m_members)
        names.push_back(sName);
    return names;
}

} // namespace velmora::test
