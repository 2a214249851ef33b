#include "support/MidiCallbackRecorder.h"

#include "transport/drivers/loopback/LoopbackMidiDriver.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <thread>

namespace tarvix {
namespace {

using test::MakeSysex;
using test::MidiCallbackRecorder;
using test::TestBuffer;
using Bytes = std::vector<std::uint8_t>;

class LoopbackInputTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(driver.Open(MidiDirection::Input, 0, &MidiCallbackRecorder::Callback, &recorder,
                              handle),
                  kMidiNoError);
    }

    // Prepares and adds count buffers of size bytes.
    void AddBuffers(std::size_t count, std::uint32_t size)
    {
        for (std::size_t i = 0; i < count; ++i) {
            buffers.push_back(std::make_unique<TestBuffer>(size));
            ASSERT_EQ(driver.PrepareHeader(handle, buffers.back()->header), kMidiNoError);
            ASSERT_EQ(driver.AddBuffer(handle, buffers.back()->header), kMidiNoError);
        }
    }

    std::vector<Bytes> ReturnedBuffers() const
    {
        std::vector<Bytes> returned;
        for (const auto& call : recorder.Calls(MidiCallbackMessage::LongData)) {
            returned.push_back(call.bytes);
        }
        return returned;
    }

    CLoopbackMidiDriver driver;
    LoopbackMidiDevice& device = driver.CreatePort("MMT-8 cable");
    MidiCallbackRecorder recorder;
    MidiHandle handle = nullptr;
    std::vector<std::unique_ptr<TestBuffer>> buffers;
};

TEST_F(LoopbackInputTest, OpenAndCloseNotifyBeforeReturningAndPortIsExclusive)
{
    ASSERT_EQ(recorder.Calls().size(), 1u);
    EXPECT_EQ(recorder.Calls()[0].message, MidiCallbackMessage::Open);
    EXPECT_EQ(recorder.Calls()[0].handle, handle);
    EXPECT_TRUE(device.IsInputOpen());
    EXPECT_FALSE(device.IsOutputOpen());

    MidiHandle second = nullptr;
    EXPECT_EQ(driver.Open(MidiDirection::Input, 0, nullptr, nullptr, second), kMidiAllocated);
    EXPECT_EQ(driver.Open(MidiDirection::Input, 1, nullptr, nullptr, second), kMidiBadDeviceId);

    ASSERT_EQ(driver.Close(handle), kMidiNoError);
    EXPECT_EQ(recorder.Calls().back().message, MidiCallbackMessage::Close);
    EXPECT_EQ(recorder.Calls().back().handle, handle);
    EXPECT_FALSE(device.IsInputOpen());
    EXPECT_EQ(driver.Close(handle), kMidiInvalidHandle);
    EXPECT_EQ(driver.Start(handle), kMidiInvalidHandle);
}

TEST_F(LoopbackInputTest, LongSysexFillsBuffersInOrderWhateverThePieces)
{
    AddBuffers(5, 256);
    ASSERT_EQ(driver.Start(handle), kMidiNoError);
    const Bytes sysex = MakeSysex(1000);
    for (std::size_t at = 0; at < sysex.size(); at += 7) {
        device.Feed(sysex.data() + at, std::min<std::size_t>(7, sysex.size() - at));
    }

    const std::vector<Bytes> returned = ReturnedBuffers();
    ASSERT_EQ(returned.size(), 4u);
    EXPECT_EQ(returned[0].size(), 256u);
    EXPECT_EQ(returned[1].size(), 256u);
    EXPECT_EQ(returned[2].size(), 256u);
    EXPECT_EQ(returned[3].size(), 232u);
    EXPECT_EQ(recorder.Received(), sysex);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(buffers[i]->header.flags, kMidiHeaderPrepared | kMidiHeaderDone);
    }
    EXPECT_EQ(buffers[4]->header.flags, kMidiHeaderPrepared | kMidiHeaderInQueue);
}

