#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace velmora {

// A globally unique identifier as its record lies in memory: one 32-bit and two 16-bit fields, little-endian,
// then eight bytes.
using CGUID = std::array<std::uint8_t, 16>;

// A fresh random one (version 4 of RFC 4122), from the system's source of randomness. [any]
[[nodiscard]] CGUID makeGUID();

// The upper-case registry form with braces: "{01234567-89AB-CDEF-0123-456789ABCDEF}".
[[nodiscard]] std::string guidString(const CGUID& guid);

// guidString() of a fresh one.
[[nodiscard]] std::string makeGUIDString();

// The 16 bytes taken as four little-endian words.
[[nodiscard]] std::array<std::uint32_t, 4> guidWords(const CGUID& guid);

} // namespace velmora
