#pragma once

#include "support/Bytes.h"
#include "support/FaultyMidiDriver.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

namespace tarvix::test {

using testing::Bytes;
using testing::Concat;
using testing::Eventually;
using testing::MakeSysex;

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
        return Eventually([&] {
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
