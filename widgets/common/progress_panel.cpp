#include "widgets/common/progress_panel.h"

#include "widgets/common/theme.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora {

CProgressPanel::CProgressPanel(QWidget* pWindow)
    : QDialog(pWindow), m_pText(new QLabel(this)), m_pBar(new QProgressBar(this))
{
    setWindowTitle(QStringLiteral("Velmora"));
    setWindowModality(Qt::WindowModal);
    setMinimumWidth(fontMetrics().averageCharWidth() * 56);
    m_pText->setTextFormat(Qt::PlainText);
    m_pText->setWordWrap(true);
    m_pBar->setAccessibleName(tr("Progress"));
    m_pBar->setTextVisible(false);
    setPercent(-1);

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_pCancel = pButtons->button(QDialogButtonBox::Cancel);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(CTheme::SPACING);
    pLayout->addWidget(m_pText);
    pLayout->addWidget(m_pBar);
    pLayout->addWidget(pButtons);
}

void CProgressPanel::setText(const QString& sText)
{
    m_pText->setText(sText);
    m_pBar->setAccessibleDescription(sText);
}

void CProgressPanel::setPercent(int nPercent)
{
    m_pBar->setRange(0, nPercent < 0 ? 0 : 100);
    m_pBar->setValue(nPercent);
}

void CProgressPanel::reject()
{
    if (!m_pCancel->isEnabled())
        return;
    m_pCancel->setEnabled(false);
    emit cancelled();
}

} // namespace velmora
