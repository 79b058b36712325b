#include "widgets/panel/control_props_dialog.h"

#include "base/user_dialogs.h"
#include "project/control_checks.h"
#include "project/control_list.h"
#include "project/enumerated_list.h"
#include "widgets/common/property_grid.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/panel/enumerated_list_editor.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace velmora {

namespace {

constexpr QSize GRID_SIZE(400, 240); // at least

// What each field would be refused for: the first message of those steps that refuse it.
std::map<EControlField, std::string> refusals(const CDSPProject& project, const CControlEdit& edit,
                                              const CUICtrl* pExisting)
{
    std::map<EControlField, std::string> found;
    const CControlSlots* pSlots = findControlSlots(edit.m_record.uControlId);
    if (!pSlots)
        return found;
    CControlCheckRun run = {project, pExisting, *pSlots, edit, {}};
    for (const CControlStep step : controlSteps(pSlots->m_eForm))
        if (!step(run))
            found.emplace(run.m_check.m_eField, run.m_check.m_sMessage);
    return found;
}

} // namespace

CControlPropsDialog::CControlPropsDialog(IUserDialogs& dialogs, QWidget* pParent)
    : QDialog(pParent), m_dialogs(dialogs), m_pGrid(new CPropertyGrid)
{
    buildFrame();
}

CControlPropsDialog::CControlPropsDialog(CDSPProject& project, IUserDialogs& dialogs, UINT uControlId,
                                         QWidget* pParent)
    : CControlPropsDialog(dialogs, pParent)
{
    begin(project, uControlId);
}

// A row that is still being typed into commits as it loses the focus on the way out.
CControlPropsDialog::~CControlPropsDialog()
{
    m_pGrid->disconnect(this);
}

void CControlPropsDialog::buildFrame()
{
    m_pGrid->setMinimumSize(GRID_SIZE);
    m_pExtras = new QVBoxLayout;
    m_pExtras->setSpacing(CTheme::SPACING);
    auto* pColumns = new QHBoxLayout;
    pColumns->setSpacing(CTheme::MARGIN);
    pColumns->addWidget(m_pGrid, 3);
    pColumns->addLayout(m_pExtras, 2);

    m_pRemoveButton = new QPushButton(tr("&Remove Ctrl"));
    m_pRemoveButton->setAutoDefault(false);
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto* pBottom = new QHBoxLayout;
    pBottom->addWidget(m_pRemoveButton);
    pBottom->addStretch();
    pBottom->addWidget(pButtons);

    auto* pRoot = new QVBoxLayout(this);
    pRoot->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pRoot->setSpacing(CTheme::MARGIN);
    pRoot->addLayout(pColumns, 1);
    pRoot->addLayout(pBottom);
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);

    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_pRemoveButton, &QPushButton::clicked, this, &CControlPropsDialog::removeControl);
    connect(m_pGrid, &CPropertyGrid::edited, this, &CControlPropsDialog::rowEdited);
    connect(m_pGrid, &CPropertyGrid::typing, this, &CControlPropsDialog::rowTyping);
    connect(m_pGrid, &CPropertyGrid::selected, this, [this] { showErrors(m_edit, m_unreadable); });
}

void CControlPropsDialog::begin(CDSPProject& project, UINT uControlId)
{
    m_pProject = &project;
    const CUICtrl* pControl = findControl(project.m_UIControlList, uControlId);
    m_edit = pControl ? controlEditOf(*pControl) : newControlEdit(project, uControlId);
    m_bRemoval = false;
    m_unreadable.clear();
    m_pRemoveButton->setVisible(pControl);
    loadLists();
}

void CControlPropsDialog::end()
{
    m_pProject = nullptr;
}

const CUICtrl* CControlPropsDialog::existing() const
{
    return m_pProject ? findControl(m_pProject->m_UIControlList, m_edit.m_record.uControlId) : nullptr;
}

void CControlPropsDialog::setRows(std::vector<CControlRow> rows)
{
    m_rows = std::move(rows);
    m_unreadable.clear();
    std::vector<CPropertyRow> shown;
    for (const CControlRow& row : m_rows) {
        EPropertyKind eKind = EPropertyKind::ReadOnly;
        if (row.m_write)
            eKind = row.m_choices.isEmpty() ? EPropertyKind::Text : EPropertyKind::Choice;
        shown.push_back({row.m_sLabel, row.m_read(m_edit), eKind, row.m_choices, row.m_bAccent});
    }
    m_pGrid->setRows(shown);
    refresh();
}

void CControlPropsDialog::setListEditor(CEnumeratedListEditor* pEditor)
{
    m_pListEditor = pEditor;
    m_pExtras->addWidget(pEditor, 1);
    connect(pEditor, &CEnumeratedListEditor::changed, this, &CControlPropsDialog::listEdited);
    loadLists();
}

