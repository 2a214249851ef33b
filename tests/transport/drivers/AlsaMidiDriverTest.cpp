// Only the machine without a sequencer is tested here; the transfer path
// (256-byte SysEx events both ways, wire pacing towards sound cards) has
// not been run against a real sequencer yet, so no limit is measured.

#include "transport/drivers/alsa/AlsaMidiDriver.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace tarvix {
namespace {

TEST(AlsaMidiDriverTest, WithoutASequencerListsNoPortsAndSaysWhy)
{
    if (access("/dev/snd/seq", F_OK) == 0) {
        GTEST_SKIP() << "this machine has an ALSA sequencer";
    }
    ::testing::internal::CaptureStderr();
    CAlsaMidiDriver driver;
    EXPECT_EQ(driver.GetName(), "ALSA");
    EXPECT_EQ(driver.GetNumDevs(MidiDirection::Input), 0u);
    EXPECT_EQ(driver.GetNumDevs(MidiDirection::Output), 0u);
    EXPECT_EQ(driver.GetUnavailableReason(),
              "Cannot open the ALSA sequencer: No such file or directory");
    MidiHandle handle = nullptr;
    EXPECT_EQ(driver.Open(MidiDirection::Output, 0, nullptr, nullptr, handle), kMidiBadDeviceId);
    EXPECT_EQ(driver.OpenVirtual(MidiDirection::Input, "in", nullptr, nullptr, handle),
              kMidiNoDriver);
    EXPECT_EQ(driver.Close(handle), kMidiInvalidHandle);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace tarvix
