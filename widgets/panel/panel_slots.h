#pragma once

#include "panel/panel_meters.h"
#include "panel/panel_model.h"
#include "widgets/common/slot_control.h"
#include "widgets/panel/panel_layout.h"

#include <QObject>
#include <array>
#include <map>

class QWidget;

namespace velmora {

class CPanelButton;
class CSliderCell;
class CSlotCell;
class CSlotFocus;

// All slots of the form between the model and their widgets: what the model says is shown, what a hand does
// is handed to it. [main]
class CPanelSlots : public QObject
{
    Q_OBJECT

  public:
    explicit CPanelSlots(QWidget* pForm);

    // Makes the widgets of a part; the order of the calls is that of the Tab key.
    void create(EPanelPart ePart);
    void arrange(const QSize& form);

    void setModel(CPanelModel* pModel) { m_pModel = pModel; }
    [[nodiscard]] CPanelModel* model() const { return m_pModel; }

    void showAll();
    void showSlot(UINT uSlot);
    void showButton(UINT uButton); // 50, 51, 52
    void showLevels(const CPanelMeters::CLevels& levels);

    [[nodiscard]] CSlotCell* cell(UINT uSlot) const; // null for a slot without one
    [[nodiscard]] CPanelButton* button(UINT uButton) const;
    bool commitValue(UINT uSlot);
    void selectValue(UINT uSlot);
    void selectNextValue(UINT uSlot);

    // What the Tab key leads to in a part.
    [[nodiscard]] QWidget* stop(EPanelPart ePart) const;

  signals:
    void setupRequested(UINT uSlot);

  protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

  private:
    void createCells(const CPanelPlace& place);
    void createButtons();
    void connectCell(CSlotCell* pCell);
    void enterText(CSlotCell* pCell, const QString& sText);
    [[nodiscard]] ESlotRole roleOf(bool bAssigned) const;
    [[nodiscard]] CSliderCell* usedSlider(UINT uSlot) const; // null for any other slot

    struct CGroup
    {
        EPanelPart m_ePart;
        std::vector<CSlotCell*> m_cells;
        CSlotFocus* m_pFocus;
    };

    QWidget* m_pForm;
    CPanelModel* m_pModel = nullptr;
    std::map<UINT, CSlotCell*> m_cells;
    std::vector<CGroup> m_groups;
    std::array<CPanelButton*, 3> m_buttons{};
};

} // namespace velmora