TEST_F(LoopbackInputTest, KeepsOnlySysexBytesAndStartsEachMessageInANewBuffer)
{
    AddBuffers(6, 64);
    ASSERT_EQ(driver.Start(handle), kMidiNoError);
    device.Feed(Bytes{0x90, 0x40, 0x7F, 0x12, 0xF7});             // note, stray data, stray F7
    device.Feed(Bytes{0xF0, 0x01, 0xF8, 0x02, 0xFE, 0xF7});       // real-time inside SysEx
    device.Feed(Bytes{0xF0, 0x05, 0x90, 0x40, 0x00, 0x33});       // cut short by a status byte
    device.Feed(Bytes{0xF0, 0x06, 0xF0, 0x07, 0xF7, 0xF1, 0x00}); // new F0 without F7

    const std::vector<Bytes> expected{
        {0xF0, 0x01, 0x02, 0xF7}, {0xF0, 0x05}, {0xF0, 0x06}, {0xF0, 0x07, 0xF7}};
    EXPECT_EQ(ReturnedBuffers(), expected);
}

TEST_F(LoopbackInputTest, BytesWaitForABufferButNotForStart)
{
    device.Feed(MakeSysex(10)); // before Start: dropped
    ASSERT_EQ(driver.Start(handle), kMidiNoError);
    const Bytes sysex = MakeSysex(40, 3);
    device.Feed(sysex); // no buffer yet: kept
    EXPECT_TRUE(recorder.Calls(MidiCallbackMessage::LongData).empty());
    AddBuffers(1, 16);
    AddBuffers(2, 16);
    EXPECT_EQ(recorder.Received(), sysex);
    EXPECT_EQ(device.GetLostBytes(), 0u);
}

TEST_F(LoopbackInputTest, ResetReturnsEveryBufferAndStopsInput)
{
    AddBuffers(3, 32);
    ASSERT_EQ(driver.Start(handle), kMidiNoError);
    device.Feed(Bytes{0xF0, 0x01, 0x02});

    MidiHeader& partial = buffers[0]->header;
    EXPECT_EQ(driver.UnprepareHeader(handle, partial), kMidiStillPlaying);
    EXPECT_EQ(driver.AddBuffer(handle, partial), kMidiStillPlaying);
    EXPECT_EQ(driver.Close(handle), kMidiStillPlaying);

    ASSERT_EQ(driver.Reset(handle), kMidiNoError);
    const auto returned = recorder.Calls(MidiCallbackMessage::LongData);
    ASSERT_EQ(returned.size(), 3u);
    EXPECT_EQ(returned[0].header, &partial);
    EXPECT_EQ(returned[0].bytes, (Bytes{0xF0, 0x01, 0x02}));
    EXPECT_TRUE(returned[1].bytes.empty());
    EXPECT_EQ(driver.UnprepareHeader(handle, partial), kMidiNoError);
    EXPECT_EQ(partial.flags & kMidiHeaderPrepared, 0u);

    AddBuffers(1, 32);
    device.Feed(MakeSysex(5)); // stopped by Reset
    EXPECT_EQ(recorder.Calls(MidiCallbackMessage::LongData).size(), 3u);
    ASSERT_EQ(driver.Reset(handle), kMidiNoError);
    EXPECT_EQ(driver.Close(handle), kMidiNoError);
}

TEST_F(LoopbackInputTest, RefusesBuffersItCannotUse)
{
    TestBuffer buffer(16);
    EXPECT_EQ(driver.AddBuffer(handle, buffer.header), kMidiUnprepared);
    TestBuffer empty(0);
    EXPECT_EQ(driver.PrepareHeader(handle, empty.header), kMidiInvalidParameter);
    EXPECT_EQ(driver.LongMsg(handle, buffer.header), kMidiInvalidHandle);
    EXPECT_EQ(driver.PrepareHeader(nullptr, buffer.header), kMidiInvalidHandle);
}

TEST_F(LoopbackInputTest, CallbackMayGiveTheBufferBackAtOnce)
{
    AddBuffers(1, 16);
    recorder.onCall = [this](const MidiCallbackRecorder::Call& call) {
        if (call.message == MidiCallbackMessage::LongData) {
            call.header->bytesRecorded = 0;
            EXPECT_EQ(driver.AddBuffer(handle, *call.header), kMidiNoError);
        }
    };
    ASSERT_EQ(driver.Start(handle), kMidiNoError);
    const Bytes sysex = MakeSysex(1000);
    device.Feed(sysex);
    EXPECT_EQ(recorder.Received(), sysex);
    EXPECT_EQ(recorder.Calls(MidiCallbackMessage::LongData).size(), 63u);
}

