#include "widgets/shell/status_window.h"

#include "widgets/common/theme.h"
#include "widgets/shell/status_lines.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace velmora {

namespace {

QPushButton* makeButton(const QString& sText, QWidget* pParent)
{
    auto* pButton = new QPushButton(sText, pParent);
    pButton->setAutoDefault(false);
    return pButton;
}

} // namespace

CStatusWindow::CStatusWindow(QWidget* pParent)
    : QWidget(pParent, Qt::Window), m_pLines(new CStatusLines(this)), m_pView(new QListView(this)),
      m_pEmpty(new QLabel(tr("Nothing has been reported yet."), m_pView)), m_pSearch(new QLineEdit(this)),
      m_pHits(new QLabel(this)), m_pPrevious(makeButton(tr("&Previous"), this)),
      m_pNext(makeButton(tr("&Next"), this)), m_pCopy(makeButton(tr("&Copy"), this)),
      m_pCopyAll(makeButton(tr("Copy &All"), this)), m_pClear(makeButton(tr("C&lear"), this)),
      m_pTimes(new QCheckBox(tr("Show &times"), this))
{
    setWindowTitle(tr("Status Window"));
    resize(640, 420);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(CTheme::SPACING);
    makeSearchRow(*pLayout);
    pLayout->addWidget(m_pView, 1);
    makeButtonRow(*pLayout);
    makeList();
    showHits();
    enableButtons();
}

void CStatusWindow::makeList()
{
    m_pView->setModel(m_pLines);
    m_pView->setAccessibleName(tr("Status lines"));
    m_pView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pView->setWordWrap(true);
    m_pView->setResizeMode(QListView::Adjust);
    m_pView->setTextElideMode(Qt::ElideNone);
    m_pView->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_pView->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    connect(m_pView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CStatusWindow::enableButtons);
    auto* pCentre = new QVBoxLayout(m_pView->viewport());
    pCentre->addWidget(m_pEmpty, 0, Qt::AlignCenter);
    m_pEmpty->setForegroundRole(QPalette::PlaceholderText);
    m_settleTimer.setSingleShot(true);
    m_settleTimer.setInterval(0);
    connect(&m_settleTimer, &QTimer::timeout, this, &CStatusWindow::settle);
}

void CStatusWindow::makeSearchRow(QVBoxLayout& layout)
{
    m_pSearch->setPlaceholderText(tr("Search (Ctrl+F)"));
    m_pSearch->setAccessibleName(tr("Search the status lines"));
    m_pSearch->setClearButtonEnabled(true);
    m_pHits->setMinimumWidth(m_pHits->fontMetrics().horizontalAdvance(tr("10000 hits")));
    auto* pRow = new QHBoxLayout;
    pRow->addWidget(m_pSearch, 1);
    pRow->addWidget(m_pHits);
    pRow->addWidget(m_pPrevious);
    pRow->addWidget(m_pNext);
    layout.addLayout(pRow);
    connect(m_pSearch, &QLineEdit::textChanged, this, &CStatusWindow::search);
    connect(m_pPrevious, &QPushButton::clicked, this, [this] { goToHit(-1); });
    connect(m_pNext, &QPushButton::clicked, this, [this] { goToHit(1); });
}

void CStatusWindow::makeButtonRow(QVBoxLayout& layout)
{
    auto* pRow = new QHBoxLayout;
    pRow->addWidget(m_pTimes);
    pRow->addStretch(1);
    pRow->addWidget(m_pCopy);
    pRow->addWidget(m_pCopyAll);
    pRow->addWidget(m_pClear);
    layout.addLayout(pRow);
    connect(m_pTimes, &QCheckBox::toggled, m_pLines, &CStatusLines::setTimesShown);
    connect(m_pCopy, &QPushButton::clicked, this, &CStatusWindow::copySelected);
    connect(m_pCopyAll, &QPushButton::clicked, this, &CStatusWindow::copyAll);
    connect(m_pClear, &QPushButton::clicked, this, &CStatusWindow::clear);
}

int CStatusWindow::lineCount() const
{
    return m_pLines->rowCount();
}

QString CStatusWindow::line(int nLine) const
{
    return m_pLines->line(nLine);
}

