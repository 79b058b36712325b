#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

class CDSPProject;
class CProjectHistory;
class ICompilerAccess;
class IUserDialogs;

// Writes what the project holds into the user's own sources, between the markers of code_markers.h and
// nowhere else, and repairs the signatures of old sources. A file is written only when its text changes, and
// its earlier text is kept in the project's history first. [main]
class CCodeCentralServices
{
  public:
    // pCompiler is the editor that may have the sources open; null where there is none, and then nobody is
    // asked to save.
    CCodeCentralServices(ICompilerAccess* pCompiler, IUserDialogs& dialogs);

    // Sorts the control list, then rewrites the region of the .h and the two of the .cpp. False, after a
    // message, if a source cannot be read or its markers are not in place; the files are then as far as they
    // got. Where a write would take away text of the user's, because a marker is missing or stands twice, it
    // asks first; with No nothing is written. False at once for a null project.
    bool writeCodeRegions(CDSPProject* pProject);

    // Gives the processing functions of a source made for an older contract their present names and
    // parameters. False, after a message, if a source cannot be read or written.
    bool updateProcessSignatures(CDSPProject* pProject);

    // The files that the last of these operations changed, in that order.
    [[nodiscard]] const std::vector<std::filesystem::path>& written() const { return m_written; }

  private:
    bool begin(CDSPProject* pProject);
    bool mayWrite(const CDSPProject& project);
    bool readSource(const std::filesystem::path& path, std::string& sText, const std::string& sMessage);
    bool replaceSource(const std::filesystem::path& path, const std::string& sOld, const std::string& sNew,
                       const char* pReason, CProjectHistory& history);
    bool writeHeader(CDSPProject& project, CProjectHistory& history);
    bool writeSource(const CDSPProject& project, CProjectHistory& history);

    ICompilerAccess* m_pCompiler;
    IUserDialogs& m_dialogs;
    std::vector<std::filesystem::path> m_written;
};

} // namespace velmora
