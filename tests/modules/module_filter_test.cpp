#include "dsp/modules/all_pass_filter.h"
#include "dsp/modules/block_diagram_table.h"
#include "dsp/modules/hp_lp_filter.h"
#include "dsp/modules/linkwitz_riley_filter.h"
#include "dsp/modules/module_filter.h"
#include "dsp/modules/module_parameter.h"
#include "dsp/modules/smoothing_filter.h"
#include "dsp/modules/volume_ctrl.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

struct CControlRow
{
    const char* m_pName;
    const char* m_pUnits;
    const char* m_pAtConstruction; // text
    const char* m_pAfterReset;
    float m_fLow, m_fHigh;
};

struct CModuleRow
{
    std::unique_ptr<CModuleFilter> m_pFilter;
    const char* m_pName;
    UINT m_uTag;
    std::vector<CControlRow> m_controls;
};

TEST(ModuleFilter, HasTheControlsAndTheTwoDefaultsOfItsTables)
{
    const CControlRow volume = {"Output Volume", "dB", "0.0", "0.0", 0.0F, 1.0F};
    const CControlRow fc = {"fc", "Hz", "1000", "1000", 10.0F, 18000.0F};
    CModuleRow rows[] = {
        {std::make_unique<CMultiFilter>(),
         "MultiFilter",
         1001,
         {{"fc", "Hz", "100", "100", 10, 18000},
          {"Boost/Cut", "dB", "0.00", "0.00", -12, 12},
          {"Q", "", "4.24", "1.41", 0.8F, 10},
          volume,
          {"Filter Type", "", "0", "0", 0, 3}}},
        {std::make_unique<CHP_LPFilter>(),
         "HP/LP Filter",
         0,
         {fc, {"Q", "", "0.71", "0.71", 0.1F, 20}, volume, {"Filter Type", "", "3", "3", 0, 3}}},
        {std::make_unique<CAllPassFilter>(),
         "AllpassFilter",
         1004,
         {fc,
          {"BandWidth", "Hz", "5000.0", "5000.0", 0.1F, 10000},
          volume,
          {"Filter Type", "", "1", "1", 0, 1}}},
        {std::make_unique<CLinkwitzRileyFilter>(),
         "Linkwitz-Riley Filter",
         0,
         {fc, volume, {"Filter Type", "", "0", "0", 0, 1}}},
        {std::make_unique<CSmoothingFilter>(),
         "SmoothingFilter",
         0,
         {{"Samples", "", "5.00", "5.00", 0, 1024}}},
        {std::make_unique<CVolumeCtrl>(),
         "Volume",
         0,
         // A reset sets the volume only, so that the other two keep what the test has set them to.
         {volume, {"fc", "Hz", "0", "10", 10, 1000}, {"Boost/Cut", "dB", "0.50", "-12.00", -12, 12}}},
    };
    for (auto& [pFilter, pName, uTag, controls] : rows) {
        SCOPED_TRACE(pName);
        EXPECT_EQ(pFilter->m_sName, pName);
        EXPECT_EQ(pFilter->m_uTag, uTag);
        ASSERT_EQ(pFilter->m_ControlList.size(), controls.size());
        for (const bool bAfterReset : {false, true}) {
            for (UINT u = 0; u < controls.size(); ++u) {
                SCOPED_TRACE(controls[u].m_pName);
                const CDSPFilterControl& control = *pFilter->m_ControlList[u];
                EXPECT_EQ(control.uControlId, 600 + u);
                EXPECT_EQ(control.m_sName, controls[u].m_pName);
                EXPECT_EQ(control.m_sUnits, controls[u].m_pUnits);
                EXPECT_EQ(control.m_sValue,
                          bAfterReset ? controls[u].m_pAfterReset : controls[u].m_pAtConstruction);
                EXPECT_EQ(control.fUserDisplayDataLoLimit, controls[u].m_fLow);
                EXPECT_EQ(control.fUserDisplayDataHiLimit, controls[u].m_fHigh);
                EXPECT_TRUE(pFilter->setControlPosition(600 + u, 0));
            }
            EXPECT_FALSE(pFilter->setControlPosition(600 + static_cast<UINT>(controls.size()), 0));
            EXPECT_FALSE(pFilter->setControlText(CDSPFilter::NO_CONTROL, "1", false));
            EXPECT_TRUE(pFilter->resetToDefaults());
        }
    }
}

