#include "widgets/audio/osc_dialog.h"

#include "audio/transport.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "dsp/modules/oscillator.h"
#include "widgets/audio/osc_parameter_row.h"
#include "widgets/common/panel_button.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/value_box.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr int BUTTON_WIDTH = 110; // logical pixels

// Radio buttons whose ids are places in the table.
template <class Table>
QGroupBox* makeBox(const QString& sTitle, const Table& table, QButtonGroup& group)
{
    auto* pBox = new QGroupBox(sTitle);
    auto* pLayout = new QVBoxLayout(pBox);
    pLayout->setContentsMargins(CTheme::SPACING, CTheme::SPACING, CTheme::SPACING, CTheme::SPACING);
    for (int nPlace = 0; const auto& row : table) {
        auto* pButton = new QRadioButton(QString::fromUtf8(row.m_pLabel), pBox);
        pButton->setAccessibleName(pButton->text());
        group.addButton(pButton, nPlace++);
        pLayout->addWidget(pButton);
    }
    return pBox;
}

template <class Table, class Member, class Code>
int placeOf(const Table& table, Member member, Code eCode)
{
    return static_cast<int>(std::ranges::find(table, eCode, member) - table.begin());
}

QVBoxLayout* rowsOf(QWidget* pRows, const QString& sHeading = {})
{
    auto* pLayout = new QVBoxLayout(pRows);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(CTheme::SPACING);
    if (!sHeading.isEmpty()) {
        auto* pHeading = new QLabel(sHeading, pRows);
        pHeading->setForegroundRole(QPalette::PlaceholderText);
        pLayout->addWidget(pHeading);
    }
    return pLayout;
}

} // namespace

COscDialog::COscDialog(COscillator& oscillator, CTransport& transport, IUserDialogs& dialogs,
                       QWidget* pParent)
    : QDialog(pParent), m_oscillator(oscillator), m_transport(transport), m_dialogs(dialogs),
      m_pClass(new QButtonGroup(this)), m_pKind(new QButtonGroup(this))
{
    setWindowTitle(tr("Oscillator"));
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(2 * CTheme::MARGIN);
    auto* pLeft = new QVBoxLayout;
    auto* pRight = new QVBoxLayout;
    for (QVBoxLayout* pSide : {pLeft, pRight})
        pSide->setSpacing(CTheme::SPACING);
    pLayout->addLayout(pLeft);
    pLayout->addLayout(pRight, 1);
    makeChoices(*pLeft);
    makeRows(*pRight);
    pRight->addStretch(1);
    makeStartRow(*pRight);
    showStarted(false);
    showKind();
}

void COscDialog::makeChoices(QVBoxLayout& layout)
{
    layout.addWidget(makeBox(tr("Class"), OSCILLATOR_CLASSES, *m_pClass));
    m_pKindBox = makeBox(tr("Type"), OSCILLATOR_KINDS, *m_pKind);
    layout.addWidget(m_pKindBox);
    layout.addStretch(1);
    connect(m_pClass, &QButtonGroup::idClicked, this, [this](int nPlace) {
        m_oscillator.setClass(OSCILLATOR_CLASSES[static_cast<std::size_t>(nPlace)].m_eClass);
        showKind();
    });
    connect(m_pKind, &QButtonGroup::idClicked, this, [this](int nPlace) {
        m_oscillator.setKind(OSCILLATOR_KINDS[static_cast<std::size_t>(nPlace)].m_eKind);
        showKind();
    });
}

COscParameterRow* COscDialog::addRow(QVBoxLayout& layout, unsigned uParameter, const char* pName)
{
    m_rows.push_back(new COscParameterRow(m_oscillator, uParameter, pName, layout.parentWidget()));
    layout.addWidget(m_rows.back());
    return m_rows.back();
}

// The rows of the pulsed types and that of the sweep share one place.
void COscDialog::makeRows(QVBoxLayout& layout)
{
    m_pFrequency = addRow(layout, OSCILLATOR_FREQUENCY);
    addRow(layout, OSCILLATOR_AMPLITUDE);
    makeImpulseRow(layout);
    m_pPulseRows = new QWidget(this);
    QVBoxLayout* pPulse = rowsOf(m_pPulseRows, tr("Pulse"));
    addRow(*pPulse, OSCILLATOR_PULSE_RATE, "Pulse Frequency");
    addRow(*pPulse, OSCILLATOR_DUTY_CYCLE);
    m_pSweepRow = new QWidget(this);
    QVBoxLayout* pSweep = rowsOf(m_pSweepRow, tr("Sweep"));
    addRow(*pSweep, OSCILLATOR_SWEEP_PERIOD);
    pSweep->addStretch(1);
    auto* pPlace = new QWidget(this);
    rowsOf(pPlace)->addWidget(m_pPulseRows);
    pPlace->layout()->addWidget(m_pSweepRow);
    pPlace->setMinimumHeight(m_pPulseRows->sizeHint().height());
    layout.addWidget(pPlace);
}

