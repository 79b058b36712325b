#pragma once

#include "base/platform_file_watch.h"
#include "cli/headless_document.h"

#include <filesystem>

namespace velmora::cli {

// Goes over to each new build of the plug-in that is loaded, while audio runs through it. What becomes of
// each is told on standard error; one that cannot be loaded leaves the build of before in its place. [main]
class CPlugInWatch
{
  public:
    // The library is the one that is loaded. Both must outlive this.
    CPlugInWatch(CCommandContext& context, CHeadlessDocument& document, std::filesystem::path library);

    // Waits for a new build, at most so long, and goes over to it.
    void wait(double dSeconds);

    // How often it went over to a new build.
    [[nodiscard]] unsigned swaps() const { return m_uSwaps; }

  private:
    void goOver();
    void tellOfNewBuild();

    CCommandContext& m_context;
    CHeadlessDocument& m_document;
    std::filesystem::path m_library;
    CFileWatch m_watch;
    unsigned m_uSwaps = 0;
    bool m_bToldOfError = false;
};

} // namespace velmora::cli
