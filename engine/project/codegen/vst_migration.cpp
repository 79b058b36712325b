#include "project/codegen/vst_migration.h"

#include "base/user_dialogs.h"
#include "project/codegen/base_files.h"
#include "project/codegen/code_text.h"
#include "project/codegen/library_files.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_history.h"
#include "project/codegen/project_text.h"
#include "project/codegen/text_surgery.h"
#include "project/codegen/vcproj_text.h"
#include "project/codegen/vcxproj_text.h"
#include "project/codegen/visual_studio_files.h"
#include "project/dsp_project.h"

#include <array>

namespace velmora {

namespace {

constexpr const char* HISTORY_REASON = "Project update";

constexpr std::array<std::string_view, 1> RESOURCE_LIBRARY = {"resources/Port2VST3.res"};
constexpr std::array<std::string_view, 2> GUI_LAYER_FILES = {"VELMPlugInContainer.h",
                                                             "resources/Port2VST3.res"};

struct CConfigurationText
{
    const char* m_pConfiguration;
    const char* m_pText;
};

constexpr CConfigurationText VCPROJ_DEFINITIONS[] = {{"Debug", "WIN32;_WINDOWS;WINDOWS=1;DEVELOPMENT=1"},
                                                     {"Release", "WIN32;_WINDOWS;WINDOWS=1;RELEASE=1"}};
constexpr CConfigurationText VCXPROJ_DEFINITIONS[] = {
    {"Debug", "WIN32;_WINDOWS;WINDOWS=1;DEVELOPMENT=1;%(PreprocessorDefinitions)"},
    {"Release", "WIN32=1;_WINDOWS;WINDOWS=1;RELEASE=1;%(PreprocessorDefinitions)"}};
constexpr CConfigurationText VCPROJ_LIBRARIES[] = {
    {"Debug", "Port2VST3d.lib base_vc9d.lib .\\resources\\Port2VST3.res"},
    {"Release", "Port2VST3.lib base_vc9.lib .\\resources\\Port2VST3.res"}};

constexpr const char* PICTURES =
    "  <bitmap name=\"horizvuledoff\" path=\"horizvuledoff.png\" velmtype=\"vuoff\" />\n"
    "  <bitmap name=\"horizvuledoffinv\" path=\"horizvuledoffinv.png\" velmtype=\"vuoffinv\" />\n"
    "  <bitmap name=\"horizvuledon\" path=\"horizvuledon.png\" velmtype=\"vuon\" />\n"
    "  <bitmap name=\"horizvuledoninv\" path=\"horizvuledoninv.png\" velmtype=\"vuoninv\" />\n"
    "  <bitmap name=\"vertswitchfilters\" path=\"vertswitchfilters.png\" velmtype=\"vertswitch\" />\n"
    "  <bitmap name=\"horizswitchsynth\" path=\"horizswitchsynth.png\" velmtype=\"horizswitch\" />\n";

std::string vcprojResources(const std::string& sName)
{
    return "\t\t<Filter Name=\"Resources\">\n"
           "\t\t\t<File RelativePath=\".\\resources\\knobvst.png\"></File>\n"
           "\t\t\t<File RelativePath=\".\\" +
           sName +
           ".rc\"></File>\n"
           "\t\t\t<File RelativePath=\".\\Velmora.uidesc\"></File>\n"
           "\t\t\t<File RelativePath=\".\\resource.h\"></File>\n"
           "\t\t</Filter>\n";
}

bool holds(std::string_view sText, std::string_view sSought)
{
    return sText.find(sSought) != sText.npos;
}

} // namespace

CVSTMigration::CVSTMigration(const CDSPProject& project, const CProjectEnvironment& environment,
                             IUserDialogs& dialogs, std::vector<std::filesystem::path>& changed)
    : m_project(project), m_environment(environment), m_dialogs(dialogs), m_changed(changed)
{
}

std::filesystem::path CVSTMigration::pathOf(std::string_view sSuffix) const
{
    return m_project.folder() / (m_project.m_sProjectName + std::string(sSuffix));
}

bool CVSTMigration::missing(std::string_view sMarker, const CEditedFile& file) const
{
    return checkCriticalString(-1, sMarker, file.path().string(), m_dialogs);
}

// What the user may have changed himself is kept before it is overwritten.
bool CVSTMigration::keep(const std::filesystem::path& file) const
{
    CProjectHistory history(m_project.folder());
    if (history.keep(file, HISTORY_REASON))
        return true;
    m_dialogs.showMessage(history.error());
    return false;
}

bool CVSTMigration::updateDefinitions()
{
    copyBaseFiles(contractFileNames(), m_environment, m_project.folder(), m_changed);
    copyBaseFiles(guiFileNames(), m_environment, m_project.folder(), m_changed);
    copyBaseFiles(RESOURCE_LIBRARY, m_environment, m_project.folder(), m_changed);
    copyBaseFiles(librarySet(m_environment.m_eFamily), m_environment, m_project.folder(), m_changed);
    return updateVcprojDefinitions() && updateVcxprojDefinitions() && addPictures();
}

bool CVSTMigration::updateVcprojDefinitions()
{
    CEditedFile file(pathOf(".vcproj"), m_dialogs);
    if (!file.isPresent())
        return true;
    if (!file.check())
        return false;
    for (const CConfigurationText& row : VCPROJ_DEFINITIONS) {
        if (!file.critical(vcprojConfiguration(row.m_pConfiguration)))
            return false;
        if (!setVcprojAttribute(file.text(), row.m_pConfiguration, "PreprocessorDefinitions", row.m_pText))
            return missing("PreprocessorDefinitions=\"", file);
    }
    return file.save(m_changed);
}

bool CVSTMigration::updateVcxprojDefinitions()
{
    CEditedFile file(pathOf(".vcxproj"), m_dialogs);
    if (!file.isPresent())
        return true;
    if (!file.check())
        return false;
    for (const CConfigurationText& row : VCXPROJ_DEFINITIONS) {
        const std::string sMissing =
            setVcxprojElement(file.text(), row.m_pConfiguration, "PreprocessorDefinitions", row.m_pText,
                              " </ClCompile>", "   ", "\n    ");
        if (!sMissing.empty())
            return missing(sMissing, file);
    }
    return file.save(m_changed);
}

bool CVSTMigration::addPictures()
{
    CEditedFile file(m_project.folder() / "Velmora.uidesc", m_dialogs);
    if (!file.isPresent() || holds(file.text(), "horizswitchsynth.png"))
        return true;
    if (!file.check())
        return false;
    const auto uPlace = file.critical(" </bitmaps>");
    if (!uPlace || !keep(file.path()))
        return false;
    file.text().insert(*uPlace, fitted(PICTURES, file.text()));
    return file.save(m_changed);
}

bool CVSTMigration::migrate()
{
    copyVSTResources(m_environment, m_project.folder(), m_project.m_sProjectName, m_changed);
    const CLibraryFiles library{m_project.folder(), m_project.m_sProjectName, m_project.m_sHeaderFile,
                                m_project.m_sCompanyName, m_project.m_bVSTCompatible};
    return migrateVcproj() && migrateVcxproj() && keep(m_project.folder() / "VelmoraDLL.h") &&
           keep(m_project.folder() / "VelmoraDLL.cpp") &&
           writeLibraryFiles(library, m_environment, m_dialogs, m_changed);
}

bool CVSTMigration::migrateVcproj()
{
    CEditedFile file(pathOf(".vcproj"), m_dialogs);
    if (!file.isPresent())
        return true;
    if (!file.check())
        return false;
    if (!holds(file.text(), "RelativePath=\".\\resources\\knobvst.png\"")) {
        const auto uPlace = file.critical("</Files>");
        if (!uPlace)
            return false;
        file.text().insert(*uPlace, fitted(vcprojResources(m_project.m_sProjectName), file.text()));
    }
    for (const CConfigurationText& row : VCPROJ_LIBRARIES) {
        if (!file.critical(vcprojConfiguration(row.m_pConfiguration)))
            return false;
        if (!setVcprojAttribute(file.text(), row.m_pConfiguration, "AdditionalDependencies", row.m_pText,
                                "VCLinkerTool"))
            return missing("AdditionalDependencies=\"", file);
        if (!setVcprojAttribute(file.text(), row.m_pConfiguration, "ModuleDefinitionFile", "vst3plug.def",
                                "VCLinkerTool"))
            return missing("ModuleDefinitionFile=\"", file);
    }
    return file.save(m_changed);
}

bool CVSTMigration::migrateVcxproj()
{
    CEditedFile file(pathOf(".vcxproj"), m_dialogs);
    if (!file.isPresent())
        return true;
    if (!file.check())
        return false;
    std::string& sText = file.text();
    if (!holds(sText, "Include=\"resource.h\"")) {
        constexpr std::string_view LIBRARY_HEADER = "VelmoraDLL.h\" />";
        const auto uPlace = file.critical(LIBRARY_HEADER);
        if (!uPlace)
            return false;
        sText.insert(*uPlace + LIBRARY_HEADER.size(),
                     fitted("\n    <ClInclude Include=\"resource.h\" />\n", sText));
    }
    if (!holds(sText, "<Image Include=\"resources\\knobvst.png\"")) {
        const auto uImport = file.critical("<Import Project=\"$(VCTargetsPath)\\Microsoft.Cpp.targets");
        if (!uImport)
            return false;
        sText.insert(
            *uImport,
            fitted("  <ItemGroup>\n    <Image Include=\"resources\\knobvst.png\" />\n  </ItemGroup>\n"
                   "  <ItemGroup>\n    <ResourceCompile Include=\"" +
                       m_project.m_sProjectName + ".rc\" />\n  </ItemGroup>\n",
                   sText));
    }
    return setVSTLinkEntries(sText, file.path().string(), m_dialogs) && file.save(m_changed);
}

bool CVSTMigration::updateGUILayer()
{
    CEditedFile file(m_project.folder() / "VelmoraDLL.cpp", m_dialogs);
    if (!file.check())
        return false;
    std::string& sText = file.text();
    replaceAll(sText, "// CPlugIn* pVSTOb = new", "CPlugIn* pVSTOb = new");
    replaceAll(sText, "createObject,", "pVSTOb,");
    replaceAll(sText, "&g_pGUIXML[0], g_nGUIXMLSize)", "&g_pGUIXML[0], g_nGUIXMLSize, stringCompanyName)");
    if (!holds(sText, "#define stringCompanyName")) {
        const std::string sMarker = fitted(std::string(ID_MARKER) + "\n", sText);
        const auto uPlace = sText.find(sMarker);
        if (uPlace == sText.npos)
            return missing(ID_MARKER, file);
        std::string sLine = "#define stringCompanyName \"";
        appendLiteral(sLine, m_project.m_sCompanyName);
        sText.insert(uPlace + sMarker.size(), fitted(sLine + "\"\n", sText));
    }
    if (file.isChanged() && (!keep(file.path()) || !file.save(m_changed)))
        return false;
    copyBaseFiles(GUI_LAYER_FILES, m_environment, m_project.folder(), m_changed);
    copyBaseFiles(librarySet(m_environment.m_eFamily), m_environment, m_project.folder(), m_changed);
    return true;
}

} // namespace velmora
