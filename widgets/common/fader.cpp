#include "widgets/common/fader.h"

#include "panel/panel_laws.h"
#include "widgets/common/instrument_paint.h"
#include "widgets/common/track_bar.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {

struct CScaleLabel
{
    double m_dGain; // dB
    const char* m_pText;
};
constexpr std::array<CScaleLabel, 7> SCALE = {{{12, "+12 --"},
                                               {0, "0 --"},
                                               {-12, "-12 --"},
                                               {-24, "-24 --"},
                                               {-36, "-36 --"},
                                               {-48, "-48 --"},
                                               {-60, "-60 --"}}};
constexpr double HIGHEST_GAIN = SCALE.front().m_dGain;
constexpr double LOWEST_GAIN = SCALE.back().m_dGain;
constexpr int TRACK_WIDTH = 34;
constexpr int GAP = 2;

QString gainText(double dGain)
{
    return QStringLiteral("%1 dB").arg(std::abs(dGain) < 0.05 ? 0.0 : dGain, 0, 'f', 1);
}

int widestLabel(const QFont& font)
{
    int nWidest = 0;
    for (const CScaleLabel& label : SCALE)
        nWidest = std::max(nWidest, QFontMetrics(font).horizontalAdvance(QString::fromLatin1(label.m_pText)));
    return nWidest;
}

} // namespace

// Speaks in dB.
class CFaderTrack : public CTrackBar
{
  public:
    explicit CFaderTrack(CFader& fader) : CTrackBar(&fader), m_fader(fader) {}

    [[nodiscard]] QString accessibleFallbackName() const override
    {
        return m_fader.accessibleName().isEmpty() ? m_fader.label() : m_fader.accessibleName();
    }
    [[nodiscard]] QString accessibleValueText() const override { return m_fader.accessibleValueText(); }
    [[nodiscard]] std::optional<CRange> accessibleRange() const override
    {
        return CRange{LOWEST_GAIN, HIGHEST_GAIN, (HIGHEST_GAIN - LOWEST_GAIN) / HIGHEST,
                      static_cast<double>(m_fader.gain())};
    }
    void setAccessibleValue(double dGain) override
    {
        if (isMovable())
            m_fader.take(dGain);
    }

  private:
    CFader& m_fader;
};

CFader::CFader(QWidget* pParent) : CSlotControl<QWidget>(pParent), m_pTrackBar(new CFaderTrack(*this))
{
    installAccessibleInstruments();
    setFocusProxy(m_pTrackBar);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    m_pTrackBar->setCountsFromTop(true);
    m_pTrackBar->setQuarterMarks(false); // it has a scale
    m_pTrackBar->setInitialPosition(CTrackBar::HIGHEST - velmora::faderPosition(0.0));
    setGain(0.0F);
    connect(m_pTrackBar, &CTrackBar::moved, this,
            [this](int nPosition) { take(faderDecibels(CTrackBar::HIGHEST - nPosition)); });
    connect(m_pTrackBar, &CTrackBar::resetRequested, this, [this] { take(0.0); });
}

void CFader::setGain(float fGain)
{
    m_fGain = std::clamp(fGain, static_cast<float>(LOWEST_GAIN), static_cast<float>(HIGHEST_GAIN));
    m_pTrackBar->setPosition(CTrackBar::HIGHEST - velmora::faderPosition(static_cast<double>(m_fGain)));
    update();
    announceValue(m_pTrackBar);
}

void CFader::take(double dGain)
{
    const float fOld = m_fGain;
    setGain(static_cast<float>(dGain));
    if (m_fGain != fOld)
        emit gainChanged(m_fGain);
}

int CFader::faderPosition() const
{
    return CTrackBar::HIGHEST - m_pTrackBar->position();
}

void CFader::setLabel(const QString& sLabel)
{
    m_sLabel = sLabel;
    place();
    update();
}

QAccessible::Role CFader::accessibleRole() const
{
    return QAccessible::Grouping;
}

QString CFader::accessibleFallbackName() const
{
    return m_sLabel;
}

QString CFader::accessibleValueText() const
{
    return gainText(static_cast<double>(m_fGain));
}

// As large as the labels' distance and the place beside the track allow, never larger than the widget's own.
QFont CFader::scaleFont() const
{
    const double dDistance = (m_pTrackBar->pixelOf(0) - m_pTrackBar->pixelOf(CTrackBar::HIGHEST)) /
                             static_cast<double>(SCALE.size() - 1);
    const QFont font =
        fontOfHeight(CTheme::figures(), std::min(dDistance, QFontMetricsF(this->font()).height()));
    const int nPlace = m_pTrackBar->x() - GAP;
    const int nWidest = widestLabel(font);
    return nWidest <= nPlace
               ? font
               : fontOfHeight(font, QFontMetricsF(font).height() * nPlace / std::max(1, nWidest));
}

void CFader::place()
{
    const int nLine = fontMetrics().height() + GAP;
    const int nTop = m_sLabel.isEmpty() ? 0 : nLine;
    const int nTrack = std::min(TRACK_WIDTH, width() / 2);
    m_pTrackBar->setGeometry(width() - nTrack, nTop, nTrack, std::max(0, height() - nTop - nLine));
}

QSize CFader::sizeHint() const
{
    return {TRACK_WIDTH + widestLabel(CTheme::figures()) + 2 * GAP, 240};
}

QSize CFader::minimumSizeHint() const
{
    return {sizeHint().width(), 9 * fontMetrics().height()};
}

void CFader::lookChanged()
{
    m_pTrackBar->setRole(role());
    m_pTrackBar->setActive(isActive());
    update();
}

void CFader::paintEvent(QPaintEvent* /*pEvent*/)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setFont(font());
    const double dLine = painter.fontMetrics().height();
    if (!m_sLabel.isEmpty())
        paintText(painter, QRectF(0, 0, width(), dLine), Qt::AlignCenter, captionColour(look()), m_sLabel);
    painter.setFont(fontOfHeight(CTheme::figures(), dLine));
    paintText(painter, QRectF(0, height() - dLine, width(), dLine), Qt::AlignCenter, captionColour(look()),
              accessibleValueText());

    painter.setFont(scaleFont());
    const double dHeight = painter.fontMetrics().height();
    for (const CScaleLabel& label : SCALE) {
        const double dPosition =
            CTrackBar::HIGHEST * (label.m_dGain - LOWEST_GAIN) / (HIGHEST_GAIN - LOWEST_GAIN);
        const double dMiddle = m_pTrackBar->y() + m_pTrackBar->pixelOf(dPosition);
        const QRectF place(0, dMiddle - dHeight / 2, m_pTrackBar->x() - GAP, dHeight);
        paintText(painter, place, Qt::AlignRight | Qt::AlignVCenter, colours.m_quietText,
                  QString::fromLatin1(label.m_pText));
    }
}

void CFader::resizeEvent(QResizeEvent* /*pEvent*/)
{
    place();
}

void CFader::changeEvent(QEvent* pEvent)
{
    QWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::FontChange)
        place();
}

} // namespace velmora
