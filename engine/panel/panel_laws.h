#pragma once

#include "pluginconstants.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// The small laws of the panel's fixed widgets. All functions: [any].

constexpr int PANEL_POSITIONS = 256; // a slider's or fader's travel

// A position held to the travel.
[[nodiscard]] int limitedPosition(int nPos);

// ---- Gain faders: positions count from the top, +12 dB, to 256, -60 dB ----

[[nodiscard]] double faderDecibels(int nPos);  // ((256 - p) / 256) * 72 - 60
[[nodiscard]] int faderPosition(double dGain); // the nearest position for a gain in dB
constexpr int FADER_HOME = 0;                  // where the keys Home and End lead
constexpr int FADER_END = PANEL_POSITIONS;

// ---- FX routing ----

enum ERoutingFX : unsigned
{
    ROUTING_INSERT,
    ROUTING_AUX_FX
};

enum ERoutingChannels : unsigned
{
    ROUTING_1_TO_1,
    ROUTING_1_TO_2,
    ROUTING_2_TO_2
};

// The pressed pair of routing buttons.
struct CRouting
{
    ERoutingFX m_eFX = ROUTING_INSERT;
    ERoutingChannels m_eChannels = ROUTING_2_TO_2;

    [[nodiscard]] bool operator==(const CRouting&) const = default;
};

// "Insert" with 2 -> 2, 1 -> 2, 1 -> 1 is 0, 1, 2; "Aux FX" is 3, 4, 5. None for another code.
[[nodiscard]] unsigned routingCode(const CRouting& routing);
[[nodiscard]] std::optional<CRouting> routingOfCode(unsigned uCode);

// The audio engine's channel mode (EChannelMode) for the pair: it counts the other way around.
[[nodiscard]] unsigned channelModeOf(const CRouting& routing);

// ---- Display selector ----

enum EPanelDisplay : unsigned
{
    DISPLAY_SCOPE,
    DISPLAY_LOG_F,
    DISPLAY_LIN_F,
    DISPLAY_JOYSTICK // takes the place of the scope
};

// ---- Captions ----

inline constexpr std::string_view COMBO_SETUP_ITEM = "Click to Setup"; // the one item of an empty combo box

// What button 0 to 7 of bank 0 to 3 reads while it stands for nothing: "RB 11" with a project open, else
// "Radio11".
[[nodiscard]] std::string radioButtonCaption(UINT uBank, UINT uButton, bool bProjectOpen);

} // namespace velmora
