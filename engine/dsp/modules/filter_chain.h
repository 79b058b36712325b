#pragma once

#include "dsp/modules/module_filter.h"

#include <memory>
#include <vector>

namespace velmora {

// A module that is made of others, its children, which it owns; what is left to a derived class is to make
// them and to route audio through them.
//
// Every operation of CDSPFilter goes to each child in list order, then to the settings of this class itself;
// the result is whether all did their work. Those that look for a control end at the first one that knows it;
// counts are summed. The controls of all children and then the own ones have ids from FIRST_CONTROL_ID on,
// without a gap.
//
// Threads: as CModuleFilter.
class CFilterChain : public CModuleFilter
{
  public:
    [[nodiscard]] UINT childCount() const { return static_cast<UINT>(m_children.size()); }
    [[nodiscard]] CModuleFilter& childAt(UINT uChild) const { return *m_children[uChild]; }

    // Those of all children, each with the child's name ahead of it.
    [[nodiscard]] std::vector<CModuleCoefficient> coefficients() const override;

    bool setBufferSize(UINT uSize) override;
    bool createControls() override;
    bool cleanUp() override;
    bool reset() override;
    bool resetToDefaults() override;

    // Tells the children rate, channels and depth, and prepares them.
    bool prepareForPlay() override;
    bool start() override;
    bool stop() override;
    bool flush(UINT uWord) override;

    // uChannels is 1 or 2; with another number nothing is written and the result is false. pIn is scaled in
    // place where the derived class says so. pOut must not be pIn.
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;
    bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;

    // One sample through the children one behind the other, whatever the routing of buffers.
    bool processSample(float fIn, float* pOut) override;

    bool setControlPosition(UINT uControlId, int nPos) override;
    bool setControlText(UINT uControlId, std::string sText, bool bQuiet) override;
    bool isBypassed() const override;
    bool update() override;
    bool controlChanged(UINT uControlId) override;
    bool setFileParam(UINT uWord) override;
    bool hasFile(UINT uWord) const override;
    bool getFileName(std::string& sName) const override; // the first name that is not empty
    bool setRunMode(int nMode) override;
    bool setBitDepth(int nBits) override;
    bool usesFile(UINT uWord) const override; // whether one of them does
    CDSPFilterControl* getControlByIndex(UINT uId) override;
    CDSPFilterControl* findNextControl(UINT uType, UINT* pPos) override;
    CDSPFilterControl* getControlById(UINT uControlId) override;
    UINT countControls(UINT uType) const override;

  protected:
    // The tables are those of the own settings, if there are any.
    CFilterChain(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters = {},
                 std::span<const CModuleChoice> choices = {});

    // Appends a child that shows only the settings given. Behind the last one the derived class calls
    // createControls(). [main]
    template <class Child>
    void addChild(const char* pName, std::vector<CShownSetting> shown)
    {
        adopt(std::make_unique<Child>(), pName, std::move(shown));
    }

    // How many buffers of its own a route needs beside input and output. [main, no stream running]
    void setWorkingBuffers(UINT uCount);

    // One of the two buffer operations, and how long the buffers are.
    struct CPass
    {
        bool (CDSPFilter::*m_pOperation)(float*, float*, UINT, UINT, UINT);
        UINT m_uChannels;
        UINT m_uSamples; // floats over all channels
        float m_fFullScale;
    };

    // Takes audio through the children; with working buffers it comes in pieces that fit them. [audio]
    virtual bool route(const CPass& pass, float* pIn, float* pOut) = 0;

    // Runs one child. pOut may be pIn. [audio]
    bool run(const CPass& pass, UINT uChild, float* pIn, float* pOut) const
    {
        return (m_children[uChild].get()->*pass.m_pOperation)(pIn, pOut, pass.m_uChannels, pass.m_uSamples,
                                                              0);
    }

    [[nodiscard]] float* workingBuffer(UINT uBuffer) { return m_workingBuffers[uBuffer].data(); }

  private:
    void adopt(std::unique_ptr<CModuleFilter> pChild, const char* pName, std::vector<CShownSetting> shown);
    bool process(CPass pass, float* pIn, float* pOut);
    [[nodiscard]] CModuleFilter* childWith(UINT uControlId) const;
    [[nodiscard]] UINT childControlCount() const;
    [[nodiscard]] UINT ownControlId(UINT uControlId) const;

    template <class Operation>
    bool forEachChild(const Operation& operation) const
    {
        bool bDone = true;
        for (const auto& pChild : m_children)
            bDone = operation(*pChild) && bDone;
        return bDone;
    }

    std::vector<std::unique_ptr<CModuleFilter>> m_children;
    std::vector<std::vector<float>> m_workingBuffers;
    UINT m_uPieceSamples = 0; // that a working buffer holds
};

} // namespace velmora
