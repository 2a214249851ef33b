#include "simulator/VirtualPortDriver.h"

#include "transport/drivers/loopback/LoopbackMidiDriver.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace tarvix {
namespace {

// The backend is a Loopback driver whose one cable stands for the ports
// a real backend would create.
class VirtualPortDriverTest : public ::testing::Test {
protected:
    VirtualPortDriverTest()
        : ports(
              backend,
              [this](MidiDirection direction, const std::string& name, MidiCallback callback,
                     void* instance, MidiHandle& handle) {
                  opened.push_back(name);
                  return backend.Open(direction, 0, callback, instance, handle);
              },
              "in", "out")
    {
    }

    CLoopbackMidiDriver backend;
    LoopbackMidiDevice& cable = backend.CreatePort("cable");
    std::vector<std::string> opened;
    CVirtualPortDriver ports;
};

TEST_F(VirtualPortDriverTest, ListsJustItsOwnTwoPorts)
{
    backend.CreatePort("another cable");
    std::string name;
    for (const MidiDirection direction : {MidiDirection::Input, MidiDirection::Output}) {
        EXPECT_EQ(ports.GetNumDevs(direction), 1u);
        EXPECT_EQ(ports.GetDevName(direction, 1, name), kMidiBadDeviceId);
    }
    ASSERT_EQ(ports.GetDevName(MidiDirection::Input, 0, name), kMidiNoError);
    EXPECT_EQ(name, "in");
    ASSERT_EQ(ports.GetDevName(MidiDirection::Output, 0, name), kMidiNoError);
    EXPECT_EQ(name, "out");
    EXPECT_EQ(ports.GetName(), "Loopback");
}

TEST_F(VirtualPortDriverTest, OpeningCreatesThePortsAndTheyCarryBytes)
{
    CMidiIn input(ports);
    CMidiOut output(ports);
    output.SetBufferDelay(0);
    output.SetSysexDelay(0);
    ASSERT_TRUE(input.OpenByName("in"));
    ASSERT_TRUE(output.OpenByName("out"));
    EXPECT_FALSE(input.OpenByName("out"));
    EXPECT_EQ(opened, (std::vector<std::string>{"in", "out"}));

    input.StartReceive();
    cable.Feed({0xF0, 0x01, 0x02, 0xF7});
    const std::vector<std::uint8_t> sent = {0xF0, 0x03, 0xF7};
    ASSERT_TRUE(output.QueueSysex(sent, false));
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    std::vector<std::uint8_t> received;
    while (received.size() < sent.size() && std::chrono::steady_clock::now() < deadline) {
        const auto more = cable.TakeReceived();
        received.insert(received.end(), more.begin(), more.end());
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(received, sent);
    input.Stop();
    const auto messages = input.LockMessages();
    ASSERT_EQ(messages->size(), 1u);
    EXPECT_EQ((*messages)[0]->GetSize(), 4u);
}

} // namespace
} // namespace tarvix
