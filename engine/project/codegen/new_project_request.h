#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct CProjectEnvironment;
class IUserDialogs;

// What the project dialog holds: for a new project, or for one that is edited.
struct CNewProjectRequest
{
    std::filesystem::path m_parentFolder; // the project's folder is made in it
    std::string m_sProjectName;
    std::string m_sHeaderFile; // setName() fills both
    std::string m_sSourceFile;

    bool m_bCreateNewSolution = true;
    std::filesystem::path m_existingSolution; // used when no new one is wanted

    std::string m_sCompanyName = "Velmora User";
    std::string m_sLatency = "0"; // in samples, as typed
    std::string m_sCompanyCode;   // 4 characters each
    std::string m_sPlugInCode;
    std::string m_sVSTPlugInCode;

    bool m_bVSTCompatible = false;        // "Make VST2 and VST3 Compatible"
    bool m_bUseCustomVSTGUI = false;      // "Use Velmora Custom GUI "
    bool m_bUserCustomGUI = false;        // the plug-in brings a GUI of its own
    bool m_bOutputOnlyPlugIn = false;     // "Output Only Synthesizer Plug-In"
    bool m_bSidechainEnabled = false;     // "Enable Sidechain Input for VST and AU"
    bool m_bWriteAUWrapper = false;       // "Write Audio Units (AU) XCode Wrappers"
    bool m_bCarbonGUI = false;            // "Add Carbon GUI (I will write it)"
    bool m_bCocoaGUI = false;             // "Add Cocoa GUI (you will connect it)"
    bool m_bWriteVSTWrapper = false;      // "Write VST(Win) Wrapper"
    bool m_bIncludeReverbObjects = false; // "Include Velmora Reverb Objects (advanced)": all of them
    bool m_bIncludeFFT = false;           // "Include CFFT Object (advanced)"

    std::vector<std::filesystem::path> m_modules; // .prj files of existing plug-ins
    std::vector<std::string> m_stockObjects;      // by name, without suffix

    // The header's and the source's names follow the project's.
    void setName(std::string_view sName);

    [[nodiscard]] std::filesystem::path folder() const { return m_parentFolder / m_sProjectName; }
    [[nodiscard]] std::string className() const { return "C" + m_sProjectName; }
    [[nodiscard]] float latency() const; // in samples; 0 for what is no number
};

// The fields of the dialog that its OK checks.
enum class ENewProjectField
{
    Name,
    Latency,
    Company
};

struct CNewProjectRefusal
{
    ENewProjectField m_eField;
    std::string m_sMessage;
};

// All that OK of the dialog would refuse, in the order of its checks. bCreating also asks that the folder is
// not there yet.
[[nodiscard]] std::vector<CNewProjectRefusal> newProjectRefusals(const CNewProjectRequest& request,
                                                                 bool bCreating);

// What OK of the dialog checks; shows the first failure. An unusable name is replaced in the request by the
// one that the message suggests.
[[nodiscard]] bool checkNewProject(CNewProjectRequest& request, bool bCreating, IUserDialogs& dialogs);

// Why the name can not be a class and its files beside the contract's; empty if it can.
[[nodiscard]] std::string projectNameRefusal(std::string_view sName);

// Whether the name can be one. Shows what is wrong, and answers the suggested name in sSuggestion.
[[nodiscard]] bool checkProjectName(std::string_view sName, std::string& sSuggestion, IUserDialogs& dialogs);

// Whether the user's VSTFiles folder holds what VST compatibility needs; says what is missing.
[[nodiscard]] bool checkVSTFiles(const CProjectEnvironment& environment, IUserDialogs& dialogs);

// Whether the templates of the Audio Unit export, and of the VST wrapper, are installed; says so if not.
[[nodiscard]] bool checkAUTemplates(const CProjectEnvironment& environment, IUserDialogs& dialogs);
[[nodiscard]] bool checkVSTTemplates(const CProjectEnvironment& environment, IUserDialogs& dialogs);

// The two lines that validate the Audio Unit on a Mac: an effect's and an instrument's.
[[nodiscard]] std::string auEffectValidation(const CNewProjectRequest& request);
[[nodiscard]] std::string auInstrumentValidation(const CNewProjectRequest& request);

// What the dialog's lists offer: .prj files of plug-ins in the projects folder, one for each folder, and
// the names of the stock objects. Sorted.
[[nodiscard]] std::vector<std::filesystem::path> existingPlugIns(const CProjectEnvironment& environment);
[[nodiscard]] std::vector<std::string> stockObjectNames(const CProjectEnvironment& environment);

} // namespace velmora
