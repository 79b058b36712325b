#include "host/plugin_test_support.h"

#include "host/plugin_library_copy.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora::test {
namespace {

namespace fs = std::filesystem;

std::size_t countDescriptors()
{
    return entriesOf("/proc/self/fd").size();
}

// Copies that a dead process left, or that this one forgot.
std::vector<std::string> orphanedCopies()
{
    const std::string sPrefix = "velmora-";
    std::vector<std::string> orphans;
    for (const auto& folder : CPlugInLibraryCopy::usualFolders()) {
        if (!fs::is_directory(folder))
            continue;
        for (const auto& sName : entriesOf(folder)) {
            const int nOwner = sName.starts_with(sPrefix) ? std::atoi(sName.c_str() + sPrefix.size()) : 0;
            if (nOwner == ::getpid() || (nOwner > 0 && ::kill(nOwner, 0) != 0 && errno == ESRCH))
                orphans.push_back(folder / sName);
        }
    }
    return orphans;
}

} // namespace

CPlugInFolder::CPlugInFolder() : m_uDescriptors(countDescriptors()), m_orphansBefore(orphanedCopies()) {}

CPlugInFolder::~CPlugInFolder()
{
    EXPECT_EQ(countDescriptors(), m_uDescriptors);
    EXPECT_EQ(orphanedCopies(), m_orphansBefore);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

fs::path CPlugInFolder::add(const std::string& sBuilt, const std::string& sName) const
{
    const fs::path file = m_folder / (sName + ".so");
    const fs::path beside = m_folder / ("." + sName);
    fs::copy_file(fs::path(PLUGIN_TEST_FOLDER) / (sBuilt + ".so"), beside);
    fs::rename(beside, file);
    return file;
}

std::vector<fs::path> CPlugInFolder::addAll(std::initializer_list<const char*> names) const
{
    std::vector<fs::path> files;
    for (const char* pName : names)
        files.push_back(add(pName));
    return files;
}

} // namespace velmora::test
