#pragma once

#include "widgets/common/accessible_instrument.h"
#include "widgets/common/slot_control.h"

namespace velmora {

class CTrackBar;

// A gain fader from -60 dB to +12 dB with its scale and the gain in figures below. Keys and wheel as a track
// bar, but Home leads to the top and End to the bottom; double-click and Delete set 0 dB. [main]
class CFader : public CSlotControl<QWidget>, public IAccessibleInstrument
{
    Q_OBJECT

  public:
    explicit CFader(QWidget* pParent = nullptr);

    // In dB, limited to the range; silent.
    void setGain(float fGain);
    [[nodiscard]] float gain() const { return m_fGain; }

    // Counted from the top: 0 is +12 dB, 256 is -60 dB.
    [[nodiscard]] int faderPosition() const;

    // Above the fader; also its name.
    void setLabel(const QString& sLabel);
    [[nodiscard]] const QString& label() const { return m_sLabel; }

    // The moving part: it has the focus, and assistive programs read its range in dB.
    [[nodiscard]] CTrackBar& trackBar() { return *m_pTrackBar; }

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] QString accessibleFallbackName() const override;
    [[nodiscard]] QString accessibleValueText() const override; // such as "-6.0 dB"

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  signals:
    // By a hand only; in dB.
    void gainChanged(float fGain);

  protected:
    void lookChanged() override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

  private:
    friend class CFaderTrack;

    void place();
    void take(double dGain); // by a hand
    [[nodiscard]] QFont scaleFont() const;

    CTrackBar* m_pTrackBar;
    QString m_sLabel;
    float m_fGain = 0.0F;
};

} // namespace velmora
