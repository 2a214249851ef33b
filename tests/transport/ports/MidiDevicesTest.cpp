#include "support/PortTestSupport.h"

#include "transport/StatusReporter.h"
#include "transport/ports/MidiDevices.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvix::test {
namespace {

class MidiDevicesTest : public LoopbackPortTest, public IStatusReporter {
protected:
    void SetStatusText(int pane, const std::string& text) override
    {
        statusTexts.push_back(std::to_string(pane) + ":" + text);
    }

    bool Open(const PortSettings& settings)
    {
        return OpenMidiDevices(input, output, settings, this,
                               [this](const std::string& text) { messages.push_back(text); });
    }

    std::vector<std::string> statusTexts;
    std::vector<std::string> messages;
};

TEST_F(MidiDevicesTest, PortsAreFoundByTheirExactName)
{
    driver.CreatePort("Second");
    EXPECT_EQ(input.GetNumDevs(), 2u);
    EXPECT_EQ(output.FindDevice("Second"), 1);
    EXPECT_EQ(output.FindDevice("second"), -1);

    EXPECT_FALSE(input.OpenByName("mmt-8 cable"));
    EXPECT_EQ(input.GetLastError(), kMidiBadDeviceId);
    EXPECT_EQ(input.GetLastErrorText(), driver.GetErrorText(kMidiBadDeviceId));
}

TEST_F(MidiDevicesTest, EachPortThatFailsIsReportedOnItsOwn)
{
    PortSettings settings;
    settings.inDevice = "Gone In";
    settings.outDevice = "Gone Out";

    EXPECT_FALSE(Open(settings));

    const std::string reason = driver.GetErrorText(kMidiBadDeviceId);
    EXPECT_EQ(messages, (std::vector<std::string>{
                            "Can't open device \"Gone In\", error: " + reason + "\n",
                            "Can't open device \"Gone Out\", error: " + reason + "\n"}));
    EXPECT_EQ(statusTexts, (std::vector<std::string>{"0:Opening Midi Input device",
                                                     "0:Opening Midi Output device", "0:"}));
}

TEST_F(MidiDevicesTest, AnEmptyNameLeavesThePortClosedWithoutFailure)
{
    EXPECT_TRUE(OpenMidiDevices(input, output, PortSettings{}, nullptr, nullptr));
    EXPECT_FALSE(input.IsOpen());

    PortSettings settings;
    settings.outDevice = kPortName;
    EXPECT_TRUE(Open(settings));
    EXPECT_FALSE(input.IsOpen());
    EXPECT_TRUE(output.IsOpen());
    EXPECT_TRUE(messages.empty());
}

TEST_F(MidiDevicesTest, ReopeningAppliesNewSettingsAndCloseFreesBothPorts)
{
    PortSettings settings;
    settings.inDevice = kPortName;
    settings.outDevice = kPortName;
    ASSERT_TRUE(Open(settings));

    // Both are closed first, or the busy ports would refuse to open again.
    settings.inBufferSize = 64;
    settings.inBufferCount = 3;
    settings.outBufferSize = 128;
    settings.outBufferCount = 5;
    settings.outBufferDelay = 7;
    settings.outSysexDelay = 9;
    ASSERT_TRUE(Open(settings));
    EXPECT_EQ(input.GetBufferSize(), 64u);
    EXPECT_EQ(input.GetBufferCount(), 3u);
    EXPECT_EQ(output.GetBufferSize(), 128u);
    EXPECT_EQ(output.GetBufferCount(), 5u);
    EXPECT_EQ(output.GetBufferDelay(), 7u);
    EXPECT_EQ(output.GetSysexDelay(), 9u);

    CloseMidiDevices(input, output);
    EXPECT_FALSE(input.IsOpen());
    EXPECT_FALSE(output.IsOpen());
    EXPECT_FALSE(device.IsInputOpen());
    EXPECT_FALSE(device.IsOutputOpen());
}

TEST_F(MidiDevicesTest, OpenGivesUpWhenTheDriverNeverConfirmsIt)
{
    driver.neverConfirmOpen = true;
    EXPECT_FALSE(input.OpenByName(kPortName));
    EXPECT_FALSE(input.IsOpen());
    EXPECT_EQ(input.GetLastError(), kMidiError);

    driver.neverConfirmOpen = false;
    EXPECT_TRUE(input.OpenByName(kPortName));
}

} // namespace
} // namespace tarvix::test
