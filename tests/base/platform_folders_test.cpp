#include "base/platform_folders.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <tuple>
#include <unistd.h>

namespace velmora {
namespace {

namespace fs = std::filesystem;

// Sets or unsets a variable, and puts it back in the end.
class CVariable
{
  public:
    CVariable(const char* pName, const char* pValue) : m_sName(pName)
    {
        if (const char* pOld = std::getenv(pName))
            m_sOld = pOld;
        set(pValue);
    }
    ~CVariable() { set(m_sOld ? m_sOld->c_str() : nullptr); }
    CVariable(const CVariable&) = delete;
    CVariable& operator=(const CVariable&) = delete;

  private:
    void set(const char* pValue) const
    {
        if (pValue)
            ::setenv(m_sName.c_str(), pValue, 1);
        else
            ::unsetenv(m_sName.c_str());
    }

    std::string m_sName;
    std::optional<std::string> m_sOld;
};

TEST(PlatformFolders, ProgramsProvideTheVariable)
{
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"/set", "/xdg", "/home/u", "/set/Velmora"},
        {nullptr, "/xdg", "/home/u", "/xdg/Velmora"},
        {nullptr, nullptr, "/home/u", "/home/u/.local/share/Velmora"},
        {"", "", "/home/u", "/home/u/.local/share/Velmora"},
        {nullptr, "relative", "/home/u", "/home/u/.local/share/Velmora"}};
    for (const auto& [pAppData, pDataHome, pHome, pFolder] : cases) {
        const CVariable appData("APPDATA", pAppData);
        const CVariable dataHome("XDG_DATA_HOME", pDataHome);
        const CVariable home("HOME", pHome);
        provideApplicationDataVariable();
        EXPECT_EQ(userFolder(), fs::path(pFolder));
    }
    for (const char* pNothing : {static_cast<const char*>(nullptr), ""}) {
        const CVariable appData("APPDATA", pNothing);
        EXPECT_EQ(userFolder(), fs::path());
    }
}

TEST(PlatformFolders, DataLiesBesideTheProgram)
{
    const fs::path program = programFolder();
    ASSERT_TRUE(fs::exists(program / fs::read_symlink("/proc/self/exe").filename()));
    const std::string sName = "velmora-data-" + std::to_string(::getpid());
    EXPECT_EQ(programDataFolder(sName.c_str()), fs::path());
    std::ofstream(program / sName) << "a file of that name is no folder";
    EXPECT_EQ(programDataFolder(sName.c_str()), fs::path());
    fs::remove(program / sName);
    fs::create_directory(program / sName);
    EXPECT_EQ(programDataFolder(sName.c_str()), program / sName);
    fs::remove(program / sName);
}

} // namespace
} // namespace velmora
