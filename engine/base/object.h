#pragma once

namespace velmora {

class CArchive;

// Base of what the document keeps in lists or writes to an archive.
class CObject
{
  public:
    virtual ~CObject() = default;

    // Stores to or loads from the archive, whichever the archive is open for. Loading throws
    // CArchiveError on impossible or truncated data.
    virtual void Serialize(CArchive&) {}
};

} // namespace velmora
