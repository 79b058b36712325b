#pragma once

#include "base/object.h"
#include "dsp/level_detector.h"
#include "host/control_law.h"
#include "host/dsp_filter_variable.h"
#include "pluginconstants.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPFilter;

// One control of a filter: its range, its position, and the variable that it moves.
//
// The variable is plain memory of the filter or plug-in that the audio thread may read at any time; it is
// written and read here with relaxed atomic accesses and without a lock. Operations: [main], or the MIDI
// thread.
class CDSPFilterControl : public CObject
{
  public:
    CDSPFilterControl() = default;
    CDSPFilterControl(const CDSPFilterControl&) = delete;
    CDSPFilterControl& operator=(const CDSPFilterControl&) = delete;

    // Takes over a plug-in's control record, writes the record's start value to the variable, and works out
    // position and text. The record itself may go afterwards, the variable may not.
    void bindTo(const CUICtrl& record);

    // Moves the control to a position, limited to m_nPosMin..m_nPosMax, and writes the variable.
    void setPosition(int nPos);

    // Moves it to a normalised position, not limited, and writes the variable.
    void setNormalized(double dNormalized);

    // Writes a value to the variable as it is, and works out the position.
    void setCookedValue(double dCooked);

    // Takes the value that a person typed, limited to the range (cookedFromText). False, and nothing
    // changes, if the text holds no number.
    bool setText(std::string_view sText);

    // Works out position and text anew, after something else has written the variable.
    void updateFromVariable();

    // The variable's value; none for a control without a variable.
    [[nodiscard]] std::optional<double> cookedValue() const;

    // cEnumeratedList, and m_Enum with it.
    void setEnumeratedList(std::string_view sItems);

    // The meter's reading, 0.0 to 1.0: the variable itself with detector mode 3, else smoothed by the
    // detector, which this call feeds with one value.
    [[nodiscard]] float meterLevel();

    // The rate in Hz at which meterLevel() is fed.
    void initMeter(float fSampleRate);

    [[nodiscard]] CControlLaw law() const;

    CDSPFilter* m_pFilter = nullptr; // owner
    UINT uControlType = 0;           // FILTER_CONTROL_...
    UINT uControlId = 0;
    CLevelDetector m_LevelDetector;
    UINT uDetectorMode = DETECT_MODE_NONE;
    UINT uMeterColorScheme = 0;
    float fMeterAttack_ms = 10.0F;
    float fMeterRelease_ms = 500.0F;
    std::string m_sName;
    std::string m_sUnits; // at most 32 characters
    std::string m_sValue; // the cooked value as shown, without units
    int m_nPosMin = 0;
    int m_nPosMax = 256;
    int m_nPos = 100;
    float m_fNormalized = 1.0F; // 0.0 to 1.0
    UINT m_uMeterValueIndex = 0;
    bool bLogMeter = false;
    bool bUpsideDownMeter = false;
    bool bUseMeter = false;
    bool bLogSlider = false;
    bool bExpSlider = false;
    bool bOwnerControl = false;
    std::vector<std::unique_ptr<CDSPFilterVariable>> m_Variables;
    std::vector<std::string> m_Enum; // the items of cEnumeratedList
    float fUserDisplayDataLoLimit = 0.0F;
    float fUserDisplayDataHiLimit = 0.0F;
    UINT uUserDataType = 4; // intData to UINTData; 4 is none

    // The variable: only the pointer that fits uUserDataType is set.
    int* m_pUserCookedIntData = nullptr;
    float* m_pUserCookedFloatData = nullptr;
    double* m_pUserCookedDoubleData = nullptr;
    UINT* m_pUserCookedUINTData = nullptr;

    std::string cEnumeratedList;
    float* m_pCurrentMeterValue = nullptr; // 0.0 to 1.0

  private:
    void writeVariable(double dCooked);
    void updateText();
};

} // namespace velmora