void CControlPropsDialog::loadLists()
{
    if (!m_pListEditor || !m_pProject)
        return;
    const CControlSlots* pSlots = findControlSlots(m_edit.m_record.uControlId);
    m_pListEditor->setLists(enumeratedLists(m_pProject->m_UIControlList, existing()));
    m_pListEditor->setMaximum(pSlots ? pSlots->m_uMaxItems : 0);
    m_pListEditor->setText(m_edit.m_sEnumeratedList);
}

void CControlPropsDialog::refresh()
{
    m_unreadable.clear();
    if (m_pListEditor)
        m_pListEditor->setText(m_edit.m_sEnumeratedList);
    showEdit(0);
}

void CControlPropsDialog::rowEdited(int nRow, const QString& sText)
{
    const CControlRow& row = m_rows.at(static_cast<std::size_t>(nRow) - 1);
    const QString sReason = row.m_write(m_edit, sText);
    m_unreadable.erase(nRow);
    if (!sReason.isEmpty())
        m_unreadable.emplace(nRow, sReason);
    showEdit(nRow);
}

// Only a look ahead: what is being typed may still be taken back.
void CControlPropsDialog::rowTyping(int nRow, const QString& sText)
{
    CControlEdit ahead = m_edit;
    auto unreadable = m_unreadable;
    unreadable.erase(nRow);
    const QString sReason = m_rows.at(static_cast<std::size_t>(nRow) - 1).m_write(ahead, sText);
    if (!sReason.isEmpty())
        unreadable.emplace(nRow, sReason);
    showErrors(ahead, unreadable);
}

void CControlPropsDialog::listEdited()
{
    m_edit.m_sEnumeratedList = m_pListEditor->text();
    showEdit(0);
}

void CControlPropsDialog::showEdit(int nRow)
{
    showExtras(nRow);
    for (int nShown = 1; nShown <= static_cast<int>(m_rows.size()); ++nShown) {
        if (!m_pGrid->isRowEnabled(nShown))
            m_unreadable.erase(nShown);
        if (!m_unreadable.contains(nShown))
            m_pGrid->setText(nShown, m_rows[static_cast<std::size_t>(nShown) - 1].m_read(m_edit));
    }
    showErrors(m_edit, m_unreadable);
}

void CControlPropsDialog::showErrors(const CControlEdit& edit, const std::map<int, QString>& unreadable)
{
    if (!m_pProject)
        return;
    std::map<int, QString> errors = unreadable;
    QString sListError;
    for (const auto& [eField, sMessage] : refusals(*m_pProject, edit, existing())) {
        if (eField == EControlField::EnumeratedList && hasListBox())
            sListError = qs(sMessage);
        else if (const int nRow = rowOf(eField))
            errors.emplace(nRow, qs(sMessage));
    }
    if (m_pListEditor)
        m_pListEditor->setError(sListError);
    for (int nRow = 1; nRow <= static_cast<int>(m_rows.size()); ++nRow) {
        const auto found = errors.find(nRow);
        m_pGrid->setError(nRow, found == errors.end() ? QString() : found->second);
    }
}

int CControlPropsDialog::rowOf(EControlField eField) const
{
    const auto found = std::ranges::find(m_rows, eField, &CControlRow::m_eField);
    const bool bHasRow = eField != EControlField::None && found != m_rows.end();
    return bHasRow ? static_cast<int>(found - m_rows.begin()) + 1 : 0;
}

bool CControlPropsDialog::hasListBox() const
{
    return m_pListEditor && !m_pListEditor->isHidden();
}

void CControlPropsDialog::focusField(EControlField eField)
{
    if (eField == EControlField::EnumeratedList && hasListBox())
        m_pListEditor->selectAll();
    else if (const int nRow = rowOf(eField))
        m_pGrid->select(nRow);
}

void CControlPropsDialog::accept()
{
    if (m_bStoring)
        return;
    if (!m_pProject) {
        reject();
        return;
    }
    m_pGrid->commit();
    if (!m_unreadable.empty()) {
        const auto [nRow, sReason] = *m_unreadable.begin();
        m_dialogs.showMessage(utf8(sReason));
        m_pGrid->select(nRow);
        return;
    }
    const CUICtrl* pExisting = existing();
    const CControlCheck check = checkControl(*m_pProject, m_edit, pExisting);
    if (check.isRefused()) {
        m_dialogs.showMessage(check.m_sMessage);
        focusField(check.m_eField);
        return;
    }
    m_bStoring = true;
    const bool bStored = !m_store || m_store(m_edit, !pExisting);
    m_bStoring = false;
    if (!bStored)
        return;
    emit controlStored(m_edit.m_record.uControlId, !check.m_alteredLists.empty());
    QDialog::accept();
}

void CControlPropsDialog::removeControl()
{
    if (m_bStoring)
        return;
    const UINT uControlId = m_edit.m_record.uControlId;
    m_bStoring = true;
    m_bRemoval = !m_remove || m_remove(uControlId);
    m_bStoring = false;
    if (!m_bRemoval)
        return;
    emit controlRemoved(uControlId);
    QDialog::accept();
}

} // namespace velmora
