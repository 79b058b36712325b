#pragma once

#include "audio/output_check.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

class CAudioEngine;
class CSidechain;
class CSoundFile;
class CTransportState;
class IProgress;
class IUserDialogs;
struct CSoundFileInfo;

// "Process into WAV file": runs a wave file through the current filter into a new file, faster than
// real time, by the same code that runs in a stream. [main]
class COfflineProcessing
{
  public:
    struct CResult
    {
        long long m_nFrames = 0;
        int m_nChannels = 0;
        int m_nSampleRate = 0;   // Hz
        double m_dSeconds = 0.0; // wall time of the processing loop
        COutputCheck m_output;
    };

    COfflineProcessing(CAudioEngine& engine, CTransportState& transport, CSidechain& sidechain,
                       IUserDialogs& dialogs);

    // Asks for the name of the new file and writes it; true when it is complete. Whatever else happens,
    // every file stays as it was: the result is written beside its target and renamed at the end. The
    // transport is stopped afterwards.
    bool processIntoWaveFile(const std::filesystem::path& waveFile, IProgress* pProgress = nullptr);

    // Why the last call returned false, as one sentence, also where no message was shown.
    [[nodiscard]] const std::string& reason() const { return m_sReason; }

    // What the user should know about the last file that was written though it succeeded, a sentence each:
    // clipped samples, samples that are no numbers, a sidechain of another rate. They are also noted.
    [[nodiscard]] const std::vector<std::string>& remarks() const { return m_remarks; }

    // Figures of the last file that was written.
    [[nodiscard]] const CResult& result() const { return m_result; }

  private:
    bool fail(const std::string& sMessage, const std::string& sReason = {});
    bool refuse(const std::string& sReason);
    bool chooseTarget(const std::filesystem::path& waveFile, std::filesystem::path& target);
    bool processInto(CSoundFile& input, const std::filesystem::path& target, IProgress* pProgress);
    void collectRemarks(const CSoundFileInfo& info);
    bool runLoop(CSoundFile& input, CSoundFile& output, IProgress* pProgress);

    CAudioEngine& m_engine;
    CTransportState& m_transport;
    CSidechain& m_sidechain;
    IUserDialogs& m_dialogs;
    CResult m_result;
    int m_nSidechainRate = 0; // Hz; 0: no sidechain was played
    std::string m_sReason;
    std::vector<std::string> m_remarks;
};

} // namespace velmora
