#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <thread>
#include <vector>

namespace tarvix::testing {

using Bytes = std::vector<std::uint8_t>;

// F0, count - 2 data bytes (a repeating pattern a seed shifts), F7.
inline Bytes MakeSysex(std::size_t count, std::uint8_t seed = 0)
{
    Bytes bytes(count < 2 ? 2 : count);
    bytes.front() = 0xF0;
    for (std::size_t i = 1; i + 1 < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>((i * 7 + seed) & 0x7F);
    bytes.back() = 0xF7;
    return bytes;
}

inline Bytes Concat(Bytes first, const Bytes& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

inline Bytes Concat(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

// Work on threads of its own is waited for, generously, never for a fixed
// time: false only when the condition still fails after a long while.
inline bool Eventually(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace tarvix::testing
