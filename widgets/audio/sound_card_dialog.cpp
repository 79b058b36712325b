#include "widgets/audio/sound_card_dialog.h"

#include "audio/transport_state.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "host/settings.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/qt_text.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <algorithm>
#include <cmath>
#include <set>

namespace velmora {

namespace {

constexpr int TICK = 33;                                                                 // ms
constexpr unsigned BUFFER_SIZES[] = {16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192}; // frames
constexpr unsigned DEFAULT_BUFFER = 64;
constexpr const char* NO_DEVICE = "None";
constexpr const char* FRAMES_SETTING = "m_uFramesPerBuffer";
constexpr const char* LATENCY_SETTING = "m_bUseLowLatency";
constexpr const char* MULTIPLIER_SETTING = "m_uLatencyMultiplier";

QString milliseconds(double dSeconds)
{
    return QStringLiteral("%1 ms").arg(1000.0 * dSeconds, 0, 'f', 1);
}

// What to tell of a device that the settings, or the person before a rescan, named.
QString missingText(const char* pDirection, const std::string& sNamed, const std::string& sChosen)
{
    if (sNamed == sChosen || sNamed.empty() || sNamed == NO_DEVICE)
        return {};
    return CSoundCardDialog::tr("The %1 device \"%2\" is not there; \"%3\" is used.")
               .arg(QString::fromUtf8(pDirection), qs(sNamed), qs(sChosen)) +
           QLatin1Char('\n');
}

void showText(QLabel& label, const QString& sText)
{
    label.setText(sText);
    label.setVisible(!sText.isEmpty());
}

} // namespace

CSoundCardDialog::~CSoundCardDialog() = default;

bool CSoundCardDialog::isIdle() const
{
    const ETransportState eState = m_parts.m_transport.state();
    return eState == TRANSPORT_IDLE || eState == TRANSPORT_STOP;
}

void CSoundCardDialog::showEvent(QShowEvent* pEvent)
{
    QDialog::showEvent(pEvent);
    if (!m_bFilled)
        QTimer::singleShot(0, this, &CSoundCardDialog::fill); // the window is there before devices are asked
}

void CSoundCardDialog::fill()
{
    const CSettings& settings = m_parts.m_settings;
    m_bFilled = true;
    m_choice = {settings.inputDeviceName(), settings.outputDeviceName(), settings.DUTDeviceName(),
                settings.sampleRate()};
    fillFrames();
    (settings.useLowLatency() ? m_pLow : m_pHigh)->setChecked(true);
    const int nMultiplier = static_cast<int>(std::min(settings.latencyMultiplier(), 1000U));
    m_pMultiplier->setRange(std::min(nMultiplier, 1), std::max(nMultiplier, 32));
    m_pMultiplier->setValue(nMultiplier);
    chooseOnTrial();
    m_tickTimer.start(TICK);
}

void CSoundCardDialog::fillFrames()
{
    const unsigned uSet = m_parts.m_settings.framesPerBuffer();
    std::set<unsigned> sizes(std::begin(BUFFER_SIZES), std::end(BUFFER_SIZES));
    const unsigned uUsed =
        std::min(uSet == 0 ? DEFAULT_BUFFER : uSet, BUFFER_SIZES[std::size(BUFFER_SIZES) - 1]);
    sizes.insert(uUsed);
    const QSignalBlocker quiet(m_pFrames);
    m_pFrames->clear();
    for (const unsigned uSize : sizes)
        m_pFrames->addItem(tr("%1 frames").arg(uSize), uSize);
    m_pFrames->setCurrentIndex(m_pFrames->findData(uUsed));
}

// Of several devices with one name the last counts, as it does where the name is looked up.
void CSoundCardDialog::fillDevices(QComboBox& box, bool bInput, const std::string& sChosen)
{
    const QSignalBlocker quiet(box);
    box.clear();
    if (&box == m_pDUT)
        box.addItem(QString::fromUtf8(NO_DEVICE), QString::fromUtf8(NO_DEVICE));
    for (const CAudioDeviceInfo& device : m_trial.devices()) {
        if ((bInput ? device.m_nMaxInputChannels : device.m_nMaxOutputChannels) <= 0)
            continue;
        const QString sName = qs(device.m_sName);
        const QString sText =
            device.m_sHostApi.empty() ? sName : sName + tr("  (%1)").arg(qs(device.m_sHostApi));
        const int nPlace = box.findData(sName);
        if (nPlace >= 0)
            box.setItemText(nPlace, sText);
        else
            box.addItem(sText, sName);
    }
    if (box.count() == 0)
        box.addItem(QString::fromUtf8(NO_DEVICE), QString::fromUtf8(NO_DEVICE));
    box.setEnabled(box.count() > 1 || box.itemData(0).toString() != QLatin1String(NO_DEVICE));
    box.setCurrentIndex(std::max(0, box.findData(qs(sChosen))));
    box.setToolTip(box.currentText());
}

void CSoundCardDialog::chooseFromBoxes()
{
    m_choice.m_sInputName = utf8(m_pInput->currentData().toString());
    m_choice.m_sOutputName = utf8(m_pOutput->currentData().toString());
    m_choice.m_sDUTName = utf8(m_pDUT->currentData().toString());
    chooseOnTrial();
}

void CSoundCardDialog::chooseOnTrial()
{
    const CAudioDeviceChoice named = m_choice;
    m_check.stopAll(); // a device that plays may refuse its rates
    const std::string sMessage = m_trial.choose(m_choice);
    fillDevices(*m_pInput, true, m_choice.m_sInputName);
    fillDevices(*m_pOutput, false, m_choice.m_sOutputName);
    fillDevices(*m_pDUT, false, m_choice.m_sDUTName);
    const QString sMissing = missingText("input", named.m_sInputName, m_choice.m_sInputName) +
                             missingText("output", named.m_sOutputName, m_choice.m_sOutputName) +
                             missingText("DUT", named.m_sDUTName, m_choice.m_sDUTName);
    showText(*m_pDeviceNote, (sMessage.empty() ? sMissing : qs(sMessage)).trimmed());
    beginRates();
}

void CSoundCardDialog::rescan()
{
    m_check.stopAll();
    CAudioDeviceChoice kept{m_parts.m_settings.inputDeviceName(), m_parts.m_settings.outputDeviceName(),
                            m_parts.m_settings.DUTDeviceName(), m_parts.m_settings.sampleRate()};
    const std::string sMessage = m_parts.m_devices.rescan(kept);
    chooseOnTrial();
    if (m_pDeviceNote->text().isEmpty())
        showText(*m_pDeviceNote, qs(sMessage));
}

void CSoundCardDialog::beginRates()
{
    std::set<double> rates(CAudioDevices::usualRates().begin(), CAudioDevices::usualRates().end());
    rates.insert(m_choice.m_dSampleRate);
    for (const int nDevice : {m_trial.inputDevice(), m_trial.outputDevice()})
        if (const CAudioDeviceInfo* pDevice = m_trial.device(nDevice))
            rates.insert(pDevice->m_dDefaultSampleRate);
    m_untestedRates.assign(rates.rbegin(), rates.rend());
    m_rates.clear();
    showRates({m_choice.m_dSampleRate});
    showText(*m_pRateNote, tr("Testing the rates of the devices..."));
    streamChanged();
    m_rateTimer.start();
}

void CSoundCardDialog::testNextRate()
{
    if (m_untestedRates.empty()) {
        endRates();
        return;
    }
    const double dRate = m_untestedRates.back();
    m_untestedRates.pop_back();
    if (m_trial.isRateSupported(m_trial.inputDevice(), m_trial.outputDevice(), dRate))
        m_rates.push_back(dRate);
}

// A rate that the devices do not take gives way to the output device's own.
void CSoundCardDialog::endRates()
{
    m_rateTimer.stop();
    const CAudioDeviceInfo* pOutput = m_trial.device(m_trial.outputDevice());
    if (!m_rates.empty() && std::ranges::find(m_rates, m_choice.m_dSampleRate) == m_rates.end())
        m_choice.m_dSampleRate =
            pOutput && std::ranges::find(m_rates, pOutput->m_dDefaultSampleRate) != m_rates.end()
                ? pOutput->m_dDefaultSampleRate
                : m_rates.front();
    std::set<double> shown(m_rates.begin(), m_rates.end());
    if (shown.empty())
        shown.insert(CAudioDevices::usualRates().begin(), CAudioDevices::usualRates().end());
    shown.insert(m_choice.m_dSampleRate);
    showRates({shown.begin(), shown.end()});
    const bool bAnyDevice = pOutput || m_trial.device(m_trial.inputDevice());
    showText(*m_pRateNote, m_rates.empty() && bAnyDevice
                               ? tr("The devices take none of the usual rates together, or do not tell.")
                               : QString());
    streamChanged();
}

void CSoundCardDialog::showRates(const std::vector<double>& rates)
{
    const QSignalBlocker quiet(m_pRate);
    m_pRate->clear();
    for (const double dRate : rates)
        m_pRate->addItem(tr("%1 Hz").arg(qs(shortestDecimal(dRate))), dRate);
    m_pRate->setCurrentIndex(m_pRate->findData(m_choice.m_dSampleRate));
}

void CSoundCardDialog::takeRate()
{
    m_choice.m_dSampleRate = m_pRate->currentData().toDouble();
    streamChanged();
}

unsigned CSoundCardDialog::framesPerBuffer() const
{
    return m_pFrames->currentData().toUInt();
}

std::optional<double> CSoundCardDialog::latency(bool bInput) const
{
    const CAudioDeviceInfo* pDevice = m_trial.device(bInput ? m_trial.inputDevice() : m_trial.outputDevice());
    if (!pDevice)
        return std::nullopt;
    return streamLatency(*pDevice, bInput, m_pLow->isChecked(),
                         static_cast<unsigned>(m_pMultiplier->value()));
}

void CSoundCardDialog::showLatency()
{
    const auto dIn = latency(true);
    const auto dOut = latency(false);
    QStringList parts;
    if (dIn)
        parts << tr("input %1").arg(milliseconds(*dIn));
    if (dOut)
        parts << tr("output %1").arg(milliseconds(*dOut));
    if (dIn && dOut)
        parts << tr("together %1").arg(milliseconds(*dIn + *dOut));
    QString sText = tr("One buffer: %1").arg(milliseconds(framesPerBuffer() / m_choice.m_dSampleRate));
    if (!parts.isEmpty())
        sText += QLatin1Char('\n') + tr("Asked of the devices: %1").arg(parts.join(QLatin1String(", ")));
    m_pLatency->setText(sText);
}

// Tone and meter are to run as the stream would.
void CSoundCardDialog::streamChanged()
{
    m_check.stopAll();
    m_bMeterDue = true;
    showText(*m_pTestNote, {});
    showLatency();
    showState();
}

void CSoundCardDialog::showState()
{
    const bool bIdle = isIdle();
    for (QWidget* pWidget : {m_pDeviceGroup, m_pStreamGroup, m_pTestGroup})
        pWidget->setEnabled(bIdle);
    m_pRescan->setEnabled(bIdle);
    m_pOK->setEnabled(bIdle);
    m_pTone->setEnabled(bIdle && m_trial.outputDevice() >= 0 && !m_rateTimer.isActive());
    m_pTone->setChecked(m_check.isToneOn());
    m_pTone->setText(m_check.isToneOn() ? tr("Stop &Tone") : tr("Test &Tone"));
    m_pStopAudio->setVisible(!bIdle && m_parts.m_stopAudio);
    m_pState->setVisible(!bIdle);
}

CDeviceCheck::CRequest CSoundCardDialog::request(bool bInput) const
{
    const int nDevice = bInput ? m_trial.inputDevice() : m_trial.outputDevice();
    const CAudioDeviceInfo& device = *m_trial.device(nDevice);
    const int nChannels = bInput ? device.m_nMaxInputChannels : device.m_nMaxOutputChannels;
    return {{nDevice, std::min(nChannels, CDeviceCheck::MAX_CHANNELS), latency(bInput).value_or(0.0)},
            m_choice.m_dSampleRate,
            framesPerBuffer()};
}

void CSoundCardDialog::startMeter()
{
    m_bMeterDue = false;
    if (m_trial.inputDevice() < 0)
        return;
    const std::string sError = m_check.startMeter(request(true));
    if (!sError.empty())
        showText(*m_pTestNote, tr("The input device does not start: %1.").arg(qs(sError)));
}

void CSoundCardDialog::toggleTone()
{
    if (m_check.isToneOn()) {
        m_check.stopTone();
    } else if (isIdle() && m_trial.outputDevice() >= 0) {
        const std::string sError = m_check.startTone(request(false));
        showText(*m_pTestNote,
                 sError.empty() ? QString() : tr("The output device does not start: %1.").arg(qs(sError)));
    }
    showState();
}

void CSoundCardDialog::tick()
{
    if (!isIdle()) {
        m_check.stopAll();
        m_bMeterDue = true;
    } else if (m_bMeterDue && !m_rateTimer.isActive()) {
        startMeter();
    }
    if (!m_check.poll())
        showText(*m_pTestNote, tr("The device has stopped. If it is gone, rescan the devices."));
    m_pLeft->setLevel(m_check.level(METER_INPUT_LEFT));
    m_pRight->setLevel(m_check.level(METER_INPUT_RIGHT));
    showState();
}

void CSoundCardDialog::store()
{
    CSettings& settings = m_parts.m_settings;
    const double dWanted = m_choice.m_dSampleRate;
    (void)m_parts.m_devices.choose(m_choice); // what is missing stands in the window
    settings.setInputDeviceName(m_choice.m_sInputName);
    settings.setOutputDeviceName(m_choice.m_sOutputName);
    settings.setDUTDeviceName(m_choice.m_sDUTName);
    settings.setSampleRate(m_choice.m_dSampleRate);
    if (m_choice.m_dSampleRate != dWanted)
        m_parts.m_dialogs.note("The input device does not take " + shortestDecimal(dWanted) + " Hz; " +
                               shortestDecimal(m_choice.m_dSampleRate) + " Hz is used.");
    std::string sError; // the values are of their types
    (void)settings.set(settingLine(FRAMES_SETTING), std::to_string(framesPerBuffer()), sError);
    (void)settings.set(settingLine(LATENCY_SETTING), m_pLow->isChecked() ? "true" : "false", sError);
    (void)settings.set(settingLine(MULTIPLIER_SETTING), std::to_string(m_pMultiplier->value()), sError);
    if (!settings.save(m_parts.m_settingsFile, sError))
        m_parts.m_dialogs.showMessage(sError + " The devices are used until the program ends.");
}

void CSoundCardDialog::accept()
{
    if (!isIdle() || !m_bFilled)
        return;
    m_check.stopAll();
    store();
    QDialog::accept();
}

void CSoundCardDialog::done(int nResult)
{
    m_rateTimer.stop();
    m_tickTimer.stop();
    m_check.stopAll();
    QDialog::done(nResult);
}

} // namespace velmora
