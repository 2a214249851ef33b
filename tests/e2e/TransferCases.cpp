// The same transfers on every backend the programs meet on; each test
// program instantiates them with its own rig.
#include "TransferCases.h"

#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "support/Bytes.h"
#include "support/FullMemory.h"
#include "support/RandomDocument.h"
#include "support/SeededDocuments.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <random>
#include <regex>

namespace tarvix::testing {

const Bytes& FullDump()
{
    static const Bytes dump = [] {
        const FullMemory full = MakeFullMemory();
        EXPECT_EQ(full.problem, "");
        return full.dump;
    }();
    return dump;
}

void TransferTest::SetUp()
{
    CliTest::SetUp();
    GetParam().prepare(environment);
}

std::unique_ptr<ChildProcess> TransferTest::StartDevice(const Words& options)
{
    Words words{"device"};
    words.insert(words.end(), options.begin(), options.end());
    for (const std::string& option : GetParam().deviceOptions)
        if (std::find(words.begin(), words.end(), option) == words.end())
            words.push_back(option);
    auto device = StartCli(words, "device");
    EXPECT_TRUE(device->WaitForOutput("Listening on \"" + DeviceIn() + "\"", kShowLimit))
        << device->Describe();
    return device;
}

namespace {

const Bytes kOtherMakers = {0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7};

// Several times what the device's 4 KB input buffer holds, so that a send
// running ahead of the cable overflows it, yet a few seconds on the cable
// rather than the full memory's 23: a dump of 10 to 16 KB (fixed seeds).
const Bytes& CableTestDump()
{
    static const Bytes dump = [] {
        for (unsigned seed = 1; seed < 200; ++seed) {
            CMmt8Memory memory;
            std::mt19937 random(seed);
            FillRandomDocument(memory, random, {12, 30, 6, 40});
            Bytes bytes;
            std::string error;
            if (BuildDump(memory, bytes, error) && bytes.size() >= 10000 && bytes.size() <= 16000)
                return bytes;
        }
        return Bytes();
    }();
    return dump;
}

TEST_P(TransferTest, PortsListsTheDevicesPortsLikeAnInterfaces)
{
    const auto device = StartDevice();
    const Run ports = RunCli({"ports"});

    EXPECT_EQ(ports.exit.code, 0) << ports.description;
    EXPECT_NE(ports.out.find("in\t" + DeviceOut() + "\n"), std::string::npos) << ports.out;
    EXPECT_NE(ports.out.find("out\t" + DeviceIn() + "\n"), std::string::npos) << ports.out;
    const std::regex line("(in|out)\t[A-Za-z]+: .+");
    std::size_t start = 0;
    for (std::size_t end; (end = ports.out.find('\n', start)) != std::string::npos;
         start = end + 1) {
        const std::string text = ports.out.substr(start, end - start);
        EXPECT_TRUE(std::regex_match(text, line)) << text;
    }
    // Without a sequencer, ALSA lists nothing and says why.
    if (!std::filesystem::exists("/dev/snd/seq")) {
        EXPECT_NE(ports.err.find("ALSA: "), std::string::npos) << ports.err;
    }
}

TEST_P(TransferTest, AFullMemoryDumpIsReceivedByteForByte)
{
    ASSERT_GT(FullDump().size(), 70000u);
    const auto device = StartDevice({"--memory", WriteFile("full.syx", FullDump())});
    const auto receive = StartReceive(DeviceOut(), "got.syx");

    device->Signal(SIGUSR1);
    const auto exit = receive->Wait(kRunLimit);

    ASSERT_EQ(exit.code, 0) << receive->Describe();
    EXPECT_EQ(ReadAllBytes(folder.File("got.syx")), FullDump());
    EXPECT_NE(receive->ReadErr().find("Received Alesis MMT8 sysex " +
                                      std::to_string(FullDump().size()) + " bytes"),
              std::string::npos)
        << receive->ReadErr();
}

TEST_P(TransferTest, ASendIsReceivedByteForByteByTheDevice)
{
    // The device takes input as through a MIDI interface: a buffer of 4 KB
    // draining at cable speed. A send with the default settings that ran
    // ahead of the cable would lose bytes there, and the device would say.
    ASSERT_FALSE(CableTestDump().empty());
    const std::string received = folder.File("device-got.syx");
    const auto device = StartDevice({"--received", received, "--wire-speed"});

    const Run send = RunCli({"send", WriteFile("dump.syx", CableTestDump()), "--port", DeviceIn()});

    ASSERT_EQ(send.exit.code, 0) << send.description;
    ASSERT_TRUE(device->WaitForOutput("Wrote " + received, kShowLimit)) << device->Describe();
    EXPECT_EQ(ReadAllBytes(received), CableTestDump());
    EXPECT_EQ(device->ReadOut().find("Lost"), std::string::npos) << device->Describe();
}

TEST_P(TransferTest, AnotherMakersSysexBeforeTheDumpIsListedAndSkipped)
{
    const Bytes dump = DumpOf(CMmt8Memory());
    const auto device =
        StartDevice({"--memory", WriteFile("mixed.syx", Concat(kOtherMakers, dump))});
    const auto receive = StartReceive(DeviceOut(), "got.syx");

    device->WriteInput("\n"); // Enter
    const auto exit = receive->Wait(kRunLimit);

    ASSERT_EQ(exit.code, 0) << receive->Describe();
    EXPECT_EQ(ReadAllBytes(folder.File("got.syx")), dump);
    EXPECT_NE(receive->ReadErr().find("Received unknown sysex 11 bytes"), std::string::npos)
        << receive->ReadErr();
}

TEST_P(TransferTest, CtrlCDuringAReceiveWritesNothing)
{
    const auto device =
        StartDevice({"--memory", WriteFile("full.syx", FullDump()), "--wire-speed"});
    const auto receive = StartReceive(DeviceOut(), "got.syx");

    device->Signal(SIGUSR1);
    ASSERT_TRUE(receive->WaitForOutput("Receiving Alesis MMT8", kShowLimit, true))
        << receive->Describe();
    receive->Signal(SIGINT);
    const auto exit = receive->Wait(kRunLimit);

    EXPECT_EQ(exit.code, 1) << receive->Describe();
    EXPECT_NE(receive->ReadErr().find("Cancelled; nothing was written."), std::string::npos)
        << receive->ReadErr();
    EXPECT_TRUE(NothingWritten("got.syx"));
    EXPECT_TRUE(device->IsRunning());
}

TEST_P(TransferTest, SigtermWhileWaitingWritesNothing)
{
    const auto device = StartDevice();
    const auto receive = StartReceive(DeviceOut(), "got.syx");

    receive->Signal(SIGTERM);
    const auto exit = receive->Wait(kRunLimit);

    EXPECT_EQ(exit.code, 1) << receive->Describe();
    EXPECT_TRUE(NothingWritten("got.syx"));
}

TEST_P(TransferTest, CtrlCStopsASendHalfWay)
{
    const std::string received = folder.File("device-got.syx");
    const auto device = StartDevice({"--received", received});
    const auto send =
        StartCli({"send", WriteFile("full.syx", FullDump()), "--port", DeviceIn()}, "send");

    ASSERT_TRUE(send->WaitForOutput("Sending", kShowLimit, true)) << send->Describe();
    send->Signal(SIGINT);
    const auto exit = send->Wait(kRunLimit);

    EXPECT_EQ(exit.code, 1) << send->Describe();
    EXPECT_NE(send->ReadErr().find("Cancelled; the device may have received part of the dump."),
              std::string::npos)
        << send->ReadErr();
    EXPECT_FALSE(std::filesystem::exists(received));
}

TEST_P(TransferTest, TheDeviceDisappearingMidReceiveEndsItWithAMessage)
{
    const auto device =
        StartDevice({"--memory", WriteFile("full.syx", FullDump()), "--wire-speed"});
    const auto receive = StartReceive(DeviceOut(), "got.syx");

    device->Signal(SIGUSR1);
    ASSERT_TRUE(receive->WaitForOutput("Receiving Alesis MMT8", kShowLimit, true))
        << receive->Describe();
    device->SignalGroup(SIGKILL);
    const auto exit = receive->Wait(kRunLimit);

    EXPECT_FALSE(exit.timedOut);
    EXPECT_EQ(exit.code, 1) << receive->Describe();
    EXPECT_NE(receive->ReadErr().find("Port \"" + DeviceOut() + "\" is gone"), std::string::npos)
        << receive->ReadErr();
    EXPECT_TRUE(NothingWritten("got.syx"));
}

TEST_P(TransferTest, TheDeviceDisappearingMidSendEndsItWithAMessage)
{
    const auto device = StartDevice({"--wire-speed"});
    const auto send =
        StartCli({"send", WriteFile("full.syx", FullDump()), "--port", DeviceIn()}, "send");

    ASSERT_TRUE(send->WaitForOutput("Sending", kShowLimit, true)) << send->Describe();
    device->SignalGroup(SIGKILL);
    const auto exit = send->Wait(kRunLimit);

    EXPECT_FALSE(exit.timedOut);
    EXPECT_EQ(exit.code, 1) << send->Describe();
    // Whichever notices first, the driver (the connection went) or the
    // command (the port is no longer listed), says the port is gone.
    EXPECT_NE(send->ReadErr().find("is gone"), std::string::npos) << send->ReadErr();
}

TEST_P(TransferTest, AReceiveGivesUpAtItsTimeout)
{
    const auto device = StartDevice();
    const Run receive = RunCli(
        {"receive", "--port", DeviceOut(), "-o", folder.File("got.syx"), "--timeout", "0.5"});

    EXPECT_EQ(receive.exit.code, 1) << receive.description;
    EXPECT_NE(receive.err.find("No dump received within 0.5 seconds; nothing was written."),
              std::string::npos)
        << receive.err;
    EXPECT_TRUE(NothingWritten("got.syx"));
}

TEST_P(TransferTest, PortsThatDoNotExistAreNamedInTheMessage)
{
    const std::string nobody = GetParam().backend + ": nobody:out";
    const Run receive = RunCli({"receive", "--port", nobody, "-o", folder.File("got.syx")});
    EXPECT_EQ(receive.exit.code, 1) << receive.description;
    EXPECT_NE(receive.err.find("Can't open device \"" + nobody + "\", error: "), std::string::npos)
        << receive.err;

    const Run send =
        RunCli({"send", WriteFile("blank.syx", DumpOf(CMmt8Memory())), "--port", "nowhere"});
    EXPECT_EQ(send.exit.code, 1) << send.description;
    EXPECT_NE(send.err.find("Can't open device \"nowhere\", error: "), std::string::npos)
        << send.err;
    EXPECT_TRUE(NothingWritten("got.syx"));
}

TEST_P(TransferTest, AFileThatIsNotADumpIsNeverSent)
{
    const auto device = StartDevice({"--received", folder.File("device-got.syx")});
    const Run send =
        RunCli({"send", WriteFile("noise.syx", {0x12, 0xF0, 0x34, 0x56}), "--port", DeviceIn()});

    EXPECT_EQ(send.exit.code, 1) << send.description;
    EXPECT_NE(send.err.find("Invalid sysex file: "), std::string::npos) << send.err;
    EXPECT_EQ(device->ReadOut().find("Received"), std::string::npos) << device->ReadOut();
}

TEST_P(TransferTest, TheDeviceRefusesAMemoryThatIsNotADump)
{
    const Run gap =
        RunCli({"device", "--memory", WriteFile("gap.syx", Concat(DumpOf(CMmt8Memory()), {0}))});
    EXPECT_EQ(gap.exit.code, 1) << gap.description;
    EXPECT_EQ(gap.err, "Invalid SysEx format\n");

    const Run other = RunCli({"device", "--memory", WriteFile("other.syx", kOtherMakers)});
    EXPECT_EQ(other.exit.code, 1) << other.description;
    EXPECT_EQ(other.err, "Invalid sysex data\n");
}

} // namespace
} // namespace tarvix::testing
