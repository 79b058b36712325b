#pragma once

#include "dsp/modules/module_parameter.h"
#include "host/dsp_filter.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// A built-in module: a filter whose settings and controls come from two tables, one of parameters (floats,
// on sliders) and one of choices (radio buttons). A setting's number is its place in the parameters or,
// for a choice, the number of parameters plus its place in the choices; the controls stand in that order.
//
// Every setting is one word that its control moves and the audio thread may read (relaxed_word.h). After a
// change settingsChanged() runs on the thread that made it.
//
// Threads: parameter(), choice() [any]; setControlPosition(), setControlText(), controlChanged() [main], or
// the MIDI thread; all others [main].
class CModuleFilter : public CDSPFilter
{
  public:
    static constexpr UINT FIRST_CONTROL_ID = 600;
    static constexpr float FULL_SCALE = 32768.0F; // of processBuffer()

    // Any finite value is taken, whatever the range. False, and nothing changes, for another one.
    bool setParameter(UINT uParameter, float fValue);
    [[nodiscard]] float parameter(UINT uParameter) const;

    // The range of the slider; the default goes with it, the value stays.
    void setRange(UINT uParameter, const CModuleRange& range);
    [[nodiscard]] const CModuleRange& range(UINT uParameter) const { return m_ranges[uParameter]; }

    // By code. False, and nothing changes, for a code that the choice does not have.
    bool setChoice(UINT uChoice, UINT uCode);
    [[nodiscard]] UINT choice(UINT uChoice) const;

    // What another filter that this one is part of shows of it.
    struct CShownSetting
    {
        UINT m_uSetting;
        std::string m_sName;  // empty: as in the table
        std::string m_sUnits; // empty: as in the table
    };

    // From now on there are only these controls, in this order, with ids from uFirstControlId on.
    void showControls(UINT uFirstControlId, std::vector<CShownSetting> shown);

    // The number of a setting's control among the controls, counted from 0; the number of controls if the
    // setting has none.
    [[nodiscard]] UINT controlOf(UINT uSetting) const;

    // Every setting back to its default, with the ranges that belong to a reset.
    virtual bool resetToDefaults();

    // The settings that this module brings along, by name.
    [[nodiscard]] virtual std::vector<std::string> presetNames() const { return {}; }

    // Takes over such settings. False, and nothing changes, for another name.
    virtual bool loadPreset(std::string_view) { return false; }

    // The range of one of the controls, in the units in which its value is shown.
    struct CShownRange
    {
        double m_dLow;
        double m_dHigh;
    };
    [[nodiscard]] CShownRange shownRange(const CDSPFilterControl& control) const;

    // What the block diagram shows of this filter.
    [[nodiscard]] virtual std::vector<CModuleCoefficient> coefficients() const { return {}; }

    // Makes the controls anew from what is set now.
    bool createControls() override;
    bool setControlPosition(UINT uControlId, int nPos) override;

    // The text is in the units shown.
    bool setControlText(UINT uControlId, std::string sText, bool bQuiet) override;
    bool controlChanged(UINT uControlId) override;

  protected:
    // The tables must outlive the filter. The constructor of the class itself calls createControls().
    CModuleFilter(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                  std::span<const CModuleChoice> choices);

    // Some setting has another value now.
    virtual void settingsChanged() {}

    // Moves a setting's control. False if it has none.
    bool moveControl(UINT uSetting, int nPos);

    // Positions and texts of all controls anew, from the values.
    void refreshControls();

    [[nodiscard]] std::span<const CModuleParameter> parameters() const { return m_parameters; }

    // The setting that a control moves; the number of settings for an unknown control.
    [[nodiscard]] UINT settingOf(UINT uControlId) const;

  private:
    [[nodiscard]] std::unique_ptr<CDSPFilterControl> makeControl(const CShownSetting& shown);
    [[nodiscard]] EModuleText textOf(UINT uControl) const;
    void refreshControl(UINT uControl);
    void showValue(UINT uControl);

    std::span<const CModuleParameter> m_parameters;
    std::span<const CModuleChoice> m_choices;
    std::vector<CModuleRange> m_ranges;
    std::vector<float> m_values;
    std::vector<UINT> m_positions; // of the choices, in their options
    std::vector<CShownSetting> m_shown;
};

} // namespace velmora