void COscDialog::makeImpulseRow(QVBoxLayout& layout)
{
    addRow(layout, OSCILLATOR_IMPULSE_HEIGHT);
    auto* pFire = new CPanelButton(this);
    pFire->setText(tr("Fire Impulse"));
    pFire->setAccessibleName(pFire->text());
    pFire->setMinimumWidth(BUTTON_WIDTH);
    layout.addWidget(pFire, 0, Qt::AlignRight);
    connect(pFire, &QPushButton::clicked, this, &COscDialog::fireImpulse);
}

void COscDialog::makeStartRow(QVBoxLayout& layout)
{
    m_pReason = new QLabel(this);
    m_pStart = new CPanelButton(this, EButtonKind::Latching);
    m_pReason->setWordWrap(true);
    m_pReason->setForegroundRole(QPalette::PlaceholderText);
    m_pStart->setMinimumWidth(BUTTON_WIDTH);
    auto* pRow = new QHBoxLayout;
    pRow->addWidget(m_pReason, 1);
    pRow->addWidget(m_pStart, 0, Qt::AlignBottom);
    layout.addLayout(pRow);
    connect(m_pStart, &QPushButton::clicked, this, [this] {
        if (m_bStarted)
            stopOscillator();
        else
            startOscillator();
    });
}

void COscDialog::startOscillator()
{
    if (m_transport.state() != TRANSPORT_OSC)
        m_transport.startOsc();
    const bool bOpen = m_transport.state() == TRANSPORT_OSC;
    if (bOpen)
        m_transport.startOscillator();
    else
        m_dialogs.note("The oscillator did not start. " + m_transport.reason());
    showStarted(bOpen);
    m_pReason->setText(bOpen ? QString() : qs(m_transport.reason()));
}

void COscDialog::stopOscillator()
{
    m_transport.stopOscillator();
    showStarted(false);
    m_pReason->clear();
}

void COscDialog::showStarted(bool bStarted)
{
    m_bStarted = bStarted;
    m_pStart->setText(bStarted ? tr("Stop") : tr("Start"));
    m_pStart->setAccessibleName(m_pStart->text());
    m_pStart->setChecked(bStarted);
}

void COscDialog::fireImpulse()
{
    if (m_bStarted)
        m_oscillator.fireImpulse();
    else
        m_dialogs.showMessage("You must Start the oscillator first.");
}

void COscDialog::setFrequencyFromOutside(double dHz)
{
    m_pFrequency->enter(qs(shortestDecimal(dHz)));
}

void COscDialog::setSweepHigh(double dHz)
{
    if (std::isfinite(dHz) && dHz > m_oscillator.frequencyLow())
        m_oscillator.setFrequencyRange(m_oscillator.frequencyLow(), static_cast<float>(dHz));
    refreshRows();
}

double COscDialog::getFrequency() const
{
    return m_oscillator.getFrequency();
}

double COscDialog::getAmplitude() const
{
    return m_oscillator.getAmplitude();
}

// The sweep is a sine: types have no say in it.
void COscDialog::showKind()
{
    const bool bSweep = m_oscillator.oscillatorClass() == OSCILLATOR_SWEEP;
    const int nKind = placeOf(OSCILLATOR_KINDS, &COscillatorKind::m_eKind, m_oscillator.kind());
    m_pClass->button(placeOf(OSCILLATOR_CLASSES, &COscillatorClass::m_eClass, m_oscillator.oscillatorClass()))
        ->setChecked(true);
    m_pKind->button(nKind)->setChecked(true);
    m_pKindBox->setEnabled(!bSweep);
    m_pSweepRow->setVisible(bSweep);
    m_pPulseRows->setVisible(!bSweep && OSCILLATOR_KINDS[static_cast<std::size_t>(nKind)].m_bPulsed);
}

void COscDialog::refreshRows()
{
    for (COscParameterRow* pRow : m_rows)
        pRow->refresh();
}

void COscDialog::tick()
{
    refreshRows();
    showKind();
    if (m_bStarted && m_transport.state() != TRANSPORT_OSC)
        showStarted(false);
}

void COscDialog::showEvent(QShowEvent* pEvent)
{
    tick();
    QDialog::showEvent(pEvent);
}

} // namespace velmora
