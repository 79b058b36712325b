#include "cli/stream_options.h"

namespace velmora::cli {

std::vector<COption> inputOptions()
{
    return {
        {"--input-device",
         "NAME",
         "Takes the input of this device: its name, or a beginning that no other has. The settings' unless "
         "given.",
         {EValueKind::Text}}};
}

std::vector<COption> outputOptions()
{
    return {{"--output-device",
             "NAME",
             "Plays on this device: its name, or a beginning that no other has. The settings' unless given.",
             {EValueKind::Text}},
            {"--frames",
             "N",
             "Frames per buffer. The settings' unless given.",
             {EValueKind::WholeNumber, 1, 8192}}};
}

std::vector<COption> rateOptions()
{
    return {{"--rate",
             "HZ",
             "Sample rate in Hz. The settings' unless given.",
             {EValueKind::WholeNumber, 1, 10000000}}};
}

std::vector<COption> runningOptions()
{
    return {{"--seconds", "S", "Stops after so many seconds.", {EValueKind::Number, 0.001, 1e6, {}}},
            {"--watch",
             "",
             "Goes over to each new build of the plug-in while it plays, with the values of its controls "
             "carried over.",
             {EValueKind::Flag},
             false,
             {},
             "--plugin"}};
}

} // namespace velmora::cli
