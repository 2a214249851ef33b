#include "simulator/SimulatedMmt8.h"

#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "support/Bytes.h"
#include "support/SeededDocuments.h"
#include "support/TempDir.h"
#include "transport/drivers/loopback/LoopbackMidiDriver.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <mutex>
#include <random>
#include <thread>

namespace tarvix {
namespace {

using testing::Bytes;
using testing::Concat;
using testing::DumpOf;
using testing::Eventually;
using Clock = std::chrono::steady_clock;
using testing::ReadAllBytes;
using testing::TempDir;

const Bytes kOtherMakers = {0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7};

// The simulated device on one end of a Loopback cable; the test holds the
// other end, where the program would be.
class SimulatedMmt8Test : public ::testing::Test {
protected:
    static constexpr const char* kCable = "MMT-8 cable";

    SimulatedMmt8Test()
    {
        cable.SetReceiver([this](const std::uint8_t* data, std::size_t size) {
            const std::lock_guard lock(mutex);
            arrived.insert(arrived.end(), data, data + size);
            arrivals.push_back({Clock::now(), arrived.size()});
        });
    }

    void Start(Bytes memory, CSimulatedMmt8::Options options = {})
    {
        device = std::make_unique<CSimulatedMmt8>(std::move(memory), options,
                                                  [this](const std::string& line) {
                                                      const std::lock_guard lock(mutex);
                                                      log.push_back(line);
                                                  });
        std::string error;
        ASSERT_TRUE(device->Attach(driver, kCable, kCable, error)) << error;
    }

    Bytes Arrived()
    {
        const std::lock_guard lock(mutex);
        return arrived;
    }

    std::string LogText()
    {
        const std::lock_guard lock(mutex);
        std::string text;
        for (const std::string& line : log)
            text += line + "\n";
        return text;
    }

    bool Logged(const std::string& line)
    {
        const std::lock_guard lock(mutex);
        return std::find(log.begin(), log.end(), line) != log.end();
    }

    // Polls the device as its command does until the condition holds.
    bool PollUntil(const std::function<bool()>& condition)
    {
        return Eventually([&] {
            device->Poll();
            return condition();
        });
    }

    struct Arrival {
        Clock::time_point when;
        std::size_t total;
    };

