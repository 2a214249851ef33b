// The ALSA driver on a real kernel sequencer, two clients of it talking to
// each other and to snd-seq-dummy's "Midi Through". Labelled alsa:
// scripts/alsa-vm.sh runs these in a VM that has the sequencer.
#include "MidiCallbackRecorder.h"

#include "transport/drivers/alsa/AlsaMidiDriver.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <memory>

namespace tarvix {
namespace {

using test::MakeSysex;
using test::MidiCallbackRecorder;
using test::TestBuffer;
using namespace std::chrono_literals;

constexpr auto kLimit = 20s; // a hang fails, a slow machine does not

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

// Opens the port listed under that name, as the program opens the one the
// user chose.
MidiResult OpenByName(IMidiDriver& driver, MidiDirection direction, const std::string& name,
                      MidiCallbackRecorder& recorder, MidiHandle& handle)
{
    const auto names = Names(driver, direction);
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
        return kMidiBadDeviceId;
    }
    return driver.Open(direction, static_cast<std::uint32_t>(found - names.begin()),
                       &MidiCallbackRecorder::Callback, &recorder, handle);
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

TEST_F(AlsaSequencerTest, ALongSysexReachesAPortOpenedByNameWholeAndInOrder)
{
    MidiHandle in = nullptr;
    ASSERT_EQ(device->OpenVirtual(MidiDirection::Input, "in", &MidiCallbackRecorder::Callback,
                                  &deviceCalls, in),
              kMidiNoError);
    std::vector<std::unique_ptr<TestBuffer>> buffers;
    for (int count = 0; count < 24; ++count) {
        buffers.push_back(std::make_unique<TestBuffer>(256));
        ASSERT_EQ(device->PrepareHeader(in, buffers.back()->header), kMidiNoError);
        ASSERT_EQ(device->AddBuffer(in, buffers.back()->header), kMidiNoError);
    }
    ASSERT_EQ(device->Start(in), kMidiNoError);

    MidiHandle out = nullptr;
    ASSERT_EQ(
        OpenByName(program, MidiDirection::Output, "tarvix-test-device:in", programCalls, out),
        kMidiNoError);
    const auto sysex = MakeSysex(5000);
    TestBuffer sent(sysex);
    ASSERT_EQ(program.PrepareHeader(out, sent.header), kMidiNoError);
    ASSERT_EQ(program.LongMsg(out, sent.header), kMidiNoError);

    EXPECT_TRUE(programCalls.WaitFor(
        [](const MidiCallbackRecorder& calls) {
            return !calls.Calls(MidiCallbackMessage::BufferDone).empty();
        },
        kLimit));
    EXPECT_TRUE(deviceCalls.WaitFor(
        [&sysex](const MidiCallbackRecorder& calls) {
            return calls.Received().size() >= sysex.size();
        },
        kLimit));
    EXPECT_EQ(deviceCalls.Received(), sysex);
    ASSERT_EQ(program.UnprepareHeader(out, sent.header), kMidiNoError);
    EXPECT_EQ(program.Close(out), kMidiNoError);
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
