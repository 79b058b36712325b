#include "widgets/shell/preferences_dialog.h"

#include "base/user_dialogs.h"
#include "host/preferences.h"
#include "project/compiler/compiler_table.h"
#include "widgets/common/path_field.h"
#include "widgets/common/qt_text.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace velmora {

namespace {

constexpr const char* NO_WAVE_FILE = "Not a .WAV file.";
constexpr const char* TRUE_TEXT = "true";
constexpr int LEAST_WIDTH = 680; // logical pixels
constexpr int INDENT = 24;       // of the help below a switch

// The order of the compilers in the list; those of other kinds are not in it.
constexpr ECompilerKind LISTED_KINDS[] = {ECompilerKind::express, ECompilerKind::professional,
                                          ECompilerKind::commandLine};

// "startFromInitialValues" as "Start from initial values".
QString spelledOut(std::string_view sName)
{
    QString sText;
    for (const QChar character : qs(sName)) {
        if (character.isUpper())
            sText += QLatin1Char(' ');
        sText += sText.isEmpty() ? character.toUpper() : character.toLower();
    }
    return sText;
}

QString accessible(QString sLabel)
{
    return sLabel.remove(QLatin1Char(':')).trimmed();
}

} // namespace

CPreferencesDialog::CPreferencesDialog(const CPreferencesEdit& values, IUserDialogs& dialogs,
                                       QWidget* pParent)
    : QDialog(pParent), m_dialogs(dialogs), m_pPages(new QTabWidget(this))
{
    setWindowTitle(tr("Setup Velmora Preferences"));
    setMinimumWidth(LEAST_WIDTH);
    m_pPages->setDocumentMode(true);
    QFormLayout* forms[] = {addPage(tr("&Folders")), addPage(tr("&Compiler")), addPage(tr("&Export")),
                            addPage(tr("&General"))};
    addCompilerChoice(*forms[static_cast<int>(EPreferencePage::Compiler)], values.m_nCompilerId);
    for (const CPreferenceField& field : preferenceFields())
        addField(*forms[static_cast<int>(field.m_ePage)], field, values.m_lines.at(field.m_nLine));
    QFormLayout* pOwn = addPage(tr("&Workbench"));
    addScheme(*pOwn, values.m_eScheme);
    addSwitches(*pOwn, values.m_switches);

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    pButtons->button(QDialogButtonBox::Save)->setText(tr("&Save"));
    pButtons->button(QDialogButtonBox::Save)->setDefault(true);
    connect(pButtons, &QDialogButtonBox::accepted, this, &CPreferencesDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &CPreferencesDialog::reject);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(CTheme::MARGIN);
    pLayout->addWidget(m_pPages);
    pLayout->addWidget(pButtons);
}

QFormLayout* CPreferencesDialog::addPage(const QString& sName)
{
    auto* pPage = new QWidget;
    auto* pForm = new QFormLayout(pPage);
    pForm->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pForm->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    pForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    pForm->setSpacing(CTheme::SPACING);
    m_pPages->addTab(pPage, sName);
    return pForm;
}

void CPreferencesDialog::addCompilerChoice(QFormLayout& form, int nCompilerId)
{
    m_pCompilers = new QComboBox;
    for (const ECompilerKind eKind : LISTED_KINDS)
        for (const CCompiler& compiler : compilers())
            if (compiler.m_eKind == eKind)
                m_pCompilers->addItem(QString::fromUtf8(compiler.m_pName), compiler.m_nId);
    m_pCompilers->setCurrentIndex(std::max(m_pCompilers->findData(nCompilerId), 0));
    m_pCompilers->setAccessibleName(tr("Visual Studio C++ Compiler"));
    m_pCodeBlocks = new QCheckBox(tr("CodeBlocks"));
    connect(m_pCodeBlocks, &QCheckBox::toggled, m_pCompilers, &QWidget::setDisabled);
    m_pCodeBlocks->setChecked(nCompilerId == CODE_BLOCKS_ID);
    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(2 * CTheme::SPACING);
    pRow->addWidget(m_pCompilers, 1);
    pRow->addWidget(m_pCodeBlocks);
    form.addRow(tr("Visual Studio C++ Compiler:"), pRow);
}

void CPreferencesDialog::addField(QFormLayout& form, const CPreferenceField& field, const std::string& sValue)
{
    const QString sLabel = QString::fromUtf8(field.m_pLabel);
    switch (field.m_eField) {
    case EPreferenceField::Folder:
    case EPreferenceField::WaveFile:
        addPath(form, field, qs(sValue));
        break;
    case EPreferenceField::Choice:
        addChoice(form, field, sValue == TRUE_TEXT);
        break;
    case EPreferenceField::Check: {
        auto* pCheck = new QCheckBox(sLabel);
        pCheck->setChecked(sValue == TRUE_TEXT);
        m_buttons[field.m_nLine] = pCheck;
        form.addRow(pCheck);
        break;
    }
    case EPreferenceField::Text: {
        auto* pLine = new QLineEdit(qs(sValue));
        pLine->setAccessibleName(accessible(sLabel));
        m_texts[field.m_nLine] = pLine;
        form.addRow(sLabel, pLine);
        break;
    }
    }
}

