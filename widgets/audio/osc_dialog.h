#pragma once

#include <QDialog>
#include <vector>

class QButtonGroup;
class QGroupBox;
class QLabel;
class QVBoxLayout;

namespace velmora {

class COscillator;
class COscParameterRow;
class CPanelButton;
class CTransport;
class IUserDialogs;

// "Oscillator": the modeless window of the test oscillator. It keeps no values of its own and shows those of
// the oscillator, whoever sets them. [main]
class COscDialog : public QDialog
{
    Q_OBJECT

  public:
    // All must outlive the window.
    COscDialog(COscillator& oscillator, CTransport& transport, IUserDialogs& dialogs,
               QWidget* pParent = nullptr);

    // "Start" and "Stop", the two texts of one button. Starting opens the oscillator's stream where none is
    // open; if that cannot be, nothing starts and a note says why. Stopping leaves the stream open and
    // silent.
    void startOscillator();
    void stopOscillator();
    [[nodiscard]] bool isStarted() const { return m_bStarted; }

    // As if that frequency had been typed into its box, so that it is limited to the range.
    void setFrequencyFromOutside(double dHz);

    // The upper end of the sweep and of the frequency's slider. Nothing changes unless it lies above the
    // lower one.
    void setSweepHigh(double dHz);

    [[nodiscard]] double getFrequency() const; // Hz
    [[nodiscard]] double getAmplitude() const; // dBFS

    // Some 30 times a second while the window is shown: follows the oscillator and the transport.
    void tick();

  protected:
    void showEvent(QShowEvent* pEvent) override;

  private:
    void makeChoices(QVBoxLayout& layout);
    void makeRows(QVBoxLayout& layout);
    void makeImpulseRow(QVBoxLayout& layout);
    void makeStartRow(QVBoxLayout& layout);
    COscParameterRow* addRow(QVBoxLayout& layout, unsigned uParameter, const char* pName = nullptr);
    void showStarted(bool bStarted);
    void showKind();
    void refreshRows();
    void fireImpulse();

    COscillator& m_oscillator;
    CTransport& m_transport;
    IUserDialogs& m_dialogs;
    QButtonGroup* m_pClass; // by place in OSCILLATOR_CLASSES
    QButtonGroup* m_pKind;  // by place in OSCILLATOR_KINDS
    QGroupBox* m_pKindBox = nullptr;
    CPanelButton* m_pStart = nullptr;
    QLabel* m_pReason = nullptr; // why it did not start
    std::vector<COscParameterRow*> m_rows;
    COscParameterRow* m_pFrequency = nullptr;
    QWidget* m_pPulseRows = nullptr;
    QWidget* m_pSweepRow = nullptr;
    bool m_bStarted = false;
};

} // namespace velmora
