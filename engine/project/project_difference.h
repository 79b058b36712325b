#pragma once

#include <string>
#include <vector>

namespace velmora {

class CDSPProject;

// What differs between two states of a project, told in plain sentences: controls and user variables that
// were added, removed or changed, with the fields and both values, assignable buttons, and the rest by
// groups. Paths and what the program itself counts are left out. [main]
class CProjectDifference
{
  public:
    CProjectDifference(const CDSPProject& before, const CDSPProject& after);

    // In the order of the controls, then of the project's other fields; empty if nothing differs.
    [[nodiscard]] const std::vector<std::string>& sentences() const { return m_sentences; }
    [[nodiscard]] bool isEmpty() const { return m_sentences.empty(); }

  private:
    void compareControls(const CDSPProject& before, const CDSPProject& after);
    void compareButtons(const CDSPProject& before, const CDSPProject& after);
    void compareFields(const CDSPProject& before, const CDSPProject& after);

    std::vector<std::string> m_sentences;
};

} // namespace velmora
