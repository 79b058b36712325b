#include "widgets/panel/panel_slots.h"

#include "project/control_slots.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/panel_button.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/value_box.h"
#include "widgets/panel/meter_cell.h"
#include "widgets/panel/slider_cell.h"
#include "widgets/panel/slot_focus.h"

#include <QKeyEvent>
#include <algorithm>

namespace velmora {

namespace {

constexpr UINT FIRST_BUTTON = 50;

} // namespace

CPanelSlots::CPanelSlots(QWidget* pForm) : QObject(pForm), m_pForm(pForm) {}

void CPanelSlots::create(EPanelPart ePart)
{
    if (ePart == EPanelPart::AssignableButtons)
        createButtons();
    else
        createCells(panelPlace(ePart));
}

void CPanelSlots::createCells(const CPanelPlace& place)
{
    CGroup group{place.m_ePart, {}, nullptr};
    for (int i = 0; i < place.m_nCount; i++) {
        const UINT uSlot = place.m_uFirstSlot + static_cast<UINT>(i);
        CSlotCell* pCell = makeSlotCell(findControlSlots(uSlot)->m_eForm, uSlot, m_pForm);
        connectCell(pCell);
        group.m_cells.push_back(pCell);
        m_cells[uSlot] = pCell;
    }
    group.m_pFocus = new CSlotFocus(group.m_cells, place.m_nColumns, this);
    m_groups.push_back(std::move(group));
}

void CPanelSlots::createButtons()
{
    for (std::size_t i = 0; i < m_buttons.size(); i++) {
        const UINT uButton = FIRST_BUTTON + static_cast<UINT>(i);
        m_buttons[i] = new CPanelButton(m_pForm);
        connect(m_buttons[i], &CPanelButton::clicked, this, [this, uButton] {
            if (m_pModel)
                m_pModel->pressButton(uButton);
            showButton(uButton);
        });
    }
}

void CPanelSlots::connectCell(CSlotCell* pCell)
{
    const UINT uSlot = pCell->slot();
    connect(pCell, &CSlotCell::moved, this, [this, uSlot](int nPos) {
        if (m_pModel)
            m_pModel->moveSlider(uSlot, nPos);
    });
    connect(pCell, &CSlotCell::resetRequested, this, [this, uSlot] {
        if (m_pModel)
            m_pModel->resetSlider(uSlot);
    });
    connect(pCell, &CSlotCell::textEntered, this,
            [this, pCell](const QString& sText) { enterText(pCell, sText); });
    // A choice that the model does not take is taken back.
    connect(pCell, &CSlotCell::itemChosen, this, [this, uSlot](int nItem) {
        if (m_pModel && !m_pModel->selectItem(uSlot, nItem))
            showSlot(uSlot);
    });
    connect(pCell, &CSlotCell::setupRequested, this, [this, uSlot] { emit setupRequested(uSlot); });
    if (auto* pSlider = qobject_cast<CSliderCell*>(pCell))
        pSlider->valueBox().installEventFilter(this);
}

// What was typed is replaced by what became of it, also when that is nothing.
void CPanelSlots::enterText(CSlotCell* pCell, const QString& sText)
{
    if (m_pModel)
        m_pModel->enterText(pCell->slot(), utf8(sText));
    showSlot(pCell->slot());
}

// Enter leads on to the next box once the box has committed.
bool CPanelSlots::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::KeyPress) {
        const int nKey = static_cast<QKeyEvent*>(pEvent)->key();
        const auto* pCell = qobject_cast<CSliderCell*>(pWatched->parent());
        if (pCell && (nKey == Qt::Key_Return || nKey == Qt::Key_Enter)) {
            const UINT uSlot = pCell->slot();
            QMetaObject::invokeMethod(
                this, [this, uSlot] { selectNextValue(uSlot); }, Qt::QueuedConnection);
        }
    }
    return QObject::eventFilter(pWatched, pEvent);
}

CSliderCell* CPanelSlots::usedSlider(UINT uSlot) const
{
    auto* pSlider = qobject_cast<CSliderCell*>(cell(uSlot));
    return pSlider && !pSlider->valueBox().isHidden() ? pSlider : nullptr;
}

bool CPanelSlots::commitValue(UINT uSlot)
{
    CSliderCell* pSlider = usedSlider(uSlot);
    if (pSlider)
        pSlider->valueBox().commit();
    return pSlider != nullptr;
}

void CPanelSlots::selectValue(UINT uSlot)
{
    if (CSliderCell* pSlider = usedSlider(uSlot))
        pSlider->editValue();
}

