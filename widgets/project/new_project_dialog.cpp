#include "widgets/project/new_project_dialog.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "widgets/common/field_note.h"
#include "widgets/common/path_field.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/project/module_lists.h"
#include "widgets/project/request_fields.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QTabWidget>
#include <QVBoxLayout>

namespace velmora {

namespace {

constexpr const char* SOLUTION_FILTER = "VC++ Solution Files (*.sln)|*.sln||";
constexpr const char* NO_SOLUTION = "Not a .sln file.";
constexpr int INDENT = 24; // of what belongs to a choice

QVBoxLayout* pageLayout(QWidget* pPage)
{
    auto* pLayout = new QVBoxLayout(pPage);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(CTheme::SPACING);
    return pLayout;
}

QFormLayout* addForm(QVBoxLayout& layout)
{
    auto* pForm = new QFormLayout;
    CRequestFields::dress(*pForm);
    layout.addLayout(pForm);
    return pForm;
}

CFieldNote* addNote(QFormLayout& form, QWidget* pField)
{
    auto* pNote = new CFieldNote(pField);
    form.addRow(QString(), pNote);
    return pNote;
}

} // namespace

CNewProjectDialog::CNewProjectDialog(CNewProjectRequest request, bool bEdit, CProjectEnvironment environment,
                                     IUserDialogs& dialogs, QWidget* pParent)
    : CRequestDialog(tr("Edit Project Properties"), pParent), m_request(std::move(request)), m_bEdit(bEdit),
      m_environment(std::move(environment)), m_dialogs(dialogs),
      m_pFields(new CRequestFields(m_request, m_environment, m_dialogs, this)), m_pTabs(new QTabWidget)
{
    content().addLayout(buildNames());
    m_pTabs->addTab(buildKind(), tr("&Plug-In"));
    m_pTabs->addTab(buildModules(), tr("&Modules"));
    m_pTabs->addTab(buildExport(), tr("E&xport"));
    m_pTabs->addTab(buildSolution(), tr("&Solution"));
    m_pTabs->setDocumentMode(true);
    content().addWidget(m_pTabs, 1);
    setMinimumWidth(fontMetrics().averageCharWidth() * 92);
    connect(m_pFields, &CRequestFields::edited, this, &CNewProjectDialog::showNotes);
    showNames();
    showNotes();
    (bEdit ? m_pCompany : m_pName)->setFocus();
}

QLayout* CNewProjectDialog::buildNames()
{
    auto* pForm = new QFormLayout;
    CRequestFields::dress(*pForm);
    m_pName = m_pFields->addText(*pForm, tr("Project &Name:"), &CNewProjectRequest::m_sProjectName);
    if (m_bEdit)
        CRequestFields::lock(*m_pName);
    m_pNameNote = addNote(*pForm, m_pName);
    m_pHeader = CRequestFields::addReadOnly(*pForm, tr(".h File:"));
    m_pSource = CRequestFields::addReadOnly(*pForm, tr(".cpp File:"));
    m_pFolder = new CPathField(m_dialogs);
    m_pFolder->useFolder(tr("Browse for the DSP Project Folder"));
    m_pFolder->setName(tr("Project Folder"));
    m_pFolder->setText(pathText(m_request.m_parentFolder));
    m_pFolder->setEnabled(!m_bEdit);
    pForm->addRow(tr("Project &Folder:"), m_pFolder);
    m_pFolderNote = addNote(*pForm, &m_pFolder->line());
    m_pCompany = m_pFields->addText(*pForm, tr("Compan&y Name:"), &CNewProjectRequest::m_sCompanyName);
    m_pCompanyNote = addNote(*pForm, m_pCompany);

    connect(m_pName, &QLineEdit::textEdited, this, [this](const QString& sName) {
        m_request.setName(utf8(sName));
        showNames();
        showNotes();
    });
    connect(m_pFolder, &CPathField::edited, this, [this](const QString& sPath) {
        m_request.m_parentFolder = pathOf(sPath);
        showNotes();
    });
    return pForm;
}

QWidget* CNewProjectDialog::buildKind()
{
    auto* pPage = new QWidget;
    QVBoxLayout* pLayout = pageLayout(pPage);
    m_pFields->addFlag(*pLayout, tr("O&utput Only Synthesizer Plug-In"),
                       &CNewProjectRequest::m_bOutputOnlyPlugIn);
    m_pFields->addFlag(*pLayout, tr("Use &Velmora Custom GUI "), &CNewProjectRequest::m_bUseCustomVSTGUI);
    m_pFields->addFlag(*pLayout, tr("I &will write my own GUI"), &CNewProjectRequest::m_bUserCustomGUI);
    keepPresent(*m_pFields->addFlag(*pLayout, tr("Include CFF&T Object (advanced)"),
                                    &CNewProjectRequest::m_bIncludeFFT));
    QFormLayout* pForm = addForm(*pLayout);
    m_pLatency = m_pFields->addText(*pForm, tr("&Latency (samples):"), &CNewProjectRequest::m_sLatency);
    m_pLatencyNote = addNote(*pForm, m_pLatency);
    pLayout->addStretch();
    return pPage;
}

QWidget* CNewProjectDialog::buildModules()
{
    auto* pPage = new QWidget;
    QVBoxLayout* pLayout = pageLayout(pPage);
    QCheckBox* pReverb = m_pFields->addFlag(*pLayout, tr("Include Velmora &Reverb Objects (advanced)"),
                                            &CNewProjectRequest::m_bIncludeReverbObjects);
    keepPresent(*pReverb);
    auto* pLists = new CModuleLists(m_request, m_bEdit, m_environment, m_dialogs);
    pLists->enableStockObjects(pReverb->isChecked());
    connect(pReverb, &QCheckBox::toggled, pLists, &CModuleLists::enableStockObjects);
    pLayout->addWidget(pLists, 1);
    return pPage;
}

QWidget* CNewProjectDialog::buildExport()
{
    auto* pPage = new QWidget;
    QVBoxLayout* pLayout = pageLayout(pPage);
    QCheckBox* pVST = m_pFields->addFlag(*pLayout, tr("Make &VST2 and VST3 Compatible"),
                                         &CNewProjectRequest::m_bVSTCompatible, &checkVSTFiles);
    pVST->setEnabled(!m_bEdit);
    if (m_bEdit)
        pVST->setToolTip(tr("Decided when the project is made."));
    m_pFields->addFlag(*pLayout, tr("&Enable Sidechain Input for VST and AU"),
                       &CNewProjectRequest::m_bSidechainEnabled);
    QCheckBox* pAU = m_pFields->addFlag(*pLayout, tr("&Write Audio Units (AU) XCode Wrappers"),
                                        &CNewProjectRequest::m_bWriteAUWrapper, &checkAUTemplates);
    auto* pOfAU = new QVBoxLayout;
    pOfAU->setContentsMargins(INDENT, 0, 0, 0);
    for (QCheckBox* pBox : {m_pFields->addFlag(*pOfAU, tr("Add Car&bon GUI (I will write it)"),
                                               &CNewProjectRequest::m_bCarbonGUI),
                            m_pFields->addFlag(*pOfAU, tr("Add Cocoa &GUI (you will connect it)"),
                                               &CNewProjectRequest::m_bCocoaGUI)}) {
        pBox->setEnabled(pAU->isChecked());
        connect(pAU, &QCheckBox::toggled, pBox, &QCheckBox::setEnabled);
    }
    pLayout->addLayout(pOfAU);

    QFormLayout* pForm = addForm(*pLayout);
    const struct
    {
        QString m_sLabel;
        CRequestFields::text m_pText;
    } codes[] = {
        {tr("4-Character Company C&ode:"), &CNewProjectRequest::m_sCompanyCode},
        {tr("4-Character Plug&In Code:"), &CNewProjectRequest::m_sPlugInCode},
        {tr("4-Character PlugIn Code (VST&2):"), &CNewProjectRequest::m_sVSTPlugInCode},
    };
    for (const auto& code : codes)
        m_pFields->addText(*pForm, code.m_sLabel, code.m_pText)
            ->setValidator(new QRegularExpressionValidator(QRegularExpression("[ -~]{0,4}"), this));
    m_pEffectLine = CRequestFields::addReadOnly(*pForm, tr("AU Validation Code:"));
    m_pInstrumentLine = CRequestFields::addReadOnly(*pForm, tr("AU Validation Code: SYNTH Plugin"));
    pLayout->addStretch();
    return pPage;
}

QWidget* CNewProjectDialog::buildSolution()
{
    auto* pPage = new QWidget;
    QVBoxLayout* pLayout = pageLayout(pPage);
    auto* pNew = new QRadioButton(tr("Create New Solution"));
    auto* pOld = new QRadioButton(tr("Use Existing Solution"));
    (m_request.m_bCreateNewSolution ? pNew : pOld)->setChecked(true);
    m_pSolution = new CPathField(m_dialogs);
    m_pSolution->useFile(SOLUTION_FILTER);
    m_pSolution->setName(tr("Existing Solution"));
    m_pSolution->setText(pathText(m_request.m_existingSolution));
    m_pSolution->setEnabled(!m_request.m_bCreateNewSolution);
    m_pSolutionNote = new CFieldNote(&m_pSolution->line());
    connect(pNew, &QRadioButton::toggled, this, [this](bool bNew) {
        m_request.m_bCreateNewSolution = bNew;
        m_pSolution->setEnabled(!bNew);
        showNotes();
    });
    connect(m_pSolution, &CPathField::edited, this, &CNewProjectDialog::chooseSolution);

    auto* pOfOld = new QVBoxLayout;
    pOfOld->setContentsMargins(INDENT, 0, 0, 0);
    pOfOld->addWidget(m_pSolution);
    pOfOld->addWidget(m_pSolutionNote);
    pLayout->addWidget(pNew);
    pLayout->addWidget(pOld);
    pLayout->addLayout(pOfOld);
    pLayout->addStretch();
    for (QWidget* pPart : {static_cast<QWidget*>(pNew), static_cast<QWidget*>(pOld)})
        pPart->setEnabled(!m_bEdit);
    if (m_bEdit)
        m_pSolution->setEnabled(false);
    return pPage;
}

// What an existing project has is not taken out of it.
void CNewProjectDialog::keepPresent(QCheckBox& box) const
{
    if (!m_bEdit || !box.isChecked())
        return;
    box.setEnabled(false);
    box.setToolTip(tr("The project has this already."));
}

// A file that was browsed for and is none is not taken; one that is being typed may become one.
void CNewProjectDialog::chooseSolution(const QString& sFile)
{
    const bool bTyped = m_pSolution->line().isModified();
    const std::filesystem::path before = m_request.m_existingSolution;
    m_request.m_existingSolution = pathOf(sFile);
    if (!bTyped && isNoSolution()) {
        m_request.m_existingSolution = before;
        m_pSolution->setText(pathText(before));
        m_dialogs.showMessage(NO_SOLUTION);
    }
    showNotes();
}

void CNewProjectDialog::showNames()
{
    const QString sName = qs(m_request.m_sProjectName);
    if (m_pName->text() != sName)
        m_pName->setText(sName);
    m_pHeader->setText(qs(m_request.m_sHeaderFile));
    m_pSource->setText(qs(m_request.m_sSourceFile));
}

void CNewProjectDialog::showNotes()
{
    QString sErrors[3]; // by field, the first one each
    for (const CNewProjectRefusal& refusal : newProjectRefusals(m_request, !m_bEdit)) {
        QString& sError = sErrors[static_cast<int>(refusal.m_eField)];
        if (sError.isEmpty())
            sError = qs(refusal.m_sMessage).section(QLatin1Char('\n'), 0, 0);
    }
    const auto errorOf = [&](ENewProjectField eField) { return sErrors[static_cast<int>(eField)]; };
    const bool bBlank = m_request.m_sProjectName.empty(); // nothing was typed yet
    m_pNameNote->showError(bBlank ? QString() : errorOf(ENewProjectField::Name));
    m_pCompanyNote->showError(errorOf(ENewProjectField::Company));
    showLatency(errorOf(ENewProjectField::Latency));
    if (isParentMissing())
        m_pFolderNote->showError(tr("There is no such folder."));
    else
        m_pFolderNote->showHint(bBlank || m_bEdit ? QString()
                                                  : tr("New folder: %1").arg(pathText(m_request.folder())));
    m_pSolutionNote->showError(isNoSolution() && !m_request.m_existingSolution.empty() ? tr(NO_SOLUTION)
                                                                                       : QString());
    m_pEffectLine->setText(qs(auEffectValidation(m_request)));
    m_pInstrumentLine->setText(qs(auInstrumentValidation(m_request)));
}

void CNewProjectDialog::showLatency(const QString& sError)
{
    const bool bNumber = parseNumber(m_request.m_sLatency).has_value();
    if (!sError.isEmpty() || bNumber)
        m_pLatencyNote->showError(sError);
    else
        m_pLatencyNote->showHint(tr("Not a number; taken as %1 samples.")
                                     .arg(qs(shortestDecimal(static_cast<double>(m_request.latency())))));
}

bool CNewProjectDialog::isParentMissing() const
{
    std::error_code error;
    return !m_bEdit && !std::filesystem::is_directory(m_request.m_parentFolder, error);
}

bool CNewProjectDialog::isNoSolution() const
{
    return !m_bEdit && !m_request.m_bCreateNewSolution && m_request.m_existingSolution.extension() != ".sln";
}

bool CNewProjectDialog::check()
{
    const auto refusals = newProjectRefusals(m_request, !m_bEdit);
    if (checkNewProject(m_request, !m_bEdit, m_dialogs))
        return checkPlaces();
    showNames();
    showNotes();
    const ENewProjectField eField = refusals.front().m_eField;
    lead(eField == ENewProjectField::Name      ? m_pName
         : eField == ENewProjectField::Latency ? m_pLatency
                                               : m_pCompany);
    return false;
}

bool CNewProjectDialog::checkPlaces()
{
    if (!isParentMissing() && !isNoSolution())
        return true;
    m_dialogs.showMessage(isParentMissing()
                              ? "There is no folder " + m_request.m_parentFolder.string() +
                                    ".\n\nPlease choose the folder in which the project's own is to be made."
                              : NO_SOLUTION);
    lead(isParentMissing() ? &m_pFolder->line() : &m_pSolution->line());
    return false;
}

// To the field that is to be mended.
void CNewProjectDialog::lead(QLineEdit* pField)
{
    for (int i = 0; i < m_pTabs->count(); i++)
        if (m_pTabs->widget(i)->isAncestorOf(pField))
            m_pTabs->setCurrentIndex(i);
    pField->setFocus();
    pField->selectAll();
}

bool CNewProjectDialog::store()
{
    if (!m_store || m_store(m_request))
        return true;
    showNames();
    showNotes();
    return false;
}

} // namespace velmora
