#pragma once

namespace velmora {

// The private messages that the engine sends to the main window, beside those of the contract
// (pluginconstants.h).
enum EViewMessage : unsigned
{
    MESSAGE_ROUTING_BUTTON = 241, // a button of the routing or of the display selector has changed
    MESSAGE_COMMIT_EDIT = 512,    // take the value box of slot nParam, then go to the next
    MESSAGE_CAPTURE_READY = 2048, // a frame for the analyzer stands in the capture exchange
    MESSAGE_SHOW_ANALYZER = 2051, // and take its synth flag from the loaded plug-in
    MESSAGE_SHOW_OSCILLATOR = 2052,
    MESSAGE_HIDE_ANALYZER = 2053,
    MESSAGE_HIDE_OSCILLATOR = 2065,
    MESSAGE_SLIDER_PROPERTIES = 2067, // finished: uParam: an item of the LCD; nParam: a list was changed
    MESSAGE_LCD_GROUP_CLOSED = 2068,  // uParam: show the Alpha Wheel Setup again
    MESSAGE_TOGGLE_SIDECHAIN = 2069,
    MESSAGE_ALPHA_WHEEL_CLOSED = 2078,
    MESSAGE_EDIT_LCD_ITEM = 2080,   // uParam: id; nParam: index
    MESSAGE_REMOVE_LCD_ITEM = 2081, // uParam: id
    MESSAGE_LCD_ORDER = 2082,       // the order of the LCD's items has changed
    MESSAGE_MENU_GROUP = 2083,      // a menu group has got another name
    MESSAGE_SELECT_EDIT = 2085,     // select all of the value box of slot nParam
    MESSAGE_COMPILER_STARTING = 2090,
    MESSAGE_COMPILER_READY,
    MESSAGE_COMPILER_RUNNING,
    MESSAGE_COMPILER_DEBUGGING,
    MESSAGE_COMPILER_NOT_FOUND,
    MESSAGE_COMPILER_DEAD,
    MESSAGE_COMPILER_BUILDING,
    MESSAGE_COMPILER_LINKING = 2100,
    MESSAGE_BUILD_SUCCEEDED,
    MESSAGE_BUILD_FAILED,
    MESSAGE_START_OSCILLATOR = 2107,
    MESSAGE_STOP_OSCILLATOR = 2108,
    MESSAGE_SET_OSCILLATOR = 2109, // nParam: Hz
    MESSAGE_SHOW_SIDECHAIN = 2110,
    MESSAGE_SLOT_TEXT = 4026,       // uParam: slot; nParam: const char*
    MESSAGE_SLOT_NORMALIZED = 4028, // uParam: slot; nParam: const float*, 0.0 to 1.0
};

// The main window's title while no filter is current.
constexpr const char* MAIN_TITLE = "Velmora(tm)";

} // namespace velmora
