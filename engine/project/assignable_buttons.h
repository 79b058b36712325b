#pragma once

#include <array>
#include <string>

namespace velmora {

class CDSPProject;

// One of the panel's three assignable buttons.
struct CAssignableButton
{
    std::string m_sName;
    bool m_bLatching = false; // stays down until it is pressed again

    bool operator==(const CAssignableButton&) const = default;
};

using CAssignableButtons = std::array<CAssignableButton, 3>; // ids 50, 51, 52

// The project's own. [main]
[[nodiscard]] CAssignableButtons assignableButtonsOf(const CDSPProject& project);
void setAssignableButtons(CDSPProject& project, const CAssignableButtons& buttons);

} // namespace velmora
