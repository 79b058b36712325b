#include "project/codegen/control_table_region.h"

#include "project/codegen/code_text.h"
#include "project/control_list.h"
#include "project/dsp_project.h"

#include <string_view>

namespace velmora {

namespace {

constexpr std::size_t NAME_WIDTH = 33;
constexpr std::string_view RULE = "-----------------------------------------------\n";
constexpr UINT FIRST_JOYSTICK_LIST = 60;

void appendRow(std::string& sBody, std::string_view sName, UINT uIndex)
{
    sBody += sName;
    sBody.append(sName.size() < NAME_WIDTH ? NAME_WIDTH - sName.size() : 0, ' ');
    sBody += ' ';
    appendUnsigned(sBody, uIndex);
    sBody += '\n';
}

} // namespace

std::string controlTableBody(const CDSPProject& project)
{
    std::string sBody = "\tVariable Name                    Index\n";
    sBody += RULE;
    for (const CUICtrl* pControl : controlsOf(project.m_UIControlList)) {
        sBody += '\t';
        appendRow(sBody, commentText(pControl->cVariableName), pControl->uControlId);
    }
    sBody.append("\n\tAssignable Buttons               Index\n").append(RULE);
    UINT uButton = ASSIGN_BUTTON_1;
    for (const std::string* pName :
         {&project.m_AssignButton1Name, &project.m_AssignButton2Name, &project.m_AssignButton3Name}) {
        sBody += '\t';
        appendRow(sBody, commentText(*pName), uButton++);
    }
    sBody.append("\n").append(RULE).append("Joystick Drop List Boxes          Index\n").append(RULE);
    UINT uList = FIRST_JOYSTICK_LIST;
    for (const char* pName : {"\t Drop List A", "\t Drop List B", "\t Drop List C", "\t Drop List D"})
        appendRow(sBody, pName, uList++);
    return sBody.append("\n").append(RULE);
}

} // namespace velmora
