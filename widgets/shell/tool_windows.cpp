#include "widgets/shell/tool_windows.h"

#include "document/tonbox_doc.h"
#include "widgets/analyzer/block_diagram_dialog.h"
#include "widgets/audio/osc_dialog.h"
#include "widgets/audio/sidechain_input_dlg.h"
#include "widgets/audio/sound_card_dialog.h"
#include "widgets/common/message_dialogs.h"
#include "widgets/shell/about_dialog.h"
#include "widgets/shell/audio_commands.h"
#include "widgets/shell/status_window.h"

#include <QEvent>

namespace velmora {

CToolWindows::CToolWindows(const CParts& parts)
    : m_parts(parts), m_pStatus(prepare(std::make_unique<CStatusWindow>(parts.m_pParent)))
{
    connect(&parts.m_dialogs, &CMessageDialogs::noted, m_pStatus.get(), &CStatusWindow::addLine);
}

CToolWindows::~CToolWindows() = default;

// A window of its own above the main one, whose coming and going the menu's check marks follow.
template <typename TWindow>
std::unique_ptr<TWindow> CToolWindows::prepare(std::unique_ptr<TWindow> pWindow)
{
    pWindow->setWindowFlag(Qt::Tool);
    pWindow->installEventFilter(this);
    return pWindow;
}

bool CToolWindows::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Show || pEvent->type() == QEvent::Hide)
        QMetaObject::invokeMethod(this, &CToolWindows::shownChanged, Qt::QueuedConnection);
    return QObject::eventFilter(pWatched, pEvent);
}

QWidget* CToolWindows::find(EToolWindow eWindow) const
{
    switch (eWindow) {
    case EToolWindow::Oscillator:
        return m_pOscillator.get();
    case EToolWindow::Sidechain:
        return m_pSidechain.get();
    case EToolWindow::BlockDiagram:
        return m_pBlockDiagram.get();
    case EToolWindow::Status:
        return m_pStatus.get();
    }
    return nullptr;
}

COscDialog& CToolWindows::oscillator()
{
    if (!m_pOscillator)
        m_pOscillator = prepare(std::make_unique<COscDialog>(m_parts.m_document.oscillator(),
                                                             m_parts.m_document.transport(),
                                                             m_parts.m_dialogs, m_parts.m_pParent));
    return *m_pOscillator;
}

void CToolWindows::make(EToolWindow eWindow)
{
    CTonboxDoc& document = m_parts.m_document;
    if (eWindow == EToolWindow::Oscillator)
        static_cast<void>(oscillator());
    if (eWindow == EToolWindow::Sidechain)
        m_pSidechain = prepare(std::make_unique<SidechainInputDlg>(
            document.sidechain(), document.audioEngine(), document.transportState(), m_parts.m_dialogs,
            m_parts.m_pParent));
    if (eWindow == EToolWindow::BlockDiagram) {
        m_pBlockDiagram = prepare(std::make_unique<CBlockDiagramDialog>(m_parts.m_pParent));
        m_pBlockDiagram->setFilter(m_pFilter);
    }
}

void CToolWindows::show(EToolWindow eWindow, bool bShow)
{
    if (bShow && !find(eWindow))
        make(eWindow);
    QWidget* pWindow = find(eWindow);
    if (!pWindow)
        return;
    pWindow->setVisible(bShow);
    if (bShow) {
        pWindow->raise();
        pWindow->activateWindow();
    }
}

bool CToolWindows::isShown(EToolWindow eWindow) const
{
    const QWidget* pWindow = find(eWindow);
    return pWindow && pWindow->isVisible();
}

void CToolWindows::tick()
{
    if (m_pOscillator && m_pOscillator->isVisible())
        m_pOscillator->tick();
    if (m_pSidechain && m_pSidechain->isVisible())
        m_pSidechain->tick();
}

void CToolWindows::setFilter(CDSPFilter* pFilter)
{
    m_pFilter = pFilter;
    if (m_pBlockDiagram)
        m_pBlockDiagram->setFilter(pFilter);
}

void CToolWindows::refreshBlockDiagram()
{
    if (m_pBlockDiagram && m_pBlockDiagram->isVisible())
        m_pBlockDiagram->refresh();
}

void CToolWindows::startOscillator()
{
    oscillator().startOscillator();
}

void CToolWindows::stopOscillator()
{
    oscillator().stopOscillator();
}

void CToolWindows::setOscillatorFrequency(double dHz)
{
    oscillator().setFrequencyFromOutside(dHz);
}

void CToolWindows::setUpSoundCard()
{
    CTonboxDoc& document = m_parts.m_document;
    CSoundCardDialog dialog({document.audioDevices(), document.settings(), document.settingsFile(),
                             document.transportState(), m_parts.m_dialogs,
                             [&document] { stopAudio(document); }},
                            m_parts.m_pParent);
    dialog.exec();
}

void CToolWindows::about()
{
    CAboutDialog(m_parts.m_pParent).exec();
}

} // namespace velmora
