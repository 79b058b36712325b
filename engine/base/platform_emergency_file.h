#pragma once

#include "base/platform_descriptor.h"

#include <string_view>

namespace velmora {

// A file written by a program that is about to die of a fault: like CSafeFile beside its target, and put in
// the target's place only when it lies whole on the disk. Every operation is safe in a signal handler;
// nothing is allocated. [any]
class CEmergencyFile
{
  public:
    // Creates the unfinished file under its own name; what stood there is removed. It gets the permissions of
    // the file pLikeFile, where there is one. Both texts must outlive this.
    explicit CEmergencyFile(const char* pUnfinished, const char* pLikeFile = nullptr) noexcept;

    // Removes the unfinished file unless commit() succeeded.
    ~CEmergencyFile();

    CEmergencyFile(const CEmergencyFile&) = delete;
    CEmergencyFile& operator=(const CEmergencyFile&) = delete;

    // What cannot be written makes commit() fail.
    void write(std::string_view sText) noexcept;

    // "key: value" and a line end. Control characters of the value become blanks, and only the value's first
    // 4096 bytes are written.
    void writeLine(std::string_view sKey, std::string_view sValue) noexcept;
    void writeLine(std::string_view sKey, int nValue) noexcept;

    // Flushes the file to the disk and renames it. 0 if all went well, else the system's error number; the
    // target stands as it was then.
    [[nodiscard]] int commit(const char* pTarget) noexcept;

  private:
    void check(bool bDone) noexcept;

    const char* m_pUnfinished;
    CDescriptor m_file;
    int m_nError = 0;
    bool m_bCommitted = false;
};

} // namespace velmora
