#pragma once

namespace velmora {

// The private messages that the engine sends to the main window, beside those of the contract
// (pluginconstants.h).
enum EViewMessage : unsigned
{
    MESSAGE_CAPTURE_READY = 2048, // a frame for the analyzer stands in the capture exchange
    MESSAGE_SHOW_ANALYZER = 2051, // and take its synth flag from the loaded plug-in
    MESSAGE_SHOW_OSCILLATOR = 2052,
    MESSAGE_HIDE_ANALYZER = 2053,
    MESSAGE_HIDE_OSCILLATOR = 2065,
};

// The main window's title while no filter is current.
constexpr const char* MAIN_TITLE = "Velmora(tm)";

} // namespace velmora
