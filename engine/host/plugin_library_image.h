#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// What the dynamic linker holds in memory of one library, as its own headers tell. It must not be used
// after the library is gone. [any but audio]
class CPlugInLibraryImage
{
  public:
    // The library that was opened under that name; none if it is not in memory.
    [[nodiscard]] static std::optional<CPlugInLibraryImage> find(const std::filesystem::path& name);

    // The identifier that the linker wrote into the code, in hex; empty if it wrote none.
    [[nodiscard]] std::string buildId() const;

    // Why freeing this library does not take it out of memory, and what to do about it, as a part of a
    // sentence that begins behind the library's name.
    [[nodiscard]] std::string pinReason() const;

  private:
    struct CSegment
    {
        std::uint32_t m_uType;
        std::uintptr_t m_uAddress;
        std::size_t m_uSize;
    };

    CPlugInLibraryImage() = default;

    std::uintptr_t m_uBase = 0;
    std::vector<CSegment> m_segments;
};

// The identifier that stands in a library file; empty if there is none or the file cannot be read. [any but
// audio]
[[nodiscard]] std::string buildIdOfFile(const std::filesystem::path& file);

} // namespace velmora