    CLoopbackMidiDriver driver;
    LoopbackMidiDevice& cable = driver.CreatePort(kCable);
    std::mutex mutex;
    Bytes arrived;
    std::vector<Arrival> arrivals;
    std::vector<std::string> log;
    TempDir folder;
    std::unique_ptr<CSimulatedMmt8> device; // goes before the driver
};

TEST_F(SimulatedMmt8Test, SendsItsMemoryAsItIsOnEveryRequest)
{
    const Bytes memory = Concat(kOtherMakers, DumpOf(1));
    Start(memory);

    ASSERT_TRUE(device->RequestSend());
    ASSERT_TRUE(
        Eventually([&] { return Arrived().size() >= memory.size() && !device->IsSending(); }));
    EXPECT_EQ(Arrived(), memory);

    ASSERT_TRUE(device->RequestSend());
    ASSERT_TRUE(Eventually([&] { return Arrived().size() >= 2 * memory.size(); }));
    EXPECT_EQ(Arrived(), Concat(memory, memory));
}

TEST_F(SimulatedMmt8Test, SendsOnEveryAttachedCable)
{
    LoopbackMidiDevice& second = driver.CreatePort("second cable");
    const Bytes memory = DumpOf(2);
    Start(memory);
    std::string error;
    ASSERT_TRUE(device->Attach(driver, "second cable", "second cable", error)) << error;

    ASSERT_TRUE(device->RequestSend());
    ASSERT_TRUE(Eventually([&] { return !device->IsSending(); }));
    EXPECT_EQ(Arrived(), memory);
    EXPECT_EQ(second.TakeReceived(), memory);
}

TEST_F(SimulatedMmt8Test, AtWireSpeedNoByteArrivesBeforeTheCableCouldCarryIt)
{
    const Bytes memory = DumpOf(3);
    CSimulatedMmt8::Options options;
    options.wireSpeed = true;
    Start(memory, options);

    const auto start = Clock::now();
    ASSERT_TRUE(device->RequestSend());
    // A send under way is not started again.
    EXPECT_FALSE(device->RequestSend());
    ASSERT_TRUE(Eventually([&] { return !device->IsSending(); }));

    EXPECT_EQ(Arrived(), memory);
    const std::lock_guard lock(mutex);
    ASSERT_FALSE(arrivals.empty());
    // A real device's bytes arrive as the cable carries them; the
    // simulated one's at most a few bytes sooner.
    constexpr std::size_t kAhead = 32;
    for (const Arrival& arrival : arrivals) {
        const std::chrono::duration<double> elapsed = arrival.when - start;
        EXPECT_LE(CSimulatedMmt8::GetWireSeconds(arrival.total - std::min(arrival.total, kAhead)),
                  elapsed.count() + 1e-6)
            << arrival.total << " bytes after " << elapsed.count() << " s";
    }
}

TEST_F(SimulatedMmt8Test, AReceivedDumpBecomesItsMemoryAndIsWrittenByteForByte)
{
    const std::string path = folder.File("received.syx");
    CSimulatedMmt8::Options options;
    options.receivedPath = path;
    Start(DumpOf(4), options);
    const Bytes dump = DumpOf(5);

    // Other makers' SysEx and stray bytes on the cable are passed over.
    cable.Feed(Concat(Concat(kOtherMakers, {0x90, 0x40, 0x7F, 0xFE}), dump));
    ASSERT_TRUE(PollUntil([&] { return Logged("Wrote " + path); }));

    EXPECT_EQ(ReadAllBytes(path), dump);
    EXPECT_EQ(device->GetMemory(), dump);
    EXPECT_TRUE(Logged("Ignored unknown sysex 11 bytes"));
    ASSERT_TRUE(device->RequestSend());
    ASSERT_TRUE(Eventually([&] { return Arrived().size() >= dump.size(); }));
    EXPECT_EQ(Arrived(), dump);
}

TEST_F(SimulatedMmt8Test, ADumpCutShortIsIgnoredAndTheNextOneTaken)
{
    const std::string path = folder.File("received.syx");
    CSimulatedMmt8::Options options;
    options.receivedPath = path;
    const Bytes memory = DumpOf(6);
    Start(memory, options);
    const Bytes first = DumpOf(7);
    const Bytes second = DumpOf(8);

    // The first dump stops half-way, as when a cable is pulled.
    cable.Feed(Bytes(first.begin(), first.begin() + 100));
    device->Poll();
    EXPECT_EQ(device->GetMemory(), memory);
    cable.Feed(second);
    ASSERT_TRUE(PollUntil([&] { return Logged("Wrote " + path); })) << LogText();

    EXPECT_TRUE(Logged("Ignored incomplete Alesis MMT8 sysex 100 bytes")) << LogText();
    EXPECT_EQ(ReadAllBytes(path), second);
    EXPECT_EQ(device->GetMemory(), second);
}

TEST_F(SimulatedMmt8Test, AtWireSpeedInputFasterThanTheCableOverflowsItsBufferAndIsRefused)
{
    const std::string path = folder.File("received.syx");
    CSimulatedMmt8::Options options;
    options.wireSpeed = true;
    options.inputBuffer = 300;
    options.receivedPath = path;
    const Bytes memory = DumpOf(11);
    Start(memory, options);
    const Bytes dump = DumpOf(12);
    ASSERT_GT(dump.size(), 600u);

    // All at once, as a sender that ignores the cable would hand it over.
    cable.Feed(dump);
    ASSERT_TRUE(PollUntil([&] {
        return Logged("Ignored damaged Alesis MMT8 sysex " + std::to_string(dump.size()) +
                      " bytes");
    })) << LogText();

    const std::string text = LogText();
    EXPECT_NE(text.find("the input buffer of 300 bytes overflowed"), std::string::npos) << text;
    EXPECT_EQ(device->GetMemory(), memory);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SimulatedMmt8Test, GoingAwayInTheMiddleOfASendEndsIt)
{
    Bytes memory = DumpOf(9);
    for (int i = 0; i < 3; ++i)
        memory = Concat(memory, DumpOf(9));
    CSimulatedMmt8::Options options;
    options.wireSpeed = true; // several seconds of wire
    Start(memory, options);

    ASSERT_TRUE(device->RequestSend());
    ASSERT_TRUE(Eventually([&] { return !Arrived().empty(); }));
    device.reset();

    EXPECT_LT(Arrived().size(), memory.size());
    EXPECT_FALSE(cable.IsOutputOpen());
    EXPECT_FALSE(cable.IsInputOpen());
}

TEST_F(SimulatedMmt8Test, AttachingToAPortThatIsNotThereFails)
{
    Start(DumpOf(10));
    std::string error;
    EXPECT_FALSE(device->Attach(driver, "no such cable", kCable, error));
    EXPECT_EQ(error.rfind("Can't open device \"no such cable\", error: ", 0), 0u) << error;
}

TEST(SimulatedMmt8Memory, MustBeSysexMessagesHoldingADumpThatLoads)
{
    const Bytes dump = DumpOf(10);
    std::string error;
    EXPECT_TRUE(CSimulatedMmt8::CheckMemory(dump, error)) << error;
    EXPECT_TRUE(CSimulatedMmt8::CheckMemory(Concat(kOtherMakers, dump), error)) << error;

    EXPECT_FALSE(CSimulatedMmt8::CheckMemory(Concat(dump, {0x00}), error));
    EXPECT_EQ(error, "Invalid SysEx format\n");
    EXPECT_FALSE(CSimulatedMmt8::CheckMemory(Concat({0x00}, dump), error));
    EXPECT_EQ(error, "Invalid SysEx format\n");
    EXPECT_FALSE(CSimulatedMmt8::CheckMemory(Bytes(dump.begin(), dump.end() - 1), error));
    EXPECT_EQ(error, "Invalid SysEx format\n");

    EXPECT_FALSE(CSimulatedMmt8::CheckMemory(kOtherMakers, error));
    EXPECT_EQ(error, "Invalid sysex data\n");
    EXPECT_FALSE(CSimulatedMmt8::CheckMemory({}, error));
    EXPECT_EQ(error, "Invalid sysex data\n");
}

TEST(SimulatedMmt8Memory, WireTimeIsTenBitsAByteAt31250Baud)
{
    EXPECT_DOUBLE_EQ(CSimulatedMmt8::GetWireSeconds(3125), 1.0);
    EXPECT_DOUBLE_EQ(CSimulatedMmt8::GetWireSeconds(71000), 22.72);
}

} // namespace
} // namespace tarvix
