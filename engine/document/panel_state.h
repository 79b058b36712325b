#pragma once

#include "pluginconstants.h"
#include "project/assignable_buttons.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace velmora {

class CDSPProject;

// What an edit of the panel may change of a project, as it was at one moment: the controls, and the words
// that importing controls replaces with them. Controls that did not change are shared with the state before.
// [main]
class CPanelState
{
  public:
    CPanelState() = default;

    // pBefore is an earlier state of the same project.
    explicit CPanelState(const CDSPProject& project, const CPanelState* pBefore = nullptr);

    // Takes back what an edit changed: whatever differs from this state to the other one becomes in the
    // project as it is in the other one. What is the same in both stays as it now is in the project.
    void changeInto(const CPanelState& other, CDSPProject& project) const;

    [[nodiscard]] bool operator==(const CPanelState& other) const;

  private:
    struct CAxis
    {
        bool m_bMIDI = false;
        UINT m_uCommand = 0;
        UINT m_uName = 0;
        UINT m_uChannel = 0;

        bool operator==(const CAxis&) const = default;
    };

    // The groups of words, each of which is restored as a whole.
    struct CWords
    {
        CAssignableButtons m_buttons;
        std::array<UINT, 2> m_trackPad{};
        std::array<CAxis, 2> m_axes;
        std::vector<float> m_joystickProgram;
        std::vector<std::string> m_labels;
        std::vector<UINT> m_labelPlaces; // all x, then all y
        std::vector<UINT> m_theme;
        std::array<int, 2> m_classicGUI{}; // type, theme
        bool m_bCustomGUI = false;

        bool operator==(const CWords&) const = default;
    };

    [[nodiscard]] static CWords wordsOf(const CDSPProject& project);
    static void changeWords(const CWords& from, const CWords& to, CDSPProject& project);

    std::vector<std::shared_ptr<const CUICtrl>> m_controls;
    CWords m_words;
};

} // namespace velmora
