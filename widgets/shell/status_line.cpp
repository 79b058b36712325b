#include "widgets/shell/status_line.h"

#include "document/tonbox_doc.h"
#include "host/dsp_filter.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QLabel>
#include <algorithm>

namespace velmora {

namespace {

// Widths in characters of the font.
constexpr int STATE_WIDTH = 26; // at least, else STATE_SHARE of the whole width
constexpr int DEVICE_WIDTH = 16;
constexpr int RATE_WIDTH = 11;
constexpr int LOAD_WIDTH = 12;
constexpr int GAPS_WIDTH = 13;
constexpr int PLUG_IN_WIDTH = 20;

constexpr int INDENT = 6;      // of a field's text, in logical pixels
constexpr int STATE_SHARE = 4; // one part of so many
constexpr int DEVICE_SHARE = 6;

int widthOf(const QLabel& label, int nCharacters)
{
    return nCharacters * label.fontMetrics().averageCharWidth() + 2 * INDENT;
}

QString stateText(CTonboxDoc& document)
{
    const CTransport& transport = document.transport();
    const QString sFile = pathText(transport.waveFile().filename());
    switch (transport.state()) {
    case TRANSPORT_PLAY:
        return (document.wave().isLooping() ? QObject::tr("Looping %1") : QObject::tr("Playing %1"))
            .arg(sFile);
    case TRANSPORT_PAUSE:
        return QObject::tr("Paused in %1").arg(sFile);
    case TRANSPORT_SOUND_IN:
        return QObject::tr("Sound card input");
    case TRANSPORT_OSC:
        return document.audioEngine().m_bOscillatorRuns ? QObject::tr("Oscillator")
                                                        : QObject::tr("Oscillator, silent");
    case TRANSPORT_USER_OSC:
        return QObject::tr("Synth plug-in");
    default:
        return sFile.isEmpty() ? QObject::tr("Stopped") : QObject::tr("Stopped: %1").arg(sFile);
    }
}

// The stream that runs; none when nothing does.
std::optional<EAudioStream> openStream(const CAudioStreams& streams)
{
    for (const EAudioStream eStream : {STREAM_WAVE, STREAM_INPUT, STREAM_OSCILLATOR})
        if (streams.isOpen(eStream))
            return eStream;
    return std::nullopt;
}

QString deviceText(CTonboxDoc& document)
{
    if (const auto stream = openStream(document.streams()))
        return qs(document.streams().deviceNames(*stream)).remove(QLatin1Char('"'));
    const CAudioDeviceInfo* pOutput = document.audioDevices().device(document.audioDevices().outputDevice());
    return pOutput ? qs(pOutput->m_sName) : QObject::tr("No audio device");
}

QString rateText(CTonboxDoc& document)
{
    const CAudioStreams& streams = document.streams();
    const double dRate = openStream(streams) ? streams.openedRate() : document.settings().sampleRate();
    return QObject::tr("%1 kHz").arg(dRate / 1000.0, 0, 'g', 5);
}

void showText(QLabel& label, const QString& sText, const QString& sToolTip = {})
{
    const QString sElided =
        label.fontMetrics().elidedText(sText, Qt::ElideMiddle, label.width() - 2 * INDENT);
    if (label.text() != sElided)
        label.setText(sElided);
    label.setToolTip(!sToolTip.isEmpty() ? sToolTip : sElided != sText ? sText : QString());
    if (label.accessibleDescription() != sText)
        label.setAccessibleDescription(sText);
}

} // namespace

CStatusLine::CStatusLine(CTonboxDoc& document, QWidget* pParent)
    : QStatusBar(pParent), m_document(document), m_pState(addField(tr("Transport"), STATE_WIDTH)),
      m_pDevice(addField(tr("Audio device"), DEVICE_WIDTH)), m_pRate(addField(tr("Sample rate"), RATE_WIDTH)),
      m_pLoad(addField(tr("Load"), LOAD_WIDTH)), m_pGaps(addField(tr("Gaps"), GAPS_WIDTH)),
      m_pPlugIn(addField(tr("Plug-in"), PLUG_IN_WIDTH))
{
    setSizeGripEnabled(false);
    setContentsMargins(0, 0, CTheme::SPACING, 0);
    connect(&CTheme::instance(), &CTheme::changed, this, &CStatusLine::refresh);
}

QLabel* CStatusLine::addField(const QString& sName, int nCharacters)
{
    auto* pLabel = new QLabel(this);
    pLabel->setAccessibleName(sName);
    pLabel->setFont(CTheme::figures(0.95));
    pLabel->setFixedWidth(widthOf(*pLabel, nCharacters));
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setIndent(INDENT);
    addPermanentWidget(pLabel);
    return pLabel;
}

void CStatusLine::resizeEvent(QResizeEvent* pEvent)
{
    QStatusBar::resizeEvent(pEvent);
    m_pState->setFixedWidth(std::max(widthOf(*m_pState, STATE_WIDTH), width() / STATE_SHARE));
    m_pDevice->setFixedWidth(std::max(widthOf(*m_pDevice, DEVICE_WIDTH), width() / DEVICE_SHARE));
    refresh();
}

void CStatusLine::refresh()
{
    showText(*m_pState, stateText(m_document));
    showText(*m_pDevice, deviceText(m_document));
    showText(*m_pRate, rateText(m_document));
    showLoad();
    showGaps();
    const CDSPFilter* pFilter = m_document.currentFilter();
    const bool bPlugIn = m_document.plugInLoader().isPlugInLoaded();
    showText(*m_pPlugIn, pFilter ? qs(pFilter->m_sName) : tr("No filter"));
    const CThemeColours& colours = CTheme::instance().colours();
    QPalette palette = m_pPlugIn->palette();
    palette.setColor(QPalette::Window, colours.m_live);
    palette.setColor(QPalette::WindowText, bPlugIn ? colours.m_liveText : colours.m_text);
    m_pPlugIn->setAutoFillBackground(bPlugIn);
    m_pPlugIn->setPalette(palette);
}

void CStatusLine::showLoad()
{
    const CCallbackStatistics::CFigures figures = m_document.audioEngine().statistics().figures();
    if (!openStream(m_document.streams())) {
        showText(*m_pLoad, tr("Load -"), tr("No stream is open."));
        return;
    }
    const auto percent = [](double dLoad) { return QString::number(dLoad * 100.0, 'f', 0); };
    showText(
        *m_pLoad, tr("Load %1 %").arg(percent(figures.m_dLoad)),
        tr("Of the time that a buffer lasts, processing takes %1 %, at most %2 % so far; the filter took at "
           "most "
           "%3 %.")
            .arg(percent(figures.m_dLoad), percent(figures.m_dPeakLoad), percent(figures.m_dPeakFilterLoad)));
}

void CStatusLine::showGaps()
{
    const CCallbackStatistics::CFigures figures = m_document.audioEngine().statistics().figures();
    const auto uGaps = figures.m_uHostUnderruns + figures.m_uInputLosses + figures.m_uOverruns;
    showText(*m_pGaps, tr("Xruns %1").arg(uGaps),
             tr("Ours: %1 buffers took longer to process than they last.\n"
                "The audio system's: %2 gaps in the output, %3 losses of input.")
                 .arg(figures.m_uOverruns)
                 .arg(figures.m_uHostUnderruns)
                 .arg(figures.m_uInputLosses));
    QPalette palette = m_pGaps->palette();
    const CThemeColours& colours = CTheme::instance().colours();
    palette.setColor(QPalette::WindowText, uGaps > 0 ? colours.m_warning : colours.m_text);
    m_pGaps->setPalette(palette);
}

} // namespace velmora
