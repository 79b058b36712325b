#include "widgets/common/progress_box.h"

#include "widgets/common/progress_panel.h"
#include "widgets/common/qt_text.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <algorithm>
#include <cmath>
#include <thread>

namespace velmora {

namespace {

constexpr int SERVING_PERIOD_MS = 10; // reports that come closer together are only answered

} // namespace

CProgressBox::CProgressBox(const QString& sText, QWidget* pWindow) : m_sText(sText), m_pWindow(pWindow)
{
    m_endTimer.setSingleShot(true);
    m_endTimer.setInterval(0);
    connect(&m_endTimer, &QTimer::timeout, this, &CProgressBox::end);
}

CProgressBox::~CProgressBox()
{
    end();
}

void CProgressBox::setText(const QString& sText)
{
    m_sText = sText;
    if (m_pPanel)
        m_pPanel->setText(sText);
}

bool CProgressBox::isShown() const
{
    return m_pPanel && m_pPanel->isVisible();
}

void CProgressBox::cancel()
{
    m_bCancelled = true;
    if (m_pLoop)
        m_pLoop->quit();
}

void CProgressBox::begin()
{
    m_endTimer.stop();
    if (m_since.isValid())
        return;
    m_since.start();
    m_bCancelled = false;
}

// Until the box stands above the windows, clicks and keys wait: they must not begin another command.
void CProgressBox::showWhenDue()
{
    if (m_since.elapsed() < DELAY_MS || isShown() || m_bCancelled)
        return;
    m_pPanel = new CProgressPanel(m_pWindow);
    m_pPanel->setText(m_sText);
    m_pPanel->setPercent(m_nPercent);
    connect(m_pPanel, &CProgressPanel::cancelled, this, &CProgressBox::cancel);
    m_pPanel->show();
}

bool CProgressBox::report(double fDone)
{
    if (m_bServing)
        return !m_bCancelled;
    begin();
    if (!m_served.isValid() || m_served.hasExpired(SERVING_PERIOD_MS)) {
        m_nPercent = static_cast<int>(std::lround(std::clamp(fDone, 0.0, 1.0) * 100.0));
        showWhenDue();
        if (m_pPanel)
            m_pPanel->setPercent(m_nPercent);
        m_bServing = true;
        QCoreApplication::processEvents(isShown() ? QEventLoop::AllEvents
                                                  : QEventLoop::ExcludeUserInputEvents);
        m_bServing = false;
        m_served.start();
    }
    m_endTimer.start();
    return !m_bCancelled;
}

bool CProgressBox::wait(std::chrono::milliseconds duration, std::string_view sFor)
{
    if (m_bServing) {
        std::this_thread::sleep_for(duration);
        return !m_bCancelled;
    }
    begin();
    m_nPercent = -1;
    if (!sFor.empty())
        setText(qs(sFor));
    m_bServing = true;
    QElapsedTimer waited;
    waited.start();
    for (qint64 nLeft = duration.count(); nLeft > 0 && !m_bCancelled;
         nLeft = duration.count() - waited.elapsed()) {
        showWhenDue();
        const qint64 nUntilShown = std::max<qint64>(1, DELAY_MS - m_since.elapsed());
        QEventLoop loop;
        m_pLoop = &loop;
        QTimer::singleShot(isShown() ? nLeft : std::min(nLeft, nUntilShown), &loop, &QEventLoop::quit);
        loop.exec(isShown() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
        m_pLoop = nullptr;
    }
    m_bServing = false;
    m_endTimer.start();
    return !m_bCancelled;
}

void CProgressBox::end()
{
    if (m_pPanel)
        delete m_pPanel;
    m_since.invalidate();
    m_served.invalidate();
    m_nPercent = -1;
}

} // namespace velmora
