#pragma once

#include "widgets/common/icons.h"

#include <QString>
#include <optional>
#include <span>
#include <string>

namespace velmora {

class CMainFrame;

// Groups of buttons on the tool bar, from left to right.
enum class EToolGroup
{
    None,
    Transport,
    Source,
    Build,
    History,
    Settings
};

// One command of the main window: where it stands, how it looks, when it may be chosen, what it does.
struct CCommandRow
{
    const char* m_pMenu = "";     // the menu's text; empty for one on the tool bar and the keyboard alone
    const char* m_pText = "";     // as it stands in the menu
    const char* m_pShortcut = ""; // "Ctrl+O"; two are parted by "; "
    const char* m_pTip = "";      // one sentence for the status bar and the tool tip

    void (*m_run)(CMainFrame& frame, bool bChecked) = nullptr;
    bool (*m_isEnabled)(const CMainFrame& frame) = nullptr;   // null: always
    bool (*m_isChecked)(const CMainFrame& frame) = nullptr;   // null: it has no check mark
    bool (*m_isThere)(const CMainFrame& frame) = nullptr;     // null: always; judged once
    QString (*m_addition)(const CMainFrame& frame) = nullptr; // goes behind the text

    bool m_bBeginsGroup = false; // a separator stands above it
    EToolGroup m_eToolGroup = EToolGroup::None;
    std::optional<EIcon> m_icon{};
    const char* m_pShortText = ""; // beside the icon on the tool bar; empty for the icon alone
};

// Every command of the main window, menu by menu in the order of the entries. Menus, tool bar, shortcuts and
// docs/commands.md are made from it.
[[nodiscard]] std::span<const CCommandRow> commandTable();

// The texts of the menus in their order; those that are refilled among them.
[[nodiscard]] std::span<const char* const> menuTexts();
inline constexpr const char* FILE_MENU = "&File";
inline constexpr const char* EDIT_MENU = "&Edit";
inline constexpr const char* MODULES_MENU = "&Modules";
inline constexpr const char* USER_PLUG_INS_MENU = "&User Plug-Ins";
inline constexpr const char* AUDIO_MENU = "&Audio/MIDI";
inline constexpr const char* PLUG_IN_MENU = "&PlugIn";
inline constexpr const char* VIEW_MENU = "&View";
inline constexpr const char* UTILITIES_MENU = "&Utilities";
inline constexpr const char* HELP_MENU = "&Help";

// The entry behind which the recent projects stand.
inline constexpr const char* OPEN_PROJECT_TEXT = "&Open Project";

// The text of docs/commands.md.
[[nodiscard]] std::string commandTableAsMarkdown();

} // namespace velmora