TEST_F(LoopbackInputTest, FeedingAndReaddingFromTwoThreadsKeepsEveryByteInOrder)
{
    // The port's worker gives buffers back while the device feeds.
    std::mutex returnedMutex;
    std::deque<MidiHeader*> toReadd;
    recorder.onCall = [&](const MidiCallbackRecorder::Call& call) {
        if (call.message == MidiCallbackMessage::LongData) {
            const std::lock_guard lock(returnedMutex);
            toReadd.push_back(call.header);
        }
    };
    AddBuffers(4, 256);
    ASSERT_EQ(driver.Start(handle), kMidiNoError);
    const Bytes sysex = MakeSysex(70000);
    std::thread feeder([&] {
        for (std::size_t at = 0; at < sysex.size(); at += 100) {
            device.Feed(sysex.data() + at, std::min<std::size_t>(100, sysex.size() - at));
        }
    });
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (recorder.Received().size() < sysex.size() &&
           std::chrono::steady_clock::now() < deadline) {
        MidiHeader* header = nullptr;
        {
            const std::lock_guard lock(returnedMutex);
            if (!toReadd.empty()) {
                header = toReadd.front();
                toReadd.pop_front();
            }
        }
        if (header != nullptr) {
            EXPECT_EQ(driver.AddBuffer(handle, *header), kMidiNoError);
        } else {
            std::this_thread::yield();
        }
    }
    feeder.join();
    EXPECT_EQ(recorder.Received(), sysex);
    EXPECT_EQ(device.GetLostBytes(), 0u);
}

class LoopbackOutputTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(driver.Open(MidiDirection::Output, 0, &MidiCallbackRecorder::Callback, &recorder,
                              handle),
                  kMidiNoError);
        for (TestBuffer& buffer : buffers) {
            ASSERT_EQ(driver.PrepareHeader(handle, buffer.header), kMidiNoError);
        }
    }

    CLoopbackMidiDriver driver;
    LoopbackMidiDevice& device = driver.CreatePort("MMT-8 cable");
    MidiCallbackRecorder recorder;
    MidiHandle handle = nullptr;
    std::array<TestBuffer, 3> buffers{TestBuffer(4), TestBuffer(4), TestBuffer(4)};
};

TEST_F(LoopbackOutputTest, SentBytesArriveAndTheBufferComesBack)
{
    buffers[0].Set({0xF0, 0x01, 0x02, 0x03});
    buffers[1].Set({0x04, 0xF7});
    ASSERT_EQ(driver.LongMsg(handle, buffers[0].header), kMidiNoError);
    ASSERT_EQ(driver.LongMsg(handle, buffers[1].header), kMidiNoError);

    EXPECT_EQ(device.TakeReceived(), (Bytes{0xF0, 0x01, 0x02, 0x03, 0x04, 0xF7}));
    EXPECT_TRUE(device.TakeReceived().empty());
    const auto done = recorder.Calls(MidiCallbackMessage::BufferDone);
    ASSERT_EQ(done.size(), 2u);
    EXPECT_EQ(done[0].header, &buffers[0].header);
    EXPECT_EQ(done[1].header, &buffers[1].header);
    EXPECT_EQ(buffers[0].header.flags, kMidiHeaderPrepared | kMidiHeaderDone);

    TestBuffer unprepared(4);
    EXPECT_EQ(driver.LongMsg(handle, unprepared.header), kMidiUnprepared);
    EXPECT_EQ(driver.AddBuffer(handle, buffers[2].header), kMidiInvalidHandle);
}