void CPreferencesDialog::addPath(QFormLayout& form, const CPreferenceField& field, const QString& sValue)
{
    auto* pPath = new CPathField(m_dialogs);
    pPath->setText(sValue);
    m_texts[field.m_nLine] = &pPath->line();
    const QString sBrowse = QString::fromUtf8(field.m_pBrowse);
    if (field.m_eField == EPreferenceField::WaveFile) {
        pPath->useFile(sBrowse);
        m_pWaveFile = pPath;
        m_sWaveFile = sValue;
        connect(pPath, &CPathField::edited, this, &CPreferencesDialog::checkBrowsed);
    } else {
        pPath->useFolder(sBrowse);
    }
    if (*field.m_pLabel) {
        pPath->setName(accessible(QString::fromUtf8(field.m_pLabel)));
        form.addRow(QString::fromUtf8(field.m_pLabel), pPath);
        return;
    }
    pPath->setName(accessible(m_pLastChoice->accessibleName()));
    pPath->setEnabled(m_pLastChoice->isChecked());
    connect(m_pLastChoice, &QAbstractButton::toggled, pPath, &QWidget::setEnabled);
    form.addRow(QString(), pPath);
}

void CPreferencesDialog::addChoice(QFormLayout& form, const CPreferenceField& field, bool bSecond)
{
    auto* pFirst = new QRadioButton(QString::fromUtf8(field.m_pFirst));
    auto* pSecond = new QRadioButton(QString::fromUtf8(field.m_pSecond));
    const QString sLabel = QString::fromUtf8(field.m_pLabel);
    for (QRadioButton* pButton : {pFirst, pSecond})
        pButton->setAccessibleName(accessible(sLabel) + QLatin1Char(' ') + accessible(pButton->text()));
    auto* pGroup = new QButtonGroup(this);
    pGroup->addButton(pFirst);
    pGroup->addButton(pSecond);
    (bSecond ? pSecond : pFirst)->setChecked(true);
    m_buttons[field.m_nLine] = pSecond;
    m_pLastChoice = pSecond;
    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(2 * CTheme::SPACING);
    pRow->addWidget(pFirst);
    pRow->addWidget(pSecond);
    pRow->addStretch();
    form.addRow(sLabel, pRow);
}

void CPreferencesDialog::addScheme(QFormLayout& form, EColourScheme eScheme)
{
    m_pScheme = new QComboBox;
    m_pScheme->addItems({tr("As the system"), tr("Dark"), tr("Light")});
    m_pScheme->setCurrentIndex(static_cast<int>(eScheme));
    m_pScheme->setAccessibleName(tr("Colour Scheme"));
    form.addRow(tr("Colour Scheme:"), m_pScheme);
}

void CPreferencesDialog::addSwitches(QFormLayout& form, const std::map<std::string, bool>& switches)
{
    for (const CPreferenceRow& row : preferenceTable()) {
        auto* pCheck = new QCheckBox(spelledOut(row.m_sName));
        pCheck->setChecked(switches.at(std::string(row.m_sName)));
        pCheck->setAccessibleDescription(qs(row.m_sHelp));
        m_switches[std::string(row.m_sName)] = pCheck;
        auto* pHelp = new QLabel(qs(row.m_sHelp));
        pHelp->setWordWrap(true);
        pHelp->setIndent(INDENT);
        pHelp->setForegroundRole(QPalette::PlaceholderText);
        form.addRow(pCheck);
        form.addRow(pHelp);
    }
}

// What was typed is judged on "Save" only.
void CPreferencesDialog::checkBrowsed(const QString& sFile)
{
    if (m_pWaveFile->line().isModified())
        return;
    if (sFile.contains(QLatin1String(".wav"))) {
        m_sWaveFile = sFile;
        return;
    }
    m_dialogs.showMessage(NO_WAVE_FILE);
    m_pWaveFile->setText(m_sWaveFile);
}

bool CPreferencesDialog::isWaveFileRight()
{
    const QString sFile = m_pWaveFile->text();
    if (sFile.isEmpty() || sFile.contains(QLatin1String(".wav")))
        return true;
    m_dialogs.showMessage(NO_WAVE_FILE);
    m_pPages->setCurrentIndex(static_cast<int>(EPreferencePage::Folders));
    m_pWaveFile->line().setFocus();
    m_pWaveFile->line().selectAll();
    return false;
}

CPreferencesEdit CPreferencesDialog::edit() const
{
    CPreferencesEdit edit;
    for (const auto& [nLine, pText] : m_texts)
        edit.m_lines[nLine] = utf8(pText->text());
    for (const auto& [nLine, pButton] : m_buttons)
        edit.m_lines[nLine] = pButton->isChecked() ? TRUE_TEXT : "false";
    for (const auto& [sName, pCheck] : m_switches)
        edit.m_switches[sName] = pCheck->isChecked();
    edit.m_nCompilerId = m_pCodeBlocks->isChecked() ? CODE_BLOCKS_ID : m_pCompilers->currentData().toInt();
    edit.m_eScheme = static_cast<EColourScheme>(m_pScheme->currentIndex());
    return edit;
}

void CPreferencesDialog::accept()
{
    if (isWaveFileRight() && (!m_store || m_store(edit())))
        QDialog::accept();
}

} // namespace velmora
