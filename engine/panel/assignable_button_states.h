#pragma once

#include "pluginconstants.h"

#include <array>
#include <string>

class CPlugIn;

namespace velmora {

class CDSPProject;

// The three assignable buttons, 50 to 52. They have neither a record nor a variable: their texts, and whether
// they latch, are the plug-in's or the project's own. [main]
class CAssignableButtonStates
{
  public:
    static constexpr UINT FIRST_ID = 50;
    static constexpr UINT COUNT = 3;

    [[nodiscard]] static bool contains(UINT uButton) { return uButton - FIRST_ID < COUNT; }

    // Whose buttons they are: the plug-in's, else the project's; with neither they read "B1" to "B3".
    // Releases all.
    void setSource(const CPlugIn* pPlugIn, const CDSPProject* pProject);

    [[nodiscard]] std::string text(UINT uButton) const;
    [[nodiscard]] bool isLatching(UINT uButton) const;

    // Whether the button stays pressed; only a latching one can.
    [[nodiscard]] bool isPressed(UINT uButton) const;

    // Turns a latching button. False, and nothing changes, for any other.
    bool turn(UINT uButton);

  private:
    const CPlugIn* m_pPlugIn = nullptr;
    const CDSPProject* m_pProject = nullptr;
    std::array<bool, COUNT> m_pressed{};
};

} // namespace velmora
