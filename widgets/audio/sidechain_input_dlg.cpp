#include "widgets/audio/sidechain_input_dlg.h"

#include "audio/audio_engine.h"
#include "audio/sidechain.h"
#include "audio/transport_state.h"
#include "base/user_dialogs.h"
#include "widgets/common/fader.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/panel_button.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/track_bar.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora {

namespace {

constexpr UINT GREEN = 4; // the colour scheme of its name: dark green, and light green when lit
constexpr int LEDS = 20;
constexpr double LOWEST_LEVEL = -60.0; // dB
constexpr int METER_WIDTH = 22;        // logical pixels
constexpr int LEVEL_HEIGHT = 220;
constexpr int FILE_WIDTH = 250;

} // namespace

SidechainInputDlg::SidechainInputDlg(CSidechain& sidechain, CAudioEngine& engine, CTransportState& transport,
                                     IUserDialogs& dialogs, QWidget* pParent)
    : QDialog(pParent), m_sidechain(sidechain), m_engine(engine), m_transport(transport), m_dialogs(dialogs),
      m_pMode(new QButtonGroup(this))
{
    setWindowTitle(tr("Sidechain Input"));
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(2 * CTheme::MARGIN);
    auto* pLeft = new QVBoxLayout;
    pLeft->setSpacing(CTheme::SPACING);
    pLayout->addLayout(pLeft, 1);
    makeFileRow(*pLeft);
    makeSwitches(*pLeft);
    makeLevel(*pLayout);
    makeMeters(*pLayout);
    showFile();
    showLevel();
}

void SidechainInputDlg::makeFileRow(QVBoxLayout& layout)
{
    auto* pLabel = new QLabel(tr("Sidechain WAV File:"), this);
    m_pFile = new QLineEdit(this);
    pLabel->setBuddy(m_pFile);
    m_pFile->setReadOnly(true);
    m_pFile->setMinimumWidth(FILE_WIDTH);
    m_pFile->setPlaceholderText(tr("No file"));
    m_pFile->setAccessibleName(tr("Sidechain WAV File"));
    auto* pOpen = new QPushButton(tr("&Open"), this);
    pOpen->setAutoDefault(false);
    pOpen->setAccessibleName(tr("Open the sidechain file"));
    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(CTheme::SPACING);
    pRow->addWidget(m_pFile, 1);
    pRow->addWidget(pOpen);
    layout.addWidget(pLabel);
    layout.addLayout(pRow);
    connect(pOpen, &QPushButton::clicked, this, &SidechainInputDlg::chooseFile);
    pOpen->setFocus();
}

CPanelButton* SidechainInputDlg::addSwitch(QVBoxLayout& layout, EButtonKind eKind, const QString& sText,
                                           const QString& sSpoken)
{
    auto* pButton = new CPanelButton(this, eKind);
    pButton->setText(sText);
    pButton->setAccessibleName(sSpoken);
    layout.addWidget(pButton);
    return pButton;
}

void SidechainInputDlg::makeSwitches(QVBoxLayout& layout)
{
    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(2 * CTheme::MARGIN);
    const auto addColumn = [&](const QString& sHeading) {
        auto* pColumn = new QVBoxLayout;
        pColumn->setSpacing(CTheme::SPACING);
        pColumn->addWidget(new QLabel(sHeading, this));
        pRow->addLayout(pColumn, 1);
        return pColumn;
    };
    QVBoxLayout* pMode = addColumn(tr("Playback Mode:"));
    m_pMode->addButton(addSwitch(*pMode, EButtonKind::Latching, tr("Once"), tr("Play once")), 0);
    m_pMode->addButton(addSwitch(*pMode, EButtonKind::Latching, tr("Loop"), tr("Play as a loop")), 1);
    QVBoxLayout* pSwitches = addColumn(tr("Sidechain:"));
    m_pEnable = addSwitch(*pSwitches, EButtonKind::TwoState, tr("Enable"), tr("Enable the sidechain"));
    m_pMonitor = addSwitch(*pSwitches, EButtonKind::TwoState, tr("Monitor"), tr("Monitor the sidechain"));
    layout.addSpacing(CTheme::MARGIN);
    layout.addLayout(pRow);
    layout.addStretch(1);
    connect(m_pMode, &QButtonGroup::idClicked, this, [this](int nMode) { m_sidechain.m_bLoop = nMode == 1; });
    connect(m_pEnable, &QPushButton::clicked, this,
            [this](bool bOn) { m_sidechain.setEnabled(bOn, m_engine); });
    connect(m_pMonitor, &QPushButton::clicked, this, [this](bool bOn) { m_sidechain.m_bListen = bOn; });
}