void CPanelSlots::selectNextValue(UINT uSlot)
{
    const UINT uSliders = static_cast<UINT>(panelPlace(EPanelPart::Sliders).m_nCount);
    for (UINT u = 1; u <= uSliders; u++) {
        auto* pSlider = qobject_cast<CSliderCell*>(cell((uSlot + u) % uSliders));
        if (pSlider && pSlider->isWritable()) {
            pSlider->editValue();
            return;
        }
    }
}

void CPanelSlots::arrange(const QSize& form)
{
    for (const CGroup& group : m_groups) {
        for (std::size_t i = 0; i < group.m_cells.size(); i++)
            group.m_cells[i]->setGeometry(panelRect(group.m_ePart, static_cast<int>(i), form));
    }
    for (std::size_t i = 0; i < m_buttons.size(); i++) {
        if (m_buttons[i])
            m_buttons[i]->setGeometry(panelRect(EPanelPart::AssignableButtons, static_cast<int>(i), form));
    }
}

void CPanelSlots::showAll()
{
    for (const auto& [uSlot, pCell] : m_cells)
        showSlot(uSlot);
    for (UINT u = 0; u < m_buttons.size(); u++)
        showButton(FIRST_BUTTON + u);
    if (!m_pModel)
        return;
    // The Tab key stops at slots that are in use.
    for (const CGroup& group : m_groups) {
        const auto isUsed = [this](const CSlotCell* pCell) {
            return m_pModel->state(pCell->slot()).m_bAssigned;
        };
        const auto found = std::ranges::find_if(group.m_cells, isUsed);
        if (found != group.m_cells.end() && !isUsed(group.m_pFocus->stop()))
            group.m_pFocus->setStop(*found);
    }
}

void CPanelSlots::showSlot(UINT uSlot)
{
    CSlotCell* pCell = cell(uSlot);
    if (!pCell)
        return;
    const CPanelSlotState state = m_pModel ? m_pModel->state(uSlot) : emptySlotState(uSlot, false);
    pCell->showState(state, roleOf(state.m_bAssigned));
    const bool bFree = m_pModel && m_pModel->project() && !m_pModel->filter() && !state.m_bAssigned;
    pCell->setToolTip(bFree ? QStringLiteral("Free: right-click or press Shift+F10 to set it up")
                            : QString());
}

void CPanelSlots::showButton(UINT uButton)
{
    CPanelButton* pButton = button(uButton);
    if (!pButton)
        return;
    const QString sCaption = QStringLiteral("B%1").arg(uButton - FIRST_BUTTON + 1);
    const QString sText = m_pModel ? qs(m_pModel->buttonText(uButton)) : sCaption;
    const bool bLive = m_pModel && m_pModel->isPlugInLoaded() && !m_pModel->isModule();
    const bool bNamed = !sText.isEmpty() && sText != sCaption;
    pButton->setRole(bLive ? ESlotRole::Live : bNamed ? ESlotRole::Assigned : ESlotRole::Empty);
    pButton->setKind(m_pModel && m_pModel->isButtonLatching(uButton) ? EButtonKind::Latching
                                                                     : EButtonKind::Push);
    pButton->setText(sText.isEmpty() ? sCaption : sText);
    pButton->setChecked(m_pModel && m_pModel->buttonState(uButton));
    pButton->setAccessibleName(sText == sCaption ? QStringLiteral("Button ") + sCaption
                                                 : QStringLiteral("Button %1: %2").arg(sCaption, sText));
}

void CPanelSlots::showLevels(const CPanelMeters::CLevels& levels)
{
    for (std::size_t i = 0; i < CPanelMeters::SLOTS; i++) {
        auto* pCell = static_cast<CMeterCell*>(cell(CPanelMeters::FIRST_SLOT + static_cast<UINT>(i)));
        if (pCell)
            pCell->meter().setLevel(levels[CPanelMeters::FIXED + i]);
    }
}

CSlotCell* CPanelSlots::cell(UINT uSlot) const
{
    const auto found = m_cells.find(uSlot);
    return found == m_cells.end() ? nullptr : found->second;
}

CPanelButton* CPanelSlots::button(UINT uButton) const
{
    const UINT uIndex = uButton - FIRST_BUTTON;
    return uIndex < m_buttons.size() ? m_buttons[uIndex] : nullptr;
}

QWidget* CPanelSlots::stop(EPanelPart ePart) const
{
    return std::ranges::find(m_groups, ePart, &CGroup::m_ePart)->m_pFocus->stop()->focusTarget();
}

ESlotRole CPanelSlots::roleOf(bool bAssigned) const
{
    if (!bAssigned)
        return ESlotRole::Empty;
    return m_pModel->filter() ? ESlotRole::Live : ESlotRole::Assigned;
}

} // namespace velmora
