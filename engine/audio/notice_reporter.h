#pragma once

#include "audio/audio_notices.h"

#include <string>

namespace velmora {

class CAudioEngine;
class CAudioStreams;
class IMessageTarget;
class IUserDialogs;

// Tells people what the audio thread has noticed: as lines for the status window, since nothing that sound
// brings about may wait for a person. [main]
class CNoticeReporter
{
  public:
    CNoticeReporter(CAudioEngine& engine, const CAudioStreams& streams, IUserDialogs& dialogs,
                    IMessageTarget& messages)
        : m_engine(engine), m_streams(streams), m_dialogs(dialogs), m_messages(messages)
    {
    }

    // Takes all notices. For captureReady message 2048 goes to the view. oscillatorCalled, which comes with
    // every buffer, is told once for each stream that was opened.
    void report();

  private:
    [[nodiscard]] std::string textOf(const CAudioNotices::CNotice& notice) const;
    [[nodiscard]] std::string filterName() const;

    CAudioEngine& m_engine;
    const CAudioStreams& m_streams;
    IUserDialogs& m_dialogs;
    IMessageTarget& m_messages;
    unsigned m_uOscillatorTold = 0; // for the stream of this number
};

} // namespace velmora
