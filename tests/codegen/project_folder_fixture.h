#pragma once

#include "project/codegen/new_project_request.h"
#include "project/codegen/project_creation.h"
#include "project/codegen/project_environment.h"
#include "project/dsp_project.h"
#include "support/test_support.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace velmora::test {

// A folder for projects, the program's own base class files, and a program that lies elsewhere.
class CProjectFolderTest : public ::testing::Test
{
  protected:
    CProjectFolderTest()
    {
        m_environment.m_programPath = "/opt/velmora & co/velmora";
        m_environment.m_baseClassFolder = BASE_CLASS_FOLDER;
        m_environment.m_vstFilesFolder = m_folder / "VSTFiles";
        m_environment.m_plugInsFolder = m_folder / "Plug Ins $HOME";
        m_environment.m_projectsFolder = m_folder.path();
    }

    [[nodiscard]] CNewProjectRequest request(const std::string& sName) const
    {
        CNewProjectRequest result;
        result.setName(sName);
        result.m_parentFolder = m_folder.path();
        return result;
    }

    std::unique_ptr<CDSPProject> create(const CNewProjectRequest& request)
    {
        auto pProject = createProject(request, m_environment, m_dialogs);
        EXPECT_TRUE(pProject) << ::testing::PrintToString(m_dialogs.m_messages);
        return pProject;
    }

    // A file of a project, by its name behind the project's: ".vcxproj".
    [[nodiscard]] std::filesystem::path file(const std::string& sProject, const std::string& sSuffix) const
    {
        return m_folder / sProject / (sProject + sSuffix);
    }

    CTemporaryFolder m_folder;
    CProjectEnvironment m_environment;
    CRecordingDialogs m_dialogs;
};

// The text as a Windows program writes it: byte order mark, carriage returns.
inline std::string asWindowsText(const std::string& sText)
{
    std::string sResult = "\xEF\xBB\xBF";
    for (const char c : sText)
        sResult += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return sResult;
}

// Every line end is a carriage return and a line feed, and the byte order mark stands at the start alone.
inline bool isWindowsText(const std::string& sText)
{
    for (std::size_t i = 0; i < sText.size(); ++i)
        if ((sText[i] == '\n') != (i > 0 && sText[i - 1] == '\r'))
            return false;
    return sText.starts_with("\xEF\xBB\xBF") && sText.find("\xEF\xBB\xBF", 1) == sText.npos;
}

inline std::size_t countOf(const std::string& sText, const std::string& sSought)
{
    std::size_t uCount = 0;
    for (auto uFound = sText.find(sSought); uFound != sText.npos; uFound = sText.find(sSought, uFound + 1))
        ++uCount;
    return uCount;
}

} // namespace velmora::test
