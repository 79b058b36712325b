#include "base/xml_text.h"

namespace velmora {

std::string escapedXml(std::string_view sText)
{
    std::string sResult;
    for (const char c : sText) {
        switch (c) {
        case '&':
            sResult += "&amp;";
            break;
        case '<':
            sResult += "&lt;";
            break;
        case '>':
            sResult += "&gt;";
            break;
        case '"':
            sResult += "&quot;";
            break;
        default:
            sResult += c;
        }
    }
    return sResult;
}

} // namespace velmora