TEST_F(LoopbackOutputTest, HeldBuffersGoOutWhenReleasedOrComeBackUnsentOnReset)
{
    device.SetHoldOutput(true);
    for (TestBuffer& buffer : buffers) {
        buffer.Set({0xF0, 0x11, 0x22, 0xF7});
        ASSERT_EQ(driver.LongMsg(handle, buffer.header), kMidiNoError);
    }
    EXPECT_TRUE(recorder.Calls(MidiCallbackMessage::BufferDone).empty());
    EXPECT_EQ(driver.UnprepareHeader(handle, buffers[0].header), kMidiStillPlaying);
    EXPECT_EQ(driver.LongMsg(handle, buffers[0].header), kMidiStillPlaying);
    EXPECT_EQ(driver.Close(handle), kMidiStillPlaying);

    EXPECT_EQ(device.ReleaseOutput(1), 1u);
    EXPECT_EQ(device.TakeReceived(), (Bytes{0xF0, 0x11, 0x22, 0xF7}));
    EXPECT_EQ(device.GetHeldOutputCount(), 2u);

    ASSERT_EQ(driver.Reset(handle), kMidiNoError);
    const auto done = recorder.Calls(MidiCallbackMessage::BufferDone);
    ASSERT_EQ(done.size(), 3u);
    EXPECT_EQ(done[2].header, &buffers[2].header);
    EXPECT_TRUE(device.TakeReceived().empty());
    EXPECT_EQ(device.ReleaseOutput(), 0u);
    EXPECT_EQ(driver.Close(handle), kMidiNoError);
}

TEST_F(LoopbackOutputTest, ReceiverRunsBeforeBufferDoneAndMayAnswerOnTheInputPort)
{
    MidiCallbackRecorder inputRecorder;
    MidiHandle input = nullptr;
    ASSERT_EQ(driver.Open(MidiDirection::Input, 0, &MidiCallbackRecorder::Callback, &inputRecorder,
                          input),
              kMidiNoError);
    TestBuffer inputBuffer(16);
    ASSERT_EQ(driver.PrepareHeader(input, inputBuffer.header), kMidiNoError);
    ASSERT_EQ(driver.AddBuffer(input, inputBuffer.header), kMidiNoError);
    ASSERT_EQ(driver.Start(input), kMidiNoError);

    bool doneSeenByReceiver = true;
    device.SetReceiver([&](const std::uint8_t* data, std::size_t size) {
        doneSeenByReceiver = !recorder.Calls(MidiCallbackMessage::BufferDone).empty();
        device.Feed(data, size); // an echoing device
    });
    buffers[0].Set({0xF0, 0x7E, 0x01, 0xF7});
    ASSERT_EQ(driver.LongMsg(handle, buffers[0].header), kMidiNoError);

    EXPECT_FALSE(doneSeenByReceiver);
    EXPECT_EQ(recorder.Calls(MidiCallbackMessage::BufferDone).size(), 1u);
    EXPECT_EQ(inputRecorder.Received(), buffers[0].storage);
    EXPECT_TRUE(device.TakeReceived().empty());
}

TEST(LoopbackPortsTest, ListedByNameInBothDirectionsUntilUnplugged)
{
    CLoopbackMidiDriver driver;
    EXPECT_EQ(driver.GetName(), "Loopback");
    EXPECT_EQ(driver.GetNumDevs(MidiDirection::Input), 0u);
    driver.CreatePort("first");
    LoopbackMidiDevice& second = driver.CreatePort("second");
    ASSERT_EQ(driver.GetNumDevs(MidiDirection::Output), 2u);
    std::string name;
    ASSERT_EQ(driver.GetDevName(MidiDirection::Input, 1, name), kMidiNoError);
    EXPECT_EQ(name, "second");
    EXPECT_EQ(driver.GetDevName(MidiDirection::Output, 2, name), kMidiBadDeviceId);
    EXPECT_EQ(driver.FindPort("second"), &second);

    MidiHandle handle = nullptr;
    ASSERT_EQ(driver.Open(MidiDirection::Output, 1, nullptr, nullptr, handle), kMidiNoError);
    EXPECT_TRUE(driver.RemovePort("second"));
    EXPECT_FALSE(driver.RemovePort("second"));
    EXPECT_EQ(driver.FindPort("second"), nullptr);
    EXPECT_EQ(driver.GetNumDevs(MidiDirection::Output), 1u);
    EXPECT_EQ(driver.Open(MidiDirection::Output, 1, nullptr, nullptr, handle), kMidiBadDeviceId);
    EXPECT_EQ(driver.Close(handle), kMidiNoError);
    EXPECT_EQ(driver.GetErrorText(kMidiBadDeviceId), "The MIDI port does not exist.");
}

} // namespace
} // namespace tarvix
