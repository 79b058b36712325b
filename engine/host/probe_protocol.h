#pragma once

#include "host/plugin_probe.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// What velmora-probe tells the program that started it, one line for each message:
//
//     begin <number>                                      the library of that number, counted from 0, is next
//     step <step>                                         what is being done with it now
//     result <status> <version> <name> <reason>           it is done with
//     end                                                 so are all of them
//
// Steps and statuses are numbers, texts are percent-encoded, single blanks stand between the fields.

// The descriptor that the helper finds the pipe on.
inline constexpr int PROBE_CHANNEL = 3;

// The helper's exit status when it can no longer write to the pipe.
inline constexpr int PROBE_EXIT_CHANNEL_LOST = 113;

enum class EProbeStep
{
    loading,
    asking,
    creating,
    reading,
    deleting,
    unloading
};

// How a step stands in a sentence: "while it was being created".
[[nodiscard]] const char* probeStepText(EProbeStep eStep);

enum class EProbeMessage
{
    begin,
    step,
    result,
    end
};

struct CProbeMessage
{
    EProbeMessage m_eKind = EProbeMessage::end;
    std::size_t m_uNumber = 0;                // of begin
    EProbeStep m_eStep = EProbeStep::loading; // of step
    CProbeResult m_result;                    // of result, without the file
};

// The message's line, its line end included. Texts are cut after MAX_PROBE_TEXT bytes.
[[nodiscard]] std::string probeLine(const CProbeMessage& message);

// The message of a line without its line end; none if it is not one.
[[nodiscard]] std::optional<CProbeMessage> parseProbeLine(std::string_view sLine);

inline constexpr std::size_t MAX_PROBE_TEXT = 1023;
inline constexpr std::size_t MAX_PROBE_LINE = 8192; // no line is longer

} // namespace velmora
