#include "widgets/audio/sound_card_dialog.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/theme.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <initializer_list>

// What the window is made of; sound_card_dialog.cpp gives it life.

namespace velmora {

namespace {

constexpr int LEAST_CHARACTERS = 32; // of a box
constexpr const char* WIDEST_LABEL = "Device Under Test: ";
constexpr int METER_HEIGHT = 14; // logical pixels
constexpr int LEDS = 40;
constexpr int PEAK_TICKS = 30;
constexpr double LOWEST_LEVEL = -60.0; // dB

QFormLayout* makeForm(QGroupBox* pGroup)
{
    auto* pForm = new QFormLayout(pGroup);
    pForm->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pForm->setSpacing(CTheme::SPACING);
    pForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    return pForm;
}

// The fields of all groups stand below one another.
QLabel* addRow(QFormLayout& form, const QString& sLabel, QWidget* pField)
{
    auto* pLabel = new QLabel(sLabel, form.parentWidget());
    pLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    pLabel->setMinimumWidth(pLabel->fontMetrics().horizontalAdvance(QString::fromUtf8(WIDEST_LABEL)));
    pLabel->setBuddy(pField);
    form.addRow(pLabel, pField);
    return pLabel;
}

QWidget* inRow(std::initializer_list<QWidget*> widgets, QWidget* pParent)
{
    auto* pRow = new QWidget(pParent);
    auto* pLayout = new QHBoxLayout(pRow);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(2 * CTheme::SPACING);
    for (QWidget* pWidget : widgets)
        pLayout->addWidget(pWidget);
    pLayout->addStretch(1);
    return pRow;
}

// Below the field that it is about.
QLabel* makeNote(QWidget* pParent)
{
    auto* pNote = new QLabel(pParent);
    pNote->setTextFormat(Qt::PlainText);
    pNote->setWordWrap(true);
    pNote->setForegroundRole(QPalette::PlaceholderText);
    pNote->hide();
    return pNote;
}

} // namespace

CSoundCardDialog::CSoundCardDialog(const CParts& parts, QWidget* pParent)
    : QDialog(pParent), m_parts(parts), m_trial(parts.m_devices.system()), m_check(parts.m_devices.system())
{
    setWindowTitle(tr("Setup Audio Devices"));
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(CTheme::MARGIN);
    pLayout->addWidget(makeDevices());
    pLayout->addWidget(makeStream());
    pLayout->addWidget(makeTest());
    pLayout->addStretch(1);
    pLayout->addWidget(makeButtons());
    m_rateTimer.setInterval(0);
    connect(&m_rateTimer, &QTimer::timeout, this, &CSoundCardDialog::testNextRate);
    connect(&m_tickTimer, &QTimer::timeout, this, &CSoundCardDialog::tick);
}

// Notes come and go; the window grows for them.
bool CSoundCardDialog::event(QEvent* pEvent)
{
    const bool bDone = QDialog::event(pEvent);
    if (pEvent->type() == QEvent::LayoutRequest) {
        const int nNeeded =
            layout()->hasHeightForWidth() ? layout()->heightForWidth(width()) : sizeHint().height();
        if (height() < nNeeded)
            resize(width(), nNeeded);
    }
    return bDone;
}

QComboBox* CSoundCardDialog::addCombo(QFormLayout& form, const QString& sLabel)
{
    auto* pBox = new QComboBox(this);
    pBox->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    pBox->setMinimumContentsLength(LEAST_CHARACTERS);
    QString sName = sLabel;
    pBox->setAccessibleName(sName.remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    addRow(form, sLabel, pBox);
    return pBox;
}

QWidget* CSoundCardDialog::makeDevices()
{
    auto* pGroup = new QGroupBox(tr("Devices"), this);
    m_pDeviceGroup = pGroup;
    QFormLayout* pForm = makeForm(pGroup);
    m_pInput = addCombo(*pForm, tr("&Input Device:"));
    m_pOutput = addCombo(*pForm, tr("&Output Device:"));
    m_pDUT = addCombo(*pForm, tr("&Device Under Test:"));
    m_pDeviceNote = makeNote(this);
    pForm->addRow(QString(), m_pDeviceNote);
    for (QComboBox* pBox : {m_pInput, m_pOutput, m_pDUT})
        connect(pBox, &QComboBox::activated, this, &CSoundCardDialog::chooseFromBoxes);
    return pGroup;
}

QWidget* CSoundCardDialog::makeStream()
{
    auto* pGroup = new QGroupBox(tr("Stream"), this);
    m_pStreamGroup = pGroup;
    QFormLayout* pForm = makeForm(pGroup);
    m_pRate = addCombo(*pForm, tr("Sample &Rate:"));
    m_pRateNote = makeNote(this);
    pForm->addRow(QString(), m_pRateNote);
    m_pFrames = addCombo(*pForm, tr("&Buffer Size:"));
    m_pLow = new QRadioButton(tr("&Low"), this);
    m_pHigh = new QRadioButton(tr("&High"), this);
    m_pMultiplier = new QSpinBox(this);
    m_pLow->setAccessibleName(tr("Low latency"));
    m_pHigh->setAccessibleName(tr("High latency"));
    m_pMultiplier->setAccessibleName(tr("Latency multiplier"));
    auto* pTimes = new QLabel(tr("ti&mes"), this);
    pTimes->setBuddy(m_pMultiplier);
    addRow(*pForm, tr("Latency:"), inRow({m_pLow, m_pHigh, pTimes, m_pMultiplier}, this));
    m_pLatency = makeNote(this);
    m_pLatency->setWordWrap(false);
    m_pLatency->show();
    pForm->addRow(QString(), m_pLatency);
    connect(m_pRate, &QComboBox::activated, this, &CSoundCardDialog::takeRate);
    connect(m_pFrames, &QComboBox::activated, this, &CSoundCardDialog::streamChanged);
    connect(m_pLow, &QRadioButton::clicked, this, &CSoundCardDialog::streamChanged);
    connect(m_pHigh, &QRadioButton::clicked, this, &CSoundCardDialog::streamChanged);
    connect(m_pMultiplier, &QSpinBox::valueChanged, this, &CSoundCardDialog::streamChanged);
    return pGroup;
}

QWidget* CSoundCardDialog::makeTest()
{
    auto* pGroup = new QGroupBox(tr("Test"), this);
    m_pTestGroup = pGroup;
    QFormLayout* pForm = makeForm(pGroup);
    m_pTone = new QPushButton(tr("Test &Tone"), this);
    m_pTone->setCheckable(true);
    m_pTone->setAutoDefault(false);
    addRow(*pForm, tr("Output:"), inRow({m_pTone, new QLabel(tr("1 kHz at -20 dBFS"), this)}, this));
    const auto add = [&](const QString& sName) {
        auto* pMeter = new CLEDMeter(this);
        pMeter->setOrientation(Qt::Horizontal);
        pMeter->setLEDs(LEDS);
        pMeter->setPeakHold(PEAK_TICKS);
        pMeter->setDecibels(LOWEST_LEVEL, 0.0);
        pMeter->setAccessibleName(sName);
        pMeter->setFixedHeight(METER_HEIGHT);
        return pMeter;
    };
    m_pLeft = add(tr("Input, left"));
    m_pRight = add(tr("Input, right"));
    addRow(*pForm, tr("Input, L:"), m_pLeft);
    addRow(*pForm, tr("R:"), m_pRight);
    m_pTestNote = makeNote(this);
    pForm->addRow(QString(), m_pTestNote);
    connect(m_pTone, &QPushButton::clicked, this, &CSoundCardDialog::toggleTone);
    return pGroup;
}

QWidget* CSoundCardDialog::makeButtons()
{
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_pOK = pButtons->button(QDialogButtonBox::Ok);
    m_pOK->setDefault(true);
    m_pRescan = pButtons->addButton(tr("R&escan"), QDialogButtonBox::ResetRole);
    m_pStopAudio = pButtons->addButton(tr("&Stop Audio"), QDialogButtonBox::ActionRole);
    m_pState = new QLabel(tr("Audio runs. Stop it to change or test the devices."), this);
    m_pState->setWordWrap(true);
    m_pState->hide();
    for (QPushButton* pButton : {m_pRescan, m_pStopAudio})
        pButton->setAutoDefault(false);
    connect(pButtons, &QDialogButtonBox::accepted, this, &CSoundCardDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &CSoundCardDialog::reject);
    connect(m_pRescan, &QPushButton::clicked, this, &CSoundCardDialog::rescan);
    connect(m_pStopAudio, &QPushButton::clicked, this, [this] {
        m_parts.m_stopAudio();
        showState();
    });
    auto* pColumn = new QWidget(this);
    auto* pLayout = new QVBoxLayout(pColumn);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(CTheme::SPACING);
    pLayout->addWidget(m_pState);
    pLayout->addWidget(pButtons);
    return pColumn;
}

} // namespace velmora
