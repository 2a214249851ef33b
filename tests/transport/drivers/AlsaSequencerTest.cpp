// What only the ALSA sequencer does: whose ports a client lists, and ports
// that go with their client (bytes crossing it are the driver contract's).
// Labelled alsa: scripts/alsa-vm.sh runs these in a VM that has a sequencer.
#include "support/MidiCallbackRecorder.h"

#include "transport/drivers/alsa/AlsaMidiDriver.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <memory>

namespace tarvix {
namespace {

using test::MidiCallbackRecorder;

std::vector<std::string> Names(IMidiDriver& driver, MidiDirection direction)
{
    std::vector<std::string> names(driver.GetNumDevs(direction));
    for (std::uint32_t index = 0; index < names.size(); ++index) {
        EXPECT_EQ(driver.GetDevName(direction, index, names[index]), kMidiNoError);
    }
    return names;
}

bool Lists(IMidiDriver& driver, MidiDirection direction, const std::string& name)
{
    const auto names = Names(driver, direction);
    return std::find(names.begin(), names.end(), name) != names.end();
}

class AlsaSequencerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(access("/dev/snd/seq", R_OK | W_OK), 0)
            << "no ALSA sequencer; scripts/alsa-vm.sh runs these tests in a VM that has one";
    }

    CAlsaMidiDriver program{"tarvix-test-program"};
    std::unique_ptr<CAlsaMidiDriver> device =
        std::make_unique<CAlsaMidiDriver>("tarvix-test-device");
    MidiCallbackRecorder programCalls;
    MidiCallbackRecorder deviceCalls;
};

TEST_F(AlsaSequencerTest, ClientsListEachOthersPortsByNameInTheirDirectionButNotTheirOwn)
{
    MidiHandle in = nullptr;
    MidiHandle out = nullptr;
    ASSERT_EQ(device->OpenVirtual(MidiDirection::Input, "in", &MidiCallbackRecorder::Callback,
                                  &deviceCalls, in),
              kMidiNoError);
    ASSERT_EQ(device->OpenVirtual(MidiDirection::Output, "out", &MidiCallbackRecorder::Callback,
                                  &deviceCalls, out),
              kMidiNoError);

    EXPECT_TRUE(Lists(program, MidiDirection::Output, "tarvix-test-device:in"));
    EXPECT_TRUE(Lists(program, MidiDirection::Input, "tarvix-test-device:out"));
    EXPECT_FALSE(Lists(program, MidiDirection::Input, "tarvix-test-device:in"));
    EXPECT_FALSE(Lists(program, MidiDirection::Output, "tarvix-test-device:out"));
    EXPECT_TRUE(Lists(program, MidiDirection::Input, "Midi Through:Midi Through Port-0"));
    EXPECT_TRUE(Lists(program, MidiDirection::Output, "Midi Through:Midi Through Port-0"));
    EXPECT_FALSE(Lists(*device, MidiDirection::Output, "tarvix-test-device:in"));
    EXPECT_EQ(program.GetUnavailableReason(), "");
}

TEST_F(AlsaSequencerTest, APortWhoseClientWentAwayIsNotOpenedAndNoLongerListed)
{
    MidiHandle in = nullptr;
    ASSERT_EQ(device->OpenVirtual(MidiDirection::Input, "in", &MidiCallbackRecorder::Callback,
                                  &deviceCalls, in),
              kMidiNoError);
    const auto names = Names(program, MidiDirection::Output);
    const auto listed = std::find(names.begin(), names.end(), "tarvix-test-device:in");
    ASSERT_NE(listed, names.end());

    ASSERT_EQ(device->Close(in), kMidiNoError);
    device.reset(); // its sequencer client goes, and its ports with it

    MidiHandle out = nullptr;
    EXPECT_EQ(program.Open(MidiDirection::Output,
                           static_cast<std::uint32_t>(listed - names.begin()),
                           &MidiCallbackRecorder::Callback, &programCalls, out),
              kMidiBadDeviceId);
    EXPECT_FALSE(Lists(program, MidiDirection::Output, "tarvix-test-device:in"));
}

} // namespace
} // namespace tarvix
