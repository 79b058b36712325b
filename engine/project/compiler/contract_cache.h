#pragma once

#include "project/compiler/command_line_compiler.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

struct CBuildControl;

// The contract of one project, ready to be built upon.
struct CCompiledContract
{
    std::filesystem::path m_folder;
    std::filesystem::path m_header; // plugin.h with the precompiled header beside it
    std::vector<std::filesystem::path> m_objects;
    std::uint64_t m_uKey = 0; // of all that went into it
};

// Keeps the contract compiled, once for each content of its files, compiler and flags, for all projects.
//
// How it works: an entry is a folder with copies of the contract's files, the precompiled header, the
// objects, and a manifest that is written last. The manifest holds the stamps of the products and of every
// system header that went into them, so an entry that was cut short, tampered with or overtaken by an update
// of the system is seen and made anew. Every process makes its entries in folders of its own: two at once end
// with an entry each, and the surplus goes when more than MAX_ENTRIES are there. [any but audio]
class CContractCache
{
  public:
    static constexpr std::size_t MAX_ENTRIES = 8;

    CContractCache(std::filesystem::path cacheFolder, int nCompilerId);

    // The entry for the contract files in the project folder; made when it is missing. None if it cannot be
    // made, for any reason: the contract is then to be built like the project's own sources. What the making
    // adds to the log is appended to sLog.
    [[nodiscard]] std::optional<CCompiledContract> provide(const std::filesystem::path& projectFolder,
                                                           CBuildControl& control, std::string& sLog) const;

    // Removes an entry that turned out to be bad.
    static void discard(const CCompiledContract& contract);

    // The contract's files that a project must hold, and those that it may.
    [[nodiscard]] static std::span<const char* const> requiredFiles();
    [[nodiscard]] static std::span<const char* const> contractSources();

  private:
    struct CContents;

    [[nodiscard]] static std::optional<CContents> readContents(const std::filesystem::path& projectFolder);
    [[nodiscard]] std::string nameOf(std::uint64_t uKey) const;
    [[nodiscard]] bool isIntact(const CCompiledContract& contract, const CContents& contents) const;
    [[nodiscard]] std::optional<CCompiledContract> find(std::uint64_t uKey, const CContents& contents) const;
    [[nodiscard]] std::optional<CCompiledContract> make(std::uint64_t uKey, const CContents& contents,
                                                        CBuildControl& control, std::string& sLog) const;
    [[nodiscard]] bool compile(const CCompiledContract& contract, CBuildControl& control,
                               std::string& sLog) const;
    [[nodiscard]] bool writeManifest(const CCompiledContract& contract, std::int64_t nStarted) const;
    [[nodiscard]] CCompiledContract contractIn(std::filesystem::path folder, std::uint64_t uKey) const;
    void trim() const;

    std::filesystem::path m_cacheFolder;
    int m_nCompilerId;
};

} // namespace velmora
