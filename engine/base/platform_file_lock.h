#pragma once

#include <filesystem>
#include <memory>

namespace velmora {

class CDescriptor;

// Keeps processes that agree on a lock file out of each other's way: one at a time holds it. The file is made
// when it is missing, and stays. The system lets go of a lock when its holder dies. [main]
class CFileLock
{
  public:
    // Takes nothing yet.
    explicit CFileLock(std::filesystem::path file);

    // Lets go.
    ~CFileLock();

    CFileLock(const CFileLock&) = delete;
    CFileLock& operator=(const CFileLock&) = delete;

    // Takes the lock if nobody else holds it. True also where the file cannot be made, such as in a folder
    // that is read-only: nobody can change anything there.
    [[nodiscard]] bool tryToTake();

    // Waits until nobody else holds the lock, and takes it.
    void take();

    void letGo();

  private:
    [[nodiscard]] bool takeWith(int nMode);

    std::filesystem::path m_file;
    std::unique_ptr<CDescriptor> m_pFile;
};

} // namespace velmora
