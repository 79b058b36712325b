#include "host/probe_protocol.h"

#include "base/text.h"

#include <array>
#include <charconv>
#include <vector>

namespace velmora {

namespace {

constexpr std::array<const char*, 4> KEYWORDS{"begin", "step", "result", "end"};
constexpr std::array<const char*, 6> STEP_TEXTS{
    "while it was being loaded",  "while it was being asked for its version",
    "while it was being created", "while its name and controls were being read",
    "while it was being deleted", "while it was being unloaded"};
constexpr int LAST_STEP = static_cast<int>(EProbeStep::unloading);
constexpr int LAST_STATUS = static_cast<int>(EProbeStatus::badObject);

bool needsEscape(char c)
{
    return c <= ' ' || c >= '\x7f' || c == '%';
}

std::string percentEncoded(std::string_view sText)
{
    std::string sEncoded;
    for (const char c : sText.substr(0, MAX_PROBE_TEXT)) {
        if (needsEscape(c))
            sEncoded += formatted("%%%02X", static_cast<unsigned char>(c));
        else
            sEncoded += c;
    }
    return sEncoded;
}

template <typename Number>
std::optional<Number> numberIn(std::string_view sText, int nBase = 10)
{
    Number number{};
    const char* pEnd = sText.data() + sText.size();
    const auto result = std::from_chars(sText.data(), pEnd, number, nBase);
    if (sText.empty() || result.ec != std::errc() || result.ptr != pEnd)
        return std::nullopt;
    return number;
}

std::optional<std::string> percentDecoded(std::string_view sText)
{
    std::string sDecoded;
    for (std::size_t i = 0; i < sText.size(); ++i) {
        if (sText[i] != '%') {
            sDecoded += sText[i];
            continue;
        }
        const auto code = numberIn<unsigned char>(sText.substr(i + 1, 2), 16);
        if (!code || i + 2 >= sText.size())
            return std::nullopt;
        sDecoded += static_cast<char>(*code);
        i += 2;
    }
    return sDecoded;
}

// A number from 0 to nLast, as an enumerator.
template <typename Enum>
std::optional<Enum> enumeratorIn(std::string_view sText, int nLast)
{
    const auto number = numberIn<int>(sText);
    if (!number || *number < 0 || *number > nLast)
        return std::nullopt;
    return static_cast<Enum>(*number);
}

bool readBegin(const std::vector<std::string>& fields, CProbeMessage& message)
{
    const auto number = numberIn<std::size_t>(fields[1]);
    message.m_uNumber = number.value_or(0);
    return number.has_value();
}

bool readStep(const std::vector<std::string>& fields, CProbeMessage& message)
{
    const auto step = enumeratorIn<EProbeStep>(fields[1], LAST_STEP);
    message.m_eStep = step.value_or(EProbeStep::loading);
    return step.has_value();
}

bool readResult(const std::vector<std::string>& fields, CProbeMessage& message)
{
    const auto status = enumeratorIn<EProbeStatus>(fields[1], LAST_STATUS);
    const auto version = numberIn<int>(fields[2]);
    const auto name = percentDecoded(fields[3]);
    const auto reason = percentDecoded(fields[4]);
    if (!status || !version || !name || !reason)
        return false;
    message.m_result = {{}, *status, *name, *version, *reason};
    return true;
}

bool readEnd(const std::vector<std::string>&, CProbeMessage&)
{
    return true;
}

struct CLineKind
{
    std::size_t m_uFields; // keyword included
    bool (*m_pRead)(const std::vector<std::string>&, CProbeMessage&);
};
constexpr std::array<CLineKind, 4> LINE_KINDS{{{2, readBegin}, {2, readStep}, {5, readResult}, {1, readEnd}}};

} // namespace

const char* probeStepText(EProbeStep eStep)
{
    return STEP_TEXTS[static_cast<std::size_t>(eStep)];
}

std::string probeLine(const CProbeMessage& message)
{
    std::string sLine = KEYWORDS[static_cast<std::size_t>(message.m_eKind)];
    if (message.m_eKind == EProbeMessage::begin)
        sLine += " " + std::to_string(message.m_uNumber);
    if (message.m_eKind == EProbeMessage::step)
        sLine += " " + std::to_string(static_cast<int>(message.m_eStep));
    if (message.m_eKind == EProbeMessage::result) {
        const auto& result = message.m_result;
        sLine += " " + std::to_string(static_cast<int>(result.m_eStatus)) + " " +
                 std::to_string(result.m_nVersion) + " " + percentEncoded(result.m_sPlugInName) + " " +
                 percentEncoded(result.m_sReason);
    }
    return sLine + "\n";
}

std::optional<CProbeMessage> parseProbeLine(std::string_view sLine)
{
    const auto fields = split(sLine, ' ');
    for (std::size_t i = 0; i < KEYWORDS.size() && !fields.empty(); ++i) {
        CProbeMessage message{static_cast<EProbeMessage>(i), 0, EProbeStep::loading, {}};
        if (fields[0] == KEYWORDS[i])
            return fields.size() == LINE_KINDS[i].m_uFields && LINE_KINDS[i].m_pRead(fields, message)
                       ? std::optional(message)
                       : std::nullopt;
    }
    return std::nullopt;
}

} // namespace velmora
