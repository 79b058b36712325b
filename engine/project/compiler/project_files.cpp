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
        lookAt(file);
    for (const auto& file : headers) {
        lookAt(file);
        m_sHeaderNames += file.filename().string() + "\n";
    }
}

bool CProjectFiles::isInProject(const std::filesystem::path& file) const
{
    const auto [folderEnd, ignored] = std::ranges::mismatch(m_folder, file);
    return folderEnd == m_folder.end();
}

const CProjectFiles::CLook& CProjectFiles::lookAt(const std::filesystem::path& file)
{
    const auto [position, bNew] = m_looks.try_emplace(file);
    if (bNew) {
        position->second.m_stamp = CFileStamp::of(file);
        position->second.m_contentHash = hashOfFile(file);
    }
    return position->second;
}

bool CProjectFiles::isUnchanged(const CReadFile& file)
{
    if (file.m_contentHash)
        return lookAt(file.m_file).m_contentHash == file.m_contentHash;
    return file.m_stamp && CFileStamp::of(file.m_file) == file.m_stamp;
}

CReadFile CProjectFiles::recordOf(const std::filesystem::path& file) const
{
    CReadFile record{file, {}, {}};
    const auto stamp = CFileStamp::of(file);
    const auto looked = m_looks.find(file);
    if (looked != m_looks.end()) {
        // One that was written since may be what it was again, and the compiler have read what was between.
        if (looked->second.m_stamp == stamp)
            record.m_contentHash = looked->second.m_contentHash;
        return record;
    }
    // Not looked at before: only a file that has rested since is surely what the compiler read.
    if (!stamp || !stamp->isSettledAt(m_nStarted))
        return record;
    if (isInProject(file))
        record.m_contentHash = hashOfFile(file);
    else
        record.m_stamp = stamp;
    return record;
}

} // namespace velmora
