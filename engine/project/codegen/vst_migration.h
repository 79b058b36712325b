#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPProject;
class CEditedFile;
class IUserDialogs;
struct CProjectEnvironment;

// What brings an old project's files to the present VST3 form. Each operation is a block of the project
// update: it can be run again, changes nothing that is as it should be, and answers false, after a message,
// when a file lacks a marker that it needs. A compiler's file that the project does not have needs no change.
// [main]
class CVSTMigration
{
  public:
    // All must outlive this. Files that change are appended to the list.
    CVSTMigration(const CDSPProject& project, const CProjectEnvironment& environment, IUserDialogs& dialogs,
                  std::vector<std::filesystem::path>& changed);

    // Contract, libraries, preprocessor definitions, the GUI document's pictures.
    [[nodiscard]] bool updateDefinitions();

    // From a project without any VST layer: resources, library files, entries in the compilers' files.
    [[nodiscard]] bool migrate();

    // The present way of making the GUI's object.
    [[nodiscard]] bool updateGUILayer();

  private:
    [[nodiscard]] std::filesystem::path pathOf(std::string_view sSuffix) const;
    [[nodiscard]] bool missing(std::string_view sMarker, const CEditedFile& file) const;
    [[nodiscard]] bool keep(const std::filesystem::path& file) const;

    [[nodiscard]] bool updateVcprojDefinitions();
    [[nodiscard]] bool updateVcxprojDefinitions();
    [[nodiscard]] bool addPictures();
    [[nodiscard]] bool migrateVcproj();
    [[nodiscard]] bool migrateVcxproj();

    const CDSPProject& m_project;
    const CProjectEnvironment& m_environment;
    IUserDialogs& m_dialogs;
    std::vector<std::filesystem::path>& m_changed;
};

} // namespace velmora
