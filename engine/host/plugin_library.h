#pragma once

#include "plugin.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace velmora {

// One plug-in library in memory.
//
// The library is not opened where it lies but from a copy of its own, whose file is gone again as soon
// as it is open. So the file can be rebuilt, renamed or deleted while its code runs, and loading the
// same path again always brings in the new code. The library is told where the original lies. What the
// copy cannot do is find other libraries relative to its own folder ($ORIGIN).
//
// Every object that the library made must be deleted before the library is unloaded. [main]
class CPlugInLibrary
{
  public:
    // Opens the library. Null with the reason in sError if the file is missing, is no complete shared
    // library, or cannot be linked. The library's static initialisers run here: only a library that
    // passed CPlugInProbe is known to survive that.
    [[nodiscard]] static std::unique_ptr<CPlugInLibrary> load(const std::filesystem::path& file,
                                                              std::string& sError);

    ~CPlugInLibrary();
    CPlugInLibrary(const CPlugInLibrary&) = delete;
    CPlugInLibrary& operator=(const CPlugInLibrary&) = delete;

    // The two exports of the contract; null where the library lacks one.
    [[nodiscard]] createObjectFunction createObject() const { return m_pCreateObject; }
    [[nodiscard]] getAPIVersionFunction getAPIVersion() const { return m_pGetAPIVersion; }

    // The contract version that the library reports. None if it lacks getAPIVersion() or throws.
    [[nodiscard]] std::optional<UINT> version() const;

    // Makes a plug-in object, which the caller deletes. Null with the reason in sError if the library
    // lacks createObject(), or returns null, or throws. To be called only with the right version.
    [[nodiscard]] CPlugIn* makeObject(std::string& sError) const;

    // The file that was asked for, as an absolute path.
    [[nodiscard]] const std::filesystem::path& path() const { return m_file; }

    // The platform's module handle; null after unload().
    [[nodiscard]] void* handle() const { return m_pHandle; }

    // The identifier that the linker wrote into the code in memory, in hex; empty if it wrote none.
    [[nodiscard]] std::string buildId() const;

    // Frees the library. False if its code is still in memory afterwards, as when one of its threads is
    // alive; the handle is gone in either case. Without a handle, true.
    bool unload();

    // After unload() returned false: what keeps the code in memory, and what to do about it. Reads behind
    // the library's name: "is linked with ...".
    [[nodiscard]] const std::string& pinReason() const { return m_sPinReason; }

  private:
    CPlugInLibrary(std::filesystem::path file, std::filesystem::path copy, void* pHandle);

    template <typename Function>
    Function find(const char* pName) const;

    std::filesystem::path m_file;
    std::filesystem::path m_copy; // known to the dynamic linker by this name, though no longer there
    void* m_pHandle;
    createObjectFunction m_pCreateObject;
    getAPIVersionFunction m_pGetAPIVersion;
    std::string m_sPinReason;
};

} // namespace velmora
