#pragma once

#include "panel/panel_meters.h"
#include "panel/panel_model.h"

#include <QStringList>
#include <QWidget>

namespace velmora {

class CAlphaWheel;
class CAlphaWheelSection;
class CDisplaySection;
class CGainSection;
class CInvitation;
class CPanelSlots;
class CProjectBar;
class CRoutingSection;

// The buttons of the project's own commands.
enum class EProjectButton
{
    StartCompiler,
    Rebuild,
    Debug,
    LoadOrUnload
};

// The prototype panel: the one form with a fixed place for every slot, and the fixed widgets around them. It
// shows what the model says and hands every move to the model; whatever needs a dialog, the compiler or the
// audio engine goes out as a signal. Setters never raise signals. [main]
class CPrototypePanel : public QWidget
{
    Q_OBJECT

  public:
    explicit CPrototypePanel(QWidget* pParent = nullptr);
    ~CPrototypePanel() override;

    // Both are not owned; null for none. The model's view passes slotChanged() on to showSlot(),
    // panelChanged() to showAll() and buttonChanged() to showButton().
    void setModel(CPanelModel* pModel);
    void setAlphaWheel(CAlphaWheel* pWheel);

    void showSlot(UINT uSlot);     // an item of the alpha wheel too
    void showAll();                // another project or filter, a control more or less
    void showButton(UINT uButton); // 50, 51, 52
    void showAlphaWheel();

    // At each tick of the meters' timer; only LEDs that change are painted.
    void showLevels(const CPanelMeters::CLevels& levels);

    void setGains(float fInputDB, float fOutputDB); // -60.0 to 12.0 dB
    void setRouting(int nCode);                     // 0 to 5
    void setDisplay(int nDisplay);                  // 0 scope, 1 log, 2 lin, 3 joystick
    void setSampleRate(double dRate);               // Hz, for the display; 0 for unknown
    void setCompilerText(const QString& sLine1, const QString& sLine2);
    void setPresets(const QStringList& names, int nCurrent); // -1 for none

    // Turns "Load" into "Unload" and the banner live, with the plug-in's name. The slots go by the model.
    void setLoaded(bool bLoaded, const QString& sName = {});
    void setProjectName(const QString& sName); // empty for none
    void setDebugging(bool bDebugging);        // "Debug" or "Stop Debug"
    void setBusy(bool bBusy);                  // a build runs: its buttons and the presets rest
    void setBuilding(bool bBuilding);          // the button that began it ends it

    [[nodiscard]] int routing() const;
    [[nodiscard]] int display() const;
    [[nodiscard]] QSize sizeHint() const override;

    // Puts the focus where work begins: on the invitation, else on the sliders.
    void focusFirst();

    // Takes over what is being typed into a slider slot's value box. False for a slot without one.
    bool commitValue(UINT uSlot);

    // Puts the focus on the value box of a slider slot, or of the next one that takes text, its text
    // selected.
    void selectValue(UINT uSlot);
    void selectNextValue(UINT uSlot);

  signals:
    // The slot's properties are asked for: right button, Menu key, Shift+F10, or "Click to Setup". Whether it
    // may be done now is the receiver's to say; only the right button is silent without a project.
    void setupRequested(UINT uSlot);
    void alphaWheelSetupRequested();
    void assignableSetupRequested();

    void gainChanged(int nFader, float fDB); // 0 input, 1 output
    void routingChanged(int nCode);
    void displayChanged(int nDisplay);
    void projectCommand(velmora::EProjectButton eButton);
    void presetSelected(const QString& sName);
    void presetSaveRequested();
    void presetDeleteRequested();
    void newProjectRequested();
    void openProjectRequested();

  protected:
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;

  private:
    void connectSections();
    void arrange();
    bool requestSetup(const QPoint& point);
    bool requestSetupOfFocus();

    CPanelModel* m_pModel = nullptr;
    CPanelSlots* m_pSlots = nullptr;
    CGainSection* m_gains[2] = {};
    CRoutingSection* m_pRouting = nullptr;
    CDisplaySection* m_pDisplay = nullptr;
    CAlphaWheelSection* m_pAlphaWheel = nullptr;
    CProjectBar* m_pProjectBar = nullptr;
    CInvitation* m_pInvitation = nullptr;
};

} // namespace velmora
