// Largest SysEx measured through a JACK dummy server (1024 frames at
// 48 kHz, jackd 1.9.21), sent by one client and received by another in
// sixteen 256-byte buffers, byte for byte: 4 MiB, both when sent through
// sixteen 256-byte buffers (about 190 KB/s: the buffers come back once a
// period) and as one buffer (about 1.5 MB/s: a MIDI port buffer carries
// about 32 KB a period, the rest goes in the following periods).

#include "support/JackServer.h"
#include "support/MidiCallbackRecorder.h"

#include "transport/drivers/jack/JackMidiDriver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <deque>
#include <memory>
#include <thread>
#include <unistd.h>

namespace tarvix {
namespace {

using test::MakeSysex;
using test::MidiCallbackRecorder;
using test::TestBuffer;
using Bytes = std::vector<std::uint8_t>;

// One open port and what it reported.
struct Endpoint {
    IMidiDriver& driver;
    MidiHandle handle = nullptr;
    MidiCallbackRecorder recorder;
    std::vector<std::unique_ptr<TestBuffer>> buffers;
    std::size_t seen = 0;

    explicit Endpoint(IMidiDriver& owner) : driver(owner) {}
    ~Endpoint()
    {
        if (handle != nullptr) {
            driver.Reset(handle);
            driver.Close(handle);
        }
    }
    MidiResult OpenVirtual(CJackMidiDriver& jack, MidiDirection direction, const std::string& name)
    {
        return jack.OpenVirtual(direction, name, &MidiCallbackRecorder::Callback, &recorder,
                                handle);
    }
    MidiResult Open(MidiDirection direction, const std::string& remote)
    {
        const std::uint32_t count = driver.GetNumDevs(direction);
        for (std::uint32_t i = 0; i < count; ++i) {
            std::string name;
            if (driver.GetDevName(direction, i, name) == kMidiNoError && name == remote) {
                return driver.Open(direction, i, &MidiCallbackRecorder::Callback, &recorder,
                                   handle);
            }
        }
        return kMidiBadDeviceId;
    }
    // A buffer that lives as long as the port: the driver may hold its
    // header until the port is reset, which the destructor does last.
    TestBuffer& Own(const Bytes& bytes)
    {
        buffers.push_back(std::make_unique<TestBuffer>(bytes));
        return *buffers.back();
    }
    void MakeBuffers(std::size_t count, std::uint32_t size)
    {
        for (std::size_t i = 0; i < count; ++i) {
            buffers.push_back(std::make_unique<TestBuffer>(size));
            ASSERT_EQ(driver.PrepareHeader(handle, buffers.back()->header), kMidiNoError);
        }
    }
    std::vector<MidiCallbackRecorder::Call> NewCalls()
    {
        std::vector<MidiCallbackRecorder::Call> calls = recorder.CallsSince(seen);
        seen += calls.size();
        return calls;
    }
};

// Sends data through out's buffers, giving them back as they return, while
// in's buffers are given back as they fill; what arrived, once all of it
// did or the time is up.
Bytes Transfer(Endpoint& out, Endpoint& in, const Bytes& data)
{
    const std::size_t expected = data.size();
    for (const auto& buffer : in.buffers) {
        EXPECT_EQ(in.driver.AddBuffer(in.handle, buffer->header), kMidiNoError);
    }
    EXPECT_EQ(in.driver.Start(in.handle), kMidiNoError);
    std::deque<TestBuffer*> free;
    for (const auto& buffer : out.buffers) {
        free.push_back(buffer.get());
    }
    std::size_t sent = 0;
    Bytes received;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (received.size() < expected && std::chrono::steady_clock::now() < deadline) {
        for (const auto& call : out.NewCalls()) {
            if (call.message == MidiCallbackMessage::BufferDone) {
                for (const auto& buffer : out.buffers) {
                    if (&buffer->header == call.header) {
                        free.push_back(buffer.get());
                    }
                }
            }
        }
        while (!free.empty() && sent < data.size()) {
            TestBuffer& buffer = *free.front();
            free.pop_front();
            const std::size_t count = std::min(buffer.storage.size(), data.size() - sent);
            std::memcpy(buffer.storage.data(), data.data() + sent, count);
            buffer.header.bufferLength = static_cast<std::uint32_t>(count);
            EXPECT_EQ(out.driver.LongMsg(out.handle, buffer.header), kMidiNoError);
            sent += count;
        }
        for (const auto& call : in.NewCalls()) {
            if (call.message == MidiCallbackMessage::LongData) {
                received.insert(received.end(), call.bytes.begin(), call.bytes.end());
                EXPECT_EQ(in.driver.AddBuffer(in.handle, *call.header), kMidiNoError);
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return received;
}

class JackMidiDriverTest : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        if (!test::JackServer::IsInstalled()) {
            return;
        }
        s_server = std::make_unique<test::JackServer>();
        if (!s_server->Start("tarvix-test", s_startError)) {
            s_server.reset();
        }
    }
    static void TearDownTestSuite() { s_server.reset(); }

    void SetUp() override
    {
        if (!test::JackServer::IsInstalled()) {
            GTEST_SKIP() << "jackd is not installed (the jackd2 package)";
        }
        ASSERT_TRUE(s_server) << s_startError;
        program = std::make_unique<CJackMidiDriver>("tarvix", s_server->GetName());
        device = std::make_unique<CJackMidiDriver>("tarvix-device", s_server->GetName());
    }

    static inline std::unique_ptr<test::JackServer> s_server;
    static inline std::string s_startError;
    // The program and the simulated device, as two clients of one server.
    std::unique_ptr<CJackMidiDriver> program;
    std::unique_ptr<CJackMidiDriver> device;
};

TEST_F(JackMidiDriverTest, ListsOtherClientsPortsByTheirJackNames)
{
    Endpoint deviceOut(*device);
    Endpoint deviceIn(*device);
    ASSERT_EQ(deviceOut.OpenVirtual(*device, MidiDirection::Output, "out"), kMidiNoError)
        << device->GetUnavailableReason();
    ASSERT_EQ(deviceIn.OpenVirtual(*device, MidiDirection::Input, "in"), kMidiNoError);
    EXPECT_EQ(device->GetClientName(), "tarvix-device");
    MidiHandle twice = nullptr;
    EXPECT_EQ(device->OpenVirtual(MidiDirection::Output, "out", nullptr, nullptr, twice),
              kMidiAllocated);

    Endpoint programIn(*program);
    ASSERT_EQ(programIn.Open(MidiDirection::Input, "tarvix-device:out"), kMidiNoError)
        << program->GetUnavailableReason();
    std::vector<std::string> inputs;
    for (std::uint32_t i = 0; i < program->GetNumDevs(MidiDirection::Input); ++i) {
        std::string name;
        ASSERT_EQ(program->GetDevName(MidiDirection::Input, i, name), kMidiNoError);
        inputs.push_back(name);
    }
    EXPECT_EQ(inputs, std::vector<std::string>{"tarvix-device:out"}); // not our own "tarvix:in"
    Endpoint programOut(*program);
    EXPECT_EQ(programOut.Open(MidiDirection::Output, "tarvix-device:in"), kMidiNoError);
    EXPECT_EQ(program->GetUnavailableReason(), "");
}

// 256-byte pieces both ways are the driver contract's; what only JACK does
// is a buffer larger than a period's port buffer, sent over several periods.
TEST_F(JackMidiDriverTest, ASysexLargerThanAPeriodHoldsCrossesWhole)
{
    Endpoint deviceOut(*device);
    Endpoint programIn(*program);
    ASSERT_EQ(deviceOut.OpenVirtual(*device, MidiDirection::Output, "out"), kMidiNoError);
    ASSERT_EQ(programIn.Open(MidiDirection::Input, "tarvix-device:out"), kMidiNoError);
    const Bytes answer = MakeSysex(70000, 2);
    deviceOut.MakeBuffers(1, 70000);
    programIn.MakeBuffers(16, 256);
    EXPECT_EQ(Transfer(deviceOut, programIn, answer), answer);
}

TEST(JackMidiDriverServerStopTest, ASendCutByTheServerStoppingComesBackFailedNotSent)
{
    if (!test::JackServer::IsInstalled()) {
        GTEST_SKIP() << "jackd is not installed (the jackd2 package)";
    }
    test::JackServer server;
    std::string error;
    ASSERT_TRUE(server.Start("tarvix-stop", error)) << error;
    CJackMidiDriver device("tarvix-device", server.GetName());
    CJackMidiDriver program("tarvix", server.GetName());
    Endpoint deviceIn(device);
    Endpoint programOut(program);
    ASSERT_EQ(deviceIn.OpenVirtual(device, MidiDirection::Input, "in"), kMidiNoError);
    ASSERT_EQ(programOut.Open(MidiDirection::Output, "tarvix-device:in"), kMidiNoError);

    // Far more than the server moves in the time it takes to stop it.
    TestBuffer& big = programOut.Own(MakeSysex(16 * 1024 * 1024));
    ASSERT_EQ(program.PrepareHeader(programOut.handle, big.header), kMidiNoError);
    ASSERT_EQ(program.LongMsg(programOut.handle, big.header), kMidiNoError);
    server.Stop();

    ASSERT_TRUE(programOut.recorder.WaitFor(
        [](const MidiCallbackRecorder& recorder) {
            return !recorder.Calls(MidiCallbackMessage::BufferDone).empty();
        },
        std::chrono::seconds(20)));
    EXPECT_NE(big.header.flags & kMidiHeaderFailed, 0u);
    EXPECT_LT(big.header.bytesRecorded, big.header.bufferLength);
    EXPECT_EQ(program.GetPortFailure(programOut.handle), "The JACK server has shut down.");

    // And so does every later one, at once.
    TestBuffer& later = programOut.Own(MakeSysex(100));
    ASSERT_EQ(program.PrepareHeader(programOut.handle, later.header), kMidiNoError);
    ASSERT_EQ(program.LongMsg(programOut.handle, later.header), kMidiNoError);
    EXPECT_NE(later.header.flags & kMidiHeaderFailed, 0u);
    EXPECT_EQ(later.header.bytesRecorded, 0u);
}

TEST(JackMidiDriverNoServerTest, ListsNoPortsAndSaysWhy)
{
    const std::string server = "tarvix-absent-" + std::to_string(getpid());
    ::testing::internal::CaptureStderr();
    CJackMidiDriver driver("tarvix", server);
    EXPECT_EQ(driver.GetName(), "JACK");
    EXPECT_EQ(driver.GetNumDevs(MidiDirection::Input), 0u);
    EXPECT_EQ(driver.GetUnavailableReason(), "No JACK server \"" + server + "\" is running.");
    MidiHandle handle = nullptr;
    EXPECT_EQ(driver.Open(MidiDirection::Input, 0, nullptr, nullptr, handle), kMidiBadDeviceId);
    EXPECT_EQ(driver.OpenVirtual(MidiDirection::Output, "out", nullptr, nullptr, handle),
              kMidiNoDriver);
    EXPECT_EQ(driver.GetClientName(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace tarvix
