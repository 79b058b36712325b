#include "audio/offline_processing.h"

#include "audio/audio_engine.h"
#include "audio/sidechain.h"
#include "audio/sound_file.h"
#include "audio/transport_state.h"
#include "base/progress.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "dsp/numeric.h"
#include "host/dsp_filter.h"

#include <chrono>
#include <vector>

namespace velmora {

namespace {

constexpr int BLOCK_SAMPLES = 8192;             // over all channels
constexpr std::size_t LONGEST_DIRECTORY = 1024; // characters
constexpr int BIT_DEPTH = 16;

// Puts the current directory back as it was.
class CCurrentDirectoryGuard
{
  public:
    CCurrentDirectoryGuard() : m_path(std::filesystem::current_path(m_error)) {}
    ~CCurrentDirectoryGuard()
    {
        if (isKnown())
            std::filesystem::current_path(m_path, m_error);
    }
    CCurrentDirectoryGuard(const CCurrentDirectoryGuard&) = delete;
    CCurrentDirectoryGuard& operator=(const CCurrentDirectoryGuard&) = delete;

    [[nodiscard]] bool isKnown() const
    {
        return !m_path.empty() && m_path.native().size() <= LONGEST_DIRECTORY;
    }

  private:
    std::error_code m_error;
    std::filesystem::path m_path;
};

// Holds the transport in the playing state for as long as the loop runs, and the sidechain open.
class CPlayingState
{
  public:
    CPlayingState(CTransportState& transport, CSidechain& sidechain)
        : m_transport(transport), m_sidechain(sidechain)
    {
        m_transport.setState(TRANSPORT_PLAY);
        m_sidechain.openForStream(BLOCK_SAMPLES);
    }
    ~CPlayingState()
    {
        m_sidechain.close();
        m_transport.setState(TRANSPORT_STOP);
    }
    CPlayingState(const CPlayingState&) = delete;
    CPlayingState& operator=(const CPlayingState&) = delete;

