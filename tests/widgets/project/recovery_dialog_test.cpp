#include "document/autosave.h"
#include "widgets/project/recovery_dialog.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(CRecoveryDialog, ShowsWhatDiffersAndTakesAnAnswer)
{
    CRecovery recovery;
    recovery.m_project = "Tape/Tape.prj";
    recovery.m_time = std::filesystem::file_time_type::clock::now();
    recovery.m_differences = {"Control 3 \"Cutoff\" was added.", "The company's name changed."};
    const struct
    {
        Qt::Key m_key;
        Qt::KeyboardModifier m_modifier;
        ERecoveryAnswer m_eAnswer;
    } rows[] = {
        {Qt::Key_Return, Qt::NoModifier, ERecoveryAnswer::Recover},
        {Qt::Key_Escape, Qt::NoModifier, ERecoveryAnswer::Later},
        {Qt::Key_R, Qt::AltModifier, ERecoveryAnswer::Recover},
        {Qt::Key_K, Qt::AltModifier, ERecoveryAnswer::KeepSaved},
        {Qt::Key_L, Qt::AltModifier, ERecoveryAnswer::Later},
    };
    for (const auto& row : rows) {
        CRecoveryDialog dialog(recovery);
        const auto* pList = dialog.findChild<QListWidget*>();
        ASSERT_EQ(pList->count(), 2);
        EXPECT_EQ(pList->item(1)->text().toStdString(), recovery.m_differences[1]);
        EXPECT_TRUE(dialog.findChild<QLabel*>()->text().contains("the project Tape was open"));
        QTimer::singleShot(0, &dialog, [&] {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
            QTest::keyClick(dialog.focusWidget(), row.m_key, row.m_modifier);
            QTimer::singleShot(2000, &dialog, [&] {
                ADD_FAILURE() << "The key does nothing: " << row.m_key;
                dialog.reject();
            });
        });
        EXPECT_EQ(static_cast<int>(dialog.ask()), static_cast<int>(row.m_eAnswer)) << row.m_key;
    }
}

} // namespace
} // namespace velmora
