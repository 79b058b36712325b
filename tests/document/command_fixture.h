#pragma once

#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "host/user_dsp_filter.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/text_surgery.h"
#include "project/control_properties.h"
#include "project/dsp_project.h"
#include "support/fake_audio_system.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace velmora {

// Keeps the status texts of plug-ins.
class CTextView : public IMessageTarget
{
  public:
    void post(unsigned, std::size_t, std::ptrdiff_t) override {}
    std::ptrdiff_t send(unsigned uMessage, std::size_t, std::ptrdiff_t nParam) override
    {
        if (uMessage == PLUGIN_MESSAGE_STATUS_TEXT)
            m_texts.emplace_back(reinterpret_cast<const char*>(nParam));
        return 0;
    }

    std::vector<std::string> m_texts;
};

// A document with a user folder of its own, and the commands on it.
class ProjectCommands : public testing::Test
{
  protected:
    ProjectCommands()
    {
        CTonboxDoc::CStartUp startUp;
        startUp.m_userFolder = m_folder / "user";
        startUp.m_bOpenAudioSystem = false;
        startUp.m_bScanPlugIns = false;
        EXPECT_TRUE(m_document.OnNewDocument(startUp));
        m_pCommands = std::make_unique<CProjectCommands>(m_document, m_dialogs, BASE_CLASS_FOLDER);
    }
    ~ProjectCommands() override { std::filesystem::current_path("/"); }

    bool newProject(const std::string& sName)
    {
        CNewProjectRequest request;
        request.m_parentFolder = m_folder / "projects";
        request.setName(sName);
        std::filesystem::create_directories(request.m_parentFolder);
        return commands().newProject(request);
    }

    // A float slider from 0 to 2.
    bool addSlider(UINT uId, const std::string& sVariable, float fInitial)
    {
        CControlEdit edit = newControlEdit(*commands().project(), uId);
        edit.m_sName = sVariable;
        edit.m_sVariableName = sVariable;
        edit.m_record.fUserDisplayDataHiLimit = 2.0F;
        initialValueOf(edit.m_record) = fInitial;
        return commands().acceptControl(edit, true);
    }

    // Replaces a text of the user's source; it must be there.
    void changeSource(const std::string& sFrom, const std::string& sTo)
    {
        std::string sText = test::readFile(commands().project()->sourcePath());
        EXPECT_GT(replaceAll(sText, sFrom, sTo), 0U) << sFrom;
        test::writeFile(commands().project()->sourcePath(), sText);
    }

    // What the loaded plug-in makes of a sample of 1.0.
    float output()
    {
        float fIn = 1.0F;
        float fOut[2] = {};
        const bool bDone = m_document.plugInLoader().current()->filter().processUserBuffer(
            &fIn, fOut, 0, 1, 1, 1, nullptr, 0, false);
        return bDone ? fOut[0] : -1.0F;
    }

    CPlugIn& plugIn() { return *m_document.plugInLoader().current()->plugIn(); }
    CProjectCommands& commands() { return *m_pCommands; }

    test::CTemporaryFolder m_folder;
    test::CRecordingDialogs m_dialogs;
    CTextView m_view;
    test::CFakeAudioSystem m_audioSystem;
    CTonboxDoc m_document{m_dialogs, m_audioSystem, m_view};
    std::unique_ptr<CProjectCommands> m_pCommands;
};

} // namespace velmora
