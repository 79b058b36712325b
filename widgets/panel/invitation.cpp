#include "widgets/panel/invitation.h"

#include "widgets/common/theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora {

CInvitation::CInvitation(QWidget* pParent)
    : QWidget(pParent), m_pTitle(new QLabel(QStringLiteral("Every slot waits for a project"), this)),
      m_pNew(new QPushButton(QStringLiteral("&New Project..."), this)),
      m_pOpen(new QPushButton(QStringLiteral("&Open Project..."), this))
{
    setAccessibleName(QStringLiteral("No project is open"));
    m_pTitle->setAlignment(Qt::AlignCenter);
    auto* pText =
        new QLabel(QStringLiteral("Create a project, or open one. Then right-click a slot to give it "
                                  "a control of your plug-in."),
                   this);
    pText->setAlignment(Qt::AlignCenter);
    pText->setWordWrap(true);

    auto* pButtons = new QHBoxLayout;
    pButtons->setSpacing(CTheme::SPACING);
    pButtons->addStretch();
    for (QPushButton* pButton : {m_pNew, m_pOpen}) {
        pButton->setAutoDefault(true);
        pButton->setAccessibleName(pButton->text().remove(QLatin1Char('&')));
        pButtons->addWidget(pButton);
    }
    pButtons->addStretch();

    auto* pColumn = new QVBoxLayout(this);
    pColumn->setContentsMargins(2 * CTheme::MARGIN, CTheme::MARGIN, 2 * CTheme::MARGIN, CTheme::MARGIN);
    pColumn->setSpacing(CTheme::SPACING);
    pColumn->addStretch();
    pColumn->addWidget(m_pTitle);
    pColumn->addWidget(pText);
    pColumn->addSpacing(CTheme::SPACING);
    pColumn->addLayout(pButtons);
    pColumn->addStretch();

    connect(m_pNew, &QPushButton::clicked, this, &CInvitation::newProjectRequested);
    connect(m_pOpen, &QPushButton::clicked, this, &CInvitation::openProjectRequested);
    dressTitle();
}

void CInvitation::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::FontChange)
        dressTitle();
    QWidget::changeEvent(pEvent);
}

void CInvitation::dressTitle()
{
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    large.setBold(true);
    m_pTitle->setFont(large);
    for (QPushButton* pButton : {m_pNew, m_pOpen})
        pButton->setMinimumHeight(2 * fontMetrics().height());
}

void CInvitation::paintEvent(QPaintEvent*)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours.m_line, 1.0));
    painter.setBrush(colours.m_panel);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2 * CTheme::RADIUS,
                            2 * CTheme::RADIUS);
}

} // namespace velmora
