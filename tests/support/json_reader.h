#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::test {

// A JSON value as a test looks at it. Strict: what is not JSON throws std::runtime_error.
class CJsonValue
{
  public:
    enum class EKind
    {
        null,
        boolean,
        number,
        text,
        array,
        object
    };

    // The one value that the whole text is, white space around it apart.
    [[nodiscard]] static CJsonValue parse(std::string_view sText);

    // Of the right kind, else they throw; so does a missing member or element.
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] double number() const;
    [[nodiscard]] const std::string& text() const;
    [[nodiscard]] const CJsonValue& operator[](const std::string& sMember) const;
    [[nodiscard]] const CJsonValue& operator[](std::size_t uElement) const;
    [[nodiscard]] const std::vector<CJsonValue>& elements() const;
    [[nodiscard]] std::vector<std::string> members() const; // in alphabetical order

    EKind m_eKind = EKind::null;
    bool m_bValue = false;
    double m_dNumber = 0.0;
    std::string m_sText;
    std::vector<CJsonValue> m_elements;
    std::map<std::string, CJsonValue> m_members;
};

} // namespace velmora::test
