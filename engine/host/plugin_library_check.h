#pragma once

#include <string>

namespace velmora {

// What is wrong with the file as a shared library, so far as its headers tell: no regular file, empty, not
// ELF, cut short, or larger than 512 MiB. Empty if nothing is; the dynamic linker then judges the rest.
// Mapping a file that is cut short would end in a bus error, which is why this comes first. [any but audio]
[[nodiscard]] std::string faultOfLibraryFile(int nDescriptor);

} // namespace velmora
