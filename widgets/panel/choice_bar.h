#pragma once

#include <QStringList>
#include <QWidget>
#include <vector>

class QButtonGroup;
class QRadioButton;

namespace velmora {

// Buttons side by side of which exactly one is pressed. One tab stop; the arrow keys choose. [main]
class CChoiceBar : public QWidget
{
    Q_OBJECT

  public:
    // sName: what is chosen here, for screen readers.
    CChoiceBar(const QString& sName, const QStringList& choices, QWidget* pParent = nullptr);

    void setCurrent(int nChoice); // silent
    [[nodiscard]] int current() const;

    [[nodiscard]] QSize sizeHint() const override;

  signals:
    void chosen(int nChoice); // by hand only

  protected:
    void changeEvent(QEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    QButtonGroup* m_pGroup;
    std::vector<QRadioButton*> m_buttons;
};

} // namespace velmora