// Many lines may come at once: what depends on them is brought up to date once, after the last.
void CStatusWindow::addLine(const QString& sText)
{
    if (!m_settleTimer.isActive()) {
        const QScrollBar* pBar = m_pView->verticalScrollBar();
        m_bFollow = pBar->value() >= pBar->maximum();
        m_settleTimer.start();
    }
    for (const QString& sLine : sText.split(QLatin1Char('\n')))
        m_pLines->add(sLine);
}

void CStatusWindow::settle()
{
    if (m_bFollow)
        m_pView->scrollToBottom();
    showHits();
    enableButtons();
}

void CStatusWindow::clear()
{
    m_pLines->clear();
    settle();
}

void CStatusWindow::copySelected()
{
    QModelIndexList chosen = m_pView->selectionModel()->selectedRows();
    std::sort(chosen.begin(), chosen.end());
    QStringList lines;
    for (const QModelIndex& index : chosen)
        lines << index.data().toString();
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void CStatusWindow::copyAll()
{
    QStringList lines;
    for (int n = 0; n < lineCount(); ++n)
        lines << m_pLines->index(n).data().toString();
    QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void CStatusWindow::setTimesShown(bool bShown)
{
    m_pTimes->setChecked(bShown);
}

void CStatusWindow::search()
{
    m_pLines->setSought(m_pSearch->text());
    const int nFrom = m_pView->currentIndex().row();
    if (!m_pLines->isHit(nFrom))
        goToHit(-1);
    showHits();
    enableButtons();
}

void CStatusWindow::goToHit(int nStep)
{
    const QModelIndex current = m_pView->currentIndex();
    const int nFrom = current.isValid() ? current.row() : (nStep > 0 ? -1 : lineCount());
    const int nHit = m_pLines->nextHit(nFrom, nStep);
    if (nHit < 0)
        return;
    m_pView->selectionModel()->setCurrentIndex(m_pLines->index(nHit), QItemSelectionModel::ClearAndSelect);
    m_pView->scrollTo(m_pLines->index(nHit), QAbstractItemView::PositionAtCenter);
}

void CStatusWindow::showHits()
{
    const int nHits = m_pLines->hitCount();
    m_pHits->setText(m_pSearch->text().isEmpty() ? QString()
                     : nHits == 1                ? tr("1 hit")
                                                 : tr("%1 hits").arg(nHits));
}

void CStatusWindow::enableButtons()
{
    const bool bHits = m_pLines->nextHit(0, 1) >= 0;
    m_pPrevious->setEnabled(bHits);
    m_pNext->setEnabled(bHits);
    m_pCopy->setEnabled(m_pView->selectionModel()->hasSelection());
    m_pCopyAll->setEnabled(lineCount() > 0);
    m_pClear->setEnabled(lineCount() > 0);
    m_pEmpty->setVisible(lineCount() == 0);
}

void CStatusWindow::keyPressEvent(QKeyEvent* pEvent)
{
    const bool bInSearch = m_pSearch->hasFocus();
    const bool bEnter = pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
    const bool bShift = pEvent->modifiers().testFlag(Qt::ShiftModifier);
    if (pEvent->matches(QKeySequence::Find)) {
        m_pSearch->setFocus(Qt::ShortcutFocusReason);
        m_pSearch->selectAll();
    } else if (pEvent->key() == Qt::Key_F3 || (bEnter && bInSearch)) {
        goToHit(bShift ? -1 : 1);
    } else if (pEvent->matches(QKeySequence::Copy)) {
        copySelected();
    } else if (pEvent->key() == Qt::Key_Escape && bInSearch && !m_pSearch->text().isEmpty()) {
        m_pSearch->clear();
    } else if (pEvent->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(pEvent);
    }
}

void CStatusWindow::showEvent(QShowEvent* pEvent)
{
    QWidget::showEvent(pEvent);
    m_pView->scrollToBottom();
    emit shownChanged(true);
}

void CStatusWindow::hideEvent(QHideEvent* pEvent)
{
    QWidget::hideEvent(pEvent);
    emit shownChanged(false);
}

} // namespace velmora
