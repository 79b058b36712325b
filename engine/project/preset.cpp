#include "project/preset.h"

#include "base/text.h"
#include "host/leading_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace velmora {

namespace {

constexpr std::size_t JOYSTICK_STEPS = 16;
constexpr std::size_t JOYSTICK_VARIABLES = 7;

template <typename T>
std::optional<T> leadingInteger(std::string_view sText)
{
    sText = trimmed(sText);
    T value = 0;
    if (std::from_chars(sText.data(), sText.data() + sText.size(), value).ec != std::errc())
        return std::nullopt;
    return value;
}

std::optional<double> finiteNumber(std::string_view sText)
{
    const auto dValue = leadingNumber(sText);
    return dValue && std::isfinite(*dValue) ? dValue : std::nullopt;
}

float heldToFloat(double dValue)
{
    constexpr double LARGEST = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(dValue, -LARGEST, LARGEST));
}

// "id:value"
std::optional<CPreset::CValue> idAndValue(std::string_view sLine)
{
    const auto uColon = sLine.find(':');
    if (uColon == std::string_view::npos)
        return std::nullopt;
    const auto uId = leadingInteger<std::uint32_t>(sLine.substr(0, uColon));
    const auto dValue = finiteNumber(sLine.substr(uColon + 1));
    if (!uId || !dValue)
        return std::nullopt;
    return CPreset::CValue{*uId, *dValue};
}

// In the order of the ids; of several with one id the first.
std::vector<CPreset::CValue> sortedById(std::vector<CPreset::CValue> values)
{
    std::ranges::stable_sort(values, {}, &CPreset::CValue::m_uId);
    const auto sameId = [](const auto& left, const auto& right) { return left.m_uId == right.m_uId; };
    values.erase(std::unique(values.begin(), values.end(), sameId), values.end());
    return values;
}

double valueOf(const std::vector<CPreset::CValue>& sorted, std::uint32_t uId)
{
    const auto found = std::ranges::lower_bound(sorted, uId, {}, &CPreset::CValue::m_uId);
    return found != sorted.end() && found->m_uId == uId ? found->m_dValue : 0.0;
}

} // namespace

// Takes line after line off a text.
class CPreset::CLines
{
  public:
    explicit CLines(std::string_view sText) : m_sRest(sText) {}

    [[nodiscard]] bool atEnd() const { return m_sRest.empty(); }

    // None when nothing is left; the last line needs no line end.
    std::optional<std::string_view> next()
    {
        if (m_sRest.empty())
            return std::nullopt;
        std::string_view sLine = m_sRest.substr(0, m_sRest.find('\n'));
        m_sRest.remove_prefix(std::min(sLine.size() + 1, m_sRest.size()));
        if (sLine.ends_with('\r'))
            sLine.remove_suffix(1);
        return sLine;
    }

    // The next line's number; none, too, if it has none.
    std::optional<std::int64_t> nextInteger()
    {
        const auto sLine = next();
        return sLine ? leadingInteger<std::int64_t>(*sLine) : std::nullopt;
    }

  private:
    std::string_view m_sRest;
};

CPreset::CPreset(std::string_view sContents)
{
    CLines lines(sContents.substr(0, sContents.empty() ? 0 : sContents.size() - 1));
    const auto sName = lines.next();
    if (!sName)
        return;
    m_sName = presetNameLine(*sName);
    readControls(lines);
    m_sortedValues = sortedById(m_values);
    if (!m_bHasAllControls)
        return;

    const auto nX = lines.nextInteger();
    const auto nY = lines.nextInteger();
    if (nX)
        m_uTrackPadX = static_cast<std::uint32_t>(*nX);
    if (nY)
        m_uTrackPadY = static_cast<std::uint32_t>(*nY);
    readJoystick(lines);
    readAdditional(lines);
    m_sortedAdditional = sortedById(std::move(m_sortedAdditional));
}

void CPreset::readControls(CLines& lines)
{
    if (lines.atEnd())
        return;
    const std::int64_t nCount = lines.nextInteger().value_or(0);
    for (std::int64_t n = 0; n < nCount; ++n) {
        const auto sLine = lines.next();
        if (!sLine)
            return;
        if (const auto value = idAndValue(*sLine))
            m_values.push_back(*value);
    }
    m_bHasAllControls = true;
}

void CPreset::readJoystick(CLines& lines)
{
    const std::int64_t nSteps = lines.nextInteger().value_or(0);
    for (std::int64_t nStep = 0; nStep < nSteps && !lines.atEnd(); ++nStep)
        for (std::size_t uVariable = 0; uVariable < JOYSTICK_VARIABLES; ++uVariable) {
            const auto sLine = lines.next();
            if (!sLine)
                return;
            if (nStep >= static_cast<std::int64_t>(JOYSTICK_STEPS))
                continue;
            const auto dValue = finiteNumber(*sLine);
            m_joystick.push_back(dValue ? std::optional(heldToFloat(*dValue)) : std::nullopt);
        }
}

void CPreset::readAdditional(CLines& lines)
{
    while (m_uAdditionalCount < MAX_ADDITIONAL_PRESET_VALUES) {
        const auto sLine = lines.next();
        if (!sLine)
            return;
        if (sLine->find(':') == std::string_view::npos)
            continue;
        ++m_uAdditionalCount;
        if (const auto value = idAndValue(*sLine))
            m_sortedAdditional.push_back(*value);
    }
}

double CPreset::controlValue(std::uint32_t uControlId) const
{
    return valueOf(m_sortedValues, uControlId);
}

float CPreset::joystickValue(std::size_t uStep, std::size_t uVariable) const
{
    const std::size_t uIndex = uStep * JOYSTICK_VARIABLES + uVariable;
    if (uStep >= JOYSTICK_STEPS || uVariable >= JOYSTICK_VARIABLES || uIndex >= m_joystick.size())
        return 0.0F;
    return m_joystick[uIndex].value_or(0.0F);
}

float CPreset::additionalValue(std::uint32_t uIndex) const
{
    return heldToFloat(valueOf(m_sortedAdditional, uIndex));
}

std::string presetNameLine(std::string_view sName)
{
    std::string sLine(sName.substr(0, MAX_PRESET_NAME_LENGTH));
    std::ranges::replace_if(
        sLine, [](char c) { return c == '\n' || c == '\r' || c == '\0'; }, ' ');
    return sLine;
}

} // namespace velmora
