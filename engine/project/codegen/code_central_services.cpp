#include "project/codegen/code_central_services.h"

#include "base/user_dialogs.h"
#include "project/codegen/code_markers.h"
#include "project/codegen/compiler_access.h"
#include "project/codegen/control_table_region.h"
#include "project/codegen/header_region.h"
#include "project/codegen/init_ui_region.h"
#include "project/codegen/project_history.h"
#include "project/codegen/text_surgery.h"
#include "project/control_list.h"
#include "project/dsp_project.h"

#include <span>

namespace velmora {

namespace {

constexpr int SOURCE_RETRIES = 20;

struct CReplacement
{
    std::string_view m_sOld;
    std::string_view m_sNew;
};

constexpr CReplacement HEADER_SIGNATURES[] = {
    {"processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT  uNumChannels);",
     "processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels, UINT "
     "uNumOutputChannels);"},
    {"processAudioBuffer(float* pInputBuffer, float* pOutputBuffer, UINT uNumChannels, UINT uBufferSize);",
     "processSocketAudioBuffer(float* pInputBuffer, float* pOutputBuffer, UINT uNumChannels, UINT "
     "uBufferSize);"},
};

constexpr CReplacement SOURCE_SIGNATURES[] = {
    {"::processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumChannels)",
     "::processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumChannels, UINT "
     "uNumOutputChannels)"},
    {"::processAudioBuffer(float* pInputBuffer, float* pOutputBuffer, UINT uNumChannels, UINT uBufferSize)",
     "::processSocketAudioBuffer(float* pInputBuffer, float* pOutputBuffer, UINT uNumChannels, UINT "
     "uBufferSize)"},
};

std::string replaced(std::string sText, std::span<const CReplacement> replacements)
{
    for (const CReplacement& replacement : replacements)
        replaceAll(sText, replacement.m_sOld, replacement.m_sNew);
    return sText;
}

} // namespace

CCodeCentralServices::CCodeCentralServices(ICompilerAccess* pCompiler, IUserDialogs& dialogs)
    : m_pCompiler(pCompiler), m_dialogs(dialogs)
{
}

bool CCodeCentralServices::writeCodeRegions(CDSPProject* pProject)
{
    if (!begin(pProject))
        return false;
    if (!mayWrite(*pProject))
        return false;
    CProjectHistory history(pProject->folder());
    if (!writeHeader(*pProject, history) || !writeSource(*pProject, history))
        return false;
    if (m_pCompiler)
        m_pCompiler->returnFocus();
    return true;
}

bool CCodeCentralServices::updateProcessSignatures(CDSPProject* pProject)
{
    if (!begin(pProject))
        return false;
    CProjectHistory history(pProject->folder());
    const auto repair = [&](const std::filesystem::path& path, const char* pError, auto& signatures) {
        std::string sText;
        return readSource(path, sText,
                          std::string("Critical error: ") + pError +
                              " - alert OrinH; sFileString.IsEmpty() " + path.string()) &&
               replaceSource(path, sText, replaced(sText, signatures), "signatures", history);
    };
    if (!repair(pProject->headerPath(), "009A", HEADER_SIGNATURES) ||
        !repair(pProject->sourcePath(), "009B", SOURCE_SIGNATURES))
        return false;
    if (m_pCompiler)
        m_pCompiler->saveAll();
    return true;
}

// What both operations start with: the editor is there and has put on disc what the user typed.
bool CCodeCentralServices::begin(CDSPProject* pProject)
{
    m_written.clear();
    if (!pProject)
        return false;
    if (!m_pCompiler)
        return true;
    if (!m_pCompiler->makeAvailable(*pProject)) {
        m_dialogs.showMessage(
            "Could not create process for VCExpress.exe - Make sure it is installed on this computer!");
        return false;
    }
    if (!m_pCompiler->saveAll())
        m_dialogs.note(
            "The compiler could not be told to save. What was typed there since it last did is not in "
            "the files.");
    return true;
}

// Whether every region can be replaced without a loss, or the user agrees to it. A source that cannot be read
// now is told by what follows.
bool CCodeCentralServices::mayWrite(const CDSPProject& project)
{
    const std::pair<std::filesystem::path, CCodeRegion> REGIONS[] = {
        {project.headerPath(), HEADER_REGION},
        {project.sourcePath(), INIT_UI_REGION},
        {project.sourcePath(), CONTROL_TABLE_REGION}};
    for (const auto& [path, region] : REGIONS) {
        std::string sText;
        if (!readFileToString(path, sText, false, 0, true))
            continue;
        const auto fault = findRegionFault(sText, region);
        if (fault && fault->m_bLosesText &&
            !m_dialogs.askYesNo("In " + path.string() + " " + fault->m_sText +
                                ". Writing the code now would take lines of your own away; the present text "
                                "is kept in the project's history.\n\nDo you want the code to be written "
                                "all the same?"))
            return false;
    }
    return true;
}

// Shows the message if the file cannot be read or is empty.
bool CCodeCentralServices::readSource(const std::filesystem::path& path, std::string& sText,
                                      const std::string& sMessage)
{
    if (readFileToString(path, sText, true, SOURCE_RETRIES, true) && !sText.empty())
        return true;
    m_dialogs.showMessage(sMessage);
    return false;
}

bool CCodeCentralServices::replaceSource(const std::filesystem::path& path, const std::string& sOld,
                                         const std::string& sNew, const char* pReason,
                                         CProjectHistory& history)
{
    if (sNew == sOld)
        return true;
    if (!history.keepText(path, sOld, pReason)) {
        m_dialogs.showMessage("The text of " + path.string() + " could not be kept in " +
                              history.folder().string() + ": " + history.error() +
                              ". The file was left as it is.");
        return false;
    }
    if (!writeStringToFile(path, sNew)) {
        m_dialogs.showMessage(path.string() +
                              " could not be written. Make sure that the disk is not full and that you may "
                              "write in the project's folder.");
        return false;
    }
    m_written.push_back(path);
    return true;
}

bool CCodeCentralServices::writeHeader(CDSPProject& project, CProjectHistory& history)
{
    const std::filesystem::path path = project.headerPath();
    std::string sOld;
    if (!readSource(path, sOld, "Critical error: 009 - alert OrinH; sFileString.IsEmpty() " + path.string()))
        return false;
    sortControls(project.m_UIControlList);
    compactThemeBoundControls(project.m_UIControlList);
    std::string sNew = sOld;
    if (!replaceCodeRegion(sNew, HEADER_REGION, headerRegionBody(project),
                           prevailingLineEnd(sOld, {HEADER_REGION}))) {
        m_dialogs.showMessage("ERROR 001 while parsing .h file");
        return false;
    }
    return replaceSource(path, sOld, sNew, "code regions", history);
}

bool CCodeCentralServices::writeSource(const CDSPProject& project, CProjectHistory& history)
{
    const std::filesystem::path path = project.sourcePath();
    std::string sOld;
    if (!readSource(
            path, sOld,
            "Error: 009 " + path.string() +
                ".h is empty, most likely because the compiler is not ready or busy. Please make sure "
                "the compiler is not busy and try again."))
        return false;
    const std::string_view sLineEnd = prevailingLineEnd(sOld, {INIT_UI_REGION, CONTROL_TABLE_REGION});
    std::string sNew = sOld;
    if (!replaceCodeRegion(sNew, INIT_UI_REGION, initUIBody(project, readCompiledPresets(project.folder())),
                           sLineEnd)) {
        m_dialogs.showMessage("ERROR 001 while parsing .cpp file");
        return false;
    }
    const bool bBoth = replaceCodeRegion(sNew, CONTROL_TABLE_REGION, controlTableBody(project), sLineEnd);
    if (!replaceSource(path, sOld, sNew, "code regions", history))
        return false;
    if (!bBoth)
        m_dialogs.showMessage("ERROR 002 while parsing .cpp file");
    return bBoth;
}

} // namespace velmora
