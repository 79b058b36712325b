#include "document/edit_history.h"

#include "project/codegen/text_surgery.h"

namespace velmora {

namespace {

std::optional<std::string> textOf(const std::filesystem::path& file)
{
    std::string sText;
    if (file.empty() || !fileExists(file) || !readFileToString(file, sText, false, 0, true))
        return std::nullopt;
    return sText;
}

} // namespace

void CEditHistory::clear()
{
    m_edits.clear();
    m_uDone = 0;
    m_current.reset();
    m_nDepth = 0;
}

void CEditHistory::begin(const CDSPProject& project, std::string sLabel)
{
    if (m_nDepth++ > 0)
        return;
    const CPanelEdit* pLast = nextUndo();
    m_current.emplace();
    m_current->m_sLabel = std::move(sLabel);
    m_current->m_before = CPanelState(project, pLast ? &pLast->m_after : nullptr);
}

void CEditHistory::noteRename(std::string_view sFrom, std::string_view sTo, std::string_view sQuestion)
{
    if (!m_current)
        return;
    m_current->m_sRenamedFrom = sFrom;
    m_current->m_sRenamedTo = sTo;
    m_current->m_sRenameQuestion = sQuestion;
}

void CEditHistory::noteDocument(const std::filesystem::path& file)
{
    if (!m_current)
        return;
    m_current->m_document = file;
    m_current->m_documentBefore = textOf(file);
}

void CEditHistory::commit(const CDSPProject& project)
{
    if (m_nDepth == 0 || --m_nDepth > 0)
        return;
    CPanelEdit edit = std::move(*m_current);
    m_current.reset();
    edit.m_after = CPanelState(project, &edit.m_before);
    edit.m_documentAfter = textOf(edit.m_document);
    if (edit.m_after == edit.m_before && edit.m_documentAfter == edit.m_documentBefore)
        return;
    m_edits.resize(m_uDone);
    m_edits.push_back(std::move(edit));
    if (m_edits.size() > MAXIMUM_EDITS)
        m_edits.pop_front();
    m_uDone = m_edits.size();
}

void CEditHistory::cancel()
{
    if (m_nDepth > 0 && --m_nDepth == 0)
        m_current.reset();
}

const CPanelEdit* CEditHistory::nextUndo() const
{
    return m_uDone > 0 ? &m_edits[m_uDone - 1] : nullptr;
}

const CPanelEdit* CEditHistory::nextRedo() const
{
    return m_uDone < m_edits.size() ? &m_edits[m_uDone] : nullptr;
}

void CEditHistory::undo(CDSPProject& project)
{
    if (const CPanelEdit* pEdit = nextUndo()) {
        pEdit->m_after.changeInto(pEdit->m_before, project);
        --m_uDone;
    }
}

void CEditHistory::redo(CDSPProject& project)
{
    if (const CPanelEdit* pEdit = nextRedo()) {
        pEdit->m_before.changeInto(pEdit->m_after, project);
        ++m_uDone;
    }
}

} // namespace velmora
