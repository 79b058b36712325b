#pragma once

#include "project/codegen/code_central_services.h"
#include "project/dsp_project.h"
#include "support/recording_patience.h"
#include "support/test_support.h"

#include <string>
#include <vector>

namespace velmora::test {

// A control as a dialog leaves it, with a start value of 0.5 of its type.
inline CUICtrl makeControl(UINT uType, UINT uId, UINT uDataType, const char* pVariable,
                           const char* pList = "")
{
    CUICtrl control;
    control.uControlType = uType;
    control.uControlId = uId;
    control.uUserDataType = uDataType;
    control.cVariableName = pVariable;
    control.cControlName = "Name";
    control.cEnumeratedList = pList;
    control.fUserDisplayDataHiLimit = 1.0f;
    control.fInitUserFloatValue = 0.5f;
    return control;
}

// A project on disc with sources of the given texts, and everything needed to write its code.
struct CCodeProject
{
    explicit CCodeProject(const std::string& sHeader = "a\n// **--0x07FD--**\n// **--0x1A7F--** b\n",
                          const std::string& sSource = "c\n// **--0xDEA7--**\n// **--0xEDA5--** d\n"
                                                       "/*\n**--0x2983--**\n**--0xFFDD--**\n*/\n")
    {
        m_project.m_sProjectFolder = m_folder.path().string();
        m_project.m_sHeaderFile = "Gain.h";
        m_project.m_sSourceFile = "Gain.cpp";
        writeFile(m_project.headerPath(), sHeader);
        writeFile(m_project.sourcePath(), sSource);
    }

    bool write() { return m_services.writeCodeRegions(&m_project); }
    [[nodiscard]] std::string header() const { return readFile(m_project.headerPath()); }
    [[nodiscard]] std::string source() const { return readFile(m_project.sourcePath()); }

    CTemporaryFolder m_folder;
    CDSPProject m_project;
    CRecordingDialogs m_dialogs;
    CRecordingPatience m_patience;
    CCodeCentralServices m_services{nullptr, m_dialogs};
};

} // namespace velmora::test
