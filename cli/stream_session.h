#pragma once

#include "cli/headless_document.h"
#include "cli/plugin_watch.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace velmora::cli {

// One run of the streams, from the user folder to the result. [main]
//
//   CStreamSession session(context);
//   if (!session.start(false) || !session.document().applyFilterOptions())
//       return EXIT_FAILED;
//   return session.run([&](CTransport& transport) { transport.onPlay(); });
class CStreamSession
{
  public:
    explicit CStreamSession(CCommandContext& context);

    [[nodiscard]] CHeadlessDocument& document() { return m_document; }

    // Makes the user folder ready, reads the settings, and chooses the devices; bInput asks for an input
    // device as well. False if that fails; the user has been told.
    [[nodiscard]] bool start(bool bInput);

    // Starts a stream and follows it until it ends by itself, the time is over, or an interrupt comes.
    // Answers an exit status; the result is the context's then. A stream that does not start, or that ends
    // because its device has gone, is a failure, which has been told.
    [[nodiscard]] int run(const std::function<void(CTransport&)>& startStream);

  private:
    using clock = std::chrono::steady_clock;

    [[nodiscard]] std::string faultOfFileRate();
    void takeDownFormat();
    [[nodiscard]] std::string follow();
    void wait();
    void show();
    [[nodiscard]] CCallbackStatistics::CFigures figures();
    [[nodiscard]] double secondsPlayed();
    [[nodiscard]] std::string resultAsText();
    [[nodiscard]] std::string resultAsJson();
    [[nodiscard]] std::string deviceName(bool bInput);

    CCommandContext& m_context;
    CHeadlessDocument m_document;
    std::optional<CPlugInWatch> m_watch;
    bool m_bInput = false;
    int m_nRate = 0;        // Hz, of the stream
    double m_dLength = 0.0; // of the file, in seconds; 0 if it has no end
};

} // namespace velmora::cli
