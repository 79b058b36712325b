#include "widgets/panel/prototype_panel.h"

#include "widgets/common/fader.h"
#include "widgets/common/theme.h"
#include "widgets/panel/alpha_wheel_section.h"
#include "widgets/panel/display_section.h"
#include "widgets/panel/gain_section.h"
#include "widgets/panel/invitation.h"
#include "widgets/panel/panel_layout.h"
#include "widgets/panel/panel_slots.h"
#include "widgets/panel/project_bar.h"
#include "widgets/panel/routing_section.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QWheelEvent>
#include <algorithm>

namespace velmora {

// The order in which the parts are made is that of the Tab key.
CPrototypePanel::CPrototypePanel(QWidget* pParent) : QWidget(pParent), m_pSlots(new CPanelSlots(this))
{
    setMinimumSize(PANEL_SMALLEST_SIZE);
    setAccessibleName(QStringLiteral("Prototype panel"));
    m_pInvitation = new CInvitation(this);
    m_pProjectBar = new CProjectBar(this);
    m_gains[0] = new CGainSection(QStringLiteral("Input / Send"), this);
    m_pSlots->create(EPanelPart::Sliders);
    m_gains[1] = new CGainSection(QStringLiteral("Output / Return"), this);
    for (const EPanelPart ePart : {EPanelPart::Banks, EPanelPart::Switches, EPanelPart::FreeCombos,
                                   EPanelPart::Meters, EPanelPart::AssignableButtons})
        m_pSlots->create(ePart);
    m_pDisplay = new CDisplaySection(this);
    m_pSlots->create(EPanelPart::JoystickCombos);
    m_pAlphaWheel = new CAlphaWheelSection(this);
    m_pRouting = new CRoutingSection(this);
    m_pInvitation->raise();

    connectSections();
    connect(&CTheme::instance(), &CTheme::changed, this, [this] { arrange(); });
    showAll();
}

CPrototypePanel::~CPrototypePanel() = default;

void CPrototypePanel::connectSections()
{
    connect(m_pSlots, &CPanelSlots::setupRequested, this, &CPrototypePanel::setupRequested);
    for (int i = 0; i < 2; i++)
        connect(&m_gains[i]->fader(), &CFader::gainChanged, this,
                [this, i](float fGain) { emit gainChanged(i, fGain); });
    connect(m_pRouting, &CRoutingSection::changed, this, &CPrototypePanel::routingChanged);
    connect(m_pDisplay, &CDisplaySection::changed, this, &CPrototypePanel::displayChanged);
    connect(m_pAlphaWheel, &CAlphaWheelSection::resetRequested, this, [this](UINT uSlot) {
        if (m_pModel)
            m_pModel->resetSlider(uSlot);
        m_pAlphaWheel->showItem();
    });
    connect(m_pProjectBar, &CProjectBar::projectCommand, this, &CPrototypePanel::projectCommand);
    connect(m_pProjectBar, &CProjectBar::presetSelected, this, &CPrototypePanel::presetSelected);
    connect(m_pProjectBar, &CProjectBar::presetSaveRequested, this, &CPrototypePanel::presetSaveRequested);
    connect(m_pProjectBar, &CProjectBar::presetDeleteRequested, this,
            &CPrototypePanel::presetDeleteRequested);
    connect(m_pInvitation, &CInvitation::newProjectRequested, this, &CPrototypePanel::newProjectRequested);
    connect(m_pInvitation, &CInvitation::openProjectRequested, this, &CPrototypePanel::openProjectRequested);
}

void CPrototypePanel::setModel(CPanelModel* pModel)
{
    m_pModel = pModel;
    m_pSlots->setModel(pModel);
    showAll();
}

void CPrototypePanel::setAlphaWheel(CAlphaWheel* pWheel)
{
    m_pAlphaWheel->setWheel(pWheel);
}

void CPrototypePanel::showSlot(UINT uSlot)
{
    if (m_pSlots->cell(uSlot))
        m_pSlots->showSlot(uSlot);
    else
        m_pAlphaWheel->showItem();
}

void CPrototypePanel::showAll()
{
    m_pSlots->showAll();
    m_pAlphaWheel->setLive(m_pModel && m_pModel->filter());
    m_pAlphaWheel->showAll();
    const bool bIdle = !m_pModel || (!m_pModel->project() && !m_pModel->filter());
    m_pInvitation->setVisible(bIdle);
}

void CPrototypePanel::showButton(UINT uButton)
{
    m_pSlots->showButton(uButton);
}

void CPrototypePanel::showAlphaWheel()
{
    m_pAlphaWheel->showAll();
}

void CPrototypePanel::showLevels(const CPanelMeters::CLevels& levels)
{
    m_gains[0]->setLevels(levels[METER_INPUT_LEFT], levels[METER_INPUT_RIGHT]);
    m_gains[1]->setLevels(levels[METER_OUTPUT_LEFT], levels[METER_OUTPUT_RIGHT]);
    m_pDisplay->setLevel(std::max(levels[METER_OUTPUT_LEFT], levels[METER_OUTPUT_RIGHT]));
    m_pSlots->showLevels(levels);
}

void CPrototypePanel::setGains(float fInputDB, float fOutputDB)
{
    m_gains[0]->fader().setGain(fInputDB);
    m_gains[1]->fader().setGain(fOutputDB);
}

void CPrototypePanel::setRouting(int nCode)
{
    m_pRouting->setCode(nCode);
}

int CPrototypePanel::routing() const
{
    return m_pRouting->code();
}

void CPrototypePanel::setDisplay(int nDisplay)
{
    m_pDisplay->setDisplay(nDisplay);
}

int CPrototypePanel::display() const
{
    return m_pDisplay->display();
}

void CPrototypePanel::setSampleRate(double dRate)
{
    m_pDisplay->setSampleRate(dRate);
}

void CPrototypePanel::setCompilerText(const QString& sLine1, const QString& sLine2)
{
    m_pProjectBar->setCompilerText(sLine1, sLine2);
}

void CPrototypePanel::setPresets(const QStringList& names, int nCurrent)
{
    m_pProjectBar->setPresets(names, nCurrent);
}

void CPrototypePanel::setLoaded(bool bLoaded, const QString& sName)
{
    m_pProjectBar->setLoaded(bLoaded, sName);
}

void CPrototypePanel::setProjectName(const QString& sName)
{
    m_pProjectBar->setProjectName(sName);
    m_pDisplay->setProjectName(sName);
}

void CPrototypePanel::setDebugging(bool bDebugging)
{
    m_pProjectBar->setDebugging(bDebugging);
}

void CPrototypePanel::setBuilding(bool bBuilding)
{
    m_pProjectBar->setBuilding(bBuilding);
}

void CPrototypePanel::setBusy(bool bBusy)
{
    m_pProjectBar->setBusy(bBusy);
}

void CPrototypePanel::focusFirst()
{
    QWidget* pFirst =
        m_pInvitation->isHidden() ? m_pSlots->stop(EPanelPart::Sliders) : &m_pInvitation->newProject();
    pFirst->setFocus(Qt::OtherFocusReason);
}

bool CPrototypePanel::commitValue(UINT uSlot)
{
    return m_pSlots->commitValue(uSlot);
}

void CPrototypePanel::selectValue(UINT uSlot)
{
    m_pSlots->selectValue(uSlot);
}

void CPrototypePanel::selectNextValue(UINT uSlot)
{
    m_pSlots->selectNextValue(uSlot);
}

QSize CPrototypePanel::sizeHint() const
{
    return {1280, 760};
}

// By keyboard the focused slot is meant, wherever the mouse is.
void CPrototypePanel::contextMenuEvent(QContextMenuEvent* pEvent)
{
    const bool bProject = m_pModel && m_pModel->project();
    if (pEvent->reason() == QContextMenuEvent::Keyboard)
        pEvent->setAccepted(requestSetupOfFocus());
    else
        pEvent->setAccepted(!bProject || requestSetup(pEvent->pos()));
}

void CPrototypePanel::keyPressEvent(QKeyEvent* pEvent)
{
    const bool bMenu = pEvent->key() == Qt::Key_F10 && pEvent->modifiers() == Qt::ShiftModifier;
    if (!bMenu || !requestSetupOfFocus())
        QWidget::keyPressEvent(pEvent);
}

bool CPrototypePanel::requestSetupOfFocus()
{
    const QWidget* pFocus = focusWidget();
    return pFocus && pFocus != this && requestSetup(pFocus->mapTo(this, pFocus->rect().center()));
}

bool CPrototypePanel::requestSetup(const QPoint& point)
{
    const bool bCovered = m_pInvitation->isVisible() && m_pInvitation->geometry().contains(point);
    const auto hit = bCovered ? std::nullopt : panelHit(point, size());
    if (!hit)
        return false;
    if (hit->m_ePart == EPanelPart::AlphaWheel)
        emit alphaWheelSetupRequested();
    else if (hit->m_ePart == EPanelPart::AssignableButtons)
        emit assignableSetupRequested();
    else
        emit setupRequested(hit->m_uSlot);
    return true;
}

void CPrototypePanel::resizeEvent(QResizeEvent*)
{
    arrange();
}

void CPrototypePanel::arrange()
{
    setFont(CTheme::font(panelFontFactor(size())));
    const auto place = [this](QWidget* pWidget, EPanelPart ePart) {
        pWidget->setGeometry(panelRect(ePart, 0, size()));
    };
    place(m_pProjectBar, EPanelPart::ProjectBar);
    place(m_gains[0], EPanelPart::InputGain);
    place(m_gains[1], EPanelPart::OutputGain);
    place(m_pDisplay, EPanelPart::Display);
    place(m_pAlphaWheel, EPanelPart::AlphaWheel);
    place(m_pRouting, EPanelPart::Routing);
    place(m_pInvitation, EPanelPart::Invitation);
    m_pSlots->arrange(size());
}

// Only the frames behind the parts; a meter's tick does not come here, since meters cover what they paint.
void CPrototypePanel::paintEvent(QPaintEvent* pEvent)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.fillRect(pEvent->rect(), colours.m_window);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours.m_line, 1.0));
    painter.setBrush(colours.m_panel);
    for (const CPanelPlace& part : panelPlaces()) {
        const QRect frame = panelRect(part.m_ePart, 0, size());
        if (part.isGroup() && frame.intersects(pEvent->rect()))
            painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), CTheme::RADIUS,
                                    CTheme::RADIUS);
    }
}

// The wheel moves what it stands over, and nothing else.
void CPrototypePanel::wheelEvent(QWheelEvent* pEvent)
{
    pEvent->accept();
}

} // namespace velmora
