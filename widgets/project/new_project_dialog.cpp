#include "widgets/project/new_project_dialog.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "widgets/common/field_note.h"
#include "widgets/common/path_field.h"
#include "widgets/common/qt_text.h"
#include "widgets/project/request_fields.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

namespace velmora {

namespace {

constexpr const char* NO_SOLUTION = "Not a .sln file.";

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