TEST(ModuleFilter, MovesShowsAndTypesItsValues)
{
    CMultiFilter filter;
    filter.prepareForPlay();
    CBlockDiagramTable diagram;
    diagram.setCoefficients(filter.coefficients());
    diagram.refresh();
    const auto before = diagram.rows();

    EXPECT_TRUE(filter.setCenterFrequency(128)); // linear
    EXPECT_EQ(filter.parameter(MULTIFILTER_FC), 9005.0F);
    EXPECT_EQ(filter.getControlById(600)->m_sValue, "9005");
    EXPECT_TRUE(filter.setBoostCut(256) && filter.setQ(0) && filter.setFilterType(192));
    EXPECT_EQ(filter.parameter(MULTIFILTER_BOOST_CUT), 12.0F);
    EXPECT_EQ(filter.parameter(MULTIFILTER_Q), 0.8F);
    EXPECT_EQ(filter.type(), FILTER_GRAPHIC_A);
    EXPECT_TRUE(filter.setOutputVolume(128));
    EXPECT_EQ(filter.getControlById(603)->m_sValue, "-6.0");
    filter.setOutputVolume(0);
    EXPECT_EQ(filter.getControlById(603)->m_sValue, "-96.0");
    for (const auto& [pText, fVolume] :
         {std::pair("-20 dB", 0.1F), std::pair("3", 1.0F), std::pair("-100", 0.0F)}) {
        EXPECT_TRUE(filter.setControlText(603, pText, false));
        EXPECT_NEAR(filter.parameter(MULTIFILTER_VOLUME), fVolume, 1e-6F);
    }
    EXPECT_FALSE(filter.setControlText(600, "high", false));
    EXPECT_FALSE(filter.setParameter(MULTIFILTER_FC, std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(filter.setType(304));
    EXPECT_EQ(filter.parameter(MULTIFILTER_FC), 9005.0F);

    // The diagram follows when it is told to, by every way in which a value changes.
    const char* const LABELS[] = {"a0", "a1", "a2", "b1", "b2", "m", "c0", "d0", "n"};
    ASSERT_EQ(before.size(), std::size(LABELS));
    EXPECT_EQ(diagram.rows()[6].m_sValue, "0.000000"); // the low shelf at 0 dB has no wet path
    diagram.refresh();
    EXPECT_EQ(diagram.rows()[6].m_sValue, "3.981072");
    for (UINT u = 0; u < std::size(LABELS); ++u)
        EXPECT_EQ(diagram.rows()[u].m_sLabel, LABELS[u]);
    *filter.getControlById(601)->m_pUserCookedFloatData = 0.0F;
    EXPECT_TRUE(filter.controlChanged(601));
    EXPECT_EQ(filter.getControlById(601)->m_nPos, 128);
    diagram.refresh();
    EXPECT_EQ(diagram.rows()[6].m_sValue, "1.000000");
    diagram.setCoefficients({});
    diagram.refresh(); // another number of rows: left as it is
    EXPECT_EQ(diagram.rows().size(), 9U);
    diagram.open();
    EXPECT_TRUE(diagram.rows().empty());
}

TEST(ModuleFilter, ShowsOnlyWhatItsOwnerWants)
{
    CMultiFilter filter;
    filter.showControls(605, {{MULTIFILTER_TYPE, "", ""}, {MULTIFILTER_BOOST_CUT, "1 kHz", "dBu"}});
    ASSERT_EQ(filter.m_ControlList.size(), 2U);
    EXPECT_EQ(filter.getControlById(606)->m_sName, "1 kHz");
    EXPECT_EQ(filter.getControlById(606)->m_sUnits, "dBu");
    EXPECT_EQ(filter.getControlByIndex(605)->m_sName, "Filter Type");
    EXPECT_TRUE(filter.setControlPosition(606, 0));
    EXPECT_EQ(filter.parameter(MULTIFILTER_BOOST_CUT), -12.0F);
    EXPECT_FALSE(filter.setControlPosition(600, 0));
    EXPECT_FALSE(filter.setCenterFrequency(0));
    EXPECT_EQ(filter.parameter(MULTIFILTER_FC), 100.0F);
    filter.setRange(MULTIFILTER_BOOST_CUT, {0.0F, -24.0F, 0.0F});
    EXPECT_EQ(filter.getControlById(606)->m_nPos, 128);
}

} // namespace
} // namespace velmora
