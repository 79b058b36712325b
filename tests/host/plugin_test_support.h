#pragma once

#include "support/test_support.h"

#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

namespace velmora::test {

// A folder of plug-in libraries, and a watch that nothing of their loading stays behind.
class CPlugInFolder
{
  public:
    CPlugInFolder();

    // Fails the test if there is now another number of open descriptors than at first, a child process, or
    // a library's copy that belongs to nobody alive.
    ~CPlugInFolder();

    CPlugInFolder(const CPlugInFolder&) = delete;
    CPlugInFolder& operator=(const CPlugInFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_folder.path(); }
    [[nodiscard]] std::filesystem::path operator/(const std::string& sName) const { return m_folder / sName; }

    // Puts a library that the build made into the folder under a name, without suffix, of its own. What
    // stood there is replaced in one step.
    std::filesystem::path add(const std::string& sBuilt, const std::string& sName) const;

    // A library that behaves as the name says; see plugins/changeling.cpp.
    std::filesystem::path add(const std::string& sName) const { return add("changeling", sName); }
    std::vector<std::filesystem::path> addAll(std::initializer_list<const char*> names) const;

  private:
    CTemporaryFolder m_folder;
    std::size_t m_uDescriptors;
    std::vector<std::string> m_orphansBefore; // somebody else's
};

} // namespace velmora::test
