#pragma once

#include "cli/demo/plot.h"

#include <string>
#include <vector>

namespace velmora::cli {

// A control of the plug-in and where it stood.
struct CReportControl
{
    std::string m_sName;
    std::string m_sVariable;
    std::string m_sValue; // with its unit
    std::string m_sLow;   // the ends of its range
    std::string m_sHigh;
    std::vector<std::string> m_choices; // of a list, which has no range
    double m_dPosition = 0.0;           // in its widget, 0.0 to 1.0
    bool m_bChanged = false;            // set for the demonstration, not left as the plug-in starts
};

// A recording, heard and seen.
struct CReportSound
{
    std::string m_sFile;
    double m_dSeconds = 0.0;
    double m_dPeakdB = 0.0; // re full scale
    double m_dRMSdB = 0.0;
    std::vector<CPlotBand> m_waveform;  // seconds; samples from -1.0 to +1.0
    std::vector<CPlotPoint> m_spectrum; // Hz, dB
    std::string m_sWave;                // a complete WAV file to be embedded; empty embeds none
};

// The two channels of a response.
struct CReportResponse
{
    std::vector<CPlotPoint> m_left;
    std::vector<CPlotPoint> m_right;
};

struct CReportStep
{
    std::string m_sName;
    std::string m_sDetail;
    double m_dMilliseconds = 0.0;
};

struct CReportFact
{
    std::string m_sLabel;
    std::string m_sValue;
};

// All that the report shows.
struct CDemoReport
{
    std::string m_sPlugInName;
    std::string m_sSummary; // one or two sentences below the name
    std::string m_sProgramVersion;
    std::vector<CReportFact> m_highlights; // the few figures that stand at the top
    CReportSound m_before;
    CReportSound m_after;
    CReportResponse m_frequency; // Hz, dB
    CReportResponse m_phase;     // Hz, degrees from -180 to +180
    CReportResponse m_impulse;   // milliseconds, 1.0 is full scale
    CReportResponse m_step;
    std::vector<CReportControl> m_controls;
    std::vector<CReportStep> m_steps;
    std::vector<CReportFact> m_facts; // files, compiler, machine
    std::string m_sSourceFile;
    std::string m_sSource;      // the plug-in's own processing code
    std::string m_sCommandLine; // of the compiler
};

// Stands in every report.
inline constexpr const char* REPORT_MARK = "<meta name=\"generator\" content=\"velmora-cli demo\" />";

// The report as one self-contained HTML file that needs no network and no scripts: it is well-formed
// XML, follows the reader's light or dark setting, fits narrow and wide windows, and prints.
[[nodiscard]] std::string makeReportHtml(const CDemoReport& report);

} // namespace velmora::cli
