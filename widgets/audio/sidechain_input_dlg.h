#pragma once

#include <QDialog>

class QButtonGroup;
class QHBoxLayout;
class QLineEdit;
class QVBoxLayout;

namespace velmora {

class CAudioEngine;
class CFader;
class CLEDMeter;
class CPanelButton;
enum class EButtonKind;
class CSidechain;
class CTransportState;
class IUserDialogs;

// "Sidechain Input": the modeless window of the second audio file. What is switched here takes hold at the
// next buffer. [main]
class SidechainInputDlg : public QDialog
{
    Q_OBJECT

  public:
    // All must outlive the window.
    SidechainInputDlg(CSidechain& sidechain, CAudioEngine& engine, CTransportState& transport,
                      IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // Some 30 times a second while the window is shown: the meters, and what was changed elsewhere.
    void tick();

  protected:
    void showEvent(QShowEvent* pEvent) override;

  private:
    void makeFileRow(QVBoxLayout& layout);
    void makeSwitches(QVBoxLayout& layout);
    CPanelButton* addSwitch(QVBoxLayout& layout, EButtonKind eKind, const QString& sText,
                            const QString& sSpoken);
    void makeLevel(QHBoxLayout& layout);
    void makeMeters(QHBoxLayout& layout);
    void chooseFile();
    void showFile();
    void showLevel();

    CSidechain& m_sidechain;
    CAudioEngine& m_engine;
    CTransportState& m_transport;
    IUserDialogs& m_dialogs;
    QLineEdit* m_pFile = nullptr;
    QButtonGroup* m_pMode; // 0 once, 1 loop
    CPanelButton* m_pEnable = nullptr;
    CPanelButton* m_pMonitor = nullptr;
    CFader* m_pLevel = nullptr;
    CLEDMeter* m_pLeft = nullptr;
    CLEDMeter* m_pRight = nullptr;
    float m_fShownLevel_dB = 0.0F;
};

} // namespace velmora
