#pragma once

#include <concepts>
#include <cstdint>
#include <string>

namespace velmora {

// The unsigned value whose bytes, the lowest first, stand at pBytes.
template <std::unsigned_integral T>
[[nodiscard]] T littleEndian(const std::uint8_t* pBytes)
{
    T uValue = 0;
    for (unsigned i = 0; i < sizeof(T); ++i)
        uValue = static_cast<T>(uValue | static_cast<T>(T{pBytes[i]} << (8 * i)));
    return uValue;
}

// Appends the value's bytes, the lowest first.
template <std::unsigned_integral T>
void appendLittleEndian(std::string& sBytes, T uValue)
{
    for (unsigned i = 0; i < sizeof(T); ++i)
        sBytes.push_back(static_cast<char>(uValue >> (8 * i)));
}

} // namespace velmora
