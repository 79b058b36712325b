#include "widgets/audio/osc_parameter_row.h"

#include "dsp/modules/oscillator.h"
#include "host/dsp_filter_control.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/track_bar.h"
#include "widgets/common/value_box.h"

#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr const char* WIDEST_NAME = "Sweep Period";
constexpr const char* WIDEST_UNITS = "dBFS";
constexpr int LEAST_TRACK = 180; // logical pixels

QLabel* fixedLabel(const QString& sText, const char* pWidest, Qt::Alignment alignment, QWidget* pParent)
{
    auto* pLabel = new QLabel(sText, pParent);
    pLabel->setAlignment(alignment | Qt::AlignVCenter);
    pLabel->setFixedWidth(pLabel->fontMetrics().horizontalAdvance(QString::fromLatin1(pWidest)) + 2);
    return pLabel;
}

} // namespace

COscParameterRow::COscParameterRow(COscillator& oscillator, unsigned uParameter, const char* pName,
                                   QWidget* pParent)
    : QWidget(pParent), m_oscillator(oscillator), m_uParameter(uParameter), m_pTrackBar(new CTrackBar(this)),
      m_pValue(new CValueBox(this))
{
    const QString sName = qs(control().m_sName);
    const QString sSpoken = QString::fromUtf8(pName ? pName : control().m_sName.c_str());
    m_pTrackBar->setOrientation(Qt::Horizontal);
    m_pTrackBar->setMinimumWidth(LEAST_TRACK);
    m_pTrackBar->setAccessibleName(sSpoken);
    m_pValue->setAccessibleName(sSpoken);
    m_pValue->setAccessibleDescription(qs(control().m_sUnits));

    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(CTheme::SPACING);
    pLayout->addWidget(fixedLabel(sName, WIDEST_NAME, Qt::AlignRight, this));
    pLayout->addWidget(m_pTrackBar, 1);
    pLayout->addWidget(m_pValue);
    pLayout->addWidget(fixedLabel(qs(control().m_sUnits), WIDEST_UNITS, Qt::AlignLeft, this));

    connect(m_pTrackBar, &CTrackBar::moved, this, &COscParameterRow::move);
    connect(m_pTrackBar, &CTrackBar::resetRequested, this, &COscParameterRow::resetToDefault);
    connect(m_pValue, &CValueBox::committed, this, &COscParameterRow::enter);
    refresh();
}

unsigned COscParameterRow::controlId() const
{
    return COscillator::FIRST_CONTROL_ID + m_uParameter;
}

const CDSPFilterControl& COscParameterRow::control() const
{
    return *m_oscillator.m_ControlList[m_uParameter];
}

// Equal ratios over equal ways: value = low * (high / low)^(position / 256). From a low end of 0 there are
// none.
std::optional<double> COscParameterRow::logarithmOfRange() const
{
    const CModuleRange& range = m_oscillator.range(m_uParameter);
    if (!OSCILLATOR_PARAMETERS[m_uParameter].m_bLogarithmic || range.m_fLow <= 0.0F ||
        range.m_fHigh <= range.m_fLow)
        return std::nullopt;
    return std::log(static_cast<double>(range.m_fHigh) / range.m_fLow);
}

void COscParameterRow::move(int nPosition)
{
    const CModuleRange& range = m_oscillator.range(m_uParameter);
    const double dShare = static_cast<double>(nPosition) / CTrackBar::HIGHEST;
    if (const auto dLogarithm = logarithmOfRange())
        m_oscillator.setParameter(m_uParameter,
                                  static_cast<float>(range.m_fLow * std::exp(dShare * *dLogarithm)));
    else
        m_oscillator.setParameter(m_uParameter,
                                  static_cast<float>(range.m_fLow + dShare * (range.m_fHigh - range.m_fLow)));
    refresh();
}

int COscParameterRow::positionOf(float fValue) const
{
    const CModuleRange& range = m_oscillator.range(m_uParameter);
    const auto dLogarithm = logarithmOfRange();
    const double dShare = dLogarithm
                              ? std::log(static_cast<double>(fValue) / range.m_fLow) / *dLogarithm
                              : (static_cast<double>(fValue) - range.m_fLow) / (range.m_fHigh - range.m_fLow);
    return std::isfinite(dShare)
               ? static_cast<int>(std::lround(CTrackBar::HIGHEST * std::clamp(dShare, 0.0, 1.0)))
               : CTrackBar::LOWEST;
}

void COscParameterRow::refresh()
{
    m_pTrackBar->setPosition(positionOf(m_oscillator.parameter(m_uParameter)));
    m_pTrackBar->setInitialPosition(positionOf(m_oscillator.range(m_uParameter).m_fDefault));
    m_pValue->setValue(qs(control().m_sValue));
    m_pTrackBar->setValueText(qs(control().m_sValue + " " + control().m_sUnits));
}

void COscParameterRow::enter(const QString& sText)
{
    m_oscillator.setControlText(controlId(), utf8(sText), true);
    refresh();
}

void COscParameterRow::resetToDefault()
{
    m_oscillator.setParameter(m_uParameter, m_oscillator.range(m_uParameter).m_fDefault);
    refresh();
}

} // namespace velmora
