#pragma once

#include "pluginconstants.h"

#include <QWidget>

namespace velmora {

class CAlphaWheel;
class CLCDStrip;
class CPanelLabel;
class CRotaryWheel;

// The alpha wheel, the value knob beside it, and the LCD that shows the chosen item. [main]
class CAlphaWheelSection : public QWidget
{
    Q_OBJECT

  public:
    explicit CAlphaWheelSection(QWidget* pParent);

    void setWheel(CAlphaWheel* pWheel); // not owned; null for none
    void setLive(bool bLive);

    // Asks the wheel for its items anew, or only for the value of the current one.
    void showAll();
    void showItem();

    [[nodiscard]] CRotaryWheel& wheelKnob() { return *m_pWheelKnob; }
    [[nodiscard]] CRotaryWheel& valueKnob() { return *m_pValueKnob; }
    [[nodiscard]] CLCDStrip& lcd() { return *m_pLCD; }

  signals:
    void resetRequested(UINT uSlot); // the value knob was double-clicked

  protected:
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    CAlphaWheel* m_pWheel = nullptr;
    bool m_bLive = false;
    CLCDStrip* m_pLCD;
    CRotaryWheel* m_pWheelKnob;
    CRotaryWheel* m_pValueKnob;
    CPanelLabel* m_pWheelName;
    CPanelLabel* m_pValueName;
};

} // namespace velmora
