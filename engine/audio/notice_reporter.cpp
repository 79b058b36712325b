#include "audio/notice_reporter.h"

#include "audio/audio_engine.h"
#include "audio/audio_streams.h"
#include "base/message_target.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "dsp/numeric.h"
#include "host/dsp_filter.h"
#include "host/view_messages.h"

#include <utility>

namespace velmora {

namespace {

constexpr double LIMIT_DB = 24.0;

constexpr const char* DRIVER_ERROR =
    "Error writing to driver: Velmora does not yet support ASIO or hardware-specific drivers, only Microsoft "
    "WDM drivers. Choose Microsoft Sound Mapper in the Audio Setup Dialog";

} // namespace

void CNoticeReporter::report()
{
    while (const auto notice = m_engine.notices().take()) {
        if (notice->m_eNotice == EAudioNotice::captureReady) {
            m_messages.post(MESSAGE_CAPTURE_READY, 0, 0);
            continue;
        }
        if (notice->m_eNotice == EAudioNotice::oscillatorCalled &&
            std::exchange(m_uOscillatorTold, m_streams.openings()) == m_streams.openings())
            continue;
        m_dialogs.note(textOf(*notice));
    }
}

std::string CNoticeReporter::filterName() const
{
    const CDSPFilter* pFilter = m_engine.filter();
    if (!pFilter)
        return "The signal";
    return (pFilter->m_pPlugIn ? "The plug-in " : "The module ") + pFilter->m_sName;
}

std::string CNoticeReporter::textOf(const CAudioNotices::CNotice& notice) const
{
    const std::string sName = filterName();
    const double dFigure = notice.m_fFigure;
    switch (notice.m_eNotice) {
    case EAudioNotice::driverError:
        return DRIVER_ERROR;
    case EAudioNotice::oscillatorCalled:
        return "processPortAudioOSC called once!";
    case EAudioNotice::notFinite:
        return sName + " puts out samples that are infinite or not a number; such a buffer is silenced. Look "
                       "for a division by zero or a feedback that runs away.";
    case EAudioNotice::limited:
        return formatted("%s puts out %+.1f dB; what goes beyond %+.0f dB is cut off at the device.",
                         sName.c_str(), static_cast<double>(lin2dB(notice.m_fFigure)), LIMIT_DB);
    case EAudioNotice::overload: {
        const int nFrames = m_streams.framesPerBuffer();
        return formatted(
            "%s needs %.0f %% of the time that a buffer of %d frames lasts (%.2f ms); enlarge the "
            "frames per buffer, or make it faster.",
            sName.c_str(), 100.0 * dFigure, nFrames, 1000.0 * nFrames / m_streams.openedRate());
    }
    case EAudioNotice::captureReady:
    case EAudioNotice::count:
        break;
    }
    return {};
}

} // namespace velmora
