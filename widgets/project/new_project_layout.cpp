#include "widgets/common/field_note.h"
#include "widgets/common/path_field.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/project/module_lists.h"
#include "widgets/project/new_project_dialog.h"
#include "widgets/project/request_fields.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

// What the dialog is made of; new_project_dialog.cpp gives it life.

namespace velmora {

namespace {

constexpr const char* SOLUTION_FILTER = "VC++ Solution Files (*.sln)|*.sln||";
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

} // namespace velmora
