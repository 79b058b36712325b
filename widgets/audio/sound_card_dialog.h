#pragma once

#include "audio/audio_devices.h"
#include "widgets/audio/device_check.h"

#include <QDialog>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

class QComboBox;
class QFormLayout;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace velmora {

class CLEDMeter;
class CSettings;
class CTransportState;
class IUserDialogs;

// "Setup Audio Devices": devices, rate, buffer and latency, with a test tone and an input meter. It chooses
// on a list of devices of its own, so that until "OK" the program's choice stays. While audio runs,
// everything but stopping it waits. [main]
//
// The audio system is asked one question at a time, and the window is served in between: a device that
// answers slowly delays its rates, not the window.
class CSoundCardDialog : public QDialog
{
    Q_OBJECT

  public:
    struct CParts
    {
        CAudioDevices& m_devices;
        CSettings& m_settings;
        std::filesystem::path m_settingsFile;
        CTransportState& m_transport;
        IUserDialogs& m_dialogs;
        std::function<void()> m_stopAudio; // whatever runs
    };

    explicit CSoundCardDialog(const CParts& parts, QWidget* pParent = nullptr);
    ~CSoundCardDialog() override;

    void accept() override; // "OK": the settings, their file, and the program's devices
    void done(int nResult) override;

  protected:
    void showEvent(QShowEvent* pEvent) override;
    bool event(QEvent* pEvent) override;

  private:
    [[nodiscard]] QWidget* makeDevices();
    [[nodiscard]] QWidget* makeStream();
    [[nodiscard]] QWidget* makeTest();
    [[nodiscard]] QWidget* makeButtons();
    QComboBox* addCombo(QFormLayout& form, const QString& sLabel);

    void fill();
    void fillDevices(QComboBox& box, bool bInput, const std::string& sChosen);
    void fillFrames();
    void chooseFromBoxes();
    void chooseOnTrial();
    void rescan();
    void beginRates();
    void testNextRate();
    void endRates();
    void takeRate();
    void showRates(const std::vector<double>& rates);
    void showLatency();
    void showState();
    void tick();
    void toggleTone();
    void startMeter();
    void streamChanged();
    void store();
    [[nodiscard]] bool isIdle() const;
    [[nodiscard]] unsigned framesPerBuffer() const;
    [[nodiscard]] std::optional<double> latency(bool bInput) const; // seconds; none without a device
    [[nodiscard]] CDeviceCheck::CRequest request(bool bInput) const;

    CParts m_parts;
    CAudioDevices m_trial;
    CAudioDeviceChoice m_choice;
    CDeviceCheck m_check;                // ends ahead of the list
    std::vector<double> m_untestedRates; // Hz, descending
    std::vector<double> m_rates;         // that passed, ascending
    bool m_bFilled = false;
    bool m_bMeterDue = false;
    QTimer m_rateTimer;
    QTimer m_tickTimer;
    QWidget* m_pDeviceGroup = nullptr;
    QWidget* m_pStreamGroup = nullptr;
    QWidget* m_pTestGroup = nullptr;
    QComboBox* m_pInput = nullptr;
    QComboBox* m_pOutput = nullptr;
    QComboBox* m_pDUT = nullptr;
    QComboBox* m_pRate = nullptr;
    QComboBox* m_pFrames = nullptr;
    QRadioButton* m_pLow = nullptr;
    QRadioButton* m_pHigh = nullptr;
    QSpinBox* m_pMultiplier = nullptr;
    QLabel* m_pDeviceNote = nullptr;
    QLabel* m_pRateNote = nullptr;
    QLabel* m_pLatency = nullptr;
    QLabel* m_pTestNote = nullptr;
    QLabel* m_pState = nullptr;
    CLEDMeter* m_pLeft = nullptr;
    CLEDMeter* m_pRight = nullptr;
    QPushButton* m_pTone = nullptr;
    QPushButton* m_pRescan = nullptr;
    QPushButton* m_pStopAudio = nullptr;
    QPushButton* m_pOK = nullptr;
};

} // namespace velmora
