#include "project/assignable_buttons.h"

#include "project/dsp_project.h"

namespace velmora {

CAssignableButtons assignableButtonsOf(const CDSPProject& project)
{
    return {{{project.m_AssignButton1Name, project.m_bLatchingAssignButton1},
             {project.m_AssignButton2Name, project.m_bLatchingAssignButton2},
             {project.m_AssignButton3Name, project.m_bLatchingAssignButton3}}};
}

void setAssignableButtons(CDSPProject& project, const CAssignableButtons& buttons)
{
    project.m_AssignButton1Name = buttons[0].m_sName;
    project.m_AssignButton2Name = buttons[1].m_sName;
    project.m_AssignButton3Name = buttons[2].m_sName;
    project.m_bLatchingAssignButton1 = buttons[0].m_bLatching;
    project.m_bLatchingAssignButton2 = buttons[1].m_bLatching;
    project.m_bLatchingAssignButton3 = buttons[2].m_bLatching;
}

} // namespace velmora
