#pragma once

#include "plugin.h"

#include <string>
#include <string_view>

namespace velmora {

// How values and names are written into generated source. Everything gives valid code that compiles without
// warnings as C++98 and as C++20, whatever a project file holds. [main]

void appendUnsigned(std::string& sCode, UINT uValue); // %u
void appendInteger(std::string& sCode, int nValue);   // %d
void appendBoolean(std::string& sCode, bool bValue);  // true or false

// %.<nDecimals>f; nDecimals is 1 to 6. NaN becomes zero and an infinity the largest finite double.
void appendFixed(std::string& sCode, double dValue, int nDecimals);

// The same for a float: an infinity becomes the largest finite float.
void appendFixed(std::string& sCode, float fValue, int nDecimals);

// The integer part, held to the type's range; 0 for NaN.
[[nodiscard]] int truncatedToInt(float fValue);
[[nodiscard]] UINT truncatedToUnsigned(float fValue);

// The text as it stands between the quotes of a string literal: backslash, quote, control characters,
// trigraphs, characters that turn the direction of writing and bytes that are no UTF-8 are escaped so that
// the program sees the text as it was; a line end becomes a blank. A region marker inside is escaped, too.
void appendLiteral(std::string& sCode, std::string_view sText);

// The text as it stands in a block comment: it can neither end the comment nor begin one, is all in one line,
// and holds no region marker.
[[nodiscard]] std::string commentText(std::string_view sText);

// The name of the control's variable, or of its meter variable, as the code bears it: as it is if a variable
// may have that name, else one made of it; of an empty one by the control's id.
[[nodiscard]] std::string variableIdentifier(const CUICtrl& control);
[[nodiscard]] std::string meterVariableIdentifier(const CUICtrl& control);

// What stands between the braces of an enumeration: the comma-separated items, those that are no identifiers
// made ones, empty ones left out.
[[nodiscard]] std::string enumeratorList(std::string_view sList);

} // namespace velmora
