#include "project/codegen/variable_rename.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(VariableRename, TakesWholeNamesOnly)
{
    std::string sText = "fGain=fGain*2; // fGain\nm_fGain + fGain2 - afGain; x.fGain";
    EXPECT_EQ(renameIdentifier(sText, "fGain", "fGain2"), 4U);
    EXPECT_EQ(sText, "fGain2=fGain2*2; // fGain2\nm_fGain + fGain2 - afGain; x.fGain2");
    sText += " ; int";
    for (const char* pFrom : {"", "absent", ";", "int"})
        EXPECT_EQ(renameIdentifier(sText, pFrom, "x"), 0U) << pFrom;
}

} // namespace
} // namespace velmora
