#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// What the user is told about the program's last run, which ended by a fault.
//
// The report is a text file: the line CRASH_REPORT_TITLE, then lines "key: value" in any order, each of the
// keys below. Who reads it takes it for hostile: unknown keys and lines without a colon are passed over, long
// values are cut, and what no message box can show is shown as question marks.
struct CCrashReport
{
    std::string m_sPlugIn;  // its name; empty: the fault lies in the program itself
    std::string m_sLibrary; // the plug-in's file
    std::string m_sDoing;   // reads behind "was": "processing audio"
    std::string m_sSignal;  // "SIGSEGV"; "exit" for a call of exit()
    std::string m_sFault;   // what the signal means: "segmentation fault"
    std::string m_sThread;  // "audio thread"
    bool m_bAudioRan = false;

    std::string m_sProject;  // the open project's file; empty for none
    std::string m_sAutosave; // what was not saved yet; empty: nothing, or it failed
    int m_nAutosaveError =
        0; // the system's number of what kept the autosave from being written; 0 for nothing

    std::filesystem::path m_keptAs; // where the report lies now; for takeReport() to fill in

    // None if the text does not begin as a report does.
    [[nodiscard]] static std::optional<CCrashReport> parse(std::string_view sText);

    // The text of the message box: what happened, where the unsaved changes are, what to do.
    [[nodiscard]] std::string message() const;

  private:
    [[nodiscard]] std::string projectText() const;
};

constexpr std::string_view CRASH_REPORT_TITLE = "Velmora crash report";

constexpr std::string_view CRASH_PLUGIN = "plug-in";
constexpr std::string_view CRASH_LIBRARY = "library";
constexpr std::string_view CRASH_DOING = "doing";
constexpr std::string_view CRASH_SIGNAL = "signal";
constexpr std::string_view CRASH_FAULT = "fault";
constexpr std::string_view CRASH_THREAD = "thread";
constexpr std::string_view CRASH_AUDIO = "audio"; // CRASH_AUDIO_RAN or anything else
constexpr std::string_view CRASH_PROJECT = "project";
constexpr std::string_view CRASH_AUTOSAVE = "autosave";
constexpr std::string_view CRASH_AUTOSAVE_ERROR = "autosave error";

constexpr std::string_view CRASH_AUDIO_RAN = "running";

} // namespace velmora
