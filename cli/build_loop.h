#pragma once

#include "base/platform_file_watch.h"
#include "cli/headless_project.h"

#include <string>
#include <vector>

namespace velmora::cli {

// Builds a project and loads it, again whenever a source, a header or the project file in its folder changes,
// and prints each result, until an interrupt comes. The values of the controls are carried from one build to
// the next.
//
// What a build writes into the sources itself is known before the compiler starts, so that it starts no
// second build; what the user saves from then on does. The project is locked while it is built and free while
// the loop waits, so that other commands can change it and are heard when they are through.
class CBuildLoop
{
  public:
    // The project is the open one. Both must outlive this.
    CBuildLoop(CCommandContext& context, CHeadlessProject& project);

    // Answers an exit status.
    [[nodiscard]] int run();

  private:
    void addLaterChanges(std::vector<std::string>& changed);
    [[nodiscard]] bool reloadProject(const std::vector<std::string>& changed);
    [[nodiscard]] bool buildOnce(const std::vector<std::string>& changed);
    [[nodiscard]] bool print(const CRebuildResult& result, const std::vector<std::string>& changed);
    [[nodiscard]] std::vector<std::string> waitForChanges();

    CCommandContext& m_context;
    CHeadlessProject& m_project;
    std::filesystem::path m_projectFile;
    CFileWatch m_watch;
};

} // namespace velmora::cli
