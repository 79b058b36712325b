#pragma once

#include "audio/portaudio_system.h"
#include "document/tonbox_doc.h"
#include "support/test_support.h"

#include <functional>
#include <string>
#include <vector>

namespace velmora::test {

// Takes the messages and throws them away.
class CNoMessages : public IMessageTarget
{
  public:
    void post(unsigned, std::size_t, std::ptrdiff_t) override {}
    std::ptrdiff_t send(unsigned, std::size_t, std::ptrdiff_t) override { return 0; }
};

// A document that plays through PortAudio, with its user folder and the ports that it needs. The devices that
// it is to use must exist before it.
class CStreamingDocument
{
  public:
    struct COptions
    {
        std::string m_sOutput = "listener";
        std::string m_sInput = "system";
        double m_dSampleRate = 48000.0; // Hz, of sound input and the oscillators
    };

    // Throws std::runtime_error if the document does not come up with these devices.
    explicit CStreamingDocument(const COptions& options);

    [[nodiscard]] CTonboxDoc& operator*() { return m_document; }
    [[nodiscard]] CTonboxDoc* operator->() { return &m_document; }

    // Ticks the document's timer until it is so, for half a minute at most; false if it never was.
    [[nodiscard]] bool waitUntil(const std::function<bool()>& condition);

    // Writes samples, interleaved and -1.0 to +1.0, as a float WAV file of the document's rate.
    [[nodiscard]] std::filesystem::path waveFile(const std::string& sName, const std::vector<float>& samples,
                                                 int nChannels) const;

    // All samples of a sound file. Throws std::runtime_error if it cannot be read.
    [[nodiscard]] static std::vector<float> samplesOf(const std::filesystem::path& file);

    // What "Process into WAV file" makes of a file with the current filter and settings. The transport is
    // stopped by it. Throws std::runtime_error if it fails.
    [[nodiscard]] std::vector<float> processedOffline(const std::filesystem::path& file);

    [[nodiscard]] CRecordingDialogs& dialogs() { return m_dialogs; }
    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder.path(); }

  private:
    CTemporaryFolder m_folder;
    CRecordingDialogs m_dialogs;
    CNoMessages m_messages;
    CPortAudioSystem m_audio;
    CTonboxDoc m_document;
    double m_dSampleRate;
};

} // namespace velmora::test
