#include "real/streaming_document.h"

#include "support/wave_bytes.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace velmora::test {

namespace {

constexpr auto TICK = std::chrono::milliseconds(5);
constexpr auto PATIENCE = std::chrono::seconds(30);

} // namespace

CStreamingDocument::CStreamingDocument(const COptions& options)
    : m_document(m_dialogs, m_audio, m_messages), m_dSampleRate(options.m_dSampleRate)
{
    const std::filesystem::path userFolder = m_folder / "user";
    std::filesystem::create_directories(userFolder);
    CSettings settings(userFolder);
    settings.setInputDeviceName(options.m_sInput);
    settings.setOutputDeviceName(options.m_sOutput);
    settings.setSampleRate(options.m_dSampleRate);
    std::string sError;
    CTonboxDoc::CStartUp startUp;
    startUp.m_userFolder = userFolder;
    startUp.m_bScanPlugIns = false;
    if (!settings.save(userFolder / "socket.log", sError) || !m_document.OnNewDocument(startUp) ||
        m_document.settings().outputDeviceName() != options.m_sOutput)
        throw std::runtime_error("the document does not find the device " + options.m_sOutput);
}

bool CStreamingDocument::waitUntil(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + PATIENCE;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        m_document.transport().onTimer();
        std::this_thread::sleep_for(TICK);
    }
    return true;
}

std::filesystem::path CStreamingDocument::waveFile(const std::string& sName,
                                                   const std::vector<float>& samples, int nChannels) const
{
    CWaveBytesFormat format;
    format.m_uTag = 3;
    format.m_uBits = 32;
    format.m_uChannels = static_cast<unsigned>(nChannels);
    format.m_uRate = static_cast<unsigned>(m_dSampleRate);
    const std::filesystem::path file = m_folder / sName;
    writeFile(file, waveBytes(format, {samples.begin(), samples.end()}));
    return file;
}

std::vector<float> CStreamingDocument::samplesOf(const std::filesystem::path& file)
{
    CSoundFile sound;
    std::string sError;
    if (!sound.openForReading(file, sError))
        throw std::runtime_error(sError);
    std::vector<float> samples(static_cast<std::size_t>(sound.info().m_nFrames * sound.info().m_nChannels));
    samples.resize(
        static_cast<std::size_t>(sound.readFloats(samples.data(), static_cast<long long>(samples.size()))));
    return samples;
}

std::vector<float> CStreamingDocument::processedOffline(const std::filesystem::path& file)
{
    m_document.transport().onStop();
    m_dialogs.m_saveFile = m_folder / "offline.wav";
    m_dialogs.m_bAnswer = true; // to overwrite
    if (!m_document.offlineProcessing().processIntoWaveFile(file))
        throw std::runtime_error("nothing was processed: " + m_document.offlineProcessing().reason());
    return samplesOf(*m_dialogs.m_saveFile);
}

} // namespace velmora::test
