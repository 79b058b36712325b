#include "project/codegen/variable_rename.h"

#include "project/project_names.h"

#include <cctype>

namespace velmora {

namespace {

bool isPartOfName(char cByte)
{
    return std::isalnum(static_cast<unsigned char>(cByte)) || cByte == '_';
}

} // namespace

std::size_t renameIdentifier(std::string& sText, std::string_view sFrom, std::string_view sTo)
{
    if (!isVariableName(sFrom))
        return 0;
    std::string sResult;
    std::size_t uCount = 0;
    std::size_t uDone = 0;
    for (std::size_t uAt = sText.find(sFrom); uAt != std::string::npos; uAt = sText.find(sFrom, uAt)) {
        const std::size_t uEnd = uAt + sFrom.size();
        const bool bWhole = (uAt == 0 || !isPartOfName(sText[uAt - 1])) &&
                            (uEnd == sText.size() || !isPartOfName(sText[uEnd]));
        if (bWhole) {
            sResult.append(sText, uDone, uAt - uDone).append(sTo);
            uDone = uEnd;
            ++uCount;
        }
        uAt = uEnd;
    }
    if (uCount > 0)
        sText = sResult.append(sText, uDone);
    return uCount;
}

} // namespace velmora
