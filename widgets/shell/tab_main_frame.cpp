#include "widgets/shell/tab_main_frame.h"

#include "widgets/common/theme.h"

#include <QLabel>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace velmora {

namespace {

struct CTabRow
{
    const char* m_pName;
    const char* m_pWithoutPage; // what stands there while the tab has no page
};

constexpr std::array<CTabRow, static_cast<std::size_t>(EMainTab::Count)> TABS = {{
    {"Prototype", "The prototype panel is not open."},
    {"GUI Designer", "This version has no designer for custom GUIs yet.\nYour controls are on the tab "
                     "\"Prototype\"."},
}};

QWidget* makePlainPage(const char* pText)
{
    auto* pLabel = new QLabel(QString::fromUtf8(pText));
    pLabel->setAlignment(Qt::AlignCenter);
    pLabel->setFont(CTheme::font(1.2));
    pLabel->setWordWrap(true);
    pLabel->setMargin(4 * CTheme::MARGIN);
    return pLabel;
}

} // namespace

CTabMainFrame::CTabMainFrame(QWidget* pParent) : QMainWindow(pParent), m_pTabs(new QTabWidget(this))
{
    m_pTabs->setDocumentMode(true);
    m_pTabs->tabBar()->setObjectName(QString::number(TAB_STRIP_ID));
    m_pTabs->tabBar()->setAccessibleName(tr("Views"));
    m_pTabs->tabBar()->setDrawBase(false);
    for (const CTabRow& row : TABS)
        m_pTabs->addTab(makePlainPage(row.m_pWithoutPage), QString::fromUtf8(row.m_pName));
    setCentralWidget(m_pTabs);
    connect(m_pTabs, &QTabWidget::currentChanged, this, &CTabMainFrame::onTabChanged);
}

void CTabMainFrame::setPage(EMainTab eTab, QWidget* pPage)
{
    const int nIndex = static_cast<int>(eTab);
    const int nCurrent = m_pTabs->currentIndex();
    const QString sName = m_pTabs->tabText(nIndex);
    const QSignalBlocker blocker(m_pTabs);
    QWidget* pOld = m_pTabs->widget(nIndex);
    m_pTabs->removeTab(nIndex);
    delete pOld;
    m_pTabs->insertTab(nIndex, pPage, sName);
    m_pTabs->setCurrentIndex(nCurrent);
}

void CTabMainFrame::selectTab(EMainTab eTab)
{
    m_pTabs->setCurrentIndex(static_cast<int>(eTab));
}

EMainTab CTabMainFrame::currentTab() const
{
    return static_cast<EMainTab>(m_pTabs->currentIndex());
}

void CTabMainFrame::onTabChanged(int nIndex)
{
    const auto eTab = static_cast<EMainTab>(nIndex);
    if (!mayShowTab(eTab)) {
        m_pTabs->setCurrentIndex(0);
        return;
    }
    emit tabSelected(eTab);
}

} // namespace velmora
