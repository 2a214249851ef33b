// Largest SysEx measured through a JACK dummy server (1024 frames at
// 48 kHz, jackd 1.9.21), sent by one client and received by another in
// sixteen 256-byte buffers, byte for byte: 4 MiB, both when sent through
// sixteen 256-byte buffers (about 190 KB/s: the buffers come back once a
// period) and as one buffer (about 1.5 MB/s: a MIDI port buffer carries
// about 32 KB a period, the rest goes in the following periods).

#include "support/JackServer.h"
#include "support/MidiCallbackRecorder.h"

#include "transport/drivers/jack/JackBridgeRoute.h"
#include "transport/drivers/jack/JackMidiDriver.h"
#include "transport/drivers/jack/JackSharedFilesLock.h"

#include <gtest/gtest.h>
#include <jack/jack.h>
#include <jack/midiport.h>

#include <algorithm>
#include <atomic>
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

// As a program that only lists the ports does: a client that went at once
// must not stay in the server's graph, where a server in sync mode would
// wait for it every cycle and start no other client.
TEST_F(JackMidiDriverTest, ClientsClosedAsSoonAsTheyOpenedLeaveTheServerRunning)
{
    for (int i = 0; i < 10; ++i) {
        CJackMidiDriver lister("tarvix-lister", s_server->GetName());
        lister.GetNumDevs(MidiDirection::Input);
        ASSERT_EQ(lister.GetUnavailableReason(), "");
    }
    Endpoint deviceOut(*device);
    Endpoint programIn(*program);
    ASSERT_EQ(deviceOut.OpenVirtual(*device, MidiDirection::Output, "out"), kMidiNoError)
        << device->GetUnavailableReason();
    ASSERT_EQ(programIn.Open(MidiDirection::Input, "tarvix-device:out"), kMidiNoError)
        << program->GetUnavailableReason();
    deviceOut.MakeBuffers(1, 16);
    programIn.MakeBuffers(4, 16);
    const Bytes message = MakeSysex(16, 3);
    EXPECT_EQ(Transfer(deviceOut, programIn, message), message);
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

TEST_F(JackMidiDriverTest, RefusesToSendThroughABridgeThatWouldDropTheMessage)
{
    // Clients named as a2jmidid and PipeWire name theirs, on the test server.
    CJackMidiDriver a2j("a2j", s_server->GetName());
    CJackMidiDriver pipeWire("Midi-Bridge", s_server->GetName());
    Endpoint a2jIn(a2j);
    Endpoint pipeWireIn(pipeWire);
    ASSERT_EQ(a2jIn.OpenVirtual(a2j, MidiDirection::Input, "Box [20] (playback): Box MIDI 1"),
              kMidiNoError);
    ASSERT_EQ(pipeWireIn.OpenVirtual(pipeWire, MidiDirection::Input, "Box:(playback_0) Box MIDI 1"),
              kMidiNoError);
    pipeWireIn.MakeBuffers(4, 256);

    // A dump goes in pieces: refused before any byte goes.
    Endpoint toPipeWire(*program);
    ASSERT_EQ(toPipeWire.Open(MidiDirection::Output, "Midi-Bridge:Box:(playback_0) Box MIDI 1"),
              kMidiNoError);
    const Bytes dump = MakeSysex(600, 3);
    const Bytes first(dump.begin(), dump.begin() + 256);
    TestBuffer& piece = toPipeWire.Own(first);
    ASSERT_EQ(program->PrepareHeader(toPipeWire.handle, piece.header), kMidiNoError);
    ASSERT_EQ(program->LongMsg(toPipeWire.handle, piece.header), kMidiNoError);
    ASSERT_TRUE(toPipeWire.recorder.WaitFor(
        [](const MidiCallbackRecorder& recorder) {
            return !recorder.Calls(MidiCallbackMessage::BufferDone).empty();
        },
        std::chrono::seconds(10)));
    EXPECT_NE(piece.header.flags & kMidiHeaderFailed, 0u);
    EXPECT_EQ(piece.header.bytesRecorded, 0u);
    EXPECT_EQ(program->GetPortFailure(toPipeWire.handle),
              ClassifyJackPort("Midi-Bridge:Box:(playback_0) Box MIDI 1").refusal);

    // A message whole in one piece passes PipeWire's bridge, not a2jmidid.
    Endpoint toPipeWireAgain(*program);
    ASSERT_EQ(
        toPipeWireAgain.Open(MidiDirection::Output, "Midi-Bridge:Box:(playback_0) Box MIDI 1"),
        kMidiNoError);
    toPipeWireAgain.MakeBuffers(1, 16);
    const Bytes request{0xF0, 0x00, 0x00, 0x0E, 0x00, 0xF7};
    EXPECT_EQ(Transfer(toPipeWireAgain, pipeWireIn, request), request);

    Endpoint toA2j(*program);
    ASSERT_EQ(toA2j.Open(MidiDirection::Output, "a2j:Box [20] (playback): Box MIDI 1"),
              kMidiNoError);
    TestBuffer& small = toA2j.Own(request);
    ASSERT_EQ(program->PrepareHeader(toA2j.handle, small.header), kMidiNoError);
    ASSERT_EQ(program->LongMsg(toA2j.handle, small.header), kMidiNoError);
    ASSERT_TRUE(toA2j.recorder.WaitFor(
        [](const MidiCallbackRecorder& recorder) {
            return !recorder.Calls(MidiCallbackMessage::BufferDone).empty();
        },
        std::chrono::seconds(10)));
    EXPECT_EQ(small.header.bytesRecorded, 0u);
    EXPECT_EQ(program->GetPortFailure(toA2j.handle),
              "a2jmidid passes no SysEx from JACK to the MIDI interface; send to its ALSA port "
              "(ALSA: Box:Box MIDI 1) instead.");
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

// A client of our own, before the program's in the graph (its "out" feeds
// the program's input), that can stay in its process callback for 300 ms:
// far past a period, so that on an asynchronous server the program's client
// is not run for several cycles, as happens to a client that is late.
class LateClient {
public:
    explicit LateClient(const std::string& server)
    {
        jack_status_t status{};
        const CJackSharedFilesLock lock; // as every client of ours opens
        m_client = jack_client_open("late",
                                    static_cast<jack_options_t>(JackNoStartServer | JackServerName),
                                    &status, server.c_str());
        if (m_client == nullptr) {
            return;
        }
        m_port = jack_port_register(m_client, "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        // An input flagged as a port of the server's own driver, before a
        // cable, as jackd's raw MIDI ports are.
        jack_port_t* sink = jack_port_register(m_client, "sink", JACK_DEFAULT_MIDI_TYPE,
                                               JackPortIsInput | JackPortIsPhysical, 0);
        jack_set_process_callback(m_client, &LateClient::Process, this);
        if (m_port == nullptr || sink == nullptr || jack_activate(m_client) != 0) {
            jack_client_close(m_client);
            m_client = nullptr;
        }
    }
    ~LateClient()
    {
        if (m_client != nullptr) {
            const CJackSharedFilesLock lock;
            jack_client_close(m_client);
        }
    }
    LateClient(const LateClient&) = delete;
    LateClient& operator=(const LateClient&) = delete;

    bool IsOpen() const { return m_client != nullptr; }
    // In three cycles in a row: sends before, stays 300 ms, sends after.
    void SendAroundALateCycle(Bytes before, Bytes after)
    {
        m_before = std::move(before);
        m_after = std::move(after);
        m_step = 1;
    }
    bool IsDone() const { return m_step == 0; }

private:
    static int Process(jack_nframes_t frames, void* self)
    {
        auto& client = *static_cast<LateClient*>(self);
        void* buffer = jack_port_get_buffer(client.m_port, frames);
        jack_midi_clear_buffer(buffer);
        const int step = client.m_step.load();
        if (step == 1 || step == 3) {
            const Bytes& bytes = step == 1 ? client.m_before : client.m_after;
            if (!bytes.empty()) {
                jack_midi_event_write(buffer, 0, bytes.data(), bytes.size());
            }
        } else if (step == 2) {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
        }
        if (step != 0) {
            client.m_step = step == 3 ? 0 : step + 1;
        }
        return 0;
    }

    jack_client_t* m_client = nullptr;
    jack_port_t* m_port = nullptr;
    Bytes m_before;
    Bytes m_after;
    std::atomic<int> m_step{0};
};

class JackMissedCycleTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!test::JackServer::IsInstalled()) {
            GTEST_SKIP() << "jackd is not installed (the jackd2 package)";
        }
        std::string error;
        ASSERT_TRUE(server.Start("tarvix-async", error, test::JackServer::Mode::Asynchronous))
            << error;
        late = std::make_unique<LateClient>(server.GetName());
        ASSERT_TRUE(late->IsOpen());
        program = std::make_unique<CJackMidiDriver>("tarvix", server.GetName());
        device = std::make_unique<CJackMidiDriver>("tarvix-device", server.GetName());
    }

    // An asynchronous server shows a new port only once a cycle has
    // finished the graph, which a loaded machine may delay.
    static MidiResult OpenWhenListed(Endpoint& endpoint, MidiDirection direction,
                                     const std::string& remote)
    {
        MidiResult result = kMidiBadDeviceId;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while ((result = endpoint.Open(direction, remote)) == kMidiBadDeviceId &&
               std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return result;
    }

    test::JackServer server;
    std::unique_ptr<LateClient> late;
    std::unique_ptr<CJackMidiDriver> program;
    std::unique_ptr<CJackMidiDriver> device;
};

TEST_F(JackMissedCycleTest, ASendDuringCyclesTheProgramMissedFailsWithWhatWasHandedOver)
{
    Endpoint deviceIn(*device);
    Endpoint programIn(*program);
    Endpoint programOut(*program);
    ASSERT_EQ(deviceIn.OpenVirtual(*device, MidiDirection::Input, "in"), kMidiNoError);
    ASSERT_EQ(OpenWhenListed(programIn, MidiDirection::Input, "late:out"), kMidiNoError);
    ASSERT_EQ(OpenWhenListed(programOut, MidiDirection::Output, "tarvix-device:in"), kMidiNoError);

    // Far more than the server moves before the late cycle (drivers do not
    // pace; the port above them does).
    TestBuffer& dump = programOut.Own(MakeSysex(16 * 1024 * 1024));
    ASSERT_EQ(program->PrepareHeader(programOut.handle, dump.header), kMidiNoError);
    ASSERT_EQ(program->LongMsg(programOut.handle, dump.header), kMidiNoError);
    late->SendAroundALateCycle({}, {});

    ASSERT_TRUE(programOut.recorder.WaitFor(
        [](const MidiCallbackRecorder& recorder) {
            return !recorder.Calls(MidiCallbackMessage::BufferDone).empty();
        },
        std::chrono::seconds(20)));
    EXPECT_NE(dump.header.flags & kMidiHeaderFailed, 0u);
    EXPECT_LT(dump.header.bytesRecorded, dump.header.bufferLength);
    EXPECT_EQ(program->GetPortFailure(programOut.handle),
              "The JACK server ran a cycle without this program (it was late); bytes may have "
              "been lost or sent twice.");
}

TEST_F(JackMissedCycleTest, AMessageComingInDuringCyclesTheProgramMissedCountsLostBytes)
{
    Endpoint programIn(*program);
    ASSERT_EQ(OpenWhenListed(programIn, MidiDirection::Input, "late:out"), kMidiNoError);
    programIn.MakeBuffers(4, 256);
    for (const auto& buffer : programIn.buffers) {
        ASSERT_EQ(program->AddBuffer(programIn.handle, buffer->header), kMidiNoError);
    }
    ASSERT_EQ(program->Start(programIn.handle), kMidiNoError);

    // Cycles missed between two messages cost nothing that can be told.
    // (A loaded machine may leave the program out of other cycles too, and
    // what they carried is gone: so the message goes on both sides.)
    const Bytes whole{0xF0, 0x43, 0x01, 0xF7};
    late->SendAroundALateCycle(whole, whole);
    ASSERT_TRUE(programIn.recorder.WaitFor(
        [&](const MidiCallbackRecorder& recorder) {
            return late->IsDone() && !recorder.Calls(MidiCallbackMessage::LongData).empty();
        },
        std::chrono::seconds(10)));
    EXPECT_EQ(program->GetLostInputBytes(programIn.handle), 0u);
    // In the middle of one, they cost at least a byte. The program must
    // have been run in the cycle that carried the message's start, which
    // on a loaded machine is likely, not sure: so a few messages.
    bool counted = false;
    for (int message = 0; message < 5 && !counted; ++message) {
        ASSERT_TRUE(programIn.recorder.WaitFor(
            [&](const MidiCallbackRecorder&) { return late->IsDone(); }, std::chrono::seconds(10)));
        late->SendAroundALateCycle({0xF0, 0x43, 0x02}, {0x03, 0xF7});
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
        while (!counted && std::chrono::steady_clock::now() < deadline) {
            counted = program->GetLostInputBytes(programIn.handle) >= 1;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    EXPECT_TRUE(counted);
}

// On a synchronous server no client misses a cycle, but the late one makes
// the server's driver late: an xrun, which fails a send to a hardware port.
TEST(JackXrunTest, AnXrunFailsASendToAHardwarePortOnly)
{
    if (!test::JackServer::IsInstalled()) {
        GTEST_SKIP() << "jackd is not installed (the jackd2 package)";
    }
    test::JackServer server;
    std::string error;
    ASSERT_TRUE(server.Start("tarvix-xrun", error)) << error;
    LateClient late(server.GetName());
    ASSERT_TRUE(late.IsOpen());
    CJackMidiDriver program("tarvix", server.GetName());
    CJackMidiDriver device("tarvix-device", server.GetName());
    Endpoint deviceIn(device);
    Endpoint toDevice(program);
    Endpoint toHardware(program);
    ASSERT_EQ(deviceIn.OpenVirtual(device, MidiDirection::Input, "in"), kMidiNoError);
    ASSERT_EQ(toDevice.Open(MidiDirection::Output, "tarvix-device:in"), kMidiNoError);
    ASSERT_EQ(toHardware.Open(MidiDirection::Output, "late:sink"), kMidiNoError);

    TestBuffer& toSoftware = toDevice.Own(MakeSysex(16 * 1024 * 1024, 1));
    TestBuffer& dump = toHardware.Own(MakeSysex(16 * 1024 * 1024, 2));
    for (auto* endpoint : {&toDevice, &toHardware}) {
        TestBuffer& buffer = endpoint == &toDevice ? toSoftware : dump;
        ASSERT_EQ(program.PrepareHeader(endpoint->handle, buffer.header), kMidiNoError);
        ASSERT_EQ(program.LongMsg(endpoint->handle, buffer.header), kMidiNoError);
    }
    late.SendAroundALateCycle({}, {});

    ASSERT_TRUE(toHardware.recorder.WaitFor(
        [](const MidiCallbackRecorder& recorder) {
            return !recorder.Calls(MidiCallbackMessage::BufferDone).empty();
        },
        std::chrono::seconds(20)));
    EXPECT_NE(dump.header.flags & kMidiHeaderFailed, 0u);
    EXPECT_LT(dump.header.bytesRecorded, dump.header.bufferLength);
    EXPECT_EQ(program.GetPortFailure(toHardware.handle),
              "The JACK server had an xrun while sending to a hardware port; bytes may have been "
              "lost or sent twice.");
    EXPECT_EQ(program.GetPortFailure(toDevice.handle), "");
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
