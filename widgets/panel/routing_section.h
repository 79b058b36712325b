#pragma once

#include <QWidget>

namespace velmora {

class CChoiceBar;
class CPanelLabel;

// The FX routing: insert or auxiliary, and the channels. [main]
class CRoutingSection : public QWidget
{
    Q_OBJECT

  public:
    explicit CRoutingSection(QWidget* pParent);

    // 0 to 5; silent, and nothing for another code.
    void setCode(int nCode);
    [[nodiscard]] int code() const;

  signals:
    void changed(int nCode); // by hand only

  protected:
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    CPanelLabel* m_pCaption;
    CChoiceBar* m_pFX;
    CChoiceBar* m_pChannels;
};

} // namespace velmora
