#include "support/MidiCallbackRecorder.h"

#include "transport/drivers/MidiHeaderRules.h"
#include "transport/drivers/SysexInputQueue.h"

#include <gtest/gtest.h>

namespace tarvix {
namespace {

using test::MakeSysex;
using test::TestBuffer;

TEST(SysexInputQueueTest, KeepsBytesUpToItsLimitAndCountsTheRest)
{
    CSysexInputQueue queue(8);
    queue.Start();
    queue.Write(MakeSysex(12).data(), 12);
    EXPECT_EQ(queue.GetPendingSize(), 8u);
    EXPECT_EQ(queue.GetLostBytes(), 4u);

    TestBuffer buffer(32);
    PrepareMidiHeader(buffer.header);
    queue.AddBuffer(buffer.header);
    std::vector<MidiHeader*> returned;
    queue.Fill(returned);
    EXPECT_TRUE(returned.empty()); // no F7 yet, not full
    EXPECT_EQ(buffer.header.bytesRecorded, 8u);

    queue.Reset(returned);
    ASSERT_EQ(returned.size(), 1u);
    EXPECT_EQ(buffer.header.flags, kMidiHeaderPrepared | kMidiHeaderDone);
    EXPECT_FALSE(queue.IsStarted());
    EXPECT_FALSE(queue.HoldsBuffers());
}

TEST(SysexInputQueueTest, FillsNoMoreThanTheLengthTheBufferWasAddedWith)
{
    CSysexInputQueue queue;
    queue.Start();
    TestBuffer buffer(8);
    PrepareMidiHeader(buffer.header);
    queue.AddBuffer(buffer.header);
    buffer.header.bufferLength = 1000; // the program's mistake, not an overrun
    queue.Write(MakeSysex(20).data(), 20);
    std::vector<MidiHeader*> returned;
    queue.Fill(returned);
    ASSERT_EQ(returned.size(), 1u);
    EXPECT_EQ(buffer.header.bytesRecorded, 8u);
    EXPECT_EQ(queue.GetPendingSize(), 12u);
}

TEST(SysexInputQueueTest, ArbitraryBytesNeverOverrunABuffer)
{
    CSysexInputQueue queue(64);
    queue.Start();
    std::vector<std::unique_ptr<TestBuffer>> buffers;
    std::uint32_t state = 12345;
    for (int round = 0; round < 2000; ++round) {
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(round % 37));
        for (std::uint8_t& byte : bytes) {
            state = state * 1103515245u + 12345u;
            byte = static_cast<std::uint8_t>(state >> 16);
        }
        queue.Write(bytes.data(), bytes.size());
        buffers.push_back(std::make_unique<TestBuffer>(static_cast<std::uint32_t>(1 + round % 5)));
        PrepareMidiHeader(buffers.back()->header);
        queue.AddBuffer(buffers.back()->header);
        std::vector<MidiHeader*> returned;
        queue.Fill(returned);
        for (const MidiHeader* header : returned) {
            ASSERT_LE(header->bytesRecorded, header->bufferLength);
            ASSERT_GT(header->bytesRecorded, 0u);
            // Data bytes only, but for an F0 that starts and an F7 that ends it.
            const std::uint32_t last = header->bytesRecorded - 1;
            for (std::uint32_t i = 0; i <= last; ++i) {
                const std::uint8_t byte = header->data[i];
                ASSERT_TRUE(byte < 0x80 || (byte == 0xF0 && i == 0) || (byte == 0xF7 && i == last))
                    << "byte " << i << " of a buffer is " << int{byte};
            }
        }
    }
}

} // namespace
} // namespace tarvix
