#include "cli/engine_options.h"

#include "audio/audio_engine.h"
#include "cli/command_context.h"

#include <algorithm>
#include <iterator>

namespace velmora::cli {

namespace {

// Gains beyond these are no audio.
CValueRule decibels()
{
    return {EValueKind::Number, -200, 200, {}};
}

} // namespace

std::vector<COption> engineOptions()
{
    return {
        {"--mode",
         "0..5",
         "Channel mode: 0 mono to mono, 1 mono to stereo, 2 stereo to stereo (the default); 3, 4 and 5 the "
         "same with the dry input added.",
         {EValueKind::WholeNumber, 0, 5}},
        {"--in-gain", "DB", "Gain ahead of the filter in dB.", decibels()},
        {"--out-gain", "DB", "Gain behind the filter in dB.", decibels()},
        {"--bypass", "", "Passes the audio around the filter; the gains still apply."},
    };
}

std::vector<COption> sidechainOptions()
{
    const auto withSidechain = [](COption option) {
        option.m_sNeeds = "--sidechain";
        return option;
    };
    return {
        {"--sidechain", "FILE", "Audio file for the filter's sidechain input.", {EValueKind::File}},
        withSidechain({"--sidechain-gain", "DB", "Gain of the sidechain in dB.", decibels()}),
        withSidechain({"--sidechain-loop", "", "Starts the sidechain over at its end."}),
        withSidechain({"--listen", "", "Lets the sidechain be heard in place of the output."}),
    };
}

std::vector<COption> joined(std::vector<std::vector<COption>> groups)
{
    std::vector<COption> all;
    for (auto& group : groups)
        std::ranges::move(group, std::back_inserter(all));
    return all;
}

void applyEngineOptions(const CCommandLine& line, CAudioEngine& engine)
{
    engine.m_uChannelMode = static_cast<unsigned>(line.number("--mode", CHANNEL_MODE_STEREO_STEREO));
    engine.m_fInputGain_dB = static_cast<float>(line.number("--in-gain", 0.0));
    engine.m_fOutputGain_dB = static_cast<float>(line.number("--out-gain", 0.0));
    engine.m_bBypass = line.has("--bypass");
}

bool applySidechainOptions(CCommandContext& context, CSidechain& sidechain)
{
    const CCommandLine& line = context.line();
    const auto file = line.text("--sidechain");
    if (!file)
        return true;
    sidechain.m_fGain_dB = static_cast<float>(line.number("--sidechain-gain", 0.0));
    sidechain.m_bLoop = line.has("--sidechain-loop");
    sidechain.m_bListen = line.has("--listen");
    sidechain.m_bEnabled = true;
    if (sidechain.load(*file, context.dialogs()))
        return true;
    context.showReason(sidechain.reason());
    return false;
}

} // namespace velmora::cli
