#pragma once

#include "base/object.h"

#include <memory>
#include <string>
#include <vector>

namespace velmora {

// A table of floats by row and column, each row a block of its own. [main]
class CFloatArray : public CObject
{
  public:
    // Makes a table of nRows by nColumns, 1 or more each, filled with fValue, in place of the one
    // before. On failure returns false with the reason in pError, if given, and the table before stays.
    [[nodiscard]] bool create(int nRows, int nColumns, float fValue, std::string* pError = nullptr);

    // Frees the data; both counts are 0 then.
    void destroy();

    [[nodiscard]] int rows() const { return static_cast<int>(m_rows.size()); }
    [[nodiscard]] int columns() const { return m_nColumns; }

    // Without a range check: 0 to rows() - 1, 0 to columns() - 1.
    [[nodiscard]] float get(int nRow, int nColumn) const { return m_rows[nRow][nColumn]; }
    void set(int nRow, int nColumn, float fValue) { m_rows[nRow][nColumn] = fValue; }

    void fill(float fValue);

    // Appends nCount rows of 0.0 and keeps the content. Fails as create() does, also when there is no
    // table yet.
    [[nodiscard]] bool addRows(int nCount, std::string* pError = nullptr);

    // A copy of the table and its describing fields; null if memory does not suffice.
    [[nodiscard]] std::unique_ptr<CFloatArray> clone() const;

    // Stores format 1: marker, rows, columns, values row by row, external integer, external flags,
    // name, version. Loads it and the shorter formats 2 (ends with the values), 3 (with the flags) and
    // 4 (with the name). Throws CArchiveError on anything else; the table is as before then.
    void Serialize(CArchive& archive) override;

    std::string m_sName;
    int m_nFormatCode = 2;
    int m_nVersion = 0;
    int m_nExternal = 0;           // for the owner's use
    unsigned m_uExternalFlags = 0; // for the owner's use

  private:
    using CRows = std::vector<std::unique_ptr<float[]>>;

    [[nodiscard]] static bool appendRows(CRows& rows, int nCount, int nColumns, float fValue,
                                         std::string* pError);
    void store(CArchive& archive) const;
    void load(CArchive& archive);

    CRows m_rows;
    int m_nColumns = 0;
};

} // namespace velmora
