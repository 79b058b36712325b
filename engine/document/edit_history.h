#pragma once

#include "document/panel_state.h"

#include <deque>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// One edit of the panel that can be taken back.
struct CPanelEdit
{
    std::string m_sLabel;       // reads behind "Undo ": Add "Volume"
    std::string m_sRenamedFrom; // variable that was renamed in the sources along with the edit; empty: none
    std::string m_sRenamedTo;
    std::string m_sRenameQuestion;               // that was answered with Yes then
    std::filesystem::path m_document;            // file that the edit replaced; empty: none
    std::optional<std::string> m_documentBefore; // its texts; none: it was not there
    std::optional<std::string> m_documentAfter;
    CPanelState m_before;
    CPanelState m_after;
};

// The edits of the open project's panel, the newest MAXIMUM_EDITS of them, to be taken back and made again.
// It changes the project alone; CProjectCommands rewrites the sources and saves. [main]
class CEditHistory
{
  public:
    static constexpr std::size_t MAXIMUM_EDITS = 100;

    // Another project is open.
    void clear();

    // An edit begins. Between begin() and commit() stands what the edit does; an edit that fails is ended
    // with cancel(). One inside another belongs to the outer one.
    void begin(const CDSPProject& project, std::string sLabel);

    // Of the edit that is under way.
    void noteRename(std::string_view sFrom, std::string_view sTo, std::string_view sQuestion);
    void noteDocument(const std::filesystem::path& file); // before it is replaced

    // The edit is done. If it changed anything it can be taken back from now on, and what could be made
    // again is forgotten.
    void commit(const CDSPProject& project);
    void cancel();

    // The edit that undo() takes back, the one that redo() makes again; null if there is none.
    [[nodiscard]] const CPanelEdit* nextUndo() const;
    [[nodiscard]] const CPanelEdit* nextRedo() const;
    [[nodiscard]] bool canUndo() const { return nextUndo() != nullptr; }
    [[nodiscard]] bool canRedo() const { return nextRedo() != nullptr; }

    // Takes the edit back in the project, or makes it again; without one, nothing happens.
    void undo(CDSPProject& project);
    void redo(CDSPProject& project);

  private:
    std::deque<CPanelEdit> m_edits; // the oldest first
    std::size_t m_uDone = 0;        // edits that stand; behind them those that can be made again
    std::optional<CPanelEdit> m_current;
    int m_nDepth = 0;
};

} // namespace velmora
