#include "support/MidiCallbackRecorder.h"

#include "transport/drivers/MidiService.h"
#include "transport/drivers/SystemMidiService.h"
#include "transport/drivers/loopback/LoopbackMidiDriver.h"

#include <gtest/gtest.h>

namespace tarvix {
namespace {

using test::MakeSysex;
using test::MidiCallbackRecorder;
using test::TestBuffer;

class UnavailableDriver : public CLoopbackMidiDriver {
public:
    UnavailableDriver() : CLoopbackMidiDriver("Absent") {}
    std::string GetUnavailableReason() const override { return "Not running."; }
};

class MidiServiceTest : public ::testing::Test {
protected:
    MidiServiceTest()
    {
        auto first = std::make_unique<CLoopbackMidiDriver>("Loopback");
        auto second = std::make_unique<CLoopbackMidiDriver>("Second");
        a = &first->CreatePort("cable A");
        b = &second->CreatePort("cable B");
        c = &second->CreatePort("cable C");
        std::vector<std::unique_ptr<IMidiDriver>> backends;
        backends.push_back(std::move(first));
        backends.push_back(std::make_unique<UnavailableDriver>());
        backends.push_back(std::move(second));
        service = std::make_unique<CMidiService>(std::move(backends));
    }

    std::vector<std::string> Names(MidiDirection direction)
    {
        std::vector<std::string> names;
        const std::uint32_t count = service->GetNumDevs(direction);
        for (std::uint32_t i = 0; i < count; ++i) {
            std::string name;
            EXPECT_EQ(service->GetDevName(direction, i, name), kMidiNoError);
            names.push_back(name);
        }
        return names;
    }

    LoopbackMidiDevice* a = nullptr;
    LoopbackMidiDevice* b = nullptr;
    LoopbackMidiDevice* c = nullptr;
    std::unique_ptr<CMidiService> service;
};

TEST_F(MidiServiceTest, ListsEveryBackendsPortsWithItsNameInFront)
{
    const std::vector<std::string> expected{"Loopback: cable A", "Second: cable B",
                                            "Second: cable C"};
    EXPECT_EQ(Names(MidiDirection::Input), expected);
    EXPECT_EQ(Names(MidiDirection::Output), expected);
    std::string name;
    EXPECT_EQ(service->GetDevName(MidiDirection::Input, 3, name), kMidiBadDeviceId);
    EXPECT_EQ(service->GetName(), "Loopback+Absent+Second");
    EXPECT_EQ(service->GetUnavailableReason(), "Absent: Not running.");
    EXPECT_NE(service->FindBackend("Second"), nullptr);
    EXPECT_EQ(service->FindBackend("JACK"), nullptr);
}

TEST_F(MidiServiceTest, HandlesReachTheBackendThatOpenedThem)
{
    MidiCallbackRecorder inRecorder;
    MidiCallbackRecorder outRecorder;
    MidiHandle in = nullptr;
    MidiHandle out = nullptr;
    ASSERT_EQ(
        service->Open(MidiDirection::Input, 2, &MidiCallbackRecorder::Callback, &inRecorder, in),
        kMidiNoError);
    ASSERT_EQ(
        service->Open(MidiDirection::Output, 1, &MidiCallbackRecorder::Callback, &outRecorder, out),
        kMidiNoError);
    EXPECT_TRUE(c->IsInputOpen());
    EXPECT_TRUE(b->IsOutputOpen());
    EXPECT_EQ(inRecorder.Calls().at(0).handle, in);

    TestBuffer inBuffer(64);
    ASSERT_EQ(service->PrepareHeader(in, inBuffer.header), kMidiNoError);
    ASSERT_EQ(service->AddBuffer(in, inBuffer.header), kMidiNoError);
    ASSERT_EQ(service->Start(in), kMidiNoError);
    c->Feed(MakeSysex(10));
    EXPECT_EQ(inRecorder.Received(), MakeSysex(10));

    TestBuffer outBuffer(MakeSysex(8));
    ASSERT_EQ(service->PrepareHeader(out, outBuffer.header), kMidiNoError);
    ASSERT_EQ(service->LongMsg(out, outBuffer.header), kMidiNoError);
    EXPECT_EQ(b->TakeReceived(), MakeSysex(8));
    EXPECT_EQ(outRecorder.Calls(MidiCallbackMessage::BufferDone).size(), 1u);

    ASSERT_EQ(service->Reset(in), kMidiNoError);
    EXPECT_EQ(service->UnprepareHeader(in, inBuffer.header), kMidiNoError);
    EXPECT_EQ(service->Close(in), kMidiNoError);
    EXPECT_EQ(service->Close(out), kMidiNoError);
    EXPECT_EQ(service->Close(out), kMidiInvalidHandle);
    EXPECT_EQ(service->LongMsg(out, outBuffer.header), kMidiInvalidHandle);
}

TEST_F(MidiServiceTest, AnIndexPastTheListIsABadDevice)
{
    MidiHandle handle = nullptr;
    EXPECT_EQ(service->Open(MidiDirection::Input, 3, nullptr, nullptr, handle), kMidiBadDeviceId);
    EXPECT_EQ(service->GetErrorText(kMidiBadDeviceId), "The MIDI port does not exist.");
}

TEST(MidiServiceEmptyTest, WithoutBackendsListsNothingAndSaysWhy)
{
    CMidiService service({});
    EXPECT_EQ(service.GetNumDevs(MidiDirection::Output), 0u);
    EXPECT_EQ(service.GetUnavailableReason(), "No MIDI backend is built into this program.");
}

TEST(SystemMidiDriverTest, OffersTheBackendsBuiltIn)
{
    const std::unique_ptr<IMidiDriver> driver = CreateSystemMidiService();
    std::string expected;
#ifdef TARVIX_HAVE_ALSA
    expected = "ALSA";
#endif
#ifdef TARVIX_HAVE_JACK
    expected += expected.empty() ? "JACK" : "+JACK";
#endif
#ifdef TARVIX_HAVE_WINMM
    expected += expected.empty() ? "WinMM" : "+WinMM";
#endif
    EXPECT_EQ(driver->GetName(), expected);
}

} // namespace
} // namespace tarvix