void SidechainInputDlg::makeLevel(QHBoxLayout& layout)
{
    auto* pColumn = new QVBoxLayout;
    pColumn->setSpacing(CTheme::SPACING);
    m_pLevel = new CFader(this);
    m_pLevel->setAccessibleName(tr("Sidechain Level"));
    m_pLevel->setMinimumHeight(LEVEL_HEIGHT);
    pColumn->addWidget(new QLabel(tr("Sidechain Level (dB)"), this), 0, Qt::AlignHCenter);
    pColumn->addWidget(m_pLevel, 1, Qt::AlignHCenter);
    layout.addLayout(pColumn);
    connect(m_pLevel, &CFader::gainChanged, this, [this](float fLevel_dB) {
        m_sidechain.m_fGain_dB = fLevel_dB;
        m_fShownLevel_dB = fLevel_dB;
    });
}

void SidechainInputDlg::makeMeters(QHBoxLayout& layout)
{
    auto* pPair = new QHBoxLayout;
    pPair->setSpacing(CTheme::SPACING);
    const auto add = [&](const QString& sLabel, const QString& sName) {
        auto* pMeter = new CLEDMeter(this);
        pMeter->setLEDs(LEDS);
        pMeter->setColourScheme(GREEN);
        pMeter->setDecibels(LOWEST_LEVEL, 0.0);
        pMeter->setAccessibleName(sName);
        pMeter->setFixedWidth(METER_WIDTH);
        auto* pColumn = new QVBoxLayout;
        pColumn->setSpacing(CTheme::SPACING);
        pColumn->addWidget(new QLabel(sLabel, this), 0, Qt::AlignHCenter);
        pColumn->addWidget(pMeter, 1);
        pPair->addLayout(pColumn);
        return pMeter;
    };
    m_pLeft = add(tr("L"), tr("Sidechain, left"));
    m_pRight = add(tr("R"), tr("Sidechain, right"));
    layout.addLayout(pPair);
}

void SidechainInputDlg::chooseFile()
{
    m_sidechain.chooseFromButton(m_transport, m_dialogs);
    showFile();
}

void SidechainInputDlg::showFile()
{
    const QString sName = qs(m_sidechain.shortName());
    if (m_pFile->text() == sName)
        return;
    m_pFile->setText(sName);
    m_pFile->setCursorPosition(0);
    m_pFile->setToolTip(pathText(m_sidechain.path()));
}

// A level between two positions stands at that of the lower level.
void SidechainInputDlg::showLevel()
{
    m_fShownLevel_dB = m_sidechain.m_fGain_dB;
    m_pLevel->setGain(m_fShownLevel_dB);
    m_pLevel->trackBar().setPosition(CTrackBar::HIGHEST - CSidechain::positionFromLevel(m_fShownLevel_dB));
}

void SidechainInputDlg::tick()
{
    m_pLeft->setLevel(m_engine.meter(METER_SIDECHAIN_LEFT));
    m_pRight->setLevel(m_engine.meter(METER_SIDECHAIN_RIGHT));
    m_pEnable->setChecked(m_sidechain.m_bEnabled);
    m_pMonitor->setChecked(m_sidechain.m_bListen);
    m_pMode->button(m_sidechain.m_bLoop ? 1 : 0)->setChecked(true);
    if (m_sidechain.m_fGain_dB != m_fShownLevel_dB)
        showLevel();
    showFile();
}

void SidechainInputDlg::showEvent(QShowEvent* pEvent)
{
    showLevel();
    tick();
    m_pLeft->setLevel(0.0F);
    m_pRight->setLevel(0.0F);
    QDialog::showEvent(pEvent);
}

} // namespace velmora
