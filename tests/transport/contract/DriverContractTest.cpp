#include "DriverContractTest.h"

#include "support/MidiCallbackRecorder.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <thread>

namespace tarvix::test {

namespace {

using namespace std::chrono_literals;

using testing::Eventually;

// Generous: backends move bytes on threads of their own.
constexpr auto kPatience = 20s;

// One of the program's ports, with buffers that live as long as it does.
class ProgramPort {
public:
    ProgramPort(IMidiDriver& driver, MidiDirection direction)
        : m_driver(driver), m_direction(direction)
    {
    }
    ~ProgramPort()
    {
        if (handle != nullptr) {
            m_driver.Reset(handle);
            m_driver.Close(handle);
        }
    }

    MidiResult Open(const std::string& name)
    {
        const std::uint32_t count = m_driver.GetNumDevs(m_direction);
        for (std::uint32_t i = 0; i < count; ++i) {
            std::string listed;
            if (m_driver.GetDevName(m_direction, i, listed) == kMidiNoError && listed == name)
                return m_driver.Open(m_direction, i, &MidiCallbackRecorder::Callback, &recorder,
                                     handle);
        }
        return kMidiBadDeviceId;
    }

    TestBuffer& Add(std::uint32_t size)
    {
        buffers.push_back(std::make_unique<TestBuffer>(size));
        EXPECT_EQ(m_driver.PrepareHeader(handle, buffers.back()->header), kMidiNoError);
        return *buffers.back();
    }

    // Input: every buffer goes back to the driver as soon as it returns.
    void ReceiveInto(std::size_t count, std::uint32_t size)
    {
        recorder.onCall = [this](const MidiCallbackRecorder::Call& call) {
            if (call.message == MidiCallbackMessage::LongData && call.header != nullptr)
                m_driver.AddBuffer(handle, *call.header);
        };
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_EQ(m_driver.AddBuffer(handle, Add(size).header), kMidiNoError);
        EXPECT_EQ(m_driver.Start(handle), kMidiNoError);
    }

    // Output: bytes through count buffers of size, each reused once back;
    // false if the driver stopped returning them.
    bool Send(const Bytes& bytes, std::size_t count, std::uint32_t size)
    {
        std::deque<TestBuffer*> free;
        for (std::size_t i = 0; i < count; ++i)
            free.push_back(&Add(size));
        std::size_t sent = 0;
        std::size_t seen = 0;
        while (sent < bytes.size()) {
            if (free.empty()) {
                if (!recorder.WaitFor(
                        [seen](const MidiCallbackRecorder& calls) {
                            return calls.Calls(MidiCallbackMessage::BufferDone).size() > seen;
                        },
                        kPatience))
                    return false;
                const auto done = recorder.Calls(MidiCallbackMessage::BufferDone);
                for (; seen < done.size(); ++seen) {
                    for (const auto& buffer : buffers) {
                        if (&buffer->header == done[seen].header)
                            free.push_back(buffer.get());
                    }
                }
                continue;
            }
            TestBuffer& buffer = *free.front();
            free.pop_front();
            buffer.Set(Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(sent),
                             bytes.begin() +
                                 static_cast<std::ptrdiff_t>(std::min(bytes.size(), sent + size))));
            sent += buffer.header.bufferLength;
            EXPECT_EQ(m_driver.LongMsg(handle, buffer.header), kMidiNoError);
        }
        return true;
    }

    MidiHandle handle = nullptr;
    MidiCallbackRecorder recorder;
    std::vector<std::unique_ptr<TestBuffer>> buffers;

private:
    IMidiDriver& m_driver;
    MidiDirection m_direction;
};

bool Lists(IMidiDriver& driver, MidiDirection direction, const std::string& name)
{
    const std::uint32_t count = driver.GetNumDevs(direction);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::string listed;
        if (driver.GetDevName(direction, i, listed) == kMidiNoError && listed == name)
            return true;
    }
    return false;
}

} // namespace

void DriverContractTest::SetUp()
{
    std::string error;
    rig = GetParam().make(error);
    ASSERT_TRUE(rig) << GetParam().name << ": " << error;
}

void DriverContractTest::TearDown()
{
    rig.reset();
}

TEST_P(DriverContractTest, ListsTheFarEndsPortsByName)
{
    EXPECT_TRUE(Lists(rig->Driver(), MidiDirection::Input, rig->InputName())) << rig->InputName();
    EXPECT_TRUE(Lists(rig->Driver(), MidiDirection::Output, rig->OutputName()))
        << rig->OutputName();
}

