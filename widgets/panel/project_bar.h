#pragma once

#include "widgets/panel/prototype_panel.h"

#include <array>

namespace velmora {

class CLCDStrip;
class CPanelBanner;
class CPanelButton;
class CPanelCombo;

// The line across the top: the project's buttons, the compiler's strip, the banner, and the presets. [main]
class CProjectBar : public QWidget
{
    Q_OBJECT

  public:
    explicit CProjectBar(QWidget* pParent);

    void setProjectName(const QString& sName);
    void setLoaded(bool bLoaded, const QString& sName);
    void setDebugging(bool bDebugging);
    void setBusy(bool bBusy);
    void setBuilding(bool bBuilding); // "Rebuild" reads "Cancel" and can be pressed
    void setCompilerText(const QString& sLine1, const QString& sLine2);
    void setPresets(const QStringList& names, int nCurrent);

    [[nodiscard]] CPanelButton& button(EProjectButton eButton);
    [[nodiscard]] CPanelCombo& presets() { return *m_pPresets; }
    [[nodiscard]] CLCDStrip& strip() { return *m_pStrip; }
    [[nodiscard]] const CPanelBanner& banner() const { return *m_pBanner; }

  signals:
    void projectCommand(velmora::EProjectButton eButton);
    void presetSelected(const QString& sName);
    void presetSaveRequested();
    void presetDeleteRequested();

  protected:
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    void refresh();

    std::array<CPanelButton*, 4> m_buttons{};
    CLCDStrip* m_pStrip;
    CPanelBanner* m_pBanner;
    CPanelCombo* m_pPresets;
    CPanelButton* m_pSave;
    CPanelButton* m_pDelete;
    bool m_bProject = false;
    bool m_bLoaded = false;
    bool m_bBusy = false;
    bool m_bBuilding = false;
};

} // namespace velmora
