#pragma once

#include "project/compiler/toolchain.h"

#include <filesystem>
#include <memory>

namespace velmora {

// A compiler that is driven from its command line: it needs no window, is always ready and has nothing to
// save. A rebuild compiles every *.cpp that lies directly in the project folder and what changed alone, links
// the library under a temporary name and puts it into the folder of plug-ins when it is complete; until then
// the old one stays. The log and the marker are written so that the build watch reads them like those of
// the other compilers. [main]
class CCommandLineToolchain : public IToolchain
{
  public:
    // nCompilerId is GCC_COMMAND_LINE_ID or CLANG_COMMAND_LINE_ID. plugInsFolder takes the libraries;
    // cacheFolder keeps what projects share, the compiled contract. Both are made when they are missing.
    CCommandLineToolchain(int nCompilerId, std::filesystem::path plugInsFolder,
                          std::filesystem::path cacheFolder);

    // Stops a build that is under way, and waits for its end.
    ~CCommandLineToolchain() override;

    CCommandLineToolchain(const CCommandLineToolchain&) = delete;
    CCommandLineToolchain& operator=(const CCommandLineToolchain&) = delete;

    [[nodiscard]] bool makeAvailable(const CDSPProject& project) override;
    bool saveAll() override { return true; }
    void returnFocus() override {}

    [[nodiscard]] int compilerId() const override { return m_nCompilerId; }
    [[nodiscard]] std::string unavailableReason() const override;
    [[nodiscard]] ECompilerState state(const CDSPProject& project) override;

    [[nodiscard]] bool waitForWindow(const CDSPProject&, double) override { return true; }

    // False without a compiler, or while a build is under way. The project is not used any more when this
    // returns.
    [[nodiscard]] bool rebuild(const CDSPProject& project) override;

    // pProgress hears the finished part of the build's steps about twenty times a second. When it stops the
    // build, the report says cancelled.
    [[nodiscard]] CBuildReport waitForBuild(double dSeconds, IProgress* pProgress) override;

    [[nodiscard]] bool startDebug() override;
    [[nodiscard]] bool stopDebug() override { return false; }

    // Why the last operation that returned false did so.
    [[nodiscard]] std::string lastError() const override { return m_sLastError; }

  private:
    class CRunningBuild;

    int m_nCompilerId;
    std::filesystem::path m_plugInsFolder;
    std::filesystem::path m_cacheFolder;
    std::unique_ptr<CRunningBuild> m_pBuild;
    std::string m_sLastError;
};

} // namespace velmora
