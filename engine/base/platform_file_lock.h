#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

namespace velmora {

class CDescriptor;

// Keeps processes that agree on a lock file out of each other's way: one at a time holds it. The file is made
// when it is missing, and stays. The system lets go of a lock when its holder dies. [main]
class CFileLock
{
  public:
    // Takes nothing yet.
    explicit CFileLock(std::filesystem::path file);

    // letGo()
    ~CFileLock();

    CFileLock(const CFileLock&) = delete;
    CFileLock& operator=(const CFileLock&) = delete;

    // Takes the lock if nobody else holds it. True also where the file cannot be made, such as in a folder
    // that is read-only: nobody can change anything there.
    [[nodiscard]] bool tryToTake();

    // Waits until nobody else holds the lock, and takes it.
    void take();

    // Also takes away the text of setText().
    void letGo();

    // Writes a text into the file of a lock that is held, for others to read. It has to do with the lock only
    // as long as that is held: whoever takes it finds the file emptied.
    void setText(std::string_view sText);

  private:
    [[nodiscard]] bool takeWith(int nMode);

    std::filesystem::path m_file;
    std::unique_ptr<CDescriptor> m_pFile;
};

} // namespace velmora
