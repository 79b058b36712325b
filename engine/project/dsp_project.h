#pragma once

#include "base/object.h"
#include "plugin.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

// The working record of the user variable dialog.
struct userVariable
{
    UINT uDataType = 0; // 0 integer, 1 float, 2 double, 3 UINT, 4 VSTGUI
    UINT uReserved = 0;
    std::string sName;
    std::string sInitialValue;
};

// The open project: the description of one plug-in, with the very members that the compiled plug-in will
// carry, plus where its files lie and what the exports need. control_list.h works on m_UIControlList,
// project_file.h loads and saves. [main]
class CDSPProject : public CObject, public CPlugIn
{
  public:
    CDSPProject();
    ~CDSPProject() override;

    CDSPProject(const CDSPProject&) = delete;
    CDSPProject& operator=(const CDSPProject&) = delete;

    // The stream of the .prj file: stores the newest schema, loads any in place of what the project holds. A
    // field that an old file lacks is then as in a fresh project. Loading throws CArchiveError on truncated
    // or impossible data, and leaves the project empty.
    void Serialize(CArchive& archive) override;

    // Makes the project as a fresh one is.
    void clear();

    // The version number of the stream that was loaded last, as it stood there; before that the newest one.
    [[nodiscard]] int loadedSchema() const { return m_nLoadedSchema; }

    // Appends the variable names of the user variables, and of all other controls.
    void GetUserVariableNames(std::vector<std::string>& names) const;
    void GetControlVariableNames(std::vector<std::string>& names) const;

    // A label's text, up to its first zero character; an empty one makes the label null. uIndex is 0 to 63.
    void setTextLabel(std::size_t uIndex, const std::string& sText);

    // Paths of the project's files.
    [[nodiscard]] std::filesystem::path folder() const { return m_sProjectFolder; }
    [[nodiscard]] std::filesystem::path headerPath() const { return folder() / m_sHeaderFile; }
    [[nodiscard]] std::filesystem::path sourcePath() const { return folder() / m_sSourceFile; }

    std::string m_sCompanyName; // vendor for the exports
    std::string m_sCompanyCode; // Audio Unit manufacturer, 4 characters
    std::string m_sPlugInCode;  // Audio Unit sub-type, 4 characters
    bool m_bWriteAUWrapper = false;
    bool m_bCarbonGUI = false;
    bool m_bCocoaGUI = false;
    std::string m_sVSTPlugInCode; // VST2 product, 4 characters
    bool m_bWriteVSTWrapper = false;
    std::string m_sSidechainFile; // audio file last used as sidechain
    bool m_bSidechainEnabled = false;

    // Two class identifiers in words. Kept in the file; nothing else reads or sets them.
    std::array<std::uint32_t, 8> m_uGUIDWords = {0x845207E6, 0xB5E24721, 0xA7B72D0E, 0x73E24C82,
                                                 0xD57A3223, 0x18A14663, 0xB765124B, 0x38B37056};
    std::vector<std::string> m_TextLabelStrings; // m_TextLabels on their way to or from the file

    std::string m_sProjectFolder; // absolute
    std::string m_sProjectFile;   // the .prj, absolute
    std::string m_sSolutionFile;  // the .sln, absolute
    std::string m_sProjectName;   // the class name without its C
    std::string m_sHeaderFile;    // within the folder
    std::string m_sSourceFile;    // within the folder
    bool m_bProjectFlagV3 = false;
    bool m_bVSTCompatible = false;

    // These hide members of CPlugIn with the same names. The project's own hold; those of the base, which in
    // a plug-in point at its literals, keep their defaults and are not read.
    UINT m_uX_TrackPadIndex = 0xFFFFFFFF;
    UINT m_uY_TrackPadIndex = 0xFFFFFFFF;
    std::string m_AssignButton1Name = "B1";
    std::string m_AssignButton2Name = "B2";
    std::string m_AssignButton3Name = "B3";
    bool m_bLatchingAssignButton1 = false;
    bool m_bLatchingAssignButton2 = false;
    bool m_bLatchingAssignButton3 = false;

    std::vector<userVariable> m_UserVariables; // kept empty: user variables live in m_UIControlList

  private:
    void load(CArchive& archive);
    void dropClassicGUI();
    void takeLabels();
    void freeLabels();

    int m_nLoadedSchema;
};

} // namespace velmora