  private:
    CTransportState& m_transport;
    CSidechain& m_sidechain;
};

} // namespace

COfflineProcessing::COfflineProcessing(CAudioEngine& engine, CTransportState& transport,
                                       CSidechain& sidechain, IUserDialogs& dialogs)
    : m_engine(engine), m_transport(transport), m_sidechain(sidechain), m_dialogs(dialogs)
{
}

bool COfflineProcessing::processIntoWaveFile(const std::filesystem::path& waveFile, IProgress* pProgress)
{
    m_sReason.clear();
    m_remarks.clear();
    if (!m_engine.filter())
        return fail("You must load a filter first.");
    if (m_transport.state() != TRANSPORT_STOP)
        return fail("You must stop playback or sound input sampling for this offline processing.");
    std::error_code error;
    if (!std::filesystem::exists(waveFile, error))
        return refuse("The wave file " + waveFile.string() + " does not exist.");
    const CCurrentDirectoryGuard directory;
    if (!directory.isKnown())
        return refuse("The current directory is gone, or its path is longer than 1024 characters; "
                      "change to another.");

    std::filesystem::path target;
    if (!chooseTarget(waveFile, target))
        return false;
    CSoundFile input;
    std::string sReason;
    if (std::filesystem::equivalent(waveFile, target, error))
        return fail("Error opening wave file for reading.",
                    "The new file would take the place of the file that is read; choose another name.");
    if (!input.openForReading(waveFile, sReason))
        return fail("Error opening wave file for reading.", sReason);
    if (input.info().m_nChannels > 2)
        return fail(formatted("The file %s has %d channels; only mono and stereo files can be processed.",
                              waveFile.string().c_str(), input.info().m_nChannels));
    if (input.info().m_nFrames == 0)
        return fail("The file " + waveFile.string() + " holds no audio.");
    if (input.missingFrames() > 0 &&
        !m_dialogs.askYesNo(formatted("The file %s is cut short: it holds %lld of the %lld frames that it "
                                      "promises.\n\nDo you want to process what is there?",
                                      waveFile.string().c_str(), input.info().m_nFrames,
                                      input.info().m_nFrames + input.missingFrames())))
        return refuse("The file " + waveFile.string() + " is cut short and was not processed.");
    return processInto(input, target, pProgress);
}

bool COfflineProcessing::chooseTarget(const std::filesystem::path& waveFile, std::filesystem::path& target)
{
    const auto chosen =
        m_dialogs.chooseSaveFile("Wave Files (*.wav)|*.wav||", waveFile.parent_path() / "test123.wav");
    if (!chosen)
        return refuse("No file to process into was chosen.");
    target = *chosen;
    if (target.string().find(".wav") == std::string::npos)
        return fail("You may only export .wav files. Check file name.");
    std::error_code error;
    if (std::filesystem::exists(target, error) &&
        !m_dialogs.askYesNo("The file " + target.string() +
                            " already exists. This operation will overwrite it.\n\n"
                            "Are you sure you want to process into this file?"))
        return refuse("The file " + target.string() + " already exists and was left as it is.");
    return true;
}

bool COfflineProcessing::processInto(CSoundFile& input, const std::filesystem::path& target,
                                     IProgress* pProgress)
{
    constexpr const char* WRITE_ERROR = "Error opening wave file for writing.";
    CSoundFile output;
    CSafeFile unfinished(target);
    std::string sReason;
    std::error_code error;
    if (std::filesystem::is_directory(target, error))
        return fail(WRITE_ERROR, target.string() + " is a folder.");
    if (!output.openForWriting(unfinished.path(), input.info(), sReason)) {
        // The reason is about the file that the user named.
        const std::string sUnfinished = unfinished.path().string();
        if (const auto uAt = sReason.find(sUnfinished); uAt != std::string::npos)
            sReason.replace(uAt, sUnfinished.size(), target.string());
        return fail(WRITE_ERROR, sReason);
    }
    if (!runLoop(input, output, pProgress))
        return false;
    if (!output.close())
        return fail("Error writing wave file.",
                    "The file could not be written completely; the disk may be full. "
                    "What stood there before is unchanged.");
    if (!unfinished.commit())
        return fail("Error writing wave file.", unfinished.error());
    m_dialogs.showMessage("Successfully processed wave file.");
    collectRemarks(input.info());
    return true;
}

void COfflineProcessing::collectRemarks(const CSoundFileInfo& info)
{
    const COutputCheck& output = m_result.m_output;
    if (output.notFinite() > 0)
        m_remarks.push_back(
            formatted("%lld samples of the output are infinite or not a number.", output.notFinite()));
    if (output.overs() > 0)
        m_remarks.push_back(
            formatted("The output reached %+.1f dB: %lld samples %s full scale.",
                      static_cast<double>(lin2dB(output.peak())), output.overs(),
                      CSoundFile::holdsOvers(info.m_nFormat) ? "are beyond" : "were clipped to"));
    if (m_nSidechainRate > 0 && m_nSidechainRate != info.m_nSampleRate)
        m_remarks.push_back(formatted("The sidechain file has a rate of %d Hz and was played at %d Hz.",
                                      m_nSidechainRate, info.m_nSampleRate));
    for (const std::string& sRemark : m_remarks)
        m_dialogs.note(sRemark);
}

bool COfflineProcessing::runLoop(CSoundFile& input, CSoundFile& output, IProgress* pProgress)
{
    const CSoundFileInfo info = input.info();
    const long long nTotal = info.m_nFrames * info.m_nChannels;
    std::vector<float> in(BLOCK_SAMPLES);
    std::vector<float> out(BLOCK_SAMPLES);

    const CPlayingState playing(m_transport, m_sidechain);
    m_nSidechainRate = m_sidechain.sampleRate();
    CDSPFilter& filter = *m_engine.filter();
    filter.setBitDepth(BIT_DEPTH);
    filter.m_nSampleRate = info.m_nSampleRate;
    filter.m_nChannels = info.m_nChannels;
    filter.prepareForPlay();
    m_engine.prepare(info.m_nSampleRate);

    m_result = {};
    m_result.m_nChannels = info.m_nChannels;
    m_result.m_nSampleRate = info.m_nSampleRate;
    const auto start = std::chrono::steady_clock::now();
    long long nDone = 0;
    while (nDone < nTotal) {
        if (pProgress && !pProgress->report(static_cast<double>(nDone) / static_cast<double>(nTotal)))
            return refuse("Processing was cancelled; nothing was written.");
        const long long nRead = input.readFloats(in.data(), BLOCK_SAMPLES);
        if (nRead <= 0)
            break; // the file holds less than its header promised
        m_sidechain.readBlock(static_cast<int>(nRead) / info.m_nChannels);
        m_engine.processPortAudioFile(in.data(), out.data(), static_cast<int>(nRead), true, &info);
        m_result.m_output.add({out.data(), static_cast<std::size_t>(nRead)});
        if (output.writeFloats(out.data(), nRead) != nRead)
            return fail("Error writing wave file.",
                        "The disk is full or was taken away; nothing was changed.");
        nDone += nRead;
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    m_result.m_nFrames = nDone / info.m_nChannels;
    m_result.m_dSeconds = elapsed.count();
    if (pProgress && !pProgress->report(1.0))
        return refuse("Processing was cancelled; nothing was written.");
    return true;
}

bool COfflineProcessing::fail(const std::string& sMessage, const std::string& sReason)
{
    m_dialogs.showMessage(sMessage);
    m_sReason = sReason.empty() ? sMessage : sReason;
    return false;
}

bool COfflineProcessing::refuse(const std::string& sReason)
{
    m_sReason = sReason;
    return false;
}

} // namespace velmora
