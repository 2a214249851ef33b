// The WinMM backend against the real multimedia service of the system it
// runs on (wine's winmm.dll here). Wine offers no MIDI port on a machine
// without a sound card, so the ports' own behaviour is tested on the
// Loopback driver; what is proven here is the mapping onto the service:
// its port list, its result codes and its texts.
#include "transport/drivers/winmm/WinMmMidiDriver.h"

#include "support/MidiCallbackRecorder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>

namespace tarvix {
namespace {

using test::MidiCallbackRecorder;

constexpr MidiDirection kDirections[] = {MidiDirection::Input, MidiDirection::Output};

TEST(WinMmMidiDriverTest, PortsPastTheListAreTheServicesBadDeviceId)
{
    WinMmMidiDriver driver;
    for (const MidiDirection direction : kDirections) {
        const std::uint32_t count = driver.GetNumDevs(direction);
        for (std::uint32_t index = 0; index < count; ++index) {
            std::string name;
            EXPECT_EQ(driver.GetDevName(direction, index, name), kMidiNoError);
            EXPECT_FALSE(name.empty());
        }
        std::string name = "unchanged";
        EXPECT_EQ(driver.GetDevName(direction, count, name), kMidiBadDeviceId);
        EXPECT_EQ(name, "unchanged");

        MidiCallbackRecorder recorder;
        MidiHandle handle = nullptr;
        EXPECT_EQ(
            driver.Open(direction, count + 3, &MidiCallbackRecorder::Callback, &recorder, handle),
            kMidiBadDeviceId);
        EXPECT_EQ(handle, nullptr);
        EXPECT_TRUE(recorder.Calls().empty());
    }
}

TEST(WinMmMidiDriverTest, ErrorTextsAreTheServicesOwnOnOneLine)
{
    WinMmMidiDriver driver;
    std::set<std::string> texts;
    for (const MidiResult code : {kMidiError, kMidiBadDeviceId, kMidiAllocated, kMidiNoMemory,
                                  kMidiUnprepared, kMidiStillPlaying, kMidiNotReady}) {
        const std::string text = driver.GetErrorText(code);
        EXPECT_FALSE(text.empty()) << code;
        EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << code << ": " << text;
        texts.insert(text);
    }
    // Each code has a text of its own: the service answered, not a fallback.
    EXPECT_EQ(texts.size(), 7u);
}

// Runs only where the service lists an output port (wine with a sound
// card's sequencer, or Windows).
TEST(WinMmMidiDriverTest, ASysexGoesOutAndItsBufferComesBack)
{
    WinMmMidiDriver driver;
    if (driver.GetNumDevs(MidiDirection::Output) == 0)
        GTEST_SKIP() << "the MIDI service lists no output port here";
    MidiCallbackRecorder recorder;
    MidiHandle handle = nullptr;
    ASSERT_EQ(
        driver.Open(MidiDirection::Output, 0, &MidiCallbackRecorder::Callback, &recorder, handle),
        kMidiNoError);
    std::uint8_t bytes[] = {0xF0, 0x7D, 0x01, 0xF7};
    MidiHeader header;
    header.data = bytes;
    header.bufferLength = sizeof bytes;
    ASSERT_EQ(driver.PrepareHeader(handle, header), kMidiNoError);
    ASSERT_EQ(driver.LongMsg(handle, header), kMidiNoError);
    EXPECT_TRUE(recorder.WaitFor(
        [](const MidiCallbackRecorder& r) {
            return !r.Calls(MidiCallbackMessage::BufferDone).empty();
        },
        std::chrono::seconds(10)));
    EXPECT_EQ(header.flags & kMidiHeaderInQueue, 0u);
    EXPECT_EQ(driver.UnprepareHeader(handle, header), kMidiNoError);
    EXPECT_EQ(driver.Close(handle), kMidiNoError);
    EXPECT_EQ(recorder.Calls().front().message, MidiCallbackMessage::Open);
    EXPECT_EQ(recorder.Calls().back().message, MidiCallbackMessage::Close);
}

} // namespace
} // namespace tarvix
