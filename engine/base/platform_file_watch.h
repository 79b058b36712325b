#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDescriptor;

// Tells when files directly in one folder have got another content, appeared or vanished.
//
// The system says that something happened; the contents say whether it matters. So an editor may save in
// any way it likes (in place, or through a second file and a rename), and a save that changes nothing
// counts for nothing. A change is told once the folder has been left alone for a moment. [main]
class CFileWatch
{
  public:
    // Answers whether a file is watched, by its name in the folder.
    using CFilter = std::function<bool(std::string_view sName)>;

    // From here on; the files as they are now are known.
    CFileWatch(std::filesystem::path folder, CFilter filter);
    ~CFileWatch();

    CFileWatch(const CFileWatch&) = delete;
    CFileWatch& operator=(const CFileWatch&) = delete;

    // Why the folder is not watched, or not any more; empty while it is.
    [[nodiscard]] const std::string& error() const { return m_sError; }

    // The files as they are now are known: what the program wrote itself is not told.
    void takeAsKnown();

    // Waits until files differ from what is known, at most so long, and answers their names in
    // alphabetical order; they are known then. Empty if the time ran out, a signal came, or the folder
    // cannot be watched any more. With 0 seconds, what has changed already.
    [[nodiscard]] std::vector<std::string> waitForChanges(double dSeconds);

  private:
    // What a file is told apart by.
    struct CFingerprint
    {
        std::uintmax_t m_uSize = 0;
        std::filesystem::file_time_type m_time;
        std::uint64_t m_uHash = 0; // of the contents
    };
    using CFingerprints = std::map<std::string, CFingerprint, std::less<>>;

    [[nodiscard]] CFingerprints fingerprints() const;
    [[nodiscard]] bool waitForEvents(int nMilliseconds);
    void readEvents();

    std::filesystem::path m_folder;
    CFilter m_filter;
    std::unique_ptr<CDescriptor> m_pQueue;
    CFingerprints m_known;
    bool m_bMayHaveChanged = false; // something happened since the last comparison
    std::string m_sError;
};

} // namespace velmora
