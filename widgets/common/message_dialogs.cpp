#include "widgets/common/message_dialogs.h"

#include "widgets/common/qt_text.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>

namespace velmora {

namespace {

// How a chooser is opened; the answer is a path or empty.
struct CChooserPlan
{
    QString m_sTitle;
    QFileDialog::FileMode m_eMode;
    QFileDialog::AcceptMode m_eAccept;
    QString m_sFolder;
    QString m_sName;
    QString m_sFilters;
};

QString choose(const CChooserPlan& plan, QWidget* pParent)
{
    const QPointer<QFileDialog> pChooser = new QFileDialog(pParent, plan.m_sTitle, plan.m_sFolder);
    pChooser->setAcceptMode(plan.m_eAccept);
    pChooser->setFileMode(plan.m_eMode);
    pChooser->setOption(QFileDialog::ShowDirsOnly, plan.m_eMode == QFileDialog::Directory);
    if (!plan.m_sFilters.isEmpty())
        pChooser->setNameFilters(plan.m_sFilters.split(QStringLiteral(";;")));
    if (!plan.m_sName.isEmpty())
        pChooser->selectFile(plan.m_sName);

    // A name that is typed without an ending gets that of the filter.
    static const QRegularExpression ending(QStringLiteral("\\*\\.([A-Za-z0-9_]+)"));
    if (const auto match = ending.match(plan.m_sFilters); match.hasMatch())
        pChooser->setDefaultSuffix(match.captured(1));
    QString sChosen;
    if (pChooser->exec() == QDialog::Accepted && pChooser && !pChooser->selectedFiles().isEmpty())
        sChosen = pChooser->selectedFiles().constFirst();
    delete pChooser;
    return sChosen;
}

// Qt wraps early: a box becomes as wide as its lines, up to a width that is still easy to read.
void giveRoom(QMessageBox& box)
{
    constexpr int ICON_ROOM = 90;
    const QFontMetrics metrics = box.fontMetrics();
    const int nWidth =
        std::min(metrics.size(Qt::TextExpandTabs, box.text()).width(), metrics.averageCharWidth() * 84);
    if (auto* pGrid = qobject_cast<QGridLayout*>(box.layout()))
        pGrid->addItem(new QSpacerItem(nWidth + ICON_ROOM, 0, QSizePolicy::Minimum, QSizePolicy::Fixed),
                       pGrid->rowCount(), 0, 1, pGrid->columnCount());
}

std::optional<std::filesystem::path> answerOf(const QString& sChosen)
{
    if (sChosen.isEmpty())
        return std::nullopt;
    return pathOf(sChosen);
}

} // namespace

CMessageDialogs::CMessageDialogs(QObject* pParent) : QObject(pParent) {}

void CMessageDialogs::setMainWindow(QWidget* pWindow)
{
    m_pMain = pWindow;
}

QWidget* CMessageDialogs::activeWindow() const
{
    for (QWidget* pWindow : {QApplication::activeModalWidget(), QApplication::activeWindow()})
        if (pWindow && pWindow->isVisible() &&
            (pWindow->windowType() == Qt::Window || pWindow->windowType() == Qt::Dialog ||
             pWindow->windowType() == Qt::Tool))
            return pWindow;
    return m_pMain;
}

QMessageBox::StandardButton CMessageDialogs::ask(std::string_view sText, QMessageBox::Icon eIcon,
                                                 QMessageBox::StandardButtons buttons)
{
    const QPointer<QMessageBox> pBox =
        new QMessageBox(eIcon, QStringLiteral("Velmora"), QString(), buttons, activeWindow());
    pBox->setTextFormat(Qt::PlainText);
    pBox->setTextInteractionFlags(Qt::TextSelectableByMouse);
    pBox->setText(qs(sText));
    giveRoom(*pBox);
    const int nAnswer = pBox->exec();
    delete pBox;
    return static_cast<QMessageBox::StandardButton>(nAnswer);
}

void CMessageDialogs::showMessage(std::string_view sText)
{
    ask(sText, QMessageBox::Information, QMessageBox::Ok);
}

bool CMessageDialogs::askYesNo(std::string_view sText)
{
    return ask(sText, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

bool CMessageDialogs::askOKCancel(std::string_view sText)
{
    return ask(sText, QMessageBox::Question, QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}

QString CMessageDialogs::filterList(std::string_view sFilter)
{
    const QStringList parts = qs(sFilter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype n = 0; n + 1 < parts.size(); n += 2) {
        const QString& sName = parts[n];
        QString sPatterns = parts[n + 1];
        if (sName.isEmpty() || sPatterns.isEmpty())
            continue;
        sPatterns.replace(QLatin1Char(';'), QLatin1Char(' '))
            .replace(QStringLiteral("*.*"), QStringLiteral("*"));
        const qsizetype nBracket = sName.lastIndexOf(QStringLiteral(" ("));
        filters << (nBracket > 0 ? sName.left(nBracket) : sName) + QStringLiteral(" (") + sPatterns +
                       QLatin1Char(')');
    }
    return filters.join(QStringLiteral(";;"));
}

QString CMessageDialogs::startFolder(const QString& sKey, const std::filesystem::path& wanted) const
{
    const QFileInfo folder(pathText(wanted));
    if (!wanted.empty() && folder.isDir())
        return folder.absoluteFilePath();
    return m_lastFolders.value(sKey);
}

std::optional<std::filesystem::path>
CMessageDialogs::chooseSaveFile(std::string_view sFilter, const std::filesystem::path& suggestedName)
{
    const QString sKey = qs(sFilter);
    const QString sChosen = choose({.m_sTitle = tr("Save As"),
                                    .m_eMode = QFileDialog::AnyFile,
                                    .m_eAccept = QFileDialog::AcceptSave,
                                    .m_sFolder = startFolder(sKey, suggestedName.parent_path()),
                                    .m_sName = pathText(suggestedName.filename()),
                                    .m_sFilters = filterList(sFilter)},
                                   activeWindow());
    if (!sChosen.isEmpty())
        m_lastFolders[sKey] = QFileInfo(sChosen).absolutePath();
    return answerOf(sChosen);
}

std::optional<std::filesystem::path> CMessageDialogs::chooseOpenFile(std::string_view sFilter,
                                                                     const std::filesystem::path& folder)
{
    const QString sKey = qs(sFilter);
    const QString sChosen = choose({.m_sTitle = tr("Open"),
                                    .m_eMode = QFileDialog::ExistingFile,
                                    .m_eAccept = QFileDialog::AcceptOpen,
                                    .m_sFolder = startFolder(sKey, folder),
                                    .m_sName = {},
                                    .m_sFilters = filterList(sFilter)},
                                   activeWindow());
    if (!sChosen.isEmpty())
        m_lastFolders[sKey] = QFileInfo(sChosen).absolutePath();
    return answerOf(sChosen);
}

std::optional<std::filesystem::path> CMessageDialogs::chooseFolder(std::string_view sTitle,
                                                                   const std::filesystem::path& folder)
{
    const QString sKey = qs(sTitle);
    const QString sChosen = choose({.m_sTitle = sTitle.empty() ? tr("Choose a Folder") : sKey,
                                    .m_eMode = QFileDialog::Directory,
                                    .m_eAccept = QFileDialog::AcceptOpen,
                                    .m_sFolder = startFolder(sKey, folder),
                                    .m_sName = {},
                                    .m_sFilters = {}},
                                   activeWindow());
    if (!sChosen.isEmpty())
        m_lastFolders[sKey] = sChosen;
    return answerOf(sChosen);
}

void CMessageDialogs::note(std::string_view sText)
{
    QMetaObject::invokeMethod(this, [this, sLine = qs(sText)] { emit noted(sLine); });
}

} // namespace velmora
