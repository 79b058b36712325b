#pragma once

#include "cli/command_context.h"
#include "cli/demo/demo_report.h"
#include "cli/headless_document.h"
#include "document/project_commands.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace velmora::cli {

// The way from nothing to sound, in steps: create a project, add controls, write its sound, build, load, set
// the controls, process a recording, measure, write the report. All files are made below one folder, a user
// folder for the tour among them. Those of an earlier tour are replaced there, but for the project, whose
// controls and sources are kept as they are; whether a report or a sound of other origin may be overwritten
// is asked. [main]
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
    [[nodiscard]] std::filesystem::path projectFile() const;

    // What a step found out, for its line; an empty m_sError means success.
    struct COutcome
    {
        std::string m_sDetail;
        std::string m_sError;
    };

    bool takeStep(const char* pName, const std::function<COutcome()>& step);
    COutcome askAboutFiles();
    COutcome createProject();
    COutcome addControls();
    COutcome writeSound();
    COutcome build();
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
    std::optional<CProjectCommands> m_commands; // when the tour's user folder is ready
    std::filesystem::path m_folder;
    bool m_bNewProject = false;
    std::filesystem::path m_recording;
    double m_dRecordingRate = 44100.0; // Hz
    CDemoReport m_report;
};

} // namespace velmora::cli
