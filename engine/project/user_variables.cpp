#include "project/user_variables.h"

#include "project/class_names.h"
#include "project/control_list.h"
#include "project/project_names.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace velmora {

namespace {

constexpr UINT VSTGUI_CHOICE = 4;

constexpr std::string_view NOT_IN_VARIABLE_NAMES = "&/\\|:*?<>!@#$%^()+-{}[]'\";.,` \t";
constexpr std::string_view BLANKS = " \t";

// The number that is the whole text, blanks and tabs at its ends apart. Zero counts only when it begins with
// the digit 0; what no float can hold does not count.
std::optional<double> initialValue(std::string_view sText)
{
    sText.remove_prefix(std::min(sText.find_first_not_of(BLANKS), sText.size()));
    const bool bBeginsWithZero = sText.starts_with('0');
    if (sText.starts_with('+') && !sText.starts_with("+-"))
        sText.remove_prefix(1);
    double dValue = 0.0;
    const char* pTextEnd = sText.data() + sText.size();
    const auto [pEnd, error] = std::from_chars(sText.data(), pTextEnd, dValue);
    const std::string_view sRest(pEnd, static_cast<std::size_t>(pTextEnd - pEnd));
    if (error != std::errc() || sRest.find_first_not_of(BLANKS) != std::string_view::npos)
        return std::nullopt;
    const bool bFitsFloat = std::abs(dValue) <= std::numeric_limits<float>::max(); // false for NaN, too
    if ((dValue == 0.0 && !bBeginsWithZero) || !bFitsFloat)
        return std::nullopt;
    return dValue;
}

// Whether the value, a float in the end, fits the variable's type.
bool fitsDataType(UINT uDataType, double dValue)
{
    const auto fValue = static_cast<float>(dValue);
    switch (uDataType) {
    case intData:
        return fValue >= -2147483648.0F && fValue < 2147483648.0F;
    case UINTData:
        return fValue < 4294967296.0F;
    default:
        return true;
    }
}

std::string_view checkName(const CDSPProject& project, std::string_view sName)
{
    const auto isOneOf = [&](auto getNames) {
        std::vector<std::string> names;
        (project.*getNames)(names);
        return std::ranges::find(names, sName) != names.end();
    };
    if (sName.empty())
        return "Variable name can not be blank.";
    if (sName.find_first_of(NOT_IN_VARIABLE_NAMES) != std::string_view::npos || !isVariableName(sName))
        return "Variable name can only contain letters, numbers and the underscore symbol, no spaces are "
               "allowed.";
    if (sName.find_first_of(BLANKS) != std::string_view::npos)
        return "Variable name can not contain spaces or tabs.";
    if (isOneOf(&CDSPProject::GetUserVariableNames))
        return "Variable name is already in use as a user-variable.";
    if (isOneOf(&CDSPProject::GetControlVariableNames))
        return "Variable name is already in use as a Velmora control variable.";
    return {};
}

} // namespace

std::string checkUserVariable(const CDSPProject& project, const CUserVariableRequest& request)
{
    if (const auto sRefusal = checkName(project, request.m_sName); !sRefusal.empty())
        return std::string(sRefusal);
    const auto dValue = initialValue(request.m_sInitialValue);
    if (!dValue)
        return "Initial value must be numeric.";
    if (request.m_uDataType == UINTData && *dValue < 0.0)
        return "Initial value must be non-negative for the UINT datatype.";

    if (isTakenInClass(project, request.m_sName))
        return "Variable name is already in use.";
    if (request.m_sName.size() >= CONTROL_TEXT_SIZE)
        return "Variable name can not be longer than 1023 characters.";
    if (request.m_uDataType > VSTGUI_CHOICE)
        return "The datatype must be one of integer, float, double, UINT and VSTGUI.";
    if (!fitsDataType(request.m_uDataType, *dValue))
        return "Initial value is too large for the datatype.";
    return {};
}

CUICtrl makeUserVariable(const CDSPProject& project, const CUserVariableRequest& request)
{
    const bool bVSTGUI = request.m_uDataType == VSTGUI_CHOICE;
    CUICtrl record;
    record.uControlType = bVSTGUI ? VSTGUI_VARIABLE_TYPE : USER_VARIABLE_TYPE;
    record.uControlId = nextFreeUserVariableId(project.m_UIControlList);
    record.uUserDataType = bVSTGUI ? static_cast<UINT>(floatData) : request.m_uDataType;
    const auto fValue = static_cast<float>(initialValue(request.m_sInitialValue).value_or(0.0));
    for (float* pValue : {&record.fInitUserIntValue, &record.fInitUserFloatValue,
                          &record.fInitUserDoubleValue, &record.fInitUserUINTValue})
        *pValue = fValue;

    record.cControlName = "User";
    record.cVariableName = request.m_sName.c_str();
    return CUICtrl(record); // the copy takes the texts over
}

} // namespace velmora
