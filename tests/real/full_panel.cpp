#include "document/project_commands.h"
#include "project/control_properties.h"
#include "real/workbench.h"

#include <algorithm>

namespace velmora::test {

namespace {

struct CSliderRow
{
    const char* m_pName;
    const char* m_pUnits;
    float m_fLo;
    float m_fHi;
    float m_fInitial;
};

// For slots 1 to 39.
constexpr CSliderRow SLIDERS[] = {
    {"Drive", "dB", 0, 24, 6},
    {"Tone", "%", 0, 100, 60},
    {"Bias", "V", -1, 1, 0.2F},
    {"Cutoff", "Hz", 20, 20000, 8000},
    {"Resonance", "Q", 0.5F, 12, 2},
    {"Env Amount", "%", 0, 100, 35},
    {"Key Track", "%", 0, 100, 50},
    {"Attack", "ms", 0, 500, 12},
    {"Decay", "ms", 0, 2000, 340},
    {"Sustain", "%", 0, 100, 70},
    {"Release", "ms", 0, 4000, 620},
    {"LFO Rate", "Hz", 0, 20, 4.5F},
    {"LFO Depth", "%", 0, 100, 25},
    {"LFO Phase", "deg", 0, 360, 90},
    {"Vibrato", "ct", 0, 100, 18},
    {"Delay Time", "ms", 0, 2000, 375},
    {"Feedback", "%", 0, 100, 42},
    {"Damping", "%", 0, 100, 55},
    {"Spread", "%", 0, 100, 80},
    {"Reverb Time", "s", 0, 10, 2.4F},
    {"Pre Delay", "ms", 0, 200, 24},
    {"Diffusion", "%", 0, 100, 66},
    {"Low Cut", "Hz", 20, 1000, 120},
    {"High Cut", "Hz", 1000, 20000, 9000},
    {"Low Gain", "dB", -18, 18, 3},
    {"Low Freq", "Hz", 20, 500, 90},
    {"Mid Gain", "dB", -18, 18, 1.5F},
    {"Mid Freq", "Hz", 200, 5000, 1200},
    {"Mid Q", "Q", 0.1F, 10, 1.4F},
    {"High Gain", "dB", -18, 18, 2},
    {"High Freq", "Hz", 1000, 16000, 6000},
    {"Threshold", "dB", -60, 0, -18},
    {"Ratio", ":1", 1, 20, 4},
    {"Knee", "dB", 0, 24, 6},
    {"Comp Attack", "ms", 0, 100, 10},
    {"Comp Release", "ms", 0, 1000, 150},
    {"Width", "%", 0, 200, 100},
    {"Mix", "%", 0, 100, 50},
    {"Output", "dB", -24, 24, 0},
};

struct CListRow
{
    UINT m_uId;
    const char* m_pName;
    const char* m_pVariable;
    const char* m_pList; // null: that of a new control
};

constexpr CListRow LISTS[] = {
    {42, "Slope", "m_uSlope", "dB6,dB12,dB18,dB24"},
    {43, "Routing", "m_uRouting", "Serial,Parallel,Feedback,Mid_Side"},
    {44, "Oversampling", "m_uOversampling", "OFF,X2,X4,X8"},
    {46, "Sync", "m_uSync", nullptr},
    {47, "Mono", "m_uMono", nullptr},
    {48, "Limit", "m_uLimit", nullptr},
    {60, "A", "m_uVoiceA", "Saw,Pulse,Sub"},
    {61, "B", "m_uVoiceB", "Ring,Fold,Clip"},
    {62, "C", "m_uVoiceC", "Comb,Phaser,Flanger"},
    {63, "D", "m_uVoiceD", "Hall,Room,Plate"},
    {71, "Scale", "m_uScale", "Major,Minor,Whole_Tone"},
    {72, "Clock", "m_uClock", "Internal,Host,Tap"},
    {73, "Quality", "m_uQuality", "Draft,Good,Best"},
};

struct CMeterRow
{
    UINT m_uId;
    const char* m_pName;
    const char* m_pVariable;
};

constexpr CMeterRow METERS[] = {
    {51, "Left", "m_fLeft"},     {52, "Right", "m_fRight"}, {53, "Slow", "m_fSlow"},
    {54, "Peak", "m_fPeak"},     {55, "LFO", "m_fLFO"},     {56, "Bass", "m_fBass"},
    {57, "Treble", "m_fTreble"}, {58, "Drop", "m_fDrop"},   {59, "Knob", "m_fKnob"},
};

constexpr CSliderRow WHEEL_ITEMS[] = {
    {"Fine Tune", "ct", -50, 50, 0},
    {"Glide", "ms", 0, 1000, 80},
    {"Bend Range", "st", 0, 24, 2},
    {"Velocity", "%", 0, 100, 64},
};

std::string variableName(std::string sName)
{
    std::erase(sName, ' ');
    return "m_f" + sName;
}

CControlEdit sliderEdit(const CDSPProject& project, UINT uId, const CSliderRow& row)
{
    CControlEdit edit = newControlEdit(project, uId);
    edit.m_sName = row.m_pName;
    edit.m_sUnits = row.m_pUnits;
    edit.m_sVariableName = variableName(row.m_pName);
    edit.m_record.fUserDisplayDataLoLimit = row.m_fLo;
    edit.m_record.fUserDisplayDataHiLimit = row.m_fHi;
    edit.m_record.fInitUserFloatValue = row.m_fInitial;
    return edit;
}

} // namespace

bool fillPanel(CWorkbench& workbench)
{
    CProjectCommands& commands = workbench.view().commands();
    const CDSPProject& project = *commands.project();
    bool bAll = true;
    UINT uSlider = 0;
    for (const CSliderRow& row : SLIDERS)
        bAll &= commands.acceptControl(sliderEdit(project, ++uSlider, row), true);
    UINT uItem = 100;
    for (const CSliderRow& row : WHEEL_ITEMS)
        bAll &= commands.acceptControl(sliderEdit(project, uItem++, row), true);
    for (const CListRow& row : LISTS) {
        CControlEdit edit = newControlEdit(project, row.m_uId);
        edit.m_sName = row.m_pName;
        edit.m_sVariableName = row.m_pVariable;
        if (row.m_pList)
            edit.m_sEnumeratedList = row.m_pList;
        bAll &= commands.acceptControl(edit, true);
    }
    for (const CMeterRow& row : METERS) {
        CControlEdit edit = newControlEdit(project, row.m_uId);
        edit.m_sName = row.m_pName;
        edit.m_sMeterVariableName = row.m_pVariable;
        bAll &= commands.acceptControl(edit, true);
    }
    return bAll;
}

} // namespace velmora::test
