#pragma once

#include "base/audio_system.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>

namespace velmora {

// Makes an audio system whose calls may hang into one whose calls do not.
//
// How it works: every call is done by a worker thread, and waited for only so long. A system that does not
// answer is given up: it is never called again, what it may still touch is kept for ever, and callbacks that
// still come from it play silence. The next initialize(), rescan() or openStream() has a new system made. So
// rescan() has a second one made beside a first that still plays, which is ended when its last stream closes.
//
// A stream that fails to open is tried once more on a new system, as the old one may know no more than a
// server or a device of before. What a device is then found by is its name and host API.
class CGuardedAudioSystem : public IAudioSystem
{
  public:
    // Makes a system that shares nothing with those made before.
    using systemMaker = std::function<std::shared_ptr<IAudioSystem>()>;

    // The error of an operation that needs initialize() first.
    static constexpr int NOT_INITIALIZED = -10000;

    // The error of a request for a device that is not there, any more or at all.
    static constexpr int DEVICE_GONE = -9996;

    // How long a call is waited for is made of patience: three times as long for initialize() and rescan(), a
    // third for terminate(), a sixth for a stream that was found dead, longer where a stream has much to
    // play.
    explicit CGuardedAudioSystem(systemMaker maker,
                                 std::chrono::milliseconds patience = std::chrono::seconds(3));
    ~CGuardedAudioSystem() override;

    CGuardedAudioSystem(const CGuardedAudioSystem&) = delete;
    CGuardedAudioSystem& operator=(const CGuardedAudioSystem&) = delete;

    [[nodiscard]] int initialize() override;

    // The last one closes the streams that are still open.
    void terminate() override;

    // As they were at the first initialize() or at the last rescan().
    [[nodiscard]] std::vector<CAudioDeviceInfo> devices() const override { return m_listing.m_devices; }
    [[nodiscard]] int defaultInputDevice() const override { return m_listing.m_nDefaultInput; }
    [[nodiscard]] int defaultOutputDevice() const override { return m_listing.m_nDefaultOutput; }

    // A device that plays is listed even where its being busy hides it from the new system.
    [[nodiscard]] int rescan() override;

    [[nodiscard]] bool isFormatSupported(const std::optional<CAudioStreamSide>& input,
                                         const std::optional<CAudioStreamSide>& output,
                                         double dSampleRate) const override;
    [[nodiscard]] int openStream(const CAudioStreamRequest& request, audioStream& stream) override;
    [[nodiscard]] int startStream(audioStream stream) override;
    [[nodiscard]] int stopStream(audioStream stream) override;

    // After AUDIO_NO_ANSWER only a callback that was already on its way, and has not come back within a
    // second, may still be running.
    [[nodiscard]] int closeStream(audioStream stream) override;

    // Also false when no callback has come for about a second of frequent asking.
    [[nodiscard]] bool isStreamActive(audioStream stream) const override;

    // Of the errors that were answered so far.
    [[nodiscard]] std::string errorText(int nError) const override;

  private:
    struct CListing
    {
        std::vector<CAudioDeviceInfo> m_devices;
        int m_nDefaultInput = -1;
        int m_nDefaultOutput = -1;
    };
    struct CInstance;
    struct CStream;
    using work = std::function<int(IAudioSystem& system)>;

    // What the work answers, of which negative numbers are errors, or AUDIO_NO_ANSWER.
    [[nodiscard]] int ask(CInstance& instance, work work, std::chrono::milliseconds limit) const;
    void giveUp(const CInstance& instance) const;
    [[nodiscard]] int bringUp();
    [[nodiscard]] int renew();
    void retire(CInstance& instance) const;
    [[nodiscard]] bool isInUse(const CInstance& instance) const;
    [[nodiscard]] bool translate(std::optional<CAudioStreamSide>& side) const;
    [[nodiscard]] int openOnCurrent(CAudioStreamRequest request, audioStream& stream);
    [[nodiscard]] CStream* find(audioStream stream) const;
    [[nodiscard]] std::chrono::milliseconds limitFor(const CStream& stream) const;

    const systemMaker m_maker;
    const std::chrono::milliseconds m_patience;
    int m_nUses = 0;
    CListing m_listing;
    std::shared_ptr<CInstance> m_pCurrent; // null, or hanging: a new one is to be made
    std::vector<std::unique_ptr<CStream>> m_streams;
    mutable std::map<int, std::string> m_texts; // by error
};

} // namespace velmora
