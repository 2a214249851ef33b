#pragma once

#include "FaultyMidiDriver.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

namespace tarvix::test {

using Bytes = std::vector<std::uint8_t>;

// F0, data bytes, F7: size bytes in all.
inline Bytes MakeSysex(std::size_t size, std::uint8_t seed = 0)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>((i + seed) & 0x7F);
    bytes.front() = 0xF0;
    bytes.back() = 0xF7;
    return bytes;
}

inline Bytes Concat(Bytes first, const Bytes& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// The workers run on their own threads: tests wait for what they expect,
// generously, and never for a fixed time.
inline bool WaitUntil(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

inline std::vector<Bytes> CopyMessages(const CMidiDevice& port)
{
    std::vector<Bytes> copies;
    const auto messages = port.LockMessages();
    for (const auto& message : *messages)
        copies.emplace_back(message->View().begin(), message->View().end());
    return copies;
}

// One cable with the program's two ports on it. The driver is the Loopback
// one; its faults stay off unless a test turns them on.
class LoopbackPortTest : public ::testing::Test {
protected:
    static constexpr const char* kPortName = "MMT-8 cable";

    void OpenInput(std::uint32_t bufferSize, std::uint32_t bufferCount)
    {
        input.SetBufferSize(bufferSize);
        input.SetBufferCount(bufferCount);
        ASSERT_TRUE(input.OpenByName(kPortName));
    }

    void OpenOutput(std::uint32_t bufferSize, std::uint32_t bufferCount,
                    std::uint32_t bufferDelay = 0, std::uint32_t sysexDelay = 0)
    {
        output.SetBufferSize(bufferSize);
        output.SetBufferCount(bufferCount);
        output.SetBufferDelay(bufferDelay);
        output.SetSysexDelay(sysexDelay);
        ASSERT_TRUE(output.OpenByName(kPortName));
    }

    // Until the input list holds count messages, the last one complete.
    bool WaitForMessages(std::size_t count)
    {
        return WaitUntil([&] {
            const auto messages = CopyMessages(input);
            return messages.size() == count && !messages.empty() && messages.back().back() == 0xF7;
        });
    }

    std::uint32_t QueuedMessages(std::uint32_t* sentBytes = nullptr) const
    {
        std::uint32_t total = 0;
        std::uint32_t sent = 0;
        std::uint32_t count = 0;
        output.GetQueueState(total, sent, count);
        if (sentBytes != nullptr)
            *sentBytes = sent;
        return count;
    }

    std::uint32_t SentBytes() const
    {
        std::uint32_t sent = 0;
        QueuedMessages(&sent);
        return sent;
    }

    FaultyMidiDriver driver;
    LoopbackMidiDevice& device = driver.CreatePort(kPortName);
    CMidiIn input{driver};
    CMidiOut output{driver};
};

} // namespace tarvix::test
