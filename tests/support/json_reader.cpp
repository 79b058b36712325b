#include "support/json_reader.h"

#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

namespace velmora::test {
namespace {

using nlohmann::json;

// As the library reads it, but without its leniency towards a key that comes twice.
json parsedStrictly(std::string_view sText)
{
    std::vector<std::set<std::string>> keys;
    return json::parse(sText, [&keys](int, json::parse_event_t eEvent, const json& value) {
        if (eEvent == json::parse_event_t::object_start)
            keys.emplace_back();
        else if (eEvent == json::parse_event_t::object_end)
            keys.pop_back();
        else if (eEvent == json::parse_event_t::key && !keys.back().insert(value.get<std::string>()).second)
            throw std::runtime_error("the key " + value.get<std::string>() + " twice");
        return true;
    });
}

CJsonValue converted(const json& value)
{
    using enum CJsonValue::EKind;
    CJsonValue made;
    if (value.is_boolean()) {
        made.m_eKind = boolean;
        made.m_bValue = value.get<bool>();
    } else if (value.is_number()) {
        made.m_eKind = number;
        made.m_dNumber = value.get<double>();
    } else if (value.is_string()) {
        made.m_eKind = text;
        made.m_sText = value.get<std::string>();
    } else if (value.is_array()) {
        made.m_eKind = array;
        for (const json& element : value)
            made.m_elements.push_back(converted(element));
    } else if (value.is_object()) {
        made.m_eKind = object;
        for (const auto& [sName, member] : value.items())
            made.m_members.emplace(sName, converted(member));
    }
    return made;
}

template <typename T>
const T& require(bool bTrue, const T& value, const std::string& sWhat)
{
    if (!bTrue)
        throw std::runtime_error("JSON value: " + sWhat);
    return value;
}

} // namespace

CJsonValue CJsonValue::parse(std::string_view sText)
{
    try {
        return converted(parsedStrictly(sText));
    } catch (const json::exception& error) {
        throw std::runtime_error(error.what());
    }
}

bool CJsonValue::boolean() const
{
    return require(m_eKind == EKind::boolean, m_bValue, "not a boolean");
}

double CJsonValue::number() const
{
    return require(m_eKind == EKind::number, m_dNumber, "not a number");
}

const std::string& CJsonValue::text() const
{
    return require(m_eKind == EKind::text, m_sText, "not a text");
}

const CJsonValue& CJsonValue::operator[](const std::string& sMember) const
{
    return require(m_members.contains(sMember), m_members, "no member " + sMember).at(sMember);
}

const CJsonValue& CJsonValue::operator[](std::size_t uElement) const
{
    return require(uElement < m_elements.size(), m_elements, "no such element")[uElement];
}

const std::vector<CJsonValue>& CJsonValue::elements() const
{
    return require(m_eKind == EKind::array, m_elements, "not an array");
}

std::vector<std::string> CJsonValue::members() const
{
    std::vector<std::string> names;
    for (const auto& [sName, value] : m_members)
        names.push_back(sName);
    return names;
}

} // namespace velmora::test
