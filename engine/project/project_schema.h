#pragma once

#include "base/archive.h"

#include <cstddef>
#include <vector>

class CUICtrl;

namespace velmora {

class CDSPProject;

constexpr int FIRST_SCHEMA = 1;
constexpr int NEWEST_SCHEMA = 31;

// One version of the stream that a .prj file holds, behind its version number: which fields it has, in which
// order. All 31 are made from one table of fields. [main]
class CProjectSchema
{
  public:
    // The routine for a version; the newest one's for any number that is no version.
    [[nodiscard]] static const CProjectSchema& of(int nVersion);

    // Stores the project, or loads into it: a field that the version lacks stays as it is. Loading appends
    // to the project's controls and throws CArchiveError on truncated or impossible data; the project is
    // then half filled.
    void transfer(CArchive& archive, CDSPProject& project) const;

    // The fewest bytes that a control takes in the stream.
    [[nodiscard]] std::size_t smallestControl() const { return m_uSmallestControl; }

  private:
    template <typename Record>
    using CTransfer = void (*)(CArchive& archive, Record& record);

    explicit CProjectSchema(int nVersion);
    void storeControls(CArchive& archive, CDSPProject& project) const;
    void loadControls(CArchive& archive, CDSPProject& project) const;

    std::vector<CTransfer<CUICtrl>> m_controlFields;
    std::vector<CTransfer<CDSPProject>> m_projectFields;
    std::size_t m_uSmallestControl = 0;
};

// Stores a project in any version, its number included. The workbench itself stores the newest alone.
void storeProject(CArchive& archive, CDSPProject& project, int nVersion = NEWEST_SCHEMA);

} // namespace velmora
