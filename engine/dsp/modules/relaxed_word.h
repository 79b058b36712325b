#pragma once

#include <atomic>

namespace velmora {

// A setting is one word of plain memory, bound to a control and read by the audio thread at any time. It is
// reached with relaxed atomic accesses only: no order among words, no lock. [any]

template <class T>
[[nodiscard]] T relaxedLoad(const T& word)
{
    return std::atomic_ref<T>(const_cast<T&>(word)).load(std::memory_order_relaxed);
}

template <class T>
void relaxedStore(T& word, T value)
{
    std::atomic_ref<T>(word).store(value, std::memory_order_relaxed);
}

} // namespace velmora
