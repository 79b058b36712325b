#include "document/panel_state.h"

#include "project/control_fields.h"
#include "project/control_list.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <span>
#include <utility>

namespace velmora {

namespace {

constexpr std::size_t JOYSTICK_VALUES = MAX_JS_PROGRAM_STEPS * MAX_JS_PROGRAM_STEP_VARS;

// A control's id, and how many with that id stand ahead of it: a file from elsewhere may hold one id twice.
using CControlKey = std::pair<UINT, unsigned>;

template <typename Control>
class CKeyedControls
{
  public:
    explicit CKeyedControls(const std::vector<Control*>& controls)
    {
        std::map<UINT, unsigned> seen;
        for (Control* pControl : controls) {
            const CControlKey key{pControl->uControlId, seen[pControl->uControlId]++};
            m_order.push_back(key);
            m_controls[key] = pControl;
        }
    }

    [[nodiscard]] Control* find(const CControlKey& key) const
    {
        const auto found = m_controls.find(key);
        return found == m_controls.end() ? nullptr : found->second;
    }
    [[nodiscard]] const std::vector<CControlKey>& order() const { return m_order; }

  private:
    std::vector<CControlKey> m_order;
    std::map<CControlKey, Control*> m_controls;
};

using CKeptControls = CKeyedControls<const CUICtrl>;

CKeptControls keyed(const std::vector<std::shared_ptr<const CUICtrl>>& controls)
{
    std::vector<const CUICtrl*> pointers;
    for (const auto& pControl : controls)
        pointers.push_back(pControl.get());
    return CKeptControls(pointers);
}

bool isSame(const CUICtrl* pLeft, const CUICtrl* pRight)
{
    return pLeft == pRight || (pLeft && pRight && isSameControl(*pLeft, *pRight));
}

void changeControls(const CKeptControls& from, const CKeptControls& to, CUIControlList& list)
{
    std::vector<CControlKey> removed;
    for (const CControlKey& key : from.order())
        if (!to.find(key))
            removed.push_back(key);
    const CKeyedControls<CUICtrl> now(controlsOf(list));
    for (const CControlKey& key : to.order()) {
        if (isSame(from.find(key), to.find(key)))
            continue;
        if (CUICtrl* pControl = now.find(key))
            *pControl = *to.find(key);
        else
            list.append(*to.find(key));
    }

    const CKeyedControls<CUICtrl> changed(controlsOf(list));
    std::vector<CControlKey> order = to.order();
    std::ranges::copy_if(changed.order(), std::back_inserter(order),
                         [&](const CControlKey& key) { return !to.find(key); });
    std::vector<CUICtrl*> arranged;
    for (const CControlKey& key : order)
        if (CUICtrl* pControl = changed.find(key);
            pControl && std::ranges::find(removed, key) == removed.end())
            arranged.push_back(pControl);
    arrangeControls(list, arranged);
}

template <typename Value, std::size_t N>
void assign(Value (&to)[N], std::span<const Value> from)
{
    std::copy_n(from.begin(), std::min(N, from.size()), to);
}

} // namespace

CPanelState::CPanelState(const CDSPProject& project, const CPanelState* pBefore) : m_words(wordsOf(project))
{
    const CKeptControls before = keyed(pBefore ? pBefore->m_controls : decltype(m_controls)());
    std::map<const CUICtrl*, std::shared_ptr<const CUICtrl>> kept;
    if (pBefore)
        for (const auto& pControl : pBefore->m_controls)
            kept[pControl.get()] = pControl;
    const std::vector<CUICtrl*> controls = controlsOf(project.m_UIControlList);
    const CKeyedControls<CUICtrl> now(controls);
    for (const CControlKey& key : now.order()) {
        const CUICtrl* pBeforeControl = before.find(key);
        m_controls.push_back(isSame(pBeforeControl, now.find(key))
                                 ? kept[pBeforeControl]
                                 : std::make_shared<const CUICtrl>(*now.find(key)));
    }
}

void CPanelState::changeInto(const CPanelState& other, CDSPProject& project) const
{
    changeControls(keyed(m_controls), keyed(other.m_controls), project.m_UIControlList);
    changeWords(m_words, other.m_words, project);
}

bool CPanelState::operator==(const CPanelState& other) const
{
    return m_words == other.m_words &&
           std::ranges::equal(m_controls, other.m_controls, [](const auto& pLeft, const auto& pRight) {
               return isSame(pLeft.get(), pRight.get());
           });
}

CPanelState::CWords CPanelState::wordsOf(const CDSPProject& project)
{
    const auto axis = [](const CUICtrl& control) {
        return CAxis{control.bMIDIControl, control.uMIDIControlCommand, control.uMIDIControlName,
                     control.uMIDIControlChannel};
    };
    CWords words;
    words.m_buttons = assignableButtonsOf(project);
    words.m_trackPad = {project.m_uX_TrackPadIndex, project.m_uY_TrackPadIndex};
    words.m_axes = {axis(project.m_JS_XCtrl), axis(project.m_JS_YCtrl)};
    words.m_joystickProgram.assign(project.m_pVectorJSProgram, project.m_pVectorJSProgram + JOYSTICK_VALUES);
    for (const char* pLabel : project.m_TextLabels)
        words.m_labels.emplace_back(pLabel ? pLabel : "");
    for (const auto& places : {std::span(project.m_uLabelCX), std::span(project.m_uLabelCY)})
        words.m_labelPlaces.insert(words.m_labelPlaces.end(), places.begin(), places.end());
    words.m_theme.assign(std::begin(project.m_uControlTheme), std::end(project.m_uControlTheme));
    words.m_classicGUI = {project.m_nGUIType, project.m_nGUIThemeID};
    words.m_bCustomGUI = project.m_bUseCustomVSTGUI;
    return words;
}

void CPanelState::changeWords(const CWords& from, const CWords& to, CDSPProject& project)
{
    if (from.m_buttons != to.m_buttons)
        setAssignableButtons(project, to.m_buttons);
    if (from.m_trackPad != to.m_trackPad) {
        project.m_uX_TrackPadIndex = to.m_trackPad[0];
        project.m_uY_TrackPadIndex = to.m_trackPad[1];
    }
    if (from.m_axes != to.m_axes)
        for (std::size_t i = 0; i < to.m_axes.size(); ++i) {
            CUICtrl& control = i == 0 ? project.m_JS_XCtrl : project.m_JS_YCtrl;
            control.bMIDIControl = to.m_axes[i].m_bMIDI;
            control.uMIDIControlCommand = to.m_axes[i].m_uCommand;
            control.uMIDIControlName = to.m_axes[i].m_uName;
            control.uMIDIControlChannel = to.m_axes[i].m_uChannel;
        }
    if (from.m_joystickProgram != to.m_joystickProgram)
        std::ranges::copy(to.m_joystickProgram, project.m_pVectorJSProgram);
    if (from.m_labels != to.m_labels || from.m_labelPlaces != to.m_labelPlaces) {
        for (std::size_t i = 0; i < to.m_labels.size(); ++i)
            project.setTextLabel(i, to.m_labels[i]);
        const std::span<const UINT> places = to.m_labelPlaces;
        assign(project.m_uLabelCX, places.first(places.size() / 2));
        assign(project.m_uLabelCY, places.last(places.size() / 2));
    }
    if (from.m_theme != to.m_theme)
        assign(project.m_uControlTheme, std::span(to.m_theme));
    if (from.m_classicGUI != to.m_classicGUI) {
        project.m_nGUIType = to.m_classicGUI[0];
        project.m_nGUIThemeID = to.m_classicGUI[1];
    }
    if (from.m_bCustomGUI != to.m_bCustomGUI)
        project.m_bUseCustomVSTGUI = to.m_bCustomGUI;
}

} // namespace velmora
