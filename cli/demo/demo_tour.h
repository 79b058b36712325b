#pragma once

#include "cli/command_context.h"
#include "cli/demo/demo_report.h"
#include "cli/headless_document.h"
#include "project/compiler/command_line_compiler.h"

#include <filesystem>
#include <functional>
#include <string>

namespace velmora::cli {

// The way from an example's source to sound, in steps: copy, compile, load, set the controls, process a
// recording, measure, write the report. All files are made below one folder. Those of an earlier tour are
// replaced there, but for a source that was changed, which is kept and compiled; whether a report or a sound
// of other origin may be overwritten is asked. [main]
class CDemoTour
{
  public:
    CDemoTour(CCommandContext& context, std::filesystem::path folder);

    // Takes all steps; each is told on standard error with its time. False after the first that failed:
    // the user has been told what went wrong and what to do.
    [[nodiscard]] bool run();

    // The report, when run() has succeeded.
    [[nodiscard]] std::filesystem::path reportFile() const { return m_folder / "report.html"; }

    // What the recording became.
    [[nodiscard]] std::filesystem::path processedFile() const { return m_folder / "processed.wav"; }

  private:
    // What a step found out, for its line; an empty m_sError means success.
    struct COutcome
    {
        std::string m_sDetail;
        std::string m_sError;
    };

    bool takeStep(const char* pName, const std::function<COutcome()>& step);
    COutcome askAboutFiles();
    COutcome copySources();
    COutcome compile();
    COutcome load();
    COutcome setControls();
    COutcome process();
    COutcome compareSounds();
    COutcome measure();
    COutcome writeReport();

    void describeControls();
    void describeResults();

    CCommandContext& m_context;
    CHeadlessDocument m_document;
    CCommandLineCompiler m_compiler;
    std::filesystem::path m_folder;
    std::filesystem::path m_recording;
    double m_dRecordingRate = 44100.0; // Hz
    CDemoReport m_report;
};

} // namespace velmora::cli
