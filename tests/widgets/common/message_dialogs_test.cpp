#include "support/test_support.h"
#include "widgets/common/message_dialogs.h"
#include "widgets/common/path_field.h"
#include "widgets/common/qt_text.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace velmora {
namespace {

// Does something with the next modal box, which must come.
class CBoxHandler
{
  public:
    explicit CBoxHandler(std::function<void(QWidget&)> handle)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this, handle = std::move(handle)] {
            QWidget* pBox = QApplication::activeModalWidget();
            if (pBox && pBox->isActiveWindow()) { // before, it takes no keys
                m_timer.stop();
                handle(*pBox);
            }
        });
        m_timer.start(5);
    }
    ~CBoxHandler() { EXPECT_FALSE(m_timer.isActive()) << "no box came"; }

  private:
    QTimer m_timer;
};

TEST(MessageDialogs, ShowTextsAsTheyStandAboveTheActiveWindow)
{
    CMessageDialogs dialogs;
    QWidget main;
    dialogs.setMainWindow(&main);
    const std::string sText = "A <b>list</b>:\n\n\t{SEL1,SEL2}";
    const auto expectBox = [&](QWidget& widget) {
        auto* pBox = qobject_cast<QMessageBox*>(&widget);
        ASSERT_TRUE(pBox);
        EXPECT_EQ(pBox->windowTitle(), "Velmora");
        EXPECT_EQ(utf8(pBox->text()), sText);
        EXPECT_EQ(pBox->textFormat(), Qt::PlainText);
        EXPECT_EQ(pBox->parentWidget(), &main);
    };
    {
        const CBoxHandler handler([&](QWidget& box) {
            expectBox(box);
            QTest::keyClick(&box, Qt::Key_Return);
        });
        dialogs.showMessage(sText);
    }
    struct CCase
    {
        bool (CMessageDialogs::*m_pAsk)(std::string_view);
        Qt::Key m_eKey;
        bool m_bAnswer;
    };
    for (const CCase& item : {CCase{&CMessageDialogs::askYesNo, Qt::Key_Y, true},
                              CCase{&CMessageDialogs::askYesNo, Qt::Key_N, false},
                              CCase{&CMessageDialogs::askOKCancel, Qt::Key_Return, true},
                              CCase{&CMessageDialogs::askOKCancel, Qt::Key_Escape, false}}) {
        const CBoxHandler handler([&](QWidget& box) {
            expectBox(box);
            QTest::keyClick(&box, item.m_eKey, item.m_eKey > Qt::Key_Z ? Qt::NoModifier : Qt::AltModifier);
        });
        EXPECT_EQ((dialogs.*item.m_pAsk)(sText), item.m_bAnswer);
    }
}

TEST(MessageDialogs, ReadTheFilters)
{
    const std::vector<std::pair<const char*, const char*>> cases{
        {"Wave Files (*.wav)|*.wav||", "Wave Files (*.wav)"},
        {"Audio|*.wav;*.aif|All Files (*.*)|*.*||", "Audio (*.wav *.aif);;All Files (*)"},
        {"Broken", ""},
        {"", ""},
    };
    for (const auto& [pFilter, pExpected] : cases)
        EXPECT_EQ(CMessageDialogs::filterList(pFilter), pExpected);
}

TEST(MessageDialogs, ChooseFilesAndRememberWhereTheyWere)
{
    const test::CTemporaryFolder folder;
    test::writeFile(folder / "one.wav", "x");
    CMessageDialogs dialogs;
    const auto answer = [](const std::string& sName, QString* pFolder) {
        return [sName, pFolder](QWidget& widget) {
            auto& chooser = dynamic_cast<QFileDialog&>(widget);
            if (pFolder)
                *pFolder = chooser.directory().absolutePath();
            if (sName.empty())
                return chooser.reject();
            chooser.findChild<QLineEdit*>()->setText(qs(sName));
            QTest::keyClick(chooser.findChild<QLineEdit*>(), Qt::Key_Return);
        };
    };
    constexpr const char* FILTER = "Wave Files (*.wav)|*.wav||";
    {
        const CBoxHandler handler(answer("one.wav", nullptr));
        EXPECT_EQ(dialogs.chooseOpenFile(FILTER, folder.path()), folder / "one.wav");
    }
    QString sOpened;
    {
        const CBoxHandler handler(answer("", &sOpened));
        EXPECT_EQ(dialogs.chooseOpenFile(FILTER), std::nullopt);
    }
    EXPECT_EQ(sOpened, pathText(folder.path())) << "the folder of the last choice with this filter";
    {
        const CBoxHandler handler(answer("two", nullptr));
        EXPECT_EQ(dialogs.chooseSaveFile(FILTER, folder / "test.wav"), folder / "two.wav");
    }
    {
        const CBoxHandler handler([](QWidget& box) {
            EXPECT_EQ(box.windowTitle(), "Where the projects go");
            dynamic_cast<QFileDialog&>(box).reject();
        });
        EXPECT_EQ(dialogs.chooseFolder("Where the projects go", folder.path()), std::nullopt);
    }
}

TEST(MessageDialogs, NotesOfOtherThreadsArriveOnTheMainThread)
{
    CMessageDialogs dialogs;
    QStringList lines;
    QObject::connect(&dialogs, &CMessageDialogs::noted, [&lines](const QString& sText) {
        EXPECT_EQ(QThread::currentThread(), qApp->thread());
        lines << sText;
    });
    dialogs.note("one");
    std::thread([&dialogs] { dialogs.note("two \xC3\xA4"); }).join();
    EXPECT_EQ(lines, QStringList{"one"});
    QApplication::processEvents();
    EXPECT_EQ(lines, (QStringList{"one", QString::fromUtf8("two \xC3\xA4")}));
}

TEST(PathField, BrowsesForAFileOrFolderThroughTheDialogs)
{
    test::CRecordingDialogs dialogs;
    CPathField field(dialogs);
    field.setName("Project folder");
    QStringList edits;
    QObject::connect(&field, &CPathField::edited, [&edits](const QString& sPath) { edits << sPath; });
    auto* pButton = field.findChild<QPushButton*>();
    field.setText("/start");
    QTest::keyClick(&field.line(), Qt::Key_X);
    QTest::mouseClick(pButton, Qt::LeftButton); // the recorder cancels folders
    EXPECT_EQ(field.text(), "/startx");
    field.useFile("Wave Files (*.wav)|*.wav||");
    dialogs.m_openFile = "/chosen.wav";
    QTest::mouseClick(pButton, Qt::LeftButton);
    EXPECT_EQ(edits, (QStringList{"/startx", "/chosen.wav"}));
    EXPECT_EQ(field.line().accessibleName(), "Project folder");
    EXPECT_EQ(pButton->accessibleName(), "Browse for Project folder");
}

} // namespace
} // namespace velmora
