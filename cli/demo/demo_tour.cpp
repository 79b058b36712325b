#include "cli/demo/demo_tour.h"

#include "base/platform_folders.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "cli/demo/plot_axis.h"
#include "cli/demo/response_curves.h"
#include "cli/demo/sound_summary.h"
#include "cli/demo/source_excerpt.h"
#include "cli/shown_values.h"
#include "host/dsp_filter.h"
#include "host/loaded_plugin.h"
#include "plugin.h"
#include "project/codegen/new_project_request.h"
#include "project/compiler/command_line_compiler.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fstream>
#include <iterator>
#include <system_error>

namespace velmora::cli {

namespace {

constexpr const char* PROJECT = "Resonance";
constexpr const char* ANOTHER_FOLDER = "Choose another one: velmora-cli demo DIR";
constexpr int WAVEFORM_COLUMNS = 1200;

// What is laid on the panel.
struct CPanelControl
{
    UINT m_uSlot;
    const char* m_pName;
    const char* m_pUnits;
    const char* m_pVariable;
    float m_fLow;
    float m_fHigh;
    float m_fInitial;
    const char* m_pList; // of a bank of buttons
    bool m_bVoltPerOctave;
};
constexpr CPanelControl PANEL[] = {
    {0, "Cutoff", "Hz", "m_fCutoff", 20.0F, 20480.0F, 1000.0F, "", true},
    {1, "Resonance", "Q", "m_fResonance", 0.5F, 20.0F, 4.0F, "", false},
    {2, "Level", "dB", "m_fLevel", -24.0F, 12.0F, 0.0F, "", false},
    {41, "Mode", "", "m_uMode", 0.0F, 0.0F, 0.0F, "LOWPASS,BANDPASS,HIGHPASS,NOTCH", false},
};

// Where the controls are put: a low-pass that sings, with room for its resonance.
struct CSetting
{
    std::string_view m_sControl;
    const char* m_pValue;
};
constexpr CSetting SETTINGS[] = {{"Cutoff", "640"}, {"Resonance", "6"}, {"Level", "-3"}};

std::filesystem::path contractFolder()
{
    return programDataFolder("BaseClassFiles");
}

// The author's source with that suffix.
std::filesystem::path soundSource(const char* pSuffix)
{
    return programDataFolder("examples") / "FirstProject" / (std::string(PROJECT) + pSuffix);
}

std::optional<std::string> contentsOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string sContents{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return stream ? std::optional(std::move(sContents)) : std::nullopt;
}

std::string sizeText(const std::filesystem::path& file)
{
    std::error_code error;
    const auto uBytes = std::filesystem::file_size(file, error);
    return error ? "?" : printedNumber(static_cast<double>(uBytes) / 1000.0, 1) + " kB";
}

std::string signedDecibels(double dValue)
{
    return (dValue > 0.0 ? "+" : "") + printedNumber(dValue, 1) + " dB";
}

double millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

std::string withMinusSign(const std::string& sNumber)
{
    return sNumber.starts_with('-') ? "\u2212" + sNumber.substr(1) : sNumber;
}

// The value as the panel shows it, or the item of a list, with its unit.
std::string valueText(const CDSPFilterControl& control)
{
    if (std::string sItem = chosenItem(control); !sItem.empty())
        return sItem;
    const std::string sNumber = withMinusSign(control.m_sValue);
    return control.m_sUnits.empty() ? sNumber : sNumber + " " + control.m_sUnits;
}

std::string limitText(double dLimit, const std::string& sUnits)
{
    return withMinusSign(formatted("%g", dLimit)) + (sUnits.empty() ? "" : " " + sUnits);
}

CReportSound describeSound(const CRecording& recording, const std::filesystem::path& file)
{
    return {file.filename().string(),
            recording.seconds(),
            peakLevel(recording),
            rmsLevel(recording),
            waveformColumns(recording, WAVEFORM_COLUMNS),
            averageSpectrum(recording),
            contentsOf(file).value_or("")};
}

} // namespace

CDemoTour::CDemoTour(CCommandContext& context, std::filesystem::path folder)
    : m_context(context), m_document(context), m_folder(std::filesystem::absolute(folder).lexically_normal()),
      m_recording(programDataFolder("examples") / "audio" / "demo.wav")
{
    m_report.m_sPlugInName = PROJECT;
    m_report.m_sProgramVersion = VELMORA_VERSION;
}

bool CDemoTour::run()
{
    return takeStep("Create a project", [this] { return createProject(); }) &&
           takeStep("Add controls", [this] { return addControls(); }) &&
           takeStep("Write the sound", [this] { return writeSound(); }) &&
           takeStep("Build", [this] { return build(); }) &&
           takeStep("Probe and load", [this] { return load(); }) &&
           takeStep("Set the controls", [this] { return setControls(); }) &&
           takeStep("Process", [this] { return process(); }) &&
           takeStep("Compare the sounds", [this] { return compareSounds(); }) &&
           takeStep("Measure", [this] { return measure(); }) &&
           takeStep("Write the report", [this] { return writeReport(); });
}

bool CDemoTour::takeStep(const char* pName, const std::function<COutcome()>& step)
{
    const auto start = std::chrono::steady_clock::now();
    const COutcome outcome = step();
    const double dMilliseconds = millisecondsSince(start);
    if (!outcome.m_sError.empty()) {
        m_context.showReason(outcome.m_sError); // the offline processing may have shown it itself
        return false;
    }
    m_report.m_steps.push_back({pName, outcome.m_sDetail, dMilliseconds});
    if (!m_context.line().has("--quiet"))
        printToStandardError(
            formatted("%-18s %9.1f ms  %s", pName, dMilliseconds, outcome.m_sDetail.c_str()));
    return true;
}

// The files of an earlier tour are replaced without a word; its report tells that there was one.
CDemoTour::COutcome CDemoTour::askAboutFiles()
{
    if (contentsOf(reportFile()).value_or("").find(REPORT_MARK) != std::string::npos)
        return {};
    std::error_code error;
    for (const auto& file : {reportFile(), processedFile()})
        if (std::filesystem::exists(file, error) &&
            !m_context.dialogs().askYesNo("The file " + file.string() +
                                          " already exists. This operation will overwrite it.\n\n"
                                          "Are you sure you want to write into this folder?"))
            return {{},
                    "The file " + file.string() + " was left as it is, and so was its folder. " +
                        ANOTHER_FOLDER};
    return {};
}

std::filesystem::path CDemoTour::projectFile() const
{
    return m_folder / PROJECT / (std::string(PROJECT) + ".prj");
}

CDemoTour::COutcome CDemoTour::createProject()
{
    std::error_code error;
    if (!std::filesystem::exists(soundSource(".cpp"), error) ||
        !std::filesystem::exists(m_recording, error) || contractFolder().empty())
        return {
            {},
            "The sources of the first project, the recording or the folder BaseClassFiles is missing beside "
            "the program. Build or install Velmora completely."};
    if (COutcome outcome = askAboutFiles(); !outcome.m_sError.empty())
        return outcome;
    std::filesystem::create_directories(m_folder, error);
    if (error)
        return {{},
                "The folder " + m_folder.string() + " could not be made: " + error.message() + ". " +
                    ANOTHER_FOLDER};
    CTonboxDoc::CStartUp startUp;
    startUp.m_userFolder = m_folder / "workbench";
    startUp.m_bOpenAudioSystem = false;
    startUp.m_bScanPlugIns = false;
    if (!m_document->OnNewDocument(startUp))
        return {{}, m_context.dialogs().lastMessage()};
    m_commands.emplace(*m_document, m_context.dialogs(), contractFolder());

    m_bNewProject = !std::filesystem::exists(projectFile(), error);
    CNewProjectRequest request;
    request.m_parentFolder = m_folder;
    request.setName(PROJECT);
    const bool bDone =
        m_bNewProject ? m_commands->newProject(request) : m_commands->loadProject(projectFile());
    if (!bDone)
        return {{}, m_context.dialogs().lastMessage()};
    return {m_bNewProject ? projectFile().string() : "that of the last tour, as it is", {}};
}

// Slots that are taken keep what they have.
CDemoTour::COutcome CDemoTour::addControls()
{
    std::string sDetail;
    for (const CPanelControl& control : PANEL) {
        if (findControl(m_commands->project()->m_UIControlList, control.m_uSlot))
            continue;
        CControlEdit edit = newControlEdit(*m_commands->project(), control.m_uSlot);
        edit.m_sName = control.m_pName;
        edit.m_sUnits = control.m_pUnits;
        edit.m_sVariableName = control.m_pVariable;
        edit.m_sEnumeratedList = control.m_pList;
        edit.m_record.fUserDisplayDataLoLimit = control.m_fLow;
        edit.m_record.fUserDisplayDataHiLimit = control.m_fHigh;
        edit.m_record.bExpSlider = control.m_bVoltPerOctave;
        initialValueOf(edit.m_record) = control.m_fInitial;
        if (!m_commands->acceptControl(edit, true))
            return {{}, m_context.dialogs().lastMessage()};
        sDetail += (sDetail.empty() ? "" : ", ") + edit.m_sName;
    }
    return {sDetail.empty() ? "all there" : sDetail, {}};
}

// Puts the author's sources in the place of the skeleton's; the workbench then writes what stands between the
// marks. The sources of an earlier tour may have been changed since and are kept.
CDemoTour::COutcome CDemoTour::writeSound()
{
    if (m_bNewProject) {
        for (const char* pSuffix : {".h", ".cpp"}) {
            const auto sContents = contentsOf(soundSource(pSuffix));
            const auto target = m_folder / PROJECT / (std::string(PROJECT) + pSuffix);
            std::string sReason = "the example cannot be read";
            if (!sContents || !writeFileSafely(target, *sContents, &sReason))
                return {{}, "The file " + target.string() + " could not be written: " + sReason + "."};
        }
    }
    if (!m_commands->writeCode())
        return {{}, m_context.dialogs().lastMessage()};
    return {std::string(m_bNewProject ? "" : "your ") + PROJECT + ".h and " + PROJECT + ".cpp" +
                (m_bNewProject ? ", the controls' code between the marks" : ", kept"),
            {}};
}

CDemoTour::COutcome CDemoTour::build()
{
    CRebuildOptions options;
    options.m_bLoad = false;
    options.m_pProgress = &m_context.progress();
    const CBuildReport report = m_commands->rebuild(options).m_build;
    if (report.m_eState != EBuildState::succeeded)
        return {{},
                report.m_sError.empty() ? m_context.dialogs().lastMessage()
                                        : report.m_sError + "\n" + contentsOf(report.m_log).value_or("")};
    const auto source = m_commands->project()->sourcePath();
    m_report.m_sCommandLine = "velmora-cli project build " + projectFile().string();
    m_report.m_sSource = processingOperationIn(contentsOf(source).value_or(""));
    m_report.m_sSourceFile = source.filename().string();
    m_report.m_highlights.push_back({"Built in", printedNumber(report.m_dSeconds, 2) + " s"});
    m_report.m_facts.push_back({"Project", projectFile().string()});
    m_report.m_facts.push_back(
        {"Library", report.m_library.string() + " (" + sizeText(report.m_library) + ")"});
    const CCommandLineCompiler compiler(contractFolder(), m_commands->compilers().chosenId());
    m_report.m_facts.push_back({"Compiler", compiler.versionText()});
    return {compiler.name(), {}};
}

CDemoTour::COutcome CDemoTour::load()
{
    const auto library = m_commands->builtLibrary();
    const auto start = std::chrono::steady_clock::now();
    if (!m_document.loadPlugIn(library))
        return {{}, "The library " + library.string() + " was built but could not be loaded."};
    m_report.m_highlights.push_back({"Loaded in", printedNumber(millisecondsSince(start), 1) + " ms"});
    const unsigned uVersion = m_document->plugInLoader().current()->plugIn()->m_uPlugInVersion;
    m_report.m_facts.push_back({"Contract", "version " + std::to_string(uVersion)});
    return {"contract version " + std::to_string(uVersion), {}};
}

CDemoTour::COutcome CDemoTour::setControls()
{
    CDSPFilter& filter = *m_document->currentFilter();
    std::string sDetail;
    for (const CSetting& setting : SETTINGS) {
        const auto found =
            std::ranges::find(filter.m_ControlList, setting.m_sControl,
                              [](const auto& pControl) { return std::string_view(pControl->m_sName); });
        if (found == filter.m_ControlList.end() ||
            !filter.setControlText((*found)->uControlId, setting.m_pValue, false))
            return {{},
                    "The plug-in has no control \"" + std::string(setting.m_sControl) +
                        "\" that can be set. " + ANOTHER_FOLDER};
        sDetail += (sDetail.empty() ? "" : ", ") + (*found)->m_sName + " " + valueText(**found);
    }
    describeControls();
    return {sDetail, {}};
}

void CDemoTour::describeControls()
{
    CLoadedPlugIn& loaded = *m_document->plugInLoader().current();
    for (const auto& pControl : m_document->currentFilter()->m_ControlList) {
        CReportControl control;
        control.m_sName = pControl->m_sName;
        control.m_sVariable = variableNameOf(*loaded.plugIn(), *pControl);
        control.m_sValue = valueText(*pControl);
        control.m_dPosition = static_cast<double>(pControl->m_fNormalized);
        control.m_bChanged =
            std::ranges::find(SETTINGS, pControl->m_sName, &CSetting::m_sControl) != std::end(SETTINGS);
        const auto items = itemsOf(*pControl);
        control.m_choices.assign(items.begin(), items.end());
        if (items.empty()) {
            control.m_sLow =
                limitText(static_cast<double>(pControl->fUserDisplayDataLoLimit), pControl->m_sUnits);
            control.m_sHigh =
                limitText(static_cast<double>(pControl->fUserDisplayDataHiLimit), pControl->m_sUnits);
        }
        m_report.m_controls.push_back(std::move(control));
    }
}

CDemoTour::COutcome CDemoTour::process()
{
    CSafeFile output(processedFile());
    m_context.dialogs().setSaveFile(output.path());
    COfflineProcessing& processing = m_document->offlineProcessing();
    if (!m_document.runPlugIn(
            [&] { return processing.processIntoWaveFile(m_recording, &m_context.progress()); }))
        return {{}, processing.reason().empty() ? "The recording was not processed." : processing.reason()};
    if (!output.commit())
        return {{},
                "The file " + processedFile().string() + " could not be written: " + output.error() + "."};

    const COfflineProcessing::CResult& result = processing.result();
    const std::string sTimes = printedNumber(timesRealTime(result), 0);
    m_dRecordingRate = result.m_nSampleRate;
    m_report.m_highlights.push_back({"Processing", sTimes + " \u00d7 real time"});
    m_report.m_facts.push_back({"Recording", m_recording.string()});
    m_report.m_facts.push_back(
        {"Processed",
         processedFile().string() + formatted(" (%lld frames, %d channels, %d Hz)", result.m_nFrames,
                                              result.m_nChannels, result.m_nSampleRate)});
    return {printedNumber(secondsOfAudio(result), 1) + " s of sound, " + sTimes + " times real time", {}};
}

CDemoTour::COutcome CDemoTour::compareSounds()
{
    std::string sError;
    for (const auto& [file, pSound] :
         {std::pair(m_recording, &m_report.m_before), std::pair(processedFile(), &m_report.m_after)}) {
        const auto recording = readRecording(file, sError);
        if (!recording)
            return {{}, sError};
        *pSound = describeSound(*recording, file);
    }
    return {"levels, waveforms and spectra", {}};
}

CDemoTour::COutcome CDemoTour::measure()
{
    CResponseCurves curves;
    CDSPFilter* pFilter = m_document->currentFilter();
    if (!m_document.runPlugIn([&] { return measureResponses(pFilter, m_dRecordingRate, curves); }))
        return {{}, "The filter could not be measured."};
    m_report.m_frequency = std::move(curves.m_frequency);
    m_report.m_phase = std::move(curves.m_phase);
    m_report.m_impulse = std::move(curves.m_impulse);
    m_report.m_step = std::move(curves.m_step);
    return {formatted("impulse, step, frequency and phase, %d frames at %.0f Hz", curves.m_nFrames,
                      m_dRecordingRate),
            {}};
}

void CDemoTour::describeResults()
{
    const auto byLevel = [](const CPlotPoint& a, const CPlotPoint& b) { return a.m_dY < b.m_dY; };
    const auto peak = std::ranges::max_element(m_report.m_frequency.m_left, byLevel);
    m_report.m_highlights.push_back(
        {"Resonance", signedDecibels(peak->m_dY) + " at " + printedNumber(peak->m_dX, 0) + " Hz"});
    m_report.m_highlights.push_back(
        {"Level change", signedDecibels(m_report.m_after.m_dRMSdB - m_report.m_before.m_dRMSdB) + " RMS"});
    double dTotal = 0.0;
    for (const CReportStep& step : m_report.m_steps)
        dTotal += step.m_dMilliseconds;
    m_report.m_sSummary =
        "A project that was made from nothing, given controls and sound, built, loaded into the "
        "running program, heard and measured, all within " +
        printedNumber(dTotal / 1000.0, 2) + " seconds.";
}

CDemoTour::COutcome CDemoTour::writeReport()
{
    describeResults();
    std::string sReason;
    if (!writeFileSafely(reportFile(), makeReportHtml(m_report), &sReason))
        return {{}, "The report " + reportFile().string() + " could not be written: " + sReason + "."};
    return {sizeText(reportFile()), {}};
}

} // namespace velmora::cli
