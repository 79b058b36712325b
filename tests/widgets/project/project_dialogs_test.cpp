#include "project/codegen/project_copy.h"
#include "project/user_variables.h"
#include "support/test_support.h"
#include "widgets/common/field_note.h"
#include "widgets/common/path_field.h"
#include "widgets/common/qt_text.h"
#include "widgets/project/save_as_dialog.h"
#include "widgets/project/save_preset_dialog.h"
#include "widgets/project/user_variable_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QTest>
#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace test;
using testing::ElementsAre;

// The small dialogs of the project, by keyboard.
class CRequestDialogTest : public testing::Test
{
  protected:
    void open(CRequestDialog& dialog)
    {
        m_pDialog = &dialog;
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }

    void type(int nField, const QString& sText)
    {
        auto* pField = m_pDialog->findChildren<QLineEdit*>().at(nField);
        pField->setFocus();
        pField->selectAll();
        QTest::keyClick(pField, Qt::Key_Delete);
        QTest::keyClicks(pField, sText);
    }

    void pressEnter() { QTest::keyClick(m_pDialog, Qt::Key_Return); }

    // OK is refused with the message, and the field is ready to be typed over.
    void expectRefused(int nField, const std::string& sMessage)
    {
        m_dialogs.m_messages.clear();
        pressEnter();
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(sMessage));
        EXPECT_TRUE(m_pDialog->isVisible());
        auto* pField = m_pDialog->findChildren<QLineEdit*>().at(nField);
        EXPECT_TRUE(pField->hasFocus());
        EXPECT_EQ(pField->selectedText(), pField->text());
    }

    // What is shown in red.
    [[nodiscard]] std::string errors() const
    {
        std::string sErrors;
        for (const auto* pNote : m_pDialog->findChildren<CFieldNote*>())
            if (pNote->isVisible() && pNote->isError())
                sErrors += pNote->text().toStdString();
        return sErrors;
    }

    CDSPProject m_project;
    CRecordingDialogs m_dialogs;
    CRequestDialog* m_pDialog = nullptr;
};

TEST_F(CRequestDialogTest, AddsAUserVariable)
{
    m_project.m_UIControlList.append(makeUserVariable(m_project, {1, "m_fOld", "0"}));
    CUserVariableDialog dialog(m_project, m_dialogs);
    std::vector<CUserVariableRequest> added;
    dialog.setAdd([&](const CUserVariableRequest& request) {
        added.push_back(request);
        return added.size() > 1;
    });
    open(dialog);
    EXPECT_EQ(errors(), ""); // nothing was typed yet
    expectRefused(0, "Variable name can not be blank.");
    struct CCase
    {
        const char* m_pName;
        const char* m_pValue;
        int m_nField;
        const char* m_pMessage;
    };
    for (const CCase& c : std::initializer_list<CCase>{
             {"m x", "1", 0,
              "Variable name can only contain letters, numbers and the underscore symbol, no spaces are "
              "allowed."},
             {"m_fOld", "1", 0, "Variable name is already in use as a user-variable."},
             {"m_fNew", "2.5x", 1, "Initial value must be numeric."}}) {
        type(0, c.m_pName);
        type(1, c.m_pValue);
        EXPECT_EQ(errors(), c.m_pMessage);
        expectRefused(c.m_nField, c.m_pMessage);
    }
    type(1, "-2");
    EXPECT_EQ(errors(), "");
    auto* pType = dialog.findChild<QComboBox*>();
    pType->setFocus();
    QTest::keyClicks(pType, "U");
    EXPECT_EQ(errors(), "Initial value must be non-negative for the UINT datatype.");
    type(1, " 2 ");
    pressEnter();
    EXPECT_TRUE(dialog.isVisible()); // refused by the function
    pressEnter();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    ASSERT_EQ(added.size(), 2U);
    EXPECT_EQ(added[1].m_uDataType, 3U);
    EXPECT_EQ(added[1].m_sName + added[1].m_sInitialValue, "m_fNew 2 ");
}

TEST_F(CRequestDialogTest, RemovesAUserVariable)
{
    const auto choice = [](QWidget& dialog) { return dialog.findChildren<QRadioButton*>().at(1); };
    {
        CUserVariableDialog empty(m_project, m_dialogs);
        EXPECT_EQ(empty.findChild<QListWidget*>()->item(0)->text(), "none yet declared");
        EXPECT_FALSE(choice(empty)->isEnabled());
    }
    for (const char* pName : {"m_fOne", "m_fTwo"})
        m_project.m_UIControlList.append(makeUserVariable(m_project, {1, pName, "0"}));
    CUserVariableDialog dialog(m_project, m_dialogs);
    std::string sRemoved;
    dialog.setRemove([&](const std::string& sName) {
        sRemoved = sName;
        return true;
    });
    open(dialog);
    choice(dialog)->click();
    auto* pList = dialog.findChild<QListWidget*>();
    pList->setFocus();
    QTest::keyClick(pList, Qt::Key_Down);
    pressEnter();
    EXPECT_EQ(sRemoved, "m_fTwo");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(CRequestDialogTest, SavesAPreset)
{
    EXPECT_EQ(CSavePresetDialog("Factory Preset", m_dialogs).name(), "");
    CSavePresetDialog dialog("Warm", m_dialogs);
    std::vector<std::string> names;
    dialog.setStore([&](const std::string& sName) {
        names.push_back(sName);
        QTest::keyClick(&dialog, Qt::Key_Escape); // meanwhile
        pressEnter();
        return names.size() > 1;
    });
    open(dialog);
    EXPECT_EQ(dialog.name(), "Warm");
    type(0, "  ");
    expectRefused(0, "Preset name can not be empty!");
    type(0, " Bright Lead ");
    pressEnter();
    EXPECT_TRUE(dialog.isVisible());
    pressEnter();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_THAT(names, ElementsAre("Bright Lead", "Bright Lead"));
}

TEST_F(CRequestDialogTest, SavesAProjectAs)
{
    const CTemporaryFolder folder;
    std::filesystem::create_directory(folder / "Taken");
    m_project.m_sProjectName = "Band";
    m_project.m_sProjectFolder = (folder / "Band").string();
    CSaveAsDialog dialog(m_project, m_dialogs);
    CProjectCopyRequest stored;
    dialog.setStore([&](const CProjectCopyRequest& request) {
        stored = request;
        return true;
    });
    open(dialog);
    EXPECT_EQ(dialog.request().m_parentFolder, folder.path());
    expectRefused(0, "New Project Name must be different from curent Project Name!");
    for (const auto& [pName, pMessage] :
         {std::pair{"", "New Project Name is empty!"}, {"Taken", "This project directory already exists."}}) {
        type(0, pName);
        EXPECT_EQ(errors(), pMessage);
        expectRefused(0, pMessage);
    }
    type(0, "My_Copy");
    EXPECT_THAT(errors(), testing::EndsWith("suggest using MyCopy instead."));
    type(0, "MyCopy");
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(dialog.findChild<CFieldNote*>()->text(), "New folder: " + pathText(folder / "MyCopy"));
    type(1, "");
    expectRefused(1, "Please choose the folder in which the new project's own is to be made.");
    type(1, pathText(folder.path()));
    dialog.findChildren<QCheckBox*>().at(1)->click();
    pressEnter();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(stored.m_parentFolder / stored.m_sProjectName, folder / "MyCopy");
    EXPECT_TRUE(stored.m_bOmitVSTLibraries && !stored.m_bCopyEntireFolder);
}

} // namespace
} // namespace velmora
