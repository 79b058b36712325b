#include "widgets/panel/choice_bar.h"

#include "widgets/common/theme.h"

#include <QButtonGroup>
#include <QEvent>
#include <QPainter>
#include <QRadioButton>
#include <algorithm>

namespace velmora {

namespace {

// Derived from a radio button for its keys and its role; looks like a button that is up or down.
class CChoice : public QRadioButton
{
  public:
    using QRadioButton::QRadioButton;

  protected:
    bool hitButton(const QPoint& point) const override { return rect().contains(point); }

    void paintEvent(QPaintEvent*) override
    {
        const CThemeColours& colours = CTheme::instance().colours();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        const bool bFocus = hasFocus();
        painter.setPen(QPen(bFocus ? colours.m_text : colours.m_line, 1.0));
        painter.setBrush(isChecked() ? colours.m_accent
                                     : (underMouse() ? colours.m_raised : colours.m_panel));
        painter.drawRoundedRect(frame, CTheme::RADIUS, CTheme::RADIUS);
        if (bFocus)
            painter.drawRoundedRect(frame.adjusted(1, 1, -1, -1), CTheme::RADIUS - 1, CTheme::RADIUS - 1);
        painter.setPen(isChecked() ? colours.m_accentText : colours.m_text);
        painter.drawText(rect().adjusted(4, 0, -4, 0), Qt::AlignCenter,
                         fontMetrics().elidedText(text(), Qt::ElideRight, width() - 8));
    }
};

} // namespace

CChoiceBar::CChoiceBar(const QString& sName, const QStringList& choices, QWidget* pParent)
    : QWidget(pParent), m_pGroup(new QButtonGroup(this))
{
    setAccessibleName(sName);
    for (const QString& sChoice : choices) {
        auto* pButton = new CChoice(sChoice, this);
        pButton->setAccessibleName(sName + QStringLiteral(": ") + sChoice);
        pButton->setFocusPolicy(Qt::StrongFocus);
        pButton->setAttribute(Qt::WA_Hover);
        m_pGroup->addButton(pButton, static_cast<int>(m_buttons.size()));
        m_buttons.push_back(pButton);
    }
    // A choice is told by its becoming pressed, whether by mouse, blank, or arrow key.
    connect(m_pGroup, &QButtonGroup::idToggled, this, [this](int nChoice, bool bPressed) {
        if (!bPressed)
            return;
        setFocusProxy(m_pGroup->button(nChoice));
        emit chosen(nChoice);
    });
    setCurrent(0);
}

void CChoiceBar::setCurrent(int nChoice)
{
    const QSignalBlocker silence(m_pGroup);
    if (QAbstractButton* pButton = m_pGroup->button(nChoice))
        pButton->setChecked(true);
    setFocusProxy(m_pGroup->checkedButton());
}

int CChoiceBar::current() const
{
    return m_pGroup->checkedId();
}

QSize CChoiceBar::sizeHint() const
{
    int nWidest = 0;
    for (const QRadioButton* pButton : m_buttons)
        nWidest = std::max(nWidest, fontMetrics().horizontalAdvance(pButton->text()));
    return {static_cast<int>(m_buttons.size()) * (nWidest + 16), fontMetrics().height() + 10};
}

void CChoiceBar::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::FontChange)
        updateGeometry();
    QWidget::changeEvent(pEvent);
}

void CChoiceBar::resizeEvent(QResizeEvent*)
{
    constexpr int GAP = 2;
    const int nCount = static_cast<int>(m_buttons.size());
    for (int i = 0; i < nCount; i++) {
        const int nLeft = i * (width() + GAP) / nCount;
        const int nEnd = (i + 1) * (width() + GAP) / nCount - GAP;
        m_buttons[static_cast<std::size_t>(i)]->setGeometry(nLeft, 0, nEnd - nLeft, height());
    }
}

} // namespace velmora
