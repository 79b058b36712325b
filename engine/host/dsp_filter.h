#pragma once

#include "base/object.h"
#include "dsp/float_array.h"
#include "host/dsp_filter_control.h"
#include "pluginconstants.h"

#include <fstream>
#include <memory>
#include <string>
#include <vector>

class CPlugIn;

namespace velmora {

class CPlugInLibrary;

// The one kind of thing that audio runs through: a built-in module, or a CUserDSPFilter with a plug-in.
//
// Sample scale: floats from -32768.0 to +32767.0 on the path of processBuffer(), which measurements use;
// from -1.0 to +1.0 on the others. uSamples counts floats over all channels. Results tell whether the
// operation did its work; those that the base class leaves empty answer true.
//
// Threads: the process... operations [audio]; prepareForPlay() and setBufferSize() [main, no stream
// running]; setControlPosition(), setControlText() and controlChanged() [main], or the MIDI thread; all
// others [main].
class CDSPFilter : public CObject
{
  public:
    CDSPFilter();
    ~CDSPFilter() override;
    CDSPFilter(const CDSPFilter&) = delete;
    CDSPFilter& operator=(const CDSPFilter&) = delete;

    // Coefficients for the block diagram.
    virtual CFloatArray& getCoeffArray();
    virtual bool setBufferSize(UINT uSize);
    virtual bool createControls();
    virtual bool cleanUp();
    virtual std::string getInfoText() const;
    virtual bool reset();

    // Called ahead of audio, when channels, rate and depth are set: clear what is left of earlier audio.
    virtual bool prepareForPlay();
    virtual bool start();
    virtual bool stop();
    virtual bool flush(UINT uWord);

    // Processes a buffer at a full scale of 32768. pIn may be scaled in place.
    virtual bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord);

    // Processes an interleaved buffer at a full scale of 1.
    virtual bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord);
    virtual bool processSample(float fIn, float* pOut);

    // Moves a control to a position of its own range. False for an unknown control.
    virtual bool setControlPosition(UINT uControlId, int nPos);

    // Sets a control's value from typed text; with bQuiet the plug-in is not told. False for an unknown
    // control and for a text without a number; nothing has changed then.
    virtual bool setControlText(UINT uControlId, std::string sText, bool bQuiet);
    virtual bool isBypassed() const;
    virtual bool update();

    // The variable of this control was changed from outside.
    virtual bool controlChanged(UINT uControlId);
    virtual bool setFileParam(UINT uWord);
    virtual bool hasFile(UINT uWord) const;
    virtual bool getFileName(std::string& sName) const;
    virtual bool setRunMode(int nMode); // 201 stops, 203 runs
    virtual bool setBitDepth(int nBits);
    virtual bool usesFile(UINT uWord) const;
    virtual UINT getFirstControlID() const;

    // The control at list position uId - m_nFirstControlID; null past the end.
    virtual CDSPFilterControl* getControlByIndex(UINT uId);

    // The next control of a type from list position *pPos - m_nFirstControlID on. *pPos is then where to
    // go on; at the end it is the number of controls less 1, and the result is null.
    virtual CDSPFilterControl* findNextControl(UINT uType, UINT* pPos);
    virtual CDSPFilterControl* getControlById(UINT uControlId);
    virtual UINT countControls(UINT uType) const;

    static constexpr UINT NO_CONTROL = 0xFFFFFFFF; // the id that names no control
    static constexpr int RUN_MODE_STOP = 201;
    static constexpr int RUN_MODE_RUN = 203;

    CPlugIn* m_pPlugIn = nullptr; // null for a built-in
    UINT m_uReserved = 0;
    CPlugInLibrary* m_hParentDLL = nullptr; // the library that the plug-in came from; not owned
    bool m_bRunning = false;
    UINT m_nCoeffCount = 0;
    bool m_bFlag0 = false;
    bool m_bFlag1 = false;
    bool m_bFlag2 = false;
    UINT m_uCoeffRows = 8;     // rows of the block diagram
    UINT m_bBuiltInPlugIn = 0; // 1: holds a built-in CPlugIn and must not be unloaded
    int m_nChannels = 2;
    int m_nSampleRate = 44100; // Hz
    int m_nBitDepth = 16;
    UINT m_uBufferSize = 0; // frames
    CFloatArray m_CoeffArray;
    float m_fDisplayParam = 0.0F;
    bool m_bFlag3 = false;
    bool m_bFlag4 = false;
    bool m_bFlag5 = false;
    std::string m_sFileName;
    std::ifstream m_File; // of a module that reads a table
    UINT m_nFirstControlID = 0;
    UINT m_uFlags = 0;
    std::string m_sName = "Filter";
    UINT m_uTag = 0;
    std::vector<std::unique_ptr<CDSPFilterControl>> m_ControlList;
};

} // namespace velmora
