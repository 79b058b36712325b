#pragma once

#include <QWidget>
#include <array>

namespace velmora {

class CFader;
class CLEDMeter;
class CPanelLabel;

// A gain fader with the two level meters of its side. [main]
class CGainSection : public QWidget
{
    Q_OBJECT

  public:
    CGainSection(const QString& sLabel, QWidget* pParent);

    void setLevels(float fLeft, float fRight); // 0.0 (-60 dB) to 1.0 (0 dB)

    [[nodiscard]] CFader& fader() { return *m_pFader; }
    [[nodiscard]] CLEDMeter& meter(std::size_t uSide) { return *m_sides.at(uSide).m_pMeter; }

  protected:
    void changeEvent(QEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    void place();

    struct CSide
    {
        CLEDMeter* m_pMeter;
        CPanelLabel* m_pName;
    };

    CPanelLabel* m_pLabel;
    CFader* m_pFader;
    std::array<CSide, 2> m_sides;
};

} // namespace velmora
