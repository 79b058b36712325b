#pragma once

#include "widgets/common/accessible_instrument.h"
#include "widgets/common/slot_control.h"

#include <QComboBox>

namespace velmora {

// A drop-down list of the panel with its label in front. While it stands for nothing it has one entry,
// "Click to Setup", and choosing that asks for the set-up. Enter, Space and Alt+Down open the list. [main]
class CPanelCombo : public CSlotControl<QComboBox>, public IAccessibleInstrument
{
    Q_OBJECT

  public:
    explicit CPanelCombo(QWidget* pParent = nullptr);

    // Drawn inside the control, before the value.
    void setLabel(const QString& sLabel);
    [[nodiscard]] const QString& label() const { return m_sLabel; }

    // The entries; silent. An item of -1 shows none.
    void setItems(const QStringList& items, int nItem);
    void setSelected(int nItem);

    // The state without a control.
    void setSetupState();
    [[nodiscard]] bool isSetupState() const { return m_bSetupState; }

    [[nodiscard]] QAccessible::Role accessibleRole() const override;
    [[nodiscard]] QString accessibleFallbackName() const override { return m_sLabel; }
    [[nodiscard]] QString accessibleValueText() const override { return currentText(); }
    [[nodiscard]] bool hasAccessibleMenu() const override { return true; }
    void showAccessibleMenu() override { showPopup(); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  signals:
    // By a hand only.
    void chosen(int nItem);
    void setupRequested();

  protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;

  private:
    [[nodiscard]] int labelWidth() const;
    void fill(const QStringList& items, int nItem);

    QString m_sLabel;
    bool m_bSetupState = false;
};

} // namespace velmora
