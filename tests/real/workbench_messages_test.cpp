#include "document/project_commands.h"
#include "project/compiler/compiler_table.h"
#include "real/workbench.h"
#include "widgets/common/panel_combo.h"

#include <QTabBar>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

constexpr const char* NO_PROJECT = "Open or Create a new Project first!";
constexpr const char* NO_BUILT_PROJECT = "Open an existing, compiled Project first!";
constexpr const char* NO_EXISTING_PROJECT = "Open an existing Project first!";
constexpr const char* NO_COMPILER = "Compiler is not alive/available yet.";
constexpr const char* NO_PLUG_IN = "Load the project's plug-in first.";
constexpr const char* NO_DESIGNER = "You must load your plug-in before using the GUI Designer.";

class WorkbenchMessages : public ::testing::Test
{
  protected:
    using Action = std::function<void()>;

    Action rightClick(const char* pName)
    {
        return [this, pName] { m_hand.click(named(m_workbench.panel(), pName, true), Qt::RightButton); };
    }
    Action menuKey(const char* pName)
    {
        return [this, pName] {
            named(m_workbench.panel(), pName, true).setFocus();
            m_hand.key(Qt::Key_F10, Qt::ShiftModifier);
        };
    }
    Action setUpCombo(const char* pName)
    {
        return [this, pName] {
            m_hand.choose(named<CPanelCombo>(m_workbench.panel(), pName, true), "Click to Setup");
        };
    }
    Action button(const char* pName)
    {
        return [this, pName] { m_workbench.clickOnPanel(pName); };
    }
    Action command(const char* pMenu, const char* pEntry)
    {
        return [this, pMenu, pEntry] { m_workbench.choose({pMenu, pEntry}); };
    }
    Action designerTab()
    {
        return [this] {
            auto& tabs = named<QTabBar>(m_workbench.frame(), "Views");
            m_hand.clickAt(tabs, tabs.tabRect(1).center());
        };
    }

    struct CCase
    {
        std::string m_sWhat;
        Action m_act;
        QString m_sText;
    };

    void tells(const std::vector<CCase>& cases)
    {
        for (const CCase& expected : cases) {
            SCOPED_TRACE(expected.m_sWhat);
            EXPECT_EQ(m_hand.answer(expected.m_act).toStdString(), expected.m_sText.toStdString());
            EXPECT_EQ(m_workbench.frame().currentTab(), EMainTab::Prototype);
        }
    }

    CWorkbench m_workbench;
    CHand& m_hand = m_workbench.hand();
};

TEST_F(WorkbenchMessages, TellWhatIsMissing)
{
    tells({
        {"slider", menuKey("Slider 0, empty"), NO_PROJECT},
        {"bank", menuKey("Bank 0, empty"), NO_PROJECT},
        {"switch", menuKey("Switch 1, empty"), NO_PROJECT},
        {"meter", menuKey("Meter 0, empty"), NO_PROJECT},
        {"free combo", setUpCombo("Combo CMBO1, empty"), NO_PROJECT},
        {"joystick's combo", setUpCombo("Combo A, empty"), NO_PROJECT},
        {"alpha wheel", menuKey("Alpha wheel"), NO_PROJECT},
        {"assignable button", menuKey("Button B1"), NO_PROJECT},
        {"start", button("Start Compiler"), NO_BUILT_PROJECT},
        {"rebuild", button("Rebuild"), NO_BUILT_PROJECT},
        {"debug", button("Debug"), NO_BUILT_PROJECT},
        {"load", button("Load"), NO_BUILT_PROJECT},
        {"edit project", command("File", "Edit Project"), NO_EXISTING_PROJECT},
        {"save as", command("File", "Save Project As"), NO_PROJECT},
        {"clear", command("File", "Clear Project"), NO_PROJECT},
        {"import", command("File", "Import UI Controls"), NO_PROJECT},
        {"save preset", command("PlugIn", "Save Preset"), NO_PROJECT},
        {"delete preset", command("PlugIn", "Delete Preset"), NO_PROJECT},
        {"synchronise", command("PlugIn", "Synchronize Code"), NO_BUILT_PROJECT},
        {"user variables", command("PlugIn", "Add/Remove User Variable"), NO_PROJECT},
        {"designer", designerTab(), NO_DESIGNER},
    });

    m_workbench.createProject("Empty");
    tells({
        {"save preset", button("Save preset"), NO_PLUG_IN},
        {"designer", designerTab(), NO_DESIGNER},
    });

    ASSERT_TRUE(m_workbench.view().commands().compilers().choose(CODE_BLOCKS_ID));
    tells({
        {"slider", rightClick("Slider 0, empty"), NO_COMPILER},
        {"combo", setUpCombo("Combo CMBO1, empty"), NO_COMPILER},
        {"alpha wheel", rightClick("Alpha wheel"), NO_COMPILER},
        {"assignable button", rightClick("Button B1"), NO_COMPILER},
    });
}

} // namespace
} // namespace velmora::test
