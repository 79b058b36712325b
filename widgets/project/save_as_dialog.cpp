#include "widgets/project/save_as_dialog.h"

#include "base/user_dialogs.h"
#include "project/codegen/project_copy.h"
#include "project/dsp_project.h"
#include "widgets/common/field_note.h"
#include "widgets/common/path_field.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace velmora {

CSaveAsDialog::CSaveAsDialog(CDSPProject& project, IUserDialogs& dialogs, QWidget* pParent)
    : CRequestDialog(tr("Save Project As"), pParent), m_project(project), m_dialogs(dialogs),
      m_pName(new QLineEdit(qs(project.m_sProjectName))), m_pParentFolder(new CPathField(dialogs)),
      m_pNote(new CFieldNote(m_pName)), m_pEntireFolder(new QCheckBox(tr("&Copy entire folder"))),
      m_pOmitLibraries(new QCheckBox(tr("&Omit VST/GUI Libraries")))
{
    m_pName->selectAll();
    m_pName->setAccessibleName(tr("Project Name"));
    m_pParentFolder->setName(tr("Save As"));
    m_pParentFolder->useFolder(tr("Browse for the DSP Project Folder"));
    m_pParentFolder->setText(pathText(project.folder().parent_path()));
    m_pEntireFolder->setToolTip(tr("Takes presets and all other files along, too."));
    m_pOmitLibraries->setToolTip(tr("Leaves the libraries of the VST and GUI exports behind."));

    auto* pForm = new QFormLayout;
    pForm->setSpacing(CTheme::SPACING);
    pForm->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    pForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    pForm->addRow(tr("Project &Name:"), m_pName);
    pForm->addRow(tr("&Save As:"), m_pParentFolder);
    pForm->addRow(QString(), m_pNote);
    pForm->addRow(QString(), m_pEntireFolder);
    pForm->addRow(QString(), m_pOmitLibraries);
    content().addLayout(pForm);
    content().addStretch();
    setMinimumWidth(fontMetrics().averageCharWidth() * 80);
    m_pName->setFocus();

    connect(m_pName, &QLineEdit::textEdited, this, &CSaveAsDialog::showOutcome);
    connect(m_pParentFolder, &CPathField::edited, this, &CSaveAsDialog::showOutcome);
    m_pNote->showHint(tr("The project is copied under another name; this one stays as it is."));
}

CProjectCopyRequest CSaveAsDialog::request() const
{
    return {utf8(m_pName->text()), pathOf(m_pParentFolder->text()), m_pEntireFolder->isChecked(),
            m_pOmitLibraries->isChecked()};
}

void CSaveAsDialog::showOutcome()
{
    const CProjectCopyRequest now = request();
    const std::string sRefusal = checkProjectCopy(m_project, now);
    if (!sRefusal.empty())
        m_pNote->showError(qs(sRefusal).section(QLatin1Char('\n'), 0, 0));
    else
        m_pNote->showHint(tr("New folder: %1").arg(pathText(now.m_parentFolder / now.m_sProjectName)));
}

bool CSaveAsDialog::check()
{
    std::string sRefusal = checkProjectCopy(m_project, request());
    const bool bNoFolder = sRefusal.empty() && m_pParentFolder->text().isEmpty();
    if (bNoFolder)
        sRefusal = "Please choose the folder in which the new project's own is to be made.";
    if (sRefusal.empty())
        return true;
    m_dialogs.showMessage(sRefusal);
    QLineEdit& field = bNoFolder ? m_pParentFolder->line() : *m_pName;
    field.setFocus();
    field.selectAll();
    return false;
}

bool CSaveAsDialog::store()
{
    return !m_store || m_store(request());
}

} // namespace velmora
