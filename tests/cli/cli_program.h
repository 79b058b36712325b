#pragma once

#include "support/json_reader.h"
#include "support/program_runner.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace velmora::test {

// The built velmora-cli, run as a user runs it, with a working folder and a user folder of its own.
class CCliTest : public ::testing::Test
{
  protected:
    CProgramEnd run(std::vector<std::string> arguments)
    {
        m_start.m_workingFolder = m_folder.path();
        m_start.m_environment = {{"APPDATA", m_userBase.path().string()}, {"LC_ALL", "C"}};
        return runProgram(CLI_PROGRAM, arguments, m_start);
    }

    // Runs with --json, expects success, and answers the result.
    CJsonValue runForJson(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "--json");
        const CProgramEnd end = run(std::move(arguments));
        EXPECT_EQ(end.m_nExitStatus, 0) << end.m_sErrors;
        return CJsonValue::parse(end.m_sOutput);
    }

    // Runs, and expects the exit status, nothing on standard output, and each text on standard error.
    void expectFailure(const std::vector<std::string>& arguments, int nStatus,
                       const std::vector<std::string>& texts)
    {
        const CProgramEnd end = run(arguments);
        const std::string sLine = ::testing::PrintToString(arguments);
        EXPECT_EQ(end.m_nExitStatus, nStatus) << sLine << "\n" << end.m_sErrors;
        EXPECT_EQ(end.m_sOutput, "") << sLine;
        for (const std::string& sText : texts)
            EXPECT_NE(end.m_sErrors.find(sText), std::string::npos)
                << sLine << " lacks \"" << sText << "\" in:\n"
                << end.m_sErrors;
    }

    static std::string example(const std::string& sName)
    {
        return std::string(EXAMPLES_BUILT) + "/" + sName + ".so";
    }
    static std::string unruly() { return std::string(CLI_TEST_PLUGINS) + "/Unruly.so"; }

    std::filesystem::path userFolder() const { return m_userBase / "Velmora"; }

    CTemporaryFolder m_folder;
    CTemporaryFolder m_userBase;
    CProgramStart m_start;
};

} // namespace velmora::test
