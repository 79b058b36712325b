#include "base/archive.h"
#include "dsp/float_array.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora {
namespace {

CFloatArray counted(int nRows, int nColumns)
{
    CFloatArray table;
    EXPECT_TRUE(table.create(nRows, nColumns, 0.0f));
    for (int r = 0; r < nRows; ++r) {
        for (int c = 0; c < nColumns; ++c)
            table.set(r, c, static_cast<float>(10 * r + c));
    }
    return table;
}

std::string stored(CFloatArray& table)
{
    std::string sBytes;
    CArchive archive(sBytes);
    table.Serialize(archive);
    return sBytes;
}

void load(CFloatArray& table, const std::string& sBytes)
{
    CArchive archive(std::as_bytes(std::span(sBytes.data(), sBytes.size())));
    table.Serialize(archive);
}

TEST(FloatArray, RefusesSizesBelowOneAndKeepsWhatItHas)
{
    CFloatArray table = counted(2, 2);
    std::string sError;
    EXPECT_FALSE(table.create(0, 5, 0.0f, &sError));
    EXPECT_NE(sError, "");
    EXPECT_FALSE(table.create(5, 0, 0.0f));
    EXPECT_FALSE(table.create(-1, -1, 0.0f));
    EXPECT_FALSE(table.addRows(0));
    EXPECT_EQ(table.rows(), 2);
    EXPECT_EQ(table.get(1, 1), 11.0f);
    CFloatArray empty;
    EXPECT_FALSE(empty.addRows(1));
}

#ifndef __SANITIZE_ADDRESS__ // which ends the process instead
TEST(FloatArray, ReportsThatMemoryDoesNotSuffice)
{
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr rlim_t BYTES = rlim_t{64} << 20;
        const rlimit limit{BYTES, BYTES};
        ::setrlimit(RLIMIT_AS, &limit);
        CFloatArray table;
        std::string sError;
        bool bRight = table.create(2, 2, 3.0f) && !table.create(1000, 1000000, 0.0f, &sError) &&
                      sError == "Out of memory in CreateArray()" && table.get(1, 1) == 3.0f;
        sError.clear();
        bRight = bRight && !table.addRows(1000000000, &sError) &&
                 sError == "Out of memory in CreateArray()" && table.rows() == 2;
        ::_exit(bRight ? 42 : 1);
    }
    int nStatus = 0;
    ASSERT_EQ(::waitpid(child, &nStatus, 0), child);
    EXPECT_TRUE(WIFEXITED(nStatus));
    EXPECT_EQ(WEXITSTATUS(nStatus), 42);
}
#endif

TEST(FloatArray, GrowsAndClones)
{
    CFloatArray table = counted(2, 3);
    table.m_sName = "points";
    table.m_nExternal = 5;
    ASSERT_TRUE(table.addRows(2));
    EXPECT_EQ(table.rows(), 4);
    EXPECT_EQ(table.get(1, 2), 12.0f);
    EXPECT_EQ(table.get(3, 2), 0.0f);
    const auto copy = table.clone();
    ASSERT_NE(copy, nullptr);
    table.set(1, 2, 99.0f);
    EXPECT_EQ(copy->get(1, 2), 12.0f);
    EXPECT_EQ(copy->rows(), 4);
    EXPECT_EQ(copy->m_sName, "points");
    EXPECT_EQ(copy->m_nExternal, 5);
    EXPECT_EQ(CFloatArray().clone()->rows(), 0);
}

TEST(FloatArray, SerializesEverythingInFormatOne)
{
    CFloatArray table = counted(2, 3);
    table.m_sName = "break points";
    table.m_nVersion = 7;
    table.m_nExternal = -3;
    table.m_uExternalFlags = 0x80000001;
    const std::string sBytes = stored(table);
    EXPECT_EQ(sBytes.substr(0, 12), std::string("\x01\0\0\0\x02\0\0\0\x03\0\0\0", 12));
    CFloatArray read;
    load(read, sBytes);
    EXPECT_EQ(stored(read), sBytes);
    EXPECT_EQ(read.get(1, 2), 12.0f);
    EXPECT_EQ(read.m_nExternal, -3);
    EXPECT_EQ(read.m_uExternalFlags, 0x80000001);
}

TEST(FloatArray, ReadsTheShorterFormats)
{
    CFloatArray table = counted(1, 2);
    table.m_nExternal = 4;
    table.m_sName = "n";
    table.m_nVersion = 9;
    const struct
    {
        char m_cFormat;
        std::size_t m_uMissing; // bytes at the end
        int m_nExternal;
        std::string m_sName;
    } cases[] = {{2, 14, 0, ""}, {3, 6, 4, ""}, {4, 4, 4, "n"}};
    for (const auto& each : cases) {
        std::string sBytes = stored(table);
        sBytes[0] = each.m_cFormat;
        sBytes.resize(sBytes.size() - each.m_uMissing);
        CFloatArray read;
        load(read, sBytes);
        EXPECT_EQ(read.get(0, 1), 1.0f) << int(each.m_cFormat);
        EXPECT_EQ(read.m_nExternal, each.m_nExternal) << int(each.m_cFormat);
        EXPECT_EQ(read.m_sName, each.m_sName) << int(each.m_cFormat);
        EXPECT_EQ(read.m_nVersion, 0) << int(each.m_cFormat);
    }
}

TEST(FloatArray, DamagedBytesLoadNothing)
{
    CFloatArray source = counted(2, 2);
    const std::string sWhole = stored(source);
    CFloatArray table = counted(1, 1);
    for (std::size_t uLength = 0; uLength < sWhole.size(); ++uLength)
        EXPECT_THROW(load(table, sWhole.substr(0, uLength)), CArchiveError) << uLength;
    for (const std::string& sSize :
         {std::string("\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F", 8), std::string("\xFF\xFF\xFF\xFF\x02\0\0\0", 8),
          std::string("\0\0\0\0\x02\0\0\0", 8)}) {
        std::string sBytes = sWhole;
        sBytes.replace(4, 8, sSize);
        EXPECT_THROW(load(table, sBytes), CArchiveError);
    }
    for (const char cFormat : {0, 5, -1}) {
        std::string sBytes = sWhole;
        sBytes[0] = cFormat;
        EXPECT_THROW(load(table, sBytes), CArchiveError);
    }
    EXPECT_EQ(table.rows(), 1);
    EXPECT_EQ(table.columns(), 1);
}

} // namespace
} // namespace velmora