TEST_P(DriverContractTest, ASysexCrossesWholeEitherWayInBufferSizePieces)
{
    const Bytes message = MakeSysex(10000, 3);
    ProgramPort out(rig->Driver(), MidiDirection::Output);
    ASSERT_EQ(out.Open(rig->OutputName()), kMidiNoError);
    ASSERT_TRUE(out.Send(message, 4, 256));
    ASSERT_TRUE(Eventually([&] { return rig->Received().size() >= message.size(); }));
    EXPECT_EQ(rig->Received(), message);

    ProgramPort in(rig->Driver(), MidiDirection::Input);
    ASSERT_EQ(in.Open(rig->InputName()), kMidiNoError);
    in.ReceiveInto(16, 256);
    rig->Feed(message);
    ASSERT_TRUE(Eventually([&] { return in.recorder.Received().size() >= message.size(); }));
    EXPECT_EQ(in.recorder.Received(), message);
    // Only a new message starts a buffer with F0; no buffer is overfilled.
    const auto returned = in.recorder.Calls(MidiCallbackMessage::LongData);
    for (std::size_t i = 0; i < returned.size(); ++i) {
        EXPECT_LE(returned[i].bytes.size(), 256u);
        EXPECT_EQ(!returned[i].bytes.empty() && returned[i].bytes.front() == 0xF0, i == 0) << i;
    }
    EXPECT_EQ(rig->Driver().GetLostInputBytes(in.handle), 0u);
}

TEST_P(DriverContractTest, InputKeepsOnlySysexAndCountsTheEndACutLost)
{
    ProgramPort in(rig->Driver(), MidiDirection::Input);
    ASSERT_EQ(in.Open(rig->InputName()), kMidiNoError);
    in.ReceiveInto(8, 64);
    // A note, a SysEx with a clock byte inside, one that a controller
    // message cuts short (its last four bytes are lost), and a whole one.
    rig->Feed({0x90, 0x40, 0x7F, 0xF0, 0x01, 0xF8, 0x02, 0xF7, 0xF0, 0x05, 0xB0, 0x07, 0x00, 0xF7,
               0xF0, 0x06, 0xF7});
    const Bytes expected = {0xF0, 0x01, 0x02, 0xF7, 0xF0, 0x05, 0xF0, 0x06, 0xF7};
    ASSERT_TRUE(Eventually([&] { return in.recorder.Received().size() >= expected.size(); }))
        << in.recorder.Received().size();
    EXPECT_EQ(in.recorder.Received(), expected);
    EXPECT_TRUE(Eventually([&] { return rig->Driver().GetLostInputBytes(in.handle) == 4; }))
        << rig->Driver().GetLostInputBytes(in.handle);
}

TEST_P(DriverContractTest, ResetReturnsEveryOutputBufferAndTheNextMessageArrivesWhole)
{
    ProgramPort out(rig->Driver(), MidiDirection::Output);
    ASSERT_EQ(out.Open(rig->OutputName()), kMidiNoError);
    TestBuffer& big = out.Add(300000);
    big.Set(MakeSysex(300000, 4));
    ASSERT_EQ(rig->Driver().LongMsg(out.handle, big.header), kMidiNoError);
    ASSERT_EQ(rig->Driver().Reset(out.handle), kMidiNoError);
    ASSERT_TRUE(out.recorder.WaitFor(
        [](const MidiCallbackRecorder& calls) {
            return calls.Calls(MidiCallbackMessage::BufferDone).size() == 1;
        },
        kPatience));
    EXPECT_EQ(out.recorder.Calls(MidiCallbackMessage::BufferDone)[0].header, &big.header);
    EXPECT_EQ(rig->Driver().UnprepareHeader(out.handle, big.header), kMidiNoError);

    // Whatever of the cut message went out, the next one follows it whole.
    TestBuffer& small = out.Add(6);
    small.Set({0xF0, 0x43, 0x10, 0x4C, 0x00, 0xF7});
    ASSERT_EQ(rig->Driver().LongMsg(out.handle, small.header), kMidiNoError);
    Bytes received;
    const auto endsWithSmall = [&] {
        received = rig->Received();
        return received.size() >= small.storage.size() &&
               std::equal(small.storage.rbegin(), small.storage.rend(), received.rbegin());
    };
    EXPECT_TRUE(Eventually(endsWithSmall)) << received.size();
    EXPECT_EQ(rig->Driver().UnprepareHeader(out.handle, small.header), kMidiNoError);
    EXPECT_EQ(rig->Driver().Close(out.handle), kMidiNoError);
    out.handle = nullptr;
}

TEST_P(DriverContractTest, AnOutputWhoseFarEndWentAwayReturnsItsBuffersFailedAndSaysWhy)
{
    ProgramPort out(rig->Driver(), MidiDirection::Output);
    ASSERT_EQ(out.Open(rig->OutputName()), kMidiNoError);
    EXPECT_EQ(rig->Driver().GetPortFailure(out.handle), "");
    rig->RemoveFarInput();

    TestBuffer& buffer = out.Add(1000);
    buffer.Set(MakeSysex(1000, 5));
    ASSERT_EQ(rig->Driver().LongMsg(out.handle, buffer.header), kMidiNoError);
    ASSERT_TRUE(out.recorder.WaitFor(
        [](const MidiCallbackRecorder& calls) {
            return !calls.Calls(MidiCallbackMessage::BufferDone).empty();
        },
        kPatience));
    // Nothing is returned as sent that did not go.
    EXPECT_NE(buffer.header.flags & kMidiHeaderFailed, 0u);
    EXPECT_LT(buffer.header.bytesRecorded, 1000u);
    EXPECT_NE(rig->Driver().GetPortFailure(out.handle), "");
}

} // namespace tarvix::test
