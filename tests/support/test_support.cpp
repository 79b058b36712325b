#include "support/test_support.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>

namespace velmora::test {

CTemporaryFolder::CTemporaryFolder()
{
    std::string sPattern = (std::filesystem::temp_directory_path() / "velmora-test-XXXXXX").string();
    if (!::mkdtemp(sPattern.data()))
        throw std::runtime_error("no temporary folder");
    m_path = sPattern;
}

CTemporaryFolder::~CTemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::filesystem::path& path, const std::string& sContents)
{
    std::ofstream(path, std::ios::binary) << sContents;
}

std::vector<std::string> entriesOf(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

} // namespace velmora::test
