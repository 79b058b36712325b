#pragma once

#include "base/text.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "support/test_support.h"
#include "widgets/common/property_grid.h"
#include "widgets/panel/control_props_dialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gmock/gmock.h>

namespace velmora::test {

// A project to which dialogs store directly.
struct CDialogProject : CDSPProject
{
    CDialogProject() { m_sProjectName = "Band"; }

    const CUICtrl* add(UINT uId, const char* pName, const char* pVariable, const char* pList = "")
    {
        CControlEdit edit = newControlEdit(*this, uId);
        edit.m_sName = pName;
        edit.m_sVariableName = pVariable;
        if (*pList) {
            edit.m_sEnumeratedList = pList;
            edit.m_record.uUserDataType = UINTData;
        }
        const CControlCheck check = checkControl(*this, edit, nullptr);
        EXPECT_EQ(check.m_sMessage, "");
        storeControl(*this, check);
        return at(uId);
    }

    [[nodiscard]] CUICtrl* at(UINT uId) const { return findControl(m_UIControlList, uId); }

    void connect(CControlPropsDialog& dialog)
    {
        dialog.setStore([this](const CControlEdit& edit, bool bNew) {
            m_bNew = bNew;
            if (m_bStores)
                storeControl(*this, checkControl(*this, edit, at(edit.m_record.uControlId)));
            return m_bStores;
        });
        dialog.setRemove([this](UINT uId) { return m_bStores && m_UIControlList.remove(uId); });
    }

    bool m_bStores = true; // what store and remove answer
    bool m_bNew = false;
};

// The button or label with that text, mnemonics apart; null if none is visible.
template <typename TWidget>
TWidget* withText(const QWidget& window, const QString& sText)
{
    for (TWidget* pWidget : window.findChildren<TWidget*>())
        if (pWidget->text().remove(QLatin1Char('&')) == sText && pWidget->isVisible())
            return pWidget;
    return nullptr;
}

inline void click(const QWidget& window, const QString& sText)
{
    auto* pButton = withText<QAbstractButton>(window, sText);
    ASSERT_TRUE(pButton) << sText.toStdString();
    QTest::mouseClick(pButton, Qt::LeftButton, {}, QPoint(8, pButton->height() / 2));
}

inline void pressOK(const QWidget& window)
{
    QTest::mouseClick(window.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

// Types into a row without committing it.
inline void type(CControlPropsDialog& dialog, int nRow, const QString& sText)
{
    dialog.grid().select(nRow);
    auto* pEditor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_TRUE(pEditor && dialog.grid().isAncestorOf(pEditor)) << nRow;
    QTest::keyClick(pEditor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(pEditor, sText);
}

inline void enter(CControlPropsDialog& dialog, int nRow, const QString& sText)
{
    type(dialog, nRow, sText);
    dialog.grid().commit();
}

// Chooses an entry of a row's list.
inline void choose(CControlPropsDialog& dialog, int nRow, const QString& sChoice)
{
    dialog.grid().select(nRow);
    auto* pBox = qobject_cast<QComboBox*>(QApplication::focusWidget());
    ASSERT_TRUE(pBox && dialog.grid().isAncestorOf(pBox)) << nRow;
    pBox->setCurrentText(sChoice);
    dialog.grid().commit();
}

} // namespace velmora::test
