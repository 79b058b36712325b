#include "panel/assignable_button_states.h"

#include "project/dsp_project.h"

namespace velmora {

namespace {

struct CMembers
{
    const char* CPlugIn::*m_pText;
    bool CPlugIn::*m_pLatching;
    std::string CDSPProject::*m_pProjectText;
    bool CDSPProject::*m_pProjectLatching;
};

constexpr CMembers MEMBERS[CAssignableButtonStates::COUNT] = {
    {&CPlugIn::m_AssignButton1Name, &CPlugIn::m_bLatchingAssignButton1, &CDSPProject::m_AssignButton1Name,
     &CDSPProject::m_bLatchingAssignButton1},
    {&CPlugIn::m_AssignButton2Name, &CPlugIn::m_bLatchingAssignButton2, &CDSPProject::m_AssignButton2Name,
     &CDSPProject::m_bLatchingAssignButton2},
    {&CPlugIn::m_AssignButton3Name, &CPlugIn::m_bLatchingAssignButton3, &CDSPProject::m_AssignButton3Name,
     &CDSPProject::m_bLatchingAssignButton3},
};

} // namespace

void CAssignableButtonStates::setSource(const CPlugIn* pPlugIn, const CDSPProject* pProject)
{
    m_pPlugIn = pPlugIn;
    m_pProject = pProject;
    m_pressed.fill(false);
}

std::string CAssignableButtonStates::text(UINT uButton) const
{
    if (!contains(uButton))
        return {};
    const UINT uIndex = uButton - FIRST_ID;
    const char* pText = m_pPlugIn ? m_pPlugIn->*MEMBERS[uIndex].m_pText : nullptr;
    if (pText)
        return pText;
    return m_pProject ? m_pProject->*MEMBERS[uIndex].m_pProjectText : "B" + std::to_string(uIndex + 1);
}

bool CAssignableButtonStates::isLatching(UINT uButton) const
{
    if (!contains(uButton))
        return false;
    const CMembers& members = MEMBERS[uButton - FIRST_ID];
    return m_pPlugIn ? m_pPlugIn->*members.m_pLatching
                     : m_pProject && m_pProject->*members.m_pProjectLatching;
}

bool CAssignableButtonStates::isPressed(UINT uButton) const
{
    return contains(uButton) && m_pressed[uButton - FIRST_ID];
}

bool CAssignableButtonStates::turn(UINT uButton)
{
    if (!isLatching(uButton))
        return false;
    m_pressed[uButton - FIRST_ID] = !isPressed(uButton);
    return true;
}

} // namespace velmora
