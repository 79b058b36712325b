#pragma once

#include <QWidget>
#include <optional>

namespace velmora {

class CDSPFilterControl;
class COscillator;
class CTrackBar;
class CValueBox;

// One number of the oscillator: its name, a slider, a box to type into, and its units. What is typed goes
// through the oscillator's own control, which knows the limits. [main]
class COscParameterRow : public QWidget
{
    Q_OBJECT

  public:
    // uParameter is an EOscillatorParameter. pName is what assistive programs read where the control's own
    // name would be ambiguous.
    COscParameterRow(COscillator& oscillator, unsigned uParameter, const char* pName, QWidget* pParent);

    // Shows what the oscillator is set to.
    void refresh();

    // A text as a person types it; one without a number changes nothing.
    void enter(const QString& sText);

    [[nodiscard]] CTrackBar& trackBar() { return *m_pTrackBar; }
    [[nodiscard]] CValueBox& valueBox() { return *m_pValue; }

  private:
    [[nodiscard]] unsigned controlId() const;
    [[nodiscard]] const CDSPFilterControl& control() const;
    [[nodiscard]] std::optional<double> logarithmOfRange() const; // none where the slider is linear
    [[nodiscard]] int positionOf(float fValue) const;
    void move(int nPosition);
    void resetToDefault();

    COscillator& m_oscillator;
    unsigned m_uParameter;
    CTrackBar* m_pTrackBar;
    CValueBox* m_pValue;
};

} // namespace velmora
