#pragma once

#include <QRadioButton>

namespace velmora {

class CRadioBank;

// One row of a bank; it looks as the bank does. [main]
class CRadioBankButton : public QRadioButton
{
    Q_OBJECT

  public:
    static constexpr int INSET = 5; // logical pixels beside lamp and text

    explicit CRadioBankButton(CRadioBank& bank);

  protected:
    [[nodiscard]] bool hitButton(const QPoint& point) const override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

  private:
    [[nodiscard]] int lampSize() const;
    [[nodiscard]] QRectF textRect() const;

    CRadioBank& m_bank;
};

} // namespace velmora
