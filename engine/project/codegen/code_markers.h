#pragma once

#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// A stretch of a source file that the workbench owns: what stands between its two markers is replaced whole,
// what lies outside is the user's. A marker is searched for as it stands here, so that the comment leader
// ahead of it stays the user's, too.
struct CCodeRegion
{
    std::string_view m_sBegin;
    std::string_view m_sEnd;
    std::string_view m_sBeforeEnd; // what stands ahead of the end marker after a write
};

inline constexpr CCodeRegion HEADER_REGION{"**--0x07FD--**", "**--0x1A7F--**", "\t// "};  // plug-in .h
inline constexpr CCodeRegion INIT_UI_REGION{"**--0xDEA7--**", "**--0xEDA5--**", "\t// "}; // .cpp, initUI()
inline constexpr CCodeRegion CONTROL_TABLE_REGION{"**--0x2983--**", "**--0xFFDD--**",
                                                  "\t"}; // .cpp, a comment
inline constexpr CCodeRegion LIBRARY_REGION{"// **--0xFEED--**", "// **--0xDEEF--**",
                                            ""}; // VelmoraDLL.h, kept free
inline constexpr CCodeRegion AUDIO_UNIT_REGION{"//  **--0xABCD--**", "//  **--0xDCBA--**", ""};
inline constexpr CCodeRegion AUDIO_UNIT_TEMPLATE_REGION{"/*  **--0xABAC--**", "//  **--0xCABA--** */", ""};
inline constexpr CCodeRegion PRESET_DATA_REGION{"-- 0xA983 --", "-- 0xAF66 --", ""}; // exported sources

inline constexpr std::array CODE_REGIONS{HEADER_REGION,     INIT_UI_REGION,    CONTROL_TABLE_REGION,
                                         LIBRARY_REGION,    AUDIO_UNIT_REGION, AUDIO_UNIT_TEMPLATE_REGION,
                                         PRESET_DATA_REGION};

// What no text inside a region may hold, so that it is not taken for a marker at the next write: the
// beginnings of all markers without their comment leaders.
inline constexpr std::array<std::string_view, 2> MARKER_BEGINNINGS{"**--0x", "-- 0xA"};

// What is wrong with a region's markers in a text.
struct CRegionFault
{
    std::string m_sText;       // reads behind the file's name: the mark **--0x07FD--** is missing
    bool m_bLosesText = false; // replaceCodeRegion() would take away what it has not written; else it refuses
};

// None if both markers stand where they should, and the begin marker once ahead of the end.
[[nodiscard]] std::optional<CRegionFault> findRegionFault(std::string_view sText, const CCodeRegion& region);

// The line end that most lines outside the given regions have: "\r\n" or "\n".
[[nodiscard]] std::string_view prevailingLineEnd(std::string_view sText,
                                                 std::initializer_list<CCodeRegion> regions);

// Replaces the region's content in the text: begin marker, an empty line, the body, what stands before the
// end marker, end marker. The body has plain line ends; they become sLineEnd. Both markers are searched for
// from the start, so that the first one counts, wherever it stands. False, and the text is as it was, if the
// end marker does not stand behind the begin marker or is missing. With the begin marker alone missing, the
// text is kept up to one character less than the marker is long.
[[nodiscard]] bool replaceCodeRegion(std::string& sText, const CCodeRegion& region, std::string_view sBody,
                                     std::string_view sLineEnd);

} // namespace velmora
