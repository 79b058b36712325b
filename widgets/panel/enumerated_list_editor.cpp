#include "widgets/panel/enumerated_list_editor.h"

#include "base/platform_file_read.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "widgets/common/field_note.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

namespace velmora {

namespace {

constexpr std::size_t MAX_IMPORT_BYTES = 65536;

int heightOfLines(const QWidget& widget, int nLines)
{
    return widget.fontMetrics().lineSpacing() * nLines + 12;
}

// One entry a line. An underscore stands for each blank inside an entry, as in names of the code.
std::string listOfLines(std::string_view sText)
{
    if (sText.starts_with("\xEF\xBB\xBF"))
        sText.remove_prefix(3);
    std::string sList;
    for (const std::string& sLine : split(sText, '\n')) {
        std::string sEntry(trimmed(sLine));
        std::ranges::replace(sEntry, ' ', '_');
        if (!sEntry.empty())
            sList += (sList.empty() ? "" : ",") + sEntry;
    }
    return sList;
}

} // namespace

CEnumeratedListEditor::CEnumeratedListEditor(IUserDialogs& dialogs, QWidget* pParent)
    : QWidget(pParent), m_dialogs(dialogs), m_pLists(new QListWidget),
      m_pShareButton(new QPushButton(tr("&Use Existing String List"))),
      m_pImportButton(new QPushButton(tr("&Import .txt"))), m_pEdit(new QPlainTextEdit),
      m_pNote(new CFieldNote(nullptr, this)), m_pMaximumNote(new CFieldNote(nullptr, this)),
      m_pError(new CFieldNote(m_pEdit, this))
{
    m_pLists->setAccessibleName(tr("Existing enum Lists"));
    m_pLists->setSpacing(1);
    m_pLists->setTextElideMode(Qt::ElideRight);
    m_pLists->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pLists->setMinimumHeight(heightOfLines(*m_pLists, 3));
    m_pShareButton->setCheckable(true);
    m_pShareButton->setAutoDefault(false);
    m_pImportButton->setAutoDefault(false);
    m_pImportButton->hide();
    m_pEdit->setAccessibleName(tr("This enum List"));
    m_pEdit->setTabChangesFocus(true);
    m_pEdit->setMinimumHeight(heightOfLines(*m_pEdit, 2));
    m_pEdit->setMaximumHeight(heightOfLines(*m_pEdit, 4));
    m_pEdit->installEventFilter(this);

    auto* pListsLabel = new QLabel(tr("E&xisting enum Lists"));
    pListsLabel->setBuddy(m_pLists);
    auto* pEditLabel = new QLabel(tr("&This enum List"));
    pEditLabel->setBuddy(m_pEdit);
    auto* pButtons = new QHBoxLayout;
    pButtons->addWidget(m_pShareButton);
    pButtons->addWidget(m_pImportButton);
    pButtons->addStretch();

    auto* pColumn = new QVBoxLayout(this);
    pColumn->setContentsMargins(0, 0, 0, 0);
    pColumn->setSpacing(CTheme::SPACING / 2);
    pColumn->addWidget(pListsLabel);
    pColumn->addWidget(m_pLists, 1);
    pColumn->addLayout(pButtons);
    pColumn->addSpacing(CTheme::SPACING);
    pColumn->addWidget(pEditLabel);
    pColumn->addWidget(m_pEdit);
    for (CFieldNote* pNote : {m_pError, m_pNote, m_pMaximumNote})
        pColumn->addWidget(pNote);

    connect(m_pEdit, &QPlainTextEdit::textChanged, this, &CEnumeratedListEditor::changed);
    connect(m_pShareButton, &QPushButton::clicked, this, &CEnumeratedListEditor::share);
    connect(m_pImportButton, &QPushButton::clicked, this, &CEnumeratedListEditor::importFile);
    connect(m_pLists, &QListWidget::itemDoubleClicked, this, [this] { share(true); });
    connect(m_pLists, &QListWidget::currentRowChanged, this, [this](int nRow) {
        m_pShareButton->setEnabled(isSharing() || nRow >= 0);
        if (isSharing() && nRow >= 0)
            share(true);
    });
    setLists({});
}

void CEnumeratedListEditor::setLists(const std::vector<std::string>& lists)
{
    share(false);
    const QSignalBlocker blocker(m_pLists);
    m_pLists->clear();
    for (const std::string& sList : lists) {
        auto* pItem = new QListWidgetItem(qs(sList), m_pLists);
        pItem->setToolTip(qs(sList));
    }
    m_pShareButton->setEnabled(false);
}

void CEnumeratedListEditor::setMaximum(std::size_t uMaximum)
{
    m_pMaximumNote->showHint(tr("NOTE: maximum is %1 strings.").arg(uMaximum));
}

void CEnumeratedListEditor::setNote(const QString& sNote)
{
    m_pNote->showHint(sNote);
}

void CEnumeratedListEditor::setImportOffered(bool bOffered)
{
    m_pImportButton->setVisible(bOffered);
}

void CEnumeratedListEditor::setText(std::string_view sList)
{
    if (text() == sList)
        return;
    const QSignalBlocker blocker(m_pEdit);
    m_pEdit->setPlainText(qs(sList));
}

std::string CEnumeratedListEditor::text() const
{
    return utf8(m_pEdit->toPlainText().replace(QLatin1Char('\n'), QLatin1Char(',')));
}

bool CEnumeratedListEditor::isSharing() const
{
    return m_pShareButton->isChecked();
}

void CEnumeratedListEditor::setError(const QString& sText)
{
    m_pError->showError(sText);
}

void CEnumeratedListEditor::selectAll()
{
    m_pEdit->setFocus();
    m_pEdit->selectAll();
}

void CEnumeratedListEditor::share(bool bShare)
{
    const QListWidgetItem* pItem = m_pLists->currentItem();
    const bool bSharing = bShare && pItem;
    m_pShareButton->setChecked(bSharing);
    m_pShareButton->setEnabled(pItem);
    m_pEdit->setReadOnly(bSharing);
    m_pEdit->setToolTip(bSharing ? tr("Press \"Use Existing String List\" again to edit the list.")
                                 : QString());
    if (bSharing)
        m_pEdit->setPlainText(pItem->text());
}

void CEnumeratedListEditor::importFile()
{
    const auto file = m_dialogs.chooseOpenFile("Text Files (*.txt)|*.txt||");
    if (!file)
        return;
    std::string sText;
    if (readFileUnlessLocked(*file, sText) != EFileRead::done) {
        m_dialogs.showMessage("The file " + file->string() +
                              " can not be read. Please check that it exists and that you may read it.");
        return;
    }
    const std::string sList = sText.size() <= MAX_IMPORT_BYTES ? listOfLines(sText) : std::string();
    if (sList.empty() || sText.find('\0') != std::string::npos) {
        m_dialogs.showMessage("The file " + file->string() +
                              " is no list of strings. Please choose a text file with one entry a line.");
        return;
    }
    share(false);
    m_pEdit->setPlainText(qs(sList));
    selectAll();
}

// Enter in the edit box is the dialog's, not a new line.
bool CEnumeratedListEditor::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched == m_pEdit && pEvent->type() == QEvent::KeyPress) {
        const int nKey = static_cast<QKeyEvent*>(pEvent)->key();
        if (nKey == Qt::Key_Return || nKey == Qt::Key_Enter) {
            pEvent->ignore();
            return true;
        }
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

} // namespace velmora
