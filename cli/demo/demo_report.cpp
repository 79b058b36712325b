#include "cli/demo/demo_report.h"

#include "base/text.h"
#include "cli/demo/markup.h"
#include "cli/demo/plot_axis.h"
#include "cli/demo/report_plots.h"
#include "cli/demo/report_style.h"
#include "cli/demo/svg_plot.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

namespace velmora::cli {

namespace {

// The classes are those of the style sheet, which shows the one that fits the column.
constexpr CPlotSize RESPONSE_SIZES[] = {{"narrow", 360, 230}, {"medium", 580, 270}, {"wide", 920, 300}};
constexpr CPlotSize WAVEFORM_SIZES[] = {
    {"narrow", 360, 130}, {"medium", 580, 140}, {"wide", 920, 150}, {"broad", 1240, 160}};
constexpr CPlotSize SPECTRUM_SIZES[] = {
    {"narrow", 360, 240}, {"medium", 580, 280}, {"wide", 920, 310}, {"broad", 1240, 330}};

std::string drawAtAllSizes(const CPlot& plot, std::span<const CPlotSize> sizes)
{
    std::string sResult;
    for (const CPlotSize& size : sizes)
        sResult += drawPlot(plot, size);
    return sResult;
}

std::string element(const char* pName, const std::string& sText)
{
    return formatted("<%s>", pName) + escapedText(sText) + formatted("</%s>", pName);
}

std::string beginCard(const char* pClass, const char* pTitle, const char* pHint)
{
    return formatted("<section class=\"card %s\"><div class=\"head\"><h2>%s</h2>", pClass, pTitle) +
           (*pHint ? "<p class=\"hint\">" + std::string(pHint) + "</p>" : std::string()) + "</div>\n";
}

std::string durationText(double dMilliseconds)
{
    if (!std::isfinite(dMilliseconds))
        return "\u2013";
    return dMilliseconds < 10.0     ? printedNumber(dMilliseconds, 2) + " ms"
           : dMilliseconds < 1000.0 ? printedNumber(dMilliseconds, 0) + " ms"
                                    : printedNumber(dMilliseconds / 1000.0, 2) + " s";
}

// A horizontal bar; dPart is the filled part, 0.0 to 1.0.
std::string bar(const char* pClass, double dPart)
{
    const double dWidth = std::isfinite(dPart) ? std::clamp(dPart, 0.0, 1.0) * 100.0 : 0.0;
    return formatted(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"meter %s\" viewBox=\"0 0 100 8\" "
        "preserveAspectRatio=\"none\" aria-hidden=\"true\"><rect class=\"rail\" width=\"100\" "
        "height=\"8\" rx=\"1\" /><rect class=\"fill\" width=\"%.1f\" height=\"8\" rx=\"1\" /></svg>",
        pClass, dWidth);
}

std::string headSection(const CDemoReport& report)
{
    std::string sOut = "<header><div class=\"brand\"><svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 "
                       "34 18\" aria-hidden=\"true\"><path d=\"M1 9h4c3 0 3-7 6-7s3 14 6 14 3-10 6-10 3 3 6 "
                       "3h4\" /></svg><span>Velmora demonstration report</span></div>\n";
    sOut += element("h1", report.m_sPlugInName) + "\n";
    sOut += "<p class=\"summary\">" + escapedText(report.m_sSummary) + "</p></header>\n";
    if (report.m_highlights.empty())
        return sOut;
    sOut += "<dl class=\"tiles\">";
    for (const CReportFact& fact : report.m_highlights)
        sOut += "<div>" + element("dt", fact.m_sLabel) + element("dd", fact.m_sValue) + "</div>\n";
    return sOut + "</dl>\n";
}

std::string soundPart(const CDemoReport& report, EReportSound eSound)
{
    const bool bBefore = eSound == EReportSound::before;
    const CReportSound& sound = bBefore ? report.m_before : report.m_after;
    const char* pTitle = bBefore ? "Before" : "After";
    std::string sOut = formatted("<div class=\"sound\"><div class=\"head\"><h2>%s</h2>", pTitle);
    sOut += "<span class=\"levels\">peak " + levelText(sound.m_dPeakdB) + " \u00b7 RMS " +
            levelText(sound.m_dRMSdB) + "</span>";
    if (!sound.m_sWave.empty())
        sOut += formatted("<audio controls=\"controls\" preload=\"metadata\" aria-label=\"%s processing\" "
                          "src=\"data:audio/wav;base64,",
                          pTitle) +
                base64(sound.m_sWave) + "\"></audio>";
    return sOut + "</div>\n" + drawAtAllSizes(waveformPlot(report, eSound), WAVEFORM_SIZES) + "</div>\n";
}

std::string plotCards(const CDemoReport& report)
{
    struct CCard
    {
        EReportResponse m_eResponse;
        const char* m_pTitle;
        const char* m_pHint;
    };
    static constexpr CCard CARDS[] = {
        {EReportResponse::frequency, "Frequency response", "gain at each frequency"},
        {EReportResponse::phase, "Phase response", "in degrees, as measured"},
        {EReportResponse::impulse, "Impulse response", "output for a single full-scale sample"},
        {EReportResponse::step, "Step response", "output for a lasting full-scale value"},
    };
    std::string sOut = beginCard("full", "Listen", "the recording, and what came out of the plug-in");
    sOut += soundPart(report, EReportSound::before) + soundPart(report, EReportSound::after) + "</section>\n";
    sOut += beginCard("full", "Spectrum", "average level over the whole recording");
    sOut += drawAtAllSizes(spectrumPlot(report), SPECTRUM_SIZES) + "</section>\n";
    for (const CCard& card : CARDS)
        sOut += beginCard("", card.m_pTitle, card.m_pHint) +
                drawAtAllSizes(responsePlot(report, card.m_eResponse), RESPONSE_SIZES) + "</section>\n";
    return sOut;
}

std::string rangeText(const CReportControl& control)
{
    std::string sText;
    for (const std::string& sChoice : control.m_choices)
        sText += (sText.empty() ? "" : ", ") + sChoice;
    if (!control.m_sLow.empty() || !control.m_sHigh.empty())
        sText = control.m_sLow + " to " + control.m_sHigh;
    return escapedText(sText);
}

std::string controlsCard(const CDemoReport& report)
{
    if (report.m_controls.empty())
        return {};
    std::string sOut = beginCard("", "Controls", "coloured: set for this demonstration");
    sOut += "<div class=\"scroll\"><table><thead><tr><th>Control</th><th class=\"num\">Value</th>"
            "<th>Position</th><th class=\"narrow-hide\">Range</th></tr></thead><tbody>\n";
    for (const CReportControl& control : report.m_controls) {
        sOut += "<tr><td>" + escapedText(control.m_sName) + "<span class=\"sub\"><code>" +
                escapedText(control.m_sVariable) + "</code></span></td>";
        sOut += std::string("<td class=\"num") + (control.m_bChanged ? " set" : "") + "\">" +
                escapedText(control.m_sValue) + "</td>";
        const char* pBarClass = control.m_bChanged ? "changed" : "";
        sOut += "<td>" + (control.m_choices.empty() ? bar(pBarClass, control.m_dPosition) : std::string()) +
                "</td>";
        sOut += "<td class=\"range narrow-hide\">" + rangeText(control) + "</td></tr>\n";
    }
    return sOut + "</tbody></table></div></section>\n";
}

std::string stepsCard(const CDemoReport& report)
{
    if (report.m_steps.empty())
        return {};
    const auto add = [](double dSum, const CReportStep& step) { return dSum + step.m_dMilliseconds; };
    const double dTotal = std::accumulate(report.m_steps.begin(), report.m_steps.end(), 0.0, add);
    std::string sOut = beginCard("", "From source to sound", "each step, wall-clock time");
    sOut += "<div class=\"scroll\"><table><thead><tr><th>Step</th><th class=\"num\">Time</th><th>Share"
            "</th></tr></thead><tbody>\n";
    for (const CReportStep& step : report.m_steps)
        sOut += "<tr><td>" + escapedText(step.m_sName) + "<span class=\"sub\">" +
                escapedText(step.m_sDetail) + "</span></td><td class=\"num\">" +
                durationText(step.m_dMilliseconds) + "</td><td>" +
                bar("time", step.m_dMilliseconds / dTotal) + "</td></tr>\n";
    return sOut + "</tbody><tfoot><tr><td>Together</td><td class=\"num\">" + durationText(dTotal) +
           "</td><td></td></tr></tfoot></table></div></section>\n";
}

std::string sourceCards(const CDemoReport& report)
{
    std::string sOut;
    if (!report.m_sSource.empty())
        sOut += beginCard("full", "The code that did it", escapedText(report.m_sSourceFile).c_str()) +
                "<pre tabindex=\"0\">" + highlightedSource(report.m_sSource) + "</pre></section>\n";
    if (report.m_facts.empty() && report.m_sCommandLine.empty())
        return sOut;
    sOut += beginCard("full", "Particulars", "") + "<dl class=\"facts\">\n";
    for (const CReportFact& fact : report.m_facts)
        sOut += element("dt", fact.m_sLabel) + element("dd", fact.m_sValue) + "\n";
    sOut += "</dl>\n";
    if (!report.m_sCommandLine.empty())
        sOut += "<p class=\"hint\">Compiled with</p><pre class=\"wrap\">" +
                escapedText(report.m_sCommandLine) + "</pre>\n";
    return sOut + "</section>\n";
}

} // namespace

std::string makeReportHtml(const CDemoReport& report)
{
    std::string sOut = "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\"><head>\n"
                       "<meta charset=\"utf-8\" />\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n";
    sOut +=
        std::string(REPORT_MARK) + "\n" + element("title", report.m_sPlugInName + " \u2013 Velmora") + "\n";
    sOut += "<style>" + std::string(REPORT_STYLE) + "</style></head>\n<body><div class=\"page\">\n";
    sOut += headSection(report) + "<main class=\"cards\">\n";
    sOut += plotCards(report) + controlsCard(report) + stepsCard(report) + sourceCards(report);
    sOut += "</main>\n<footer>Made by velmora-cli demo, version " + escapedText(report.m_sProgramVersion) +
            ". All figures were measured in this run.</footer>\n</div></body></html>\n";
    return sOut;
}

} // namespace velmora::cli
