#include "dsp/float_array.h"

#include "base/archive.h"

#include <algorithm>
#include <new>
#include <utility>

namespace velmora {

namespace {

// Each longer than the one before; format 1, the one that is written, is the longest.
constexpr std::int32_t WITH_VALUES = 2;
constexpr std::int32_t WITH_FLAGS = 3;
constexpr std::int32_t WITH_NAME = 4;
constexpr std::int32_t WITH_VERSION = 1;

bool fail(std::string* pError, const char* pReason)
{
    if (pError)
        *pError = pReason;
    return false;
}

} // namespace

bool CFloatArray::create(int nRows, int nColumns, float fValue, std::string* pError)
{
    CRows rows;
    if (!appendRows(rows, nRows, nColumns, fValue, pError))
        return false;
    m_rows = std::move(rows);
    m_nColumns = nColumns;
    return true;
}

void CFloatArray::destroy()
{
    m_rows.clear();
    m_nColumns = 0;
}

void CFloatArray::fill(float fValue)
{
    for (const auto& row : m_rows)
        std::fill_n(row.get(), m_nColumns, fValue);
}

bool CFloatArray::addRows(int nCount, std::string* pError)
{
    CRows added;
    if (!appendRows(added, nCount, m_nColumns, 0.0f, pError))
        return false;
    try {
        m_rows.reserve(m_rows.size() + added.size());
    } catch (const std::bad_alloc&) {
        return fail(pError, "Out of memory in CreateArray()");
    }
    std::ranges::move(added, std::back_inserter(m_rows));
    return true;
}

std::unique_ptr<CFloatArray> CFloatArray::clone() const
{
    auto copy = std::make_unique<CFloatArray>();
    if (!m_rows.empty() && !copy->create(rows(), m_nColumns, 0.0f))
        return nullptr;
    for (std::size_t r = 0; r < m_rows.size(); ++r)
        std::copy_n(m_rows[r].get(), m_nColumns, copy->m_rows[r].get());
    copy->m_sName = m_sName;
    copy->m_nFormatCode = m_nFormatCode;
    copy->m_nVersion = m_nVersion;
    copy->m_nExternal = m_nExternal;
    copy->m_uExternalFlags = m_uExternalFlags;
    return copy;
}

void CFloatArray::Serialize(CArchive& archive)
{
    if (archive.isStoring())
        store(archive);
    else
        load(archive);
}

bool CFloatArray::appendRows(CRows& rows, int nCount, int nColumns, float fValue, std::string* pError)
{
    if (nCount < 1 || nColumns < 1)
        return fail(pError, "A table needs at least one row and one column.");
    try {
        rows.reserve(rows.size() + nCount);
        for (int r = 0; r < nCount; ++r) {
            rows.push_back(std::make_unique_for_overwrite<float[]>(nColumns));
            std::fill_n(rows.back().get(), nColumns, fValue);
        }
    } catch (const std::bad_alloc&) {
        return fail(pError, "Out of memory in CreateArray()");
    }
    return true;
}

void CFloatArray::store(CArchive& archive) const
{
    archive.writeInt32(WITH_VERSION);
    archive.writeInt32(rows());
    archive.writeInt32(m_nColumns);
    for (const auto& row : m_rows) {
        for (int c = 0; c < m_nColumns; ++c)
            archive.writeFloat32(row[c]);
    }
    archive.writeInt32(m_nExternal);
    archive.writeUInt32(m_uExternalFlags);
    archive.writeString(m_sName);
    archive.writeInt32(m_nVersion);
}

void CFloatArray::load(CArchive& archive)
{
    const std::int32_t nFormat = archive.readInt32();
    if (nFormat < WITH_VERSION || nFormat > WITH_NAME)
        throw CArchiveError("A table begins with an unknown format marker, " + std::to_string(nFormat) +
                            "; 1 to 4 are known.");
    const std::int32_t nRows = archive.readInt32();
    const std::int32_t nColumns = archive.readInt32();
    const bool bEmpty = nRows == 0 && nColumns == 0;
    if (!bEmpty && (nRows < 1 || nColumns < 1))
        throw CArchiveError("A table has an impossible size: " + std::to_string(nRows) + " rows of " +
                            std::to_string(nColumns) + " values.");
    archive.checkCount(static_cast<std::uint64_t>(nRows) * static_cast<std::uint64_t>(nColumns),
                       sizeof(float), "values of a table");

    CFloatArray loaded;
    std::string sError;
    if (!bEmpty && !loaded.create(nRows, nColumns, 0.0f, &sError))
        throw CArchiveError(sError);
    for (const auto& row : loaded.m_rows) {
        for (int c = 0; c < nColumns; ++c)
            row[c] = archive.readFloat32();
    }
    if (nFormat != WITH_VALUES) { // WITH_FLAGS and longer
        loaded.m_nExternal = archive.readInt32();
        loaded.m_uExternalFlags = archive.readUInt32();
    }
    if (nFormat != WITH_VALUES && nFormat != WITH_FLAGS)
        loaded.m_sName = archive.readString();
    if (nFormat == WITH_VERSION)
        loaded.m_nVersion = archive.readInt32();
    loaded.m_nFormatCode = m_nFormatCode;
    *this = std::move(loaded);
}

} // namespace velmora
