#include "widgets/panel/slider_preview.h"

#include "base/text.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/common/track_bar.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr float POSITIONS = 256.0F;

QString valueLabel(const CUICtrl& record, float fValue)
{
    return qs(fixedDecimals(static_cast<double>(fValue), record.uUserDataType == intData ? 0 : 2));
}

float initialValue(const CUICtrl& record)
{
    if (record.uUserDataType == intData)
        return record.fInitUserIntValue;
    return record.uUserDataType == doubleData ? record.fInitUserDoubleValue : record.fInitUserFloatValue;
}

float span(const CUICtrl& record)
{
    return record.fUserDisplayDataHiLimit - record.fUserDisplayDataLoLimit;
}

// Where the thumb stands for the initial value, again without lo.
int thumbOf(const CUICtrl& record)
{
    const float fShare = initialValue(record) / span(record);
    return std::isfinite(fShare) ? static_cast<int>(std::clamp(fShare, 0.0F, 1.0F) * POSITIONS) : 0;
}

} // namespace

CSliderPreview::CSliderPreview(QWidget* pParent)
    : QWidget(pParent), m_pBar(new CTrackBar), m_pHigh(new QLabel), m_pValue(new QLabel), m_pLow(new QLabel)
{
    m_pBar->setAccessibleName(tr("Preview of the initial value"));
    m_pValue->setFont(CTheme::font(1.0, true));
    auto* pGrid = new QGridLayout(this);
    pGrid->setContentsMargins(0, 0, 0, 0);
    pGrid->setHorizontalSpacing(CTheme::SPACING);
    pGrid->addWidget(m_pBar, 0, 0, 3, 1);
    pGrid->addWidget(m_pHigh, 0, 1, Qt::AlignTop);
    pGrid->addWidget(m_pValue, 1, 1, Qt::AlignVCenter);
    pGrid->addWidget(m_pLow, 2, 1, Qt::AlignBottom);
    pGrid->setColumnStretch(1, 1);
    setMinimumHeight(110);
    connect(m_pBar, &CTrackBar::moved, this, &CSliderPreview::moved);
}

void CSliderPreview::setRecord(const CUICtrl& record)
{
    const float fValue = initialValue(record);
    const QString sValue = valueLabel(record, fValue);
    m_pHigh->setText(valueLabel(record, record.fUserDisplayDataHiLimit));
    m_pValue->setText(sValue);
    m_pLow->setText(valueLabel(record, record.fUserDisplayDataLoLimit));
    if (!m_pBar->isHeld())
        m_pBar->setPosition(thumbOf(record));
    m_pBar->setValueText(sValue);
}

float CSliderPreview::valueAt(const CUICtrl& record, int nThumb)
{
    const float p = (POSITIONS - static_cast<float>(nThumb)) / POSITIONS;
    const float fValue = span(record) * (1.0F - p);
    return record.uUserDataType == intData ? std::trunc(fValue) : fValue;
}

} // namespace velmora
