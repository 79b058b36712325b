#include "tests/cli/markup_check.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <set>
#include <vector>

namespace velmora::test {

namespace {

class CMarkupReader
{
  public:
    explicit CMarkupReader(std::string_view sDocument) : m_sRest(sDocument) {}

    std::string fault()
    {
        for (const unsigned char cByte : m_sRest)
            if (cByte < 0x20 && cByte != '\n' && cByte != '\t')
                return "control character";
        constexpr std::string_view TYPE = "<!DOCTYPE html>\n";
        if (m_sRest.starts_with(TYPE))
            m_sRest.remove_prefix(TYPE.size());
        bool bRootSeen = false;
        while (m_sFault.empty() && !m_sRest.empty()) {
            const std::string_view sText = takeUntil("<");
            checkText(sText, "text");
            if (m_open.empty() && sText.find_first_not_of(" \n\t") != std::string_view::npos)
                fail("text outside the root element");
            if (m_sRest.empty())
                break;
            if (m_open.empty() && bRootSeen)
                fail("a second root element");
            bRootSeen = true;
            readTag();
        }
        if (m_sFault.empty() && !m_open.empty())
            fail("element never closed: " + m_open.back());
        return m_sFault.empty() && !bRootSeen ? "no element" : m_sFault;
    }

  private:
    void fail(const std::string& sFault)
    {
        if (m_sFault.empty())
            m_sFault = sFault + " before: " + std::string(m_sRest.substr(0, 60));
    }

    std::string_view takeUntil(std::string_view sMark)
    {
        const std::size_t uLength = std::min(m_sRest.find(sMark), m_sRest.size());
        const std::string_view sTaken = m_sRest.substr(0, uLength);
        m_sRest.remove_prefix(uLength);
        return sTaken;
    }

    std::string takeName()
    {
        const auto isNameByte = [](char c) {
            return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == ':' || c == '_';
        };
        const auto end = std::find_if_not(m_sRest.begin(), m_sRest.end(), isNameByte);
        const std::string sName(m_sRest.begin(), end);
        m_sRest.remove_prefix(sName.size());
        if (sName.empty())
            fail("a name is missing");
        return sName;
    }

    bool take(std::string_view sPiece)
    {
        const bool bThere = m_sRest.starts_with(sPiece);
        if (bThere)
            m_sRest.remove_prefix(sPiece.size());
        return bThere;
    }

    void skipBlanks() { m_sRest.remove_prefix(std::min(m_sRest.find_first_not_of(" \n\t"), m_sRest.size())); }

    void checkText(std::string_view sText, const char* pWhere)
    {
        constexpr std::array<std::string_view, 5> ENTITIES = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
        if (sText.find('<') != std::string_view::npos)
            fail(std::string("a bare < in ") + pWhere);
        for (std::size_t u = sText.find('&'); u != std::string_view::npos; u = sText.find('&', u + 1))
            if (std::ranges::none_of(ENTITIES, [&](auto s) { return sText.substr(u).starts_with(s); }))
                fail(std::string("a bare & in ") + pWhere);
    }

    void readTag()
    {
        take("<");
        if (take("/")) {
            const std::string sName = takeName();
            if (m_open.empty() || m_open.back() != sName)
                fail("unexpected end of " + sName);
            else
                m_open.pop_back();
            if (!take(">"))
                fail("tag not closed");
            return;
        }
        m_open.push_back(takeName());
        std::set<std::string> attributes;
        for (skipBlanks(); m_sFault.empty() && !m_sRest.starts_with(">") && !m_sRest.starts_with("/>");
             skipBlanks())
            readAttribute(attributes);
        if (take("/>"))
            m_open.pop_back();
        else if (!take(">"))
            fail("tag not closed");
    }

    void readAttribute(std::set<std::string>& attributes)
    {
        const std::string sName = takeName();
        if (!attributes.insert(sName).second)
            fail("attribute given twice: " + sName);
        if (!take("=\""))
            return fail("attribute without a quoted value: " + sName);
        const std::string_view sValue = takeUntil("\"");
        checkText(sValue, "an attribute");
        if (sName == "id" && !m_ids.emplace(sValue).second)
            fail("id given twice: " + std::string(sValue));
        if (!take("\""))
            fail("value without an end");
    }

    std::string_view m_sRest;
    std::vector<std::string> m_open;
    std::set<std::string> m_ids;
    std::string m_sFault;
};

} // namespace

std::string markupFault(std::string_view sDocument)
{
    return CMarkupReader(sDocument).fault();
}

int occurrences(std::string_view sText, std::string_view sPiece)
{
    int nCount = 0;
    for (std::size_t u = sText.find(sPiece); u != std::string_view::npos; u = sText.find(sPiece, u + 1))
        ++nCount;
    return nCount;
}

std::string between(std::string_view sText, std::string_view sBegin, std::string_view sEnd)
{
    const std::size_t uBegin = sText.find(sBegin);
    if (uBegin == std::string_view::npos)
        return {};
    const std::size_t uText = uBegin + sBegin.size();
    const std::size_t uEnd = sText.find(sEnd, uText);
    return uEnd == std::string_view::npos ? std::string() : std::string(sText.substr(uText, uEnd - uText));
}

} // namespace velmora::test
