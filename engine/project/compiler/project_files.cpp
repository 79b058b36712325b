#include "project/compiler/project_files.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <system_error>

namespace velmora {

namespace {

constexpr std::string_view HEADER_SUFFIXES[] = {".h",   ".hh",  ".hpp", ".hxx", ".inc",
                                                ".inl", ".ipp", ".tpp", ""};

std::optional<std::uint64_t> hashOfFile(const std::filesystem::path& file)
{
    const auto contents = contentsOfFile(file);
    return contents ? std::optional(contentHash(*contents)) : std::nullopt;
}

} // namespace

CProjectFiles::CProjectFiles(std::filesystem::path projectFolder)
    : m_folder(std::move(projectFolder)), m_nStarted(CFileStamp::now())
{
    std::vector<std::filesystem::path> headers;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(m_folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::filesystem::path& file = entry->path();
        std::error_code ignored;
        if (file.filename().string().starts_with('.') || !entry->is_regular_file(ignored))
            continue;
        if (file.extension() == ".cpp")
            m_sources.push_back(file);
        else if (std::ranges::find(HEADER_SUFFIXES, file.extension().string()) != std::end(HEADER_SUFFIXES))
            headers.push_back(file);
    }
    std::ranges::sort(m_sources);
    std::ranges::sort(headers);
    for (const auto& file : m_sources)
        static_cast<void>(lookAt(file));
    for (const auto& file : headers) {
        static_cast<void>(lookAt(file));
        m_sHeaderNames += file.filename().string() + "\n";
    }
}

bool CProjectFiles::isInProject(const std::filesystem::path& file) const
{
    const auto [folderEnd, ignored] = std::ranges::mismatch(m_folder, file);
    return folderEnd == m_folder.end();
}

std::optional<std::uint64_t> CProjectFiles::lookAt(const std::filesystem::path& file)
{
    const auto position = m_contents.find(file);
    return position != m_contents.end() ? position->second
                                        : m_contents.emplace(file, hashOfFile(file)).first->second;
}

bool CProjectFiles::isUnchanged(const CReadFile& file)
{
    if (file.m_contentHash)
        return lookAt(file.m_file) == file.m_contentHash;
    return file.m_stamp && CFileStamp::of(file.m_file) == file.m_stamp;
}

CReadFile CProjectFiles::recordOf(const std::filesystem::path& file) const
{
    CReadFile record{file, {}, {}};
    const auto looked = m_contents.find(file);
    if (looked != m_contents.end()) {
        record.m_contentHash = looked->second;
        return record;
    }
    // Not looked at before: only a file that has rested since is surely what the compiler read.
    const auto stamp = CFileStamp::of(file);
    if (!stamp || !stamp->isSettledAt(m_nStarted))
        return record;
    if (isInProject(file))
        record.m_contentHash = hashOfFile(file);
    else
        record.m_stamp = stamp;
    return record;
}

} // namespace velmora
