#include "widgets/panel/project_bar.h"

#include "widgets/common/lcd_strip.h"
#include "widgets/common/panel_button.h"
#include "widgets/common/panel_combo.h"
#include "widgets/panel/panel_banner.h"

namespace velmora {

namespace {

struct CButtonText
{
    const char* m_pText;
    const char* m_pToolTip;
};

constexpr std::array<CButtonText, 4> BUTTONS = {{
    {"Start Compiler", "Open the project in the chosen compiler"},
    {"Rebuild", "Write the code, build the plug-in, and watch the result"},
    {"Debug", "Start or stop the compiler's debugger"},
    {"Load", "Load the plug-in that was built, or unload it"},
}};

// Left edges of buttons, strip, banner, presets and their two buttons, in thousandths of the bar's width;
// each ends where the next one begins.
constexpr std::size_t PARTS = 9;
constexpr std::array<int, PARTS + 1> LEFT = {0, 90, 154, 224, 290, 424, 752, 892, 945, 1000};

} // namespace

CProjectBar::CProjectBar(QWidget* pParent)
    : QWidget(pParent), m_pStrip(nullptr), m_pBanner(nullptr), m_pPresets(nullptr), m_pSave(nullptr),
      m_pDelete(nullptr)
{
    for (std::size_t i = 0; i < m_buttons.size(); i++) {
        m_buttons[i] = new CPanelButton(this);
        m_buttons[i]->setText(QLatin1String(BUTTONS[i].m_pText));
        m_buttons[i]->setToolTip(QLatin1String(BUTTONS[i].m_pToolTip));
        m_buttons[i]->setAccessibleName(m_buttons[i]->text());
        const auto eButton = static_cast<EProjectButton>(i);
        connect(m_buttons[i], &CPanelButton::clicked, this,
                [this, eButton] { emit projectCommand(eButton); });
    }
    m_pStrip = new CLCDStrip(this);
    m_pStrip->setAccessibleName(QStringLiteral("Compiler"));
    m_pBanner = new CPanelBanner(this);
    m_pPresets = new CPanelCombo(this);
    m_pPresets->setAccessibleName(QStringLiteral("Presets"));
    m_pPresets->setLabel(QStringLiteral("Preset"));
    connect(m_pPresets, &CPanelCombo::chosen, this,
            [this](int nPreset) { emit presetSelected(m_pPresets->itemText(nPreset)); });
    m_pSave = new CPanelButton(this);
    m_pSave->setText(QStringLiteral("Save"));
    m_pSave->setAccessibleName(QStringLiteral("Save preset"));
    m_pSave->setToolTip(QStringLiteral("Save the present settings as a preset"));
    connect(m_pSave, &CPanelButton::clicked, this, &CProjectBar::presetSaveRequested);
    m_pDelete = new CPanelButton(this);
    m_pDelete->setText(QStringLiteral("Delete"));
    m_pDelete->setAccessibleName(QStringLiteral("Delete preset"));
    m_pDelete->setToolTip(QStringLiteral("Delete the chosen preset"));
    connect(m_pDelete, &CPanelButton::clicked, this, &CProjectBar::presetDeleteRequested);
    setPresets({}, -1);
    refresh();
}

CPanelButton& CProjectBar::button(EProjectButton eButton)
{
    return *m_buttons[static_cast<std::size_t>(eButton)];
}

void CProjectBar::setProjectName(const QString& sName)
{
    m_bProject = !sName.isEmpty();
    m_pBanner->setProjectName(sName);
    refresh();
}

void CProjectBar::setLoaded(bool bLoaded, const QString& sName)
{
    m_bLoaded = bLoaded;
    m_pBanner->setLoaded(bLoaded, sName);
    CPanelButton& load = button(EProjectButton::LoadOrUnload);
    load.setText(bLoaded ? QStringLiteral("Unload") : QStringLiteral("Load"));
    load.setAccessibleName(load.text());
    refresh();
}

void CProjectBar::setDebugging(bool bDebugging)
{
    CPanelButton& debug = button(EProjectButton::Debug);
    debug.setText(bDebugging ? QStringLiteral("Stop Debug") : QStringLiteral("Debug"));
    debug.setAccessibleName(debug.text());
}

void CProjectBar::setBusy(bool bBusy)
{
    m_bBusy = bBusy;
    refresh();
}

void CProjectBar::setBuilding(bool bBuilding)
{
    m_bBuilding = bBuilding;
    CPanelButton& rebuild = button(EProjectButton::Rebuild);
    rebuild.setText(bBuilding ? QStringLiteral("Cancel") : QStringLiteral("Rebuild"));
    rebuild.setAccessibleName(bBuilding ? QStringLiteral("Cancel the build") : rebuild.text());
    refresh();
}

void CProjectBar::setCompilerText(const QString& sLine1, const QString& sLine2)
{
    m_pStrip->setLines(sLine1, sLine2);
}

void CProjectBar::setPresets(const QStringList& names, int nCurrent)
{
    m_pPresets->setItems(names, nCurrent);
    refresh();
}

// The buttons keep answering without a project: the command then tells what is missing. Only a long command
// holds them back; a build can be ended by its own button.
void CProjectBar::refresh()
{
    for (CPanelButton* pButton : m_buttons) {
        pButton->setEnabled(!m_bBusy);
        pButton->setRole(ESlotRole::Assigned);
    }
    button(EProjectButton::Rebuild).setEnabled(!m_bBusy || m_bBuilding);
    button(EProjectButton::LoadOrUnload).setRole(m_bLoaded ? ESlotRole::Live : ESlotRole::Assigned);
    const bool bPresets = m_bProject && !m_bBusy;
    m_pPresets->setEnabled(bPresets && m_pPresets->count() > 0);
    m_pSave->setEnabled(bPresets);
    m_pDelete->setEnabled(bPresets && m_pPresets->count() > 0);
}

void CProjectBar::resizeEvent(QResizeEvent*)
{
    constexpr int GAP = 4;
    const std::array<QWidget*, PARTS> parts = {m_buttons[0], m_buttons[1], m_buttons[2],
                                               m_buttons[3], m_pStrip,     m_pBanner,
                                               m_pPresets,   m_pSave,      m_pDelete};
    for (std::size_t i = 0; i < parts.size(); i++) {
        const int nLeft = LEFT[i] * width() / LEFT[PARTS];
        const int nEnd = LEFT[i + 1] * width() / LEFT[PARTS] - (i + 1 < PARTS ? GAP : 0);
        parts[i]->setGeometry(nLeft, 0, nEnd - nLeft, height());
    }
}

} // namespace velmora
